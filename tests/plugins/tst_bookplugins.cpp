// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped address-book plug-ins as the tool meets them: listed among the installed plug-ins at
// start-up, created by class name and configured at each level through their own dialogs.
#include "isolation.h"
#include "modalwindow.h"
#include "pluginhost.h"
#include "tagvalue.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QScopeGuard>
#include <QSettings>
#include <QTableView>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

template <typename T> T *child(QWidget *window, const QString &name)
{
    auto *found = window->findChild<T *>(name);
    if (!found)
        qWarning("no %s in %s", qPrintable(name), qPrintable(window->objectName()));
    return found;
}

} // namespace

class TestBookPlugins : public QObject
{
    Q_OBJECT

private:
    TestIsolation m_scratch;
    QWidget m_owner; // the window a plug-in's dialog belongs to, as the address-book window would be

    QString writeFile(const QString &name, const QByteArray &bytes)
    {
        const QString path = m_scratch.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    static IPluginSession *session(const QString &className)
    {
        return qobject_cast<IPluginSession *>(CreateObject(className));
    }

    // Configure, with act run on the plug-in's dialog meanwhile. The dialog is closed (cancelled)
    // after act whatever it did, so that a failed check cannot leave the test waiting.
    QString configure(IPluginSession *plugin, const QString &level, const QString &vars,
                      const std::function<void(QDialog *)> &act)
    {
        answerModalWindow([act](QWidget *window) {
            auto *dialog = qobject_cast<QDialog *>(window);
            const auto closeAnyway = qScopeGuard([dialog] {
                if (dialog && dialog->isVisible())
                    dialog->reject();
            });
            QVERIFY(dialog);
            act(dialog);
        });
        return plugin->Configure(level, vars, &m_owner);
    }

    static void clearSettings()
    {
        for (const QString &organisation : {u"Tamsel Telecom Ltd"_s, u"Pellam Software Ltd"_s})
            QSettings(organisation).clear();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_scratch.filePath(u"settings"_s));
        qputenv("QUILL_PLUGIN_PATH", QUILL_SHIPPED_PLUGIN_DIR);
        PluginHost::forgetScan();
        m_owner.setObjectName(u"frmAB"_s);
        QLocale::setDefault(QLocale::c()); // sizes in messages written as "80.0"
    }

    void shippedBooksJoinTheInstalledPluginsOnce()
    {
        clearSettings();
        QCOMPARE(PluginHost::registerShippedPlugins(), (QStringList{u"CSV"_s, u"Folder"_s}));
        const QList<std::pair<QString, QString>> shipped{{u"CSV"_s, u"CSV file"_s},
                                                         {u"Folder"_s, u"Contacts folder"_s}};
        QCOMPARE(PluginHost::installedPlugins(), shipped);
        // The class each code names is the one the plug-in provides.
        for (const auto &[code, name] : shipped)
            QVERIFY2(session(u"plg"_s + code + u".Session"_s), qPrintable(code));

        // What the site changed stays changed: a renamed entry (in any case of its code), one
        // removed, one kept under the company's former name.
        clearSettings();
        QSettings(u"Tamsel Telecom Ltd"_s).setValue(u"Plugins/csv"_s, u"Price list"_s);
        QSettings(u"Pellam Software Ltd"_s).setValue(u"Plugins/FOLDER"_s, u"Shared contacts"_s);
        QCOMPARE(PluginHost::registerShippedPlugins(), QStringList());
        const QList<std::pair<QString, QString>> sites{{u"csv"_s, u"Price list"_s},
                                                       {u"FOLDER"_s, u"Shared contacts"_s}};
        QCOMPARE(PluginHost::installedPlugins(), sites);

        clearSettings();
        QCOMPARE(PluginHost::registerShippedPlugins().size(), 2);
        QSettings(u"Tamsel Telecom Ltd"_s).remove(u"Plugins/Folder"_s);
        QCOMPARE(PluginHost::registerShippedPlugins(), QStringList());
        QCOMPARE(PluginHost::installedPlugins(), shipped.mid(0, 1));
    }

    void csvBookDialogShowsWhatTheFileHolds_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("columns"); // proposed name, company and number column
        QTest::addColumn<QString>("separator");
        QTest::addColumn<int>("previewRows");

        QByteArray contacts = "Contact Name;Company;Telephone;Notes\r\n"_ba;
        for (int i = 1; i <= 12; ++i)
            contacts += "Person " + QByteArray::number(i) + ";\"Harbour; Supplies\";01632 9600" +
                        QByteArray::number(i) + ";\"Deliveries\r\nmornings\"\r\n";
        const QStringList none{u"(None)"_s, u"(None)"_s, u"(None)"_s};

        QTest::newRow("twelve contacts, the first ten shown")
            << u"contacts.csv"_s << contacts << QString()
            << QStringList{u"Contact Name"_s, u"Company"_s, u"Telephone"_s} << u"Semicolon"_s << 10;
        QTest::newRow("a company's name is no contact's name")
            << u"export.csv"_s << "Company Name,Business Phone,Customer Name\nAcme,101,Anne\n"_ba << QString()
            << QStringList{u"Customer Name"_s, u"Company Name"_s, u"Business Phone"_s} << u"Comma"_s << 1;
        QTest::newRow("no number column: OK waits for one")
            << u"names.csv"_s << "First\tLast\nAnne\tBaker\n"_ba
            << u"Choose the column that holds the telephone numbers."_s << none << u"Tab"_s << 1;
        QTest::newRow("empty") << u"empty.csv"_s << QByteArray() << u"The file empty.csv is empty."_s << none
                               << QString() << 0;
        QTest::newRow("binary") << u"photo.csv"_s << "\x89PNG\r\n\x1A\n\0\0\0\rIHDR"_ba
                                << u"The file photo.csv is not a text file in UTF-8."_s << none << QString()
                                << 0;
        QTest::newRow("missing") << u"gone.csv"_s << QByteArray() << u"The file gone.csv does not exist."_s
                                 << none << QString() << 0;
        QTest::newRow("too large")
            << u"huge.csv"_s << "Name,Phone\n"_ba
            << u"The file huge.csv is too large (80.0 MB). A CSV address book can be at "
               "most 64 MB."_s
            << none << QString() << 0;
    }

    void csvBookDialogShowsWhatTheFileHolds()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        QFETCH(QStringList, columns);
        QFETCH(QString, separator);
        QFETCH(int, previewRows);

        QString path = m_scratch.filePath(file);
        if (file != u"gone.csv"_s)
            writeFile(file, bytes);
        if (file == u"huge.csv"_s)
            QVERIFY(QFile(path).resize(80LL * 1024 * 1024)); // a hole: nothing is written
        path = QDir::toNativeSeparators(path);

        IPluginSession *plugin = session(u"plgCSV.Session"_s);
        QVERIFY(plugin);
        const QString before = u"{Kept(S4)=here}"_s;
        bool okEnabled = false;
        QString shownMessage;
        QStringList proposed;
        QString shownSeparator;
        int rows = -1;
        QString firstNotes;
        const QString after = configure(plugin, u"Data"_s, before, [&](QDialog *dialog) {
            auto *box = child<QLineEdit>(dialog, u"txtFile"_s);
            QVERIFY(box);
            QTest::keyClicks(box, path);
            QTest::keyClick(box, Qt::Key_Return); // the typing is done: a path that names nothing says so
            QVERIFY(dialog->isVisible());         // Enter in the path box does not close the dialog
            auto *ok = child<QPushButton>(dialog, u"OK"_s);
            QVERIFY(ok);
            okEnabled = ok->isEnabled();
            const auto *error = child<QLabel>(dialog, u"lblError"_s);
            shownMessage = error->isVisible() ? error->text() : QString();
            for (const QString &name : {u"cboName"_s, u"cboCompany"_s, u"cboNumber"_s})
                proposed << child<QComboBox>(dialog, name)->currentText();
            shownSeparator = child<QComboBox>(dialog, u"cboSeparator"_s)->currentData().toString();
            QAbstractItemModel *model = child<QTableView>(dialog, u"tblPreview"_s)->model();
            QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
            rows = model->rowCount();
            if (rows > 0)
                firstNotes = model->index(0, model->columnCount() - 1).data().toString();
            if (ok->isEnabled())
                QTest::mouseClick(ok, Qt::LeftButton);
        });

        QCOMPARE(shownMessage, message);
        QCOMPARE(proposed, columns);
        QCOMPARE(rows, previewRows);
        QCOMPARE(okEnabled, message.isEmpty());
        if (!okEnabled) {
            QCOMPARE(after, before); // cancelled: the book's settings are as they were
            return;
        }
        QCOMPARE(shownSeparator, separator);
        QCOMPARE(getText(after, u"Caption"_s), path);
        QCOMPARE(getText(after, u"File"_s), path);
        QCOMPARE(getText(after, u"Separator"_s), separator);
        QCOMPARE(getText(after, u"NameColumn"_s), columns[0]);
        QCOMPARE(getText(after, u"CompanyColumn"_s), columns[1]);
        QCOMPARE(getText(after, u"NumberColumn"_s), columns[2]);
        QCOMPARE(getText(after, u"Kept"_s), u"here"_s);
        if (file == u"contacts.csv"_s)
            QCOMPARE(firstNotes, u"Deliveries\r\nmornings"_s);
    }

    void csvBookReopensWithItsSettings()
    {
        const QString path = QDir::toNativeSeparators(
            writeFile(u"book.csv"_s, "Name;Office;Mobile;Company\nAnne;101;0770;Acme\n"_ba));
        QString saved;
        AddVar(saved, u"File"_s, path);
        AddVar(saved, u"Separator"_s, u"Semicolon"_s);
        AddVar(saved, u"NumberColumn"_s, u"Office"_s); // not the one its title suggests
        AddVar(saved, u"CompanyColumn"_s, u"Company"_s);

        IPluginSession *plugin = session(u"plgCSV.Session"_s);
        QVERIFY(plugin);
        QStringList shown;
        const QString after = configure(plugin, u"Data"_s, saved, [&](QDialog *dialog) {
            shown << child<QLineEdit>(dialog, u"txtFile"_s)->text();
            for (const QString &name : {u"cboName"_s, u"cboCompany"_s, u"cboNumber"_s})
                shown << child<QComboBox>(dialog, name)->currentText();
            QTest::mouseClick(child<QPushButton>(dialog, u"OK"_s), Qt::LeftButton);
        });
        // A column left empty when saved stays unchosen.
        QCOMPARE(shown, (QStringList{path, u"(None)"_s, u"Company"_s, u"Office"_s}));
        QCOMPARE(getText(after, u"NumberColumn"_s), u"Office"_s);
        QCOMPARE(getText(after, u"Caption"_s), path);
        QVERIFY(GetVar(after, u"NameColumn"_s).isNull());
    }

    void csvBookHasNoUserSettingsAndOffersALookUpAction()
    {
        IPluginSession *plugin = session(u"plgCSV.Session"_s);
        QVERIFY(plugin);
        QCOMPARE(plugin->Configure(u"User"_s, u"{File=x.csv}"_s, &m_owner), u"{Result=FAIL}"_s);

        QString offered;
        const QString action = configure(plugin, u"Action"_s, u"{Show=Company}"_s, [&](QDialog *dialog) {
            auto *show = child<QComboBox>(dialog, u"cboShow"_s);
            offered = show->currentText();
            auto *lookup = child<QComboBox>(dialog, u"cboLookup"_s);
            lookup->setCurrentIndex(lookup->findData(u"Dialled"_s));
            QTest::mouseClick(child<QPushButton>(dialog, u"OK"_s), Qt::LeftButton);
        });
        QCOMPARE(offered, u"The contact's company"_s);
        QCOMPARE(getText(action, u"Action"_s), u"Lookup"_s);
        QCOMPARE(getText(action, u"Lookup"_s), u"Dialled"_s);
        QCOMPARE(getText(action, u"Show"_s), u"Company"_s);
        // Cancel leaves the action's settings as they were.
        const QString cancelled = configure(plugin, u"Action"_s, action, [](QDialog *) {});
        QCOMPARE(cancelled, action);
    }

    void folderBookKeepsTheSharedFolderAndEachUsersFolder()
    {
        IPluginSession *plugin = session(u"plgFolder.Session"_s);
        QVERIFY(plugin);
        QCOMPARE(plugin->Configure(u"Action"_s, QString(), &m_owner), u"{Result=FAIL}"_s);

        const QString shared = QDir::toNativeSeparators(m_scratch.path());
        bool acceptedMissing = true;
        const QString data = configure(plugin, u"Data"_s, QString(), [&](QDialog *dialog) {
            auto *box = child<QLineEdit>(dialog, u"txtFolder"_s);
            auto *ok = child<QPushButton>(dialog, u"OK"_s);
            QTest::keyClicks(box, shared + u"/nowhere"_s);
            acceptedMissing = ok->isEnabled();
            box->clear();
            QTest::keyClicks(box, shared);
            QTest::mouseClick(ok, Qt::LeftButton);
        });
        QVERIFY(!acceptedMissing);
        QCOMPARE(getText(data, u"Caption"_s), shared);
        QCOMPARE(getText(data, u"Folder"_s), shared);

        bool acceptedOutside = true;
        QString shownBefore;
        const QString user =
            configure(plugin, u"User"_s, u"{SubFolder(S5)=Sales}{Mine(S1)=x}"_s, [&](QDialog *dialog) {
                auto *box = child<QLineEdit>(dialog, u"txtSubFolder"_s);
                auto *ok = child<QPushButton>(dialog, u"OK"_s);
                shownBefore = box->text();
                box->clear();
                QTest::keyClicks(box, u"../Accounts"_s);
                acceptedOutside = ok->isEnabled();
                box->clear();
                QTest::keyClicks(box, u"Sales/Smith"_s);
                auto *subFolders = child<QCheckBox>(dialog, u"chkSubFolders"_s);
                QTest::mouseClick(subFolders, Qt::LeftButton, {},
                                  QPoint(6, subFolders->height() / 2)); // its box
                QTest::mouseClick(ok, Qt::LeftButton);
            });
        QCOMPARE(shownBefore, u"Sales"_s);
        QVERIFY(!acceptedOutside);
        QCOMPARE(getText(user, u"SubFolder"_s), u"Sales/Smith"_s);
        QCOMPARE(getText(user, u"IncludeSubFolders"_s), u"0"_s);
        QCOMPARE(getText(user, u"Mine"_s), u"x"_s);
    }
};

QTEST_MAIN(TestBookPlugins)
#include "tst_bookplugins.moc"
