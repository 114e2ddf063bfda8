// SPDX-License-Identifier: GPL-3.0-or-later
// Plug-in objects are created by class name from the plug-in folders; a missing one is "nothing".
#include "isolation.h"
#include "pluginhost.h"
#include "tagvalue.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

class TestPluginHost : public QObject
{
    Q_OBJECT

private:
    TestIsolation m_scratch;

    static void usePluginPath(const QString &path)
    {
        qputenv("QUILL_PLUGIN_PATH", path.toUtf8());
        PluginHost::forgetScan();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_scratch.filePath(u"settings"_s));
    }

    void sessionObjectsComeFromTheFactoryOfTheirPlugin()
    {
        usePluginPath(QStringLiteral(QUILL_TEST_PLUGIN_DIR));
        QObject window;
        window.setObjectName(u"frmConfig"_s);

        auto *userBook = qobject_cast<IPluginSession *>(CreateObject(u"plgSample.Session"_s));
        QVERIFY(userBook);
        QCOMPARE(userBook->Configure(u"User"_s, u"{Book=Sales}"_s, &window),
                 u"{Book=Sales}{Level=User}{Owner=frmConfig}"_s);
        QCOMPARE(getText(userBook->Configure(u"Action"_s, u"{Book=Sales}"_s, &window), u"Result"_s), u"FAIL"_s);

        // Class names are matched without regard to case, and a second class of the same plug-in
        // is a different object.
        auto *action = qobject_cast<IPluginSession *>(CreateObject(u"PLGSAMPLEACTION.session"_s));
        QVERIFY(action);
        QVERIFY(action != userBook);
        QCOMPARE(action->Configure(u"Action"_s, QString(), nullptr), u"{Level=Action}{Owner=}"_s);
        QCOMPARE(action->Configure(u"User"_s, QString(), nullptr), u"{Result=FAIL}"_s);

        // A plug-in with one class is its own object.
        QVERIFY(qobject_cast<ITranslator *>(CreateObject(u"plgTranslate.Translate"_s)));
    }

    void classesNoPluginProvidesCannotBeCreated()
    {
        usePluginPath(QStringLiteral(QUILL_TEST_PLUGIN_DIR));
        QVERIFY(!CreateObject(u"plgCSV.Session"_s));
        QVERIFY(!CreateObject(QString()));

        // Folders that do not exist, empty entries and files that are no plug-ins are passed over.
        const QString junk = m_scratch.filePath(u"junk"_s);
        QVERIFY(QDir().mkpath(junk));
        for (const QString &name : {u"libbroken.so"_s, u"notes.txt"_s}) {
            QFile file(junk + u'/' + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("not a plug-in\n");
        }
        usePluginPath(m_scratch.filePath(u"missing"_s) + u"::"_s + junk);
        QVERIFY(!CreateObject(u"plgTranslate.Translate"_s));
        QVERIFY(!CreateObject(u"plgSample.Session"_s));

        // A plug-in installed later is found once the folders are looked at again.
        usePluginPath(junk + u':' + QStringLiteral(QUILL_TEST_PLUGIN_DIR));
        QVERIFY(CreateObject(u"plgSample.Session"_s));
    }

    void installedPluginsAreReadFromTheOrganisationsPluginsGroup()
    {
        {
            QSettings settings(u"Tamsel Telecom Ltd"_s);
            settings.setValue(u"Plugins/CSV"_s, u"Comma separated file"_s);
            settings.setValue(u"Plugins/ODBC"_s, u"ODBC database"_s);
            settings.setValue(u"Session/User"_s, u"admin"_s);
        }
        const QList<std::pair<QString, QString>> expected{{u"CSV"_s, u"Comma separated file"_s},
                                                          {u"ODBC"_s, u"ODBC database"_s}};
        QCOMPARE(PluginHost::installedPlugins(), expected);

        // Plug-ins installed under the company's former name are offered too, after the current
        // ones; a code listed under both keeps the current entry.
        {
            QSettings settings(u"Pellam Software Ltd"_s);
            settings.setValue(u"Plugins/LDAP"_s, u"Directory server"_s);
            settings.setValue(u"Plugins/csv"_s, u"Old CSV"_s);
        }
        const QList<std::pair<QString, QString>> both = expected + QList<std::pair<QString, QString>>{
                                                                       {u"LDAP"_s, u"Directory server"_s}};
        QCOMPARE(PluginHost::installedPlugins(), both);
    }
};

QTEST_GUILESS_MAIN(TestPluginHost)
#include "tst_pluginhost.moc"
