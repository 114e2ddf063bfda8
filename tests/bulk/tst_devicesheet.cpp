// SPDX-License-Identifier: GPL-3.0-or-later
// Device sheets as installers bring them: what a file must be before anything is planned, what each
// row is checked for (by the line the user sees in the spreadsheet), and the CSV an export writes.
#include "devicesheet.h"
#include "isolation.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDeviceSheet : public QObject
{
    Q_OBJECT

    TestIsolation m_scratch;
    int m_files = 0;

    QString writeFile(const QByteArray &bytes)
    {
        const QString path = m_scratch.filePath(u"sheet%1.csv"_s.arg(++m_files));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }
    static QStringList findingTexts(const DeviceSheet::Sheet &sheet)
    {
        QStringList texts;
        for (const DeviceSheet::Finding &finding : sheet.findings)
            texts.append(finding.text);
        return texts;
    }

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    // A file that cannot be used gives one clear message and no rows at all.
    void unusableFilesAreRefusedWhole_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << QByteArray() << u"is empty"_s;
        QTest::newRow("Latin-1") << QByteArray("Ext,Name\r\n201,M\xfcller\r\n") << u"is not UTF-8 text"_s;
        QTest::newRow("no Ext column") << QByteArray("Name,Dept\r\nA,B\r\n") << u"Line 1: the title row has no Ext"_s;
        QTest::newRow("unknown column") << QByteArray("Ext,Name,Deprt\r\n201,A,B\r\n")
                                        << u"Line 1: \"Deprt\" is not a device field."_s;
        QTest::newRow("column twice") << QByteArray("Ext,name,Name\r\n201,A,B\r\n")
                                      << u"Line 1: the column Name is named twice."_s;
    }
    void unusableFilesAreRefusedWhole()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        const DeviceSheet::Sheet sheet = DeviceSheet::read(writeFile(bytes));
        QVERIFY(!sheet.ok());
        QVERIFY2(sheet.failure.contains(message), qPrintable(sheet.failure));
        QVERIFY(sheet.rows.isEmpty());
    }

    void missingAndHugeFiles()
    {
        const QString missing = m_scratch.filePath(u"nowhere.csv"_s);
        QCOMPARE(DeviceSheet::read(missing).failure, u"The file \"%1\" does not exist."_s.arg(missing));
        // 100 MB (sparse): refused by its size before a byte of it is read.
        const QString huge = writeFile("Ext,Name\r\n");
        QFile file(huge);
        QVERIFY(file.resize(100LL * 1024 * 1024));
        QCOMPARE(DeviceSheet::read(huge).failure, u"The file \"%1\" is larger than 64 MB."_s.arg(huge));
    }

    // Every row is checked before anything is sent; a row with an error is rejected, a warning is
    // only said. The line is the spreadsheet's: a note over two lines moves the rows after it.
    void rowsAreCheckedByTheirLine()
    {
        const QByteArray bytes = "\xEF\xBB\xBF"
                                 "Ext;Name;Type;DDI;CanDial;Password;Notes\r\n"   // 1
                                 "201;Reception;Extension;4960201;1;hunter2;\"two\r\nlines; \"\"quoted\"\"\"\r\n" // 2-3
                                 ";No number;EXT;;0;;\r\n"                          // 4
                                 "202;A name far longer than twenty-five;ext;;;;\r\n" // 5
                                 "203;Yes flag;EXT;;yes;hunter2;\r\n"               // 6
                                 "204;Odd kind;Phone;;1;;\r\n"                      // 7
                                 "205;Twice;EXT;;1;;\r\n"                           // 8
                                 "205;Twice again;EXT;;1;;\r\n"                     // 9
                                 "206;Lines;TRUNK;4960206;;;\r\n"                   // 10
                                 "207;Too many;EXT;;1;;;extra\r\n"                  // 11
                                 "300-310;Range;EXT;;1;;\r\n"                       // 12
                                 " 7a1 ;Speed;speed dial;;;;\r\n";                  // 13
        const DeviceSheet::Sheet sheet = DeviceSheet::read(writeFile(bytes));
        QVERIFY2(sheet.ok(), qPrintable(sheet.failure));
        QCOMPARE(sheet.header, (QStringList{u"Ext"_s, u"Name"_s, u"Type"_s, u"DDI"_s, u"CanDial"_s, u"Password"_s,
                                            u"Notes"_s}));

        struct Expected
        {
            qsizetype line;
            QString ext;
            bool rejected;
        };
        const QList<Expected> expected{{2, u"201"_s, false},  {4, u""_s, true},      {5, u"202"_s, false},
                                       {6, u"203"_s, true},   {7, u"204"_s, true},   {8, u"205"_s, true},
                                       {9, u"205"_s, true},   {10, u"206"_s, false}, {11, u"207"_s, true},
                                       {12, u"300-310"_s, true}, {13, u"7A1"_s, false}};
        QCOMPARE(sheet.rows.size(), expected.size());
        for (qsizetype i = 0; i < expected.size(); ++i) {
            QCOMPARE(sheet.rows.at(i).line, expected.at(i).line);
            QCOMPARE(sheet.rows.at(i).ext, expected.at(i).ext);
            QCOMPARE(sheet.rows.at(i).rejected, expected.at(i).rejected);
        }
        QCOMPARE(sheet.rejectedCount(), 7);
        // The quoted note keeps its separator, quotes and line break; kinds are read by either word.
        QCOMPARE(sheet.rows.at(0).values.value(u"Notes"_s), u"two\r\nlines; \"quoted\""_s);
        QCOMPARE(sheet.rows.at(0).values.value(u"Type"_s), u"EXT"_s);
        QCOMPARE(sheet.rows.at(10).values.value(u"Type"_s), u"SPEED"_s);

        QCOMPARE(findingTexts(sheet),
                 (QStringList{u"Line 4: no Ext."_s,
                              u"Line 5: Name is cut to 25 characters."_s,
                              u"Line 6: CanDial is 0 or 1, not \"yes\"."_s,
                              u"Line 7: Type \"Phone\" is not one of EXT, AGENT, SPEED or TRUNK."_s,
                              u"Line 8: Ext 205 is on a later line as well."_s,
                              u"Line 9: Ext 205 is on an earlier line as well."_s,
                              u"Line 10: DDI is not kept for the kind Trunk; it is left out."_s,
                              u"Line 11: 8 fields where the title row names 7."_s,
                              u"Line 12: Ext 300-310 is a range; give each device a line of its own."_s}));
        QVERIFY(!findingTexts(sheet).join(u'\n').contains(u"hunter2"_s));
    }

    // What an export writes reads back as the same values, whatever the text holds.
    void exportedSheetsReadBackUnchanged()
    {
        DeviceSheet::Table table;
        table.fields = {u"Id"_s, u"Ext"_s, u"Type"_s, u"Name"_s, u"Notes"_s, u"CanDial"_s};
        table.rows = {{u"1"_s, u"201"_s, u"EXT"_s, u"Smith, Jo"_s, u"Said \"hi\"\nthen left"_s, u"1"_s},
                      {u"2"_s, u"T701"_s, u"TRUNK"_s, u" padded "_s, u"semi;colon\ttab"_s, u""_s}};
        const QStringList fields{u"Ext"_s, u"Name"_s, u"Type"_s, u"Notes"_s, u"CanDial"_s, u"Dept"_s};
        const QString csv = DeviceSheet::write(fields, table);
        QVERIFY(csv.startsWith(u"Ext,Name,Type,Notes,CanDial,Dept\r\n201,\"Smith, Jo\",EXT,"_s));

        const DeviceSheet::Sheet sheet = DeviceSheet::read(writeFile(csv.toUtf8()));
        QVERIFY2(sheet.ok(), qPrintable(sheet.failure));
        QCOMPARE(sheet.rows.size(), 2);
        QCOMPARE(sheet.findings.size(), 0);
        for (qsizetype r = 0; r < 2; ++r)
            for (const QString &field : fields)
                QCOMPARE(sheet.rows.at(r).values.value(field), table.rows.at(r).value(table.indexOf(field)));
        QCOMPARE(sheet.rows.at(1).line, 4); // the note of the first device takes two lines
    }
};

QTEST_GUILESS_MAIN(TestDeviceSheet)
#include "tst_devicesheet.moc"
