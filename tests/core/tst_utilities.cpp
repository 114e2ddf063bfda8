// SPDX-License-Identifier: GPL-3.0-or-later
// List keys, occurrence counts, proper names, buffer cuts, paths and the plug-in list.
#include "errorlog.h"
#include "isolation.h"
#include "tagvalue.h"
#include "utilities.h"

#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

class TestUtilities : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void listKeysTurnBackIntoRecordIds()
    {
        const QVariant id = GetId(u"~17"_s);
        QCOMPARE(id.toLongLong(), 17);
        QCOMPARE(id.toString(), u"17"_s);
        QVERIFY(id.typeId() != QMetaType::QString);
        // A key without "~" is not a record id and comes back as the very text.
        QCOMPARE(GetId(u"17"_s), QVariant(u"17"_s));
        QCOMPARE(GetId(u"17"_s).typeId(), QMetaType::QString);
        // Only the leading number after "~" counts, as in any numeric field.
        QCOMPARE(GetId(u"~42 Reception"_s).toLongLong(), 42);
        QCOMPARE(GetId(u"~"_s).toLongLong(), 0);
    }

    void occurCountsOverlappingExactMatches()
    {
        QCOMPARE(Occur(u"aaa"_s, u"aa"_s), 2);
        QCOMPARE(Occur(u""_s, u"a"_s), 0);
        QCOMPARE(Occur(u"a~b~c~"_s, u"~"_s), 3);
        QCOMPARE(Occur(u"Abc abc"_s, u"abc"_s), 1); // case matters
        QCOMPARE(Occur(u"ab"_s, u"abc"_s), 0);      // a part longer than what is left never counts
        QCOMPARE(Occur(u"abc"_s, u""_s), 3);        // the empty part is found at every position
    }

    void properCapitalisesWordStarts()
    {
        QCOMPARE(Proper(u"o'neil-smith jr.x"_s), u"O'neil-Smith Jr.X"_s);
        QCOMPARE(Proper(u"JOHN  SMITH"_s), u"John  Smith"_s);
        QCOMPARE(Proper(u"élise d'arc"_s), u"Élise D'arc"_s);
        QCOMPARE(Proper(u" x"_s), u" X"_s);
        QCOMPARE(Proper(u""_s), u""_s);
    }

    void zTrimCutsAtTheFirstControlCharacter()
    {
        QCOMPARE(ZTrim(u"Plugin\0garbage"_s), u"Plugin"_s);
        QCOMPARE(ZTrim(u"tab\there"_s), u"tab"_s);
        QCOMPARE(ZTrim(u"no terminator "_s), u"no terminator "_s);
        QCOMPARE(ZTrim(QString(QChar(0)) + u"x"_s), u""_s);
    }

    void filePathKeepsTheFolderAndItsSeparator()
    {
        QCOMPARE(FilePath(u"c:\\data\\sales.mdb"_s), u"c:\\data\\"_s);
        QCOMPARE(FilePath(u"/home/admin/sales.mdb"_s), u"/home/admin/"_s);
        QCOMPARE(FilePath(u"c:\\data/sub\\sales.mdb"_s), u"c:\\data/sub\\"_s);
        QCOMPARE(FilePath(u"sales.mdb"_s), u""_s);
        QCOMPARE(FilePath(u"c:\\data\\"_s), u"c:\\data\\"_s);
    }

    void registryListEntriesReadsOneGroupAsTaggedValues()
    {
        QSettings settings(m_scratch.filePath(u"plugins.ini"_s), QSettings::IniFormat);
        settings.setValue(u"Plugins/CSV"_s, u"CSV address book"_s);
        settings.setValue(u"Plugins/LDAP"_s, u"  Directory  "_s);
        settings.setValue(u"Plugins/Cut"_s, u"Outlook\0stale buffer"_s);
        settings.setValue(u"Plugins/Empty"_s, u""_s); // a value without data is left out
        settings.setValue(u"Plugins/"_s + QString(110, u'n'), QString(1100, u'd'));
        settings.setValue(u"Plugins/Nested/Ignored"_s, u"not a value of the group"_s);
        settings.setValue(u"Other/Key"_s, u"elsewhere"_s);

        const QString entries = RegistryListEntries(settings, u"Plugins"_s);
        QCOMPARE(settings.group(), u""_s); // the caller's place in the settings is kept
        QCOMPARE(getText(entries, u"CSV"_s), u"CSV address book"_s);
        QCOMPARE(getText(entries, u"LDAP"_s), u"Directory"_s);
        QCOMPARE(getText(entries, u"Cut"_s), u"Outlook"_s);
        QCOMPARE(getText(entries, QString(102, u'n')), QString(1002, u'd')); // names and data are cut
        QCOMPARE(GetVar(entries, 5), QVariant());
        QVERIFY(!entries.contains(u"Ignored"_s));
        QVERIFY(!entries.contains(u"elsewhere"_s));
        QCOMPARE(RegistryListEntries(settings, u"NoSuchGroup"_s), u""_s);
    }

private:
    TestIsolation m_scratch;
};

QTEST_GUILESS_MAIN(TestUtilities)
#include "tst_utilities.moc"
