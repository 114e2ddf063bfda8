// SPDX-License-Identifier: GPL-3.0-or-later
// quillmdb as a support engineer runs it: the built program on the shared Access files.
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestQuillMdb : public QObject
{
    Q_OBJECT

private:
    QString m_data;

    struct Run
    {
        QByteArray out;
        QByteArray err;
        int exitCode = -1;
    };

    Run run(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral(QUILLMDB_PROGRAM), arguments);
        if (!process.waitForStarted(10000) || !process.waitForFinished(120000))
            return {};
        return {process.readAllStandardOutput(), process.readAllStandardError(),
                process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1};
    }

private slots:
    void initTestCase()
    {
        m_data = qEnvironmentVariable("QUILL_TEST_DATA", QStringLiteral(QUILL_TEST_DATA_DIR));
        if (!QFile::exists(m_data + u"/Northwind.mdb"_s) || !QFile::exists(m_data + u"/queryTestV1997.mdb"_s))
            QSKIP(qPrintable(u"the shared test databases are not in %1"_s.arg(m_data)));
    }

    void printsListingsColumnsAndProposalsOrFailsWithStatus2()
    {
        const QString northwind = m_data + u"/Northwind.mdb"_s;
        const QString access97 = m_data + u"/queryTestV1997.mdb"_s;
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const struct
        {
            QStringList arguments;
            QByteArray out; // the whole of standard output, or its beginning when outLines is set
            int outLines;
            int exitCode;
            QByteArray err; // a part of standard error
        } cases[] = {
            {{access97},
             "Table1\nTable2\nTable3\nAppendQuery\nCrosstabQuery\nDataDefinitionQuery\nDeleteQuery\n"
             "MakeTableQuery\nPassthroughQuery\nSelectQuery\nUnionQuery\nUpdateQuery\n",
             0,
             0,
             ""},
            {{northwind},
             "Categories\nCustomers\nEmployees\nOrder Details\nOrders\nProducts\nShippers\nSuppliers\n"
             "Alphabetical List of Products\n",
             29,
             0,
             ""},
            {{northwind, u"Customers"_s},
             "CustomerID\nCompanyName\nContactName\nContactTitle\nAddress\nCity\nRegion\nPostalCode\nCountry"
             "\n"
             "Phone\nFax\n\nid: CustomerID\ntelephone: Phone\nname: CompanyName\nnotes: \n",
             0,
             0,
             ""},
            {{access97, u"Table1"_s}, "col1\ncol2\ncol3\n\nid: \ntelephone: \nname: \nnotes: \n", 0, 0, ""},
            {{northwind, u"Contacts"_s}, "", 0, 2, "no table or query called Contacts"},
            {{access97, u"CrosstabQuery"_s}, "", 0, 2, "crosstab"},
            {{dir.filePath(u"none.mdb"_s)}, "", 0, 2, "does not exist"},
            {{dir.path(), u"Customers"_s}, "", 0, 2, "is a folder"},
            {{}, "", 0, 2, "usage: quillmdb FILE"},
            {{northwind, u"Customers"_s, u"more"_s}, "", 0, 2, "usage: quillmdb FILE"},
            {{u"--help"_s}, "", 0, 2, "usage: quillmdb FILE"},
        };
        for (const auto &c : cases) {
            const Run result = run(c.arguments);
            QCOMPARE(result.exitCode, c.exitCode);
            if (c.outLines == 0) {
                QCOMPARE(result.out, c.out);
            } else {
                QVERIFY2(result.out.startsWith(c.out), result.out.constData());
                QCOMPARE(result.out.count('\n'), c.outLines);
            }
            QVERIFY2(result.err.contains(c.err), result.err.constData());
            QCOMPARE(result.err.isEmpty(), c.exitCode == 0);
        }
    }
};

QTEST_GUILESS_MAIN(TestQuillMdb)
#include "tst_quillmdb.moc"
