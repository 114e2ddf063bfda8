// SPDX-License-Identifier: GPL-3.0-or-later
// CSV files as spreadsheets and other programs write them, the files that are no CSV at all, and
// previews that read only the head of a file far too big to read whole.
#include "csv.h"
#include "isolation.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

using Records = QList<QStringList>;

class TestCsv : public QObject
{
    Q_OBJECT

private:
    TestIsolation m_scratch;
    int m_files = 0;

    QString writeFile(const QByteArray &bytes)
    {
        const QString path = m_scratch.filePath(u"file%1.csv"_s.arg(++m_files));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    // The file with a hole of zero bytes after its text up to size: the preview must never see it.
    QString writeSparseFile(const QByteArray &head, qint64 size)
    {
        const QString path = writeFile(head);
        QFile file(path);
        if (!file.resize(size))
            qFatal("cannot grow %s", qPrintable(path));
        return path;
    }

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void recordsAreSplitAsSpreadsheetsWriteThem_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QChar>("separator");
        QTest::addColumn<Records>("records");

        QTest::newRow("lines end in LF, the last one without")
            << "Name,Phone\nAnne,101\nBob,102"_ba << QChar(u',')
            << Records{{u"Name"_s, u"Phone"_s}, {u"Anne"_s, u"101"_s}, {u"Bob"_s, u"102"_s}};
        QTest::newRow("lines end in CRLF") << "Name,Phone\r\nAnne,101\r\n"_ba << QChar(u',')
                                           << Records{{u"Name"_s, u"Phone"_s}, {u"Anne"_s, u"101"_s}};
        QTest::newRow("quoted commas and doubled quotes")
            << "Name,Company\n\"Baker, Anne\",\"The \"\"Harbour\"\" Inn\"\n"_ba << QChar(u',')
            << Records{{u"Name"_s, u"Company"_s}, {u"Baker, Anne"_s, u"The \"Harbour\" Inn"_s}};
        QTest::newRow("line breaks inside quotes stay in the field")
            << "Name,Notes\r\nAnne,\"Back door\r\nring twice\"\r\nBob,\"\"\r\n"_ba << QChar(u',')
            << Records{{u"Name"_s, u"Notes"_s}, {u"Anne"_s, u"Back door\r\nring twice"_s}, {u"Bob"_s, u""_s}};
        QTest::newRow("semicolons, as German spreadsheets write")
            << "Name;Telefon\nMüller, Jörg;0421 1234\n"_ba << QChar(u';')
            << Records{{u"Name"_s, u"Telefon"_s}, {u"Müller, Jörg"_s, u"0421 1234"_s}};
        QTest::newRow("tabs") << "Name\tPhone\nAnne\t101\n"_ba << QChar(u'\t')
                              << Records{{u"Name"_s, u"Phone"_s}, {u"Anne"_s, u"101"_s}};
        QTest::newRow("separators inside quoted titles do not count")
            << "\"Name; first; last\",Phone\nAnne,101\n"_ba << QChar(u',')
            << Records{{u"Name; first; last"_s, u"Phone"_s}, {u"Anne"_s, u"101"_s}};
        QTest::newRow("a byte order mark is not part of the first title")
            << "\xEF\xBB\xBFName,Phone\nAnne,101\n"_ba << QChar(u',')
            << Records{{u"Name"_s, u"Phone"_s}, {u"Anne"_s, u"101"_s}};
        QTest::newRow("empty fields are kept, blank lines skipped")
            << "a,,c\n\n\r\n,,\n"_ba << QChar(u',')
            << Records{{u"a"_s, u""_s, u"c"_s}, {u""_s, u""_s, u""_s}};
        QTest::newRow("a quote inside a plain field is text")
            << "Size,Phone\n5\" disk,101\n"_ba << QChar(u',')
            << Records{{u"Size"_s, u"Phone"_s}, {u"5\" disk"_s, u"101"_s}};
        QTest::newRow("a quote never closed runs to the end")
            << "Name,Notes\nAnne,\"open\nstill"_ba << QChar(u',')
            << Records{{u"Name"_s, u"Notes"_s}, {u"Anne"_s, u"open\nstill"_s}};
        QTest::newRow("one column") << "Phone\n101\n"_ba << QChar(u',') << Records{{u"Phone"_s}, {u"101"_s}};
    }

    void recordsAreSplitAsSpreadsheetsWriteThem()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QChar, separator);
        QFETCH(Records, records);

        const QString path = writeFile(bytes);
        const Csv::Table table = Csv::readFile(path);
        QVERIFY(table.ok());
        QCOMPARE(table.separator, separator);
        QCOMPARE(table.records, records);
        QVERIFY(!table.truncated);
        QCOMPARE(table.fileSize, bytes.size());

        // A preview of the first record only gives the same first record.
        Csv::ReadOptions preview;
        preview.maxRecords = 1;
        const Csv::Table head = Csv::readFile(path, preview);
        QCOMPARE(head.records, records.mid(0, 1));
        QCOMPARE(head.truncated, records.size() > 1);
    }

    void filesThatAreNoCsvFailWithTheirReason_data()
    {
        QTest::addColumn<QString>("path"); // a file holding bytes when empty
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qint64>("maxFileSize");
        QTest::addColumn<Csv::Failure>("failure");

        const qint64 noCap = 0;
        QTest::newRow("no file") << m_scratch.filePath(u"missing.csv"_s) << QByteArray() << noCap
                                 << Csv::Failure::Missing;
        QTest::newRow("a folder") << m_scratch.path() << QByteArray() << noCap << Csv::Failure::Unreadable;
        QTest::newRow("no bytes") << QString() << QByteArray() << noCap << Csv::Failure::Empty;
        QTest::newRow("a byte order mark and blank lines only")
            << QString() << "\xEF\xBB\xBF\r\n\n"_ba << noCap << Csv::Failure::Empty;
        QTest::newRow("NUL bytes") << QString() << "Name,Phone\nAnne,\0\0\x01\x02"_ba << noCap
                                   << Csv::Failure::NotText;
        QTest::newRow("UTF-16") << QString() << "\xFF\xFEN\0a\0m\0e\0"_ba << noCap << Csv::Failure::NotText;
        QTest::newRow("Latin-1 letters")
            << QString() << "Name;Telefon\nM\xFCller;0421\n"_ba << noCap << Csv::Failure::NotText;
        QTest::newRow("a character cut off at the end")
            << QString() << "Name\nM\xC3"_ba << noCap << Csv::Failure::NotText;
        QTest::newRow("one byte over the cap")
            << QString() << "Name,Phone\n"_ba << qint64(10) << Csv::Failure::TooLarge;
        QTest::newRow("at the cap") << QString() << "Name,Phone"_ba << qint64(10) << Csv::Failure::None;
    }

    void filesThatAreNoCsvFailWithTheirReason()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, bytes);
        QFETCH(qint64, maxFileSize);
        QFETCH(Csv::Failure, failure);

        if (path.isEmpty())
            path = writeFile(bytes);
        for (const qsizetype maxRecords : {0, 3}) { // read whole, and as a preview
            Csv::ReadOptions options;
            options.maxFileSize = maxFileSize;
            options.maxRecords = maxRecords;
            const Csv::Table table = Csv::readFile(path, options);
            QCOMPARE(table.failure, failure);
            if (!table.ok())
                QVERIFY(table.records.isEmpty());
        }
    }

    void previewsReadOnlyTheHeadOfTheFile()
    {
        QByteArray rows = "Name,Company,Phone\n"_ba;
        for (int i = 1; rows.size() < 40 * 1024; ++i)
            rows += "Person " + QByteArray::number(i) + ",Company " + QByteArray::number(i) + ",0163296" +
                    QByteArray::number(i) + '\n';
        // 150 MB, all but the first 40 kB a hole of zero bytes that any read of the tail would meet.
        const QString huge = writeSparseFile(rows, 150LL * 1024 * 1024);
        Csv::ReadOptions preview;
        preview.maxRecords = 4;
        preview.maxFileSize = 0;
        preview.maxHeadBytes = 16 * 1024;
        Csv::Table table = Csv::readFile(huge, preview);
        QVERIFY(table.ok());
        QCOMPARE(table.records.size(), 4);
        QCOMPARE(table.records.last(), (QStringList{u"Person 3"_s, u"Company 3"_s, u"01632963"_s}));
        QVERIFY(table.truncated);
        QCOMPARE(table.fileSize, 150LL * 1024 * 1024);
        // Read whole, it is refused for its size before a byte is read.
        QCOMPARE(Csv::readFile(huge).failure, Csv::Failure::TooLarge);

        // A record longer than the first head read is read on to its end, not cut where the head
        // stopped, while the limit on the head still holds.
        const QByteArray notes = QByteArray(100 * 1024, 'x').replace(5000, 2, "\r\n");
        const QString longRecord = writeFile("Name,Notes\nAnne,\"" + notes + "\"\nBob,short\nCarl,short\n");
        preview = {};
        preview.maxRecords = 3;
        table = Csv::readFile(longRecord, preview);
        QCOMPARE(table.records.size(), 3);
        QCOMPARE(table.records[1][1], QString::fromLatin1(notes));
        QCOMPARE(table.records[2], (QStringList{u"Bob"_s, u"short"_s}));
        QVERIFY(table.truncated);
        preview.maxHeadBytes = 8 * 1024;
        table = Csv::readFile(longRecord, preview);
        QVERIFY(table.ok());
        QCOMPARE(table.records, (Records{{u"Name"_s, u"Notes"_s}}));

        // A head that ends inside a character of two bytes is text all the same.
        QByteArray cut = "Name\n"_ba + QByteArray(8 * 1024 - 6, 'a') + "ü\n";
        QCOMPARE(cut.indexOf("ü"), 8 * 1024 - 1);
        table = Csv::readFile(writeFile(cut), preview);
        QCOMPARE(table.failure, Csv::Failure::None);
        QCOMPARE(table.records, (Records{{u"Name"_s}}));
    }
};

QTEST_GUILESS_MAIN(TestCsv)
#include "tst_csv.moc"
