// SPDX-License-Identifier: GPL-3.0-or-later
// The campaign window's view of a contacts database: Northwind (Access 2000) and a small Access 97
// file with every kind of stored query, and broken files made here.
#include "contactsdatabase.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using ContactsDatabase::Failure;

class TestContactsDatabase : public QObject
{
    Q_OBJECT

private:
    QString m_northwind;
    QString m_access97;

private slots:
    void initTestCase()
    {
        const QString dir = qEnvironmentVariable("QUILL_TEST_DATA", QStringLiteral(QUILL_TEST_DATA_DIR));
        m_northwind = dir + u"/Northwind.mdb"_s;
        m_access97 = dir + u"/queryTestV1997.mdb"_s;
        if (!QFile::exists(m_northwind) || !QFile::exists(m_access97))
            QSKIP(qPrintable(u"the shared test databases are not in %1"_s.arg(dir)));
    }

    void listsUserTablesThenVisibleQueriesInCatalogueOrder()
    {
        const ContactsDatabase::Sources northwind = ContactsDatabase::readSources(m_northwind);
        QVERIFY2(northwind.ok(), qPrintable(northwind.error));
        QCOMPARE(northwind.tables,
                 (QStringList{u"Categories"_s, u"Customers"_s, u"Employees"_s, u"Order Details"_s,
                              u"Orders"_s, u"Products"_s, u"Shippers"_s, u"Suppliers"_s}));
        // 52 stored queries, of which the 31 "~sq_" ones (behind forms and reports) are left out.
        QCOMPARE(northwind.queries.size(), 21);
        QCOMPARE(northwind.queries.first(), u"Alphabetical List of Products"_s);
        QVERIFY(northwind.queries.contains(u"Invoices"_s));
        for (const QString &name : northwind.tables + northwind.queries) {
            QVERIFY2(!name.startsWith(u'~'), qPrintable(name));
            QVERIFY2(!name.startsWith("MSYS"_L1, Qt::CaseInsensitive), qPrintable(name));
        }

        const ContactsDatabase::Sources access97 = ContactsDatabase::readSources(m_access97);
        QVERIFY2(access97.ok(), qPrintable(access97.error));
        QCOMPARE(access97.tables, (QStringList{u"Table1"_s, u"Table2"_s, u"Table3"_s}));
        QCOMPARE(access97.queries,
                 (QStringList{u"AppendQuery"_s, u"CrosstabQuery"_s, u"DataDefinitionQuery"_s,
                              u"DeleteQuery"_s, u"MakeTableQuery"_s, u"PassthroughQuery"_s, u"SelectQuery"_s,
                              u"UnionQuery"_s, u"UpdateQuery"_s}));
    }

    void readsColumnsOfTablesAndQueriesAndProposesFields()
    {
        const QString invoices =
            u"ShipName,ShipAddress,ShipCity,ShipRegion,ShipPostalCode,ShipCountry,CustomerID,"
            "Customers.CompanyName,Address,City,Region,PostalCode,Country,Salesperson,OrderID,OrderDate,"
            "RequiredDate,ShippedDate,Shippers.CompanyName,ProductID,ProductName,UnitPrice,Quantity,Discount,"
            "ExtendedPrice,Freight"_s;
        const struct
        {
            bool northwind;
            QString source;
            QString columns; // all of them, in order, joined by ","
            ContactsDatabase::Proposals proposals;
        } cases[] = {
            {true,
             u"Customers"_s,
             u"CustomerID,CompanyName,ContactName,ContactTitle,Address,City,Region,PostalCode,Country,Phone,Fax"_s,
             {u"CustomerID"_s, u"Phone"_s, u"CompanyName"_s, QString()}},
            {true,
             u"employees"_s, // names are matched ignoring case
             u"EmployeeID,LastName,FirstName,Title,TitleOfCourtesy,BirthDate,HireDate,Address,City,Region,"
             "PostalCode,Country,HomePhone,Extension,Photo,Notes,ReportsTo"_s,
             {u"EmployeeID"_s, u"HomePhone"_s, u"LastName"_s, u"Notes"_s}},
            {false, u"Table1"_s, u"col1,col2,col3"_s, {}},
            // Queries: aliases, plain references, expressions named by their alias, and a name taken
            // from two tables given with its table.
            {true, u"Invoices"_s, invoices, {u"CustomerID"_s, QString(), u"ShipName"_s, QString()}},
            // "Invoices.*": a query's columns as its own names are made.
            {true, u"Invoices Filter"_s, invoices, {u"CustomerID"_s, QString(), u"ShipName"_s, QString()}},
            {true,
             u"Sales Totals by Amount"_s,
             u"SaleAmount,OrderID,CompanyName,ShippedDate"_s,
             {u"OrderID"_s, QString(), u"CompanyName"_s, QString()}},
            {true,
             u"Customers and Suppliers by City"_s, // a union: the columns of its first select
             u"City,CompanyName,ContactName,Relationship"_s,
             {QString(), QString(), u"CompanyName"_s, QString()}},
            // Table1.* with two more tables: every col1..col3 comes twice and is given with its table.
            {false,
             u"SelectQuery"_s,
             u"Table1.col1,Table1.col2,Table1.col3,Table2.col1,Table2.col2,Table3.col3"_s,
             {}},
            {false, u"MakeTableQuery"_s, u"MaxOfcol1,Table2.col2,Table3.col2"_s, {}},
            {false, u"UnionQuery"_s, u"col1,col2"_s, {}},
        };
        for (const auto &c : cases) {
            const ContactsDatabase::Columns columns =
                ContactsDatabase::readColumns(c.northwind ? m_northwind : m_access97, c.source);
            QVERIFY2(columns.ok(), qPrintable(columns.error));
            QCOMPARE(columns.names.join(u','), c.columns);
            QCOMPARE(ContactsDatabase::proposeColumns(columns.names), c.proposals);
        }
    }

    void sourcesWithoutColumnsToListAreErrors()
    {
        const struct
        {
            bool northwind;
            QString source;
            Failure failure;
        } cases[] = {
            {false, u"CrosstabQuery"_s, Failure::ColumnsUnknown},
            {false, u"AppendQuery"_s, Failure::ColumnsUnknown},
            {false, u"UpdateQuery"_s, Failure::ColumnsUnknown},
            {false, u"DeleteQuery"_s, Failure::ColumnsUnknown},
            {false, u"DataDefinitionQuery"_s, Failure::ColumnsUnknown},
            {false, u"PassthroughQuery"_s, Failure::ColumnsUnknown},
            {true, u"Quarterly Orders by Product"_s, Failure::ColumnsUnknown}, // crosstab
            // What the listing leaves out cannot be chosen either.
            {true, u"MSysObjects"_s, Failure::UnknownSource},
            {true, u"~sq_cCustomers~sq_cCountry"_s, Failure::UnknownSource},
            {true, u"Contacts"_s, Failure::UnknownSource},
            {true, QString(), Failure::UnknownSource},
        };
        for (const auto &c : cases) {
            const ContactsDatabase::Columns columns =
                ContactsDatabase::readColumns(c.northwind ? m_northwind : m_access97, c.source);
            QCOMPARE(columns.failure, c.failure);
            QVERIFY(columns.names.isEmpty());
            QVERIFY2(columns.error.contains(c.source), qPrintable(columns.error));
        }
    }

    void namesBeyondAsciiAreReadAsWritten()
    {
        // A table renamed in the catalogue: in Access 97 in the file's code page (Windows-1252), in
        // Access 2000 in UTF-16.
        const struct
        {
            QString file;
            qsizetype offset;
            QByteArray bytes;
            QString table;
            qsizetype place;
            QString firstColumn;
        } cases[] = {
            {m_access97, 37179 + 1, "\xE4", u"Täble1"_s, 0, u"col1"_s},
            {m_northwind, 75210 + 2, QByteArray("\x16\x04", 2), u"CЖstomers"_s, 1, u"CustomerID"_s},
        };
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        for (const auto &c : cases) {
            QFile original(c.file);
            QVERIFY(original.open(QIODevice::ReadOnly));
            QByteArray bytes = original.readAll();
            bytes.replace(c.offset, c.bytes.size(), c.bytes);
            QFile renamed(dir.filePath(u"renamed.mdb"_s));
            QVERIFY(renamed.open(QIODevice::WriteOnly | QIODevice::Truncate));
            renamed.write(bytes);
            renamed.close();

            const ContactsDatabase::Sources sources = ContactsDatabase::readSources(renamed.fileName());
            QVERIFY2(sources.ok(), qPrintable(sources.error));
            QCOMPARE(sources.tables.value(c.place), c.table);
            const ContactsDatabase::Columns columns =
                ContactsDatabase::readColumns(renamed.fileName(), c.table);
            QVERIFY2(columns.ok(), qPrintable(columns.error));
            QCOMPARE(columns.names.value(0), c.firstColumn);
        }
    }

    void proposalsTakeTheFirstColumnThatFits()
    {
        const struct
        {
            QStringList columns;
            ContactsDatabase::Proposals proposals;
        } cases[] = {
            {{}, {}},
            {{u"Remarks"_s, u"Number"_s}, {}},
            {{u"Kunde"_s, u"RecordKey"_s, u"rowid"_s}, {u"RecordKey"_s, {}, {}, {}}},
            {{u"Telefon"_s, u"Mobile Phone"_s}, {{}, u"Telefon"_s, {}, {}}},
            {{u"Contact Person"_s, u"Company"_s, u"Name"_s}, {{}, {}, u"Contact Person"_s, {}}},
            {{u"FreeText"_s, u"Notes"_s}, {{}, {}, {}, u"FreeText"_s}},
            // One column may be proposed for several fields.
            {{u"ContactID"_s}, {u"ContactID"_s, {}, u"ContactID"_s, {}}},
            {{u"ContactTitle"_s, u"CompanyName"_s}, {{}, {}, u"ContactTitle"_s, {}}},
        };
        for (const auto &c : cases)
            QCOMPARE(ContactsDatabase::proposeColumns(c.columns), c.proposals);
    }

    void brokenFilesGiveErrorValues()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        QFile source(m_northwind);
        QVERIFY(source.open(QIODevice::ReadOnly));
        const QByteArray northwind = source.readAll();
        QFile access97(m_access97);
        QVERIFY(access97.open(QIODevice::ReadOnly));
        const QByteArray access97Bytes = access97.readAll();
        auto write = [&](const QString &name, const QByteArray &bytes) {
            QFile file(dir.filePath(name));
            if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
                qFatal("cannot write %s", qPrintable(file.fileName()));
            return file.fileName();
        };
        QRandomGenerator random(20261123); // the same damage on every run
        auto randomBytes = [&](qsizetype size) {
            QByteArray bytes(size, '\0');
            for (char &b : bytes)
                b = char(random.bounded(256));
            return bytes;
        };
        QVERIFY(QDir(dir.path()).mkdir(u"folder.mdb"_s));
        QCOMPARE(::mkfifo(QFile::encodeName(dir.filePath(u"pipe.mdb"_s)).constData(), 0600), 0);

        const struct
        {
            QString path;
            Failure failure;
        } cases[] = {
            {dir.filePath(u"missing.mdb"_s), Failure::Missing},
            {dir.filePath(u"folder.mdb"_s), Failure::Unreadable},
            {dir.filePath(u"pipe.mdb"_s), Failure::Unreadable},
            {write(u"empty.mdb"_s, {}), Failure::NotDatabase},
            {write(u"random.mdb"_s, randomBytes(3 * 4096)), Failure::NotDatabase},
            {write(u"text.mdb"_s, "Standard Jet DB, or so it says\n"), Failure::NotDatabase},
            {write(u"cut100.mdb"_s, northwind.left(100)), Failure::Damaged},
            {write(u"cut2pages.mdb"_s, northwind.left(2 * 4096)), Failure::Damaged},
            {write(u"cutodd.mdb"_s, northwind.left(100000)), Failure::Damaged},
            {write(u"cut16pages.mdb"_s, northwind.left(16 * 4096)), Failure::Damaged},
            {write(u"cut100pages.mdb"_s, northwind.left(100 * 4096)), Failure::Damaged},
            {write(u"cut256pages.mdb"_s, northwind.left(256 * 4096)), Failure::Damaged},
        };
        for (const auto &c : cases) {
            const ContactsDatabase::Sources sources = ContactsDatabase::readSources(c.path);
            QCOMPARE(sources.failure, c.failure);
            QVERIFY(sources.tables.isEmpty() && sources.queries.isEmpty());
            QVERIFY2(sources.error.contains(QDir::toNativeSeparators(c.path)), qPrintable(sources.error));
            const ContactsDatabase::Columns columns = ContactsDatabase::readColumns(c.path, u"Customers"_s);
            QCOMPARE(columns.failure, c.failure);
            QVERIFY(columns.names.isEmpty());
        }

        // One byte in the Access 97 file's catalogue definition on which libmdb crashes.
        QByteArray crashing = access97Bytes;
        crashing[4131] = 47;
        const QString crashingPath = write(u"crashing.mdb"_s, crashing);
        const ContactsDatabase::Sources crashed = ContactsDatabase::readSources(crashingPath);
        QCOMPARE(crashed.failure, Failure::Damaged);
        QVERIFY2(crashed.error.contains(u"damaged"_s), qPrintable(crashed.error));
        QCOMPARE(ContactsDatabase::readColumns(crashingPath, u"Table1"_s).failure, Failure::Damaged);

        // The first properties block of the Access 97 catalogue ("KKD") with a record that claims to
        // be 0 bytes long: libmdb reads that record for ever, and the read is given up after the time
        // allowed.
        QByteArray looping = access97Bytes;
        const qsizetype properties = looping.indexOf(QByteArrayView("KKD\0", 4));
        QVERIFY(properties > 0);
        looping.replace(properties + 4, 4, QByteArray(4, '\0'));
        const QString loopingPath = write(u"looping.mdb"_s, looping);
        const ContactsDatabase::Sources endless = ContactsDatabase::readSources(loopingPath, 1500);
        QCOMPARE(endless.failure, Failure::Damaged);
        QVERIFY2(endless.error.contains(u"took too long"_s), qPrintable(endless.error));
        QCOMPARE(ContactsDatabase::readColumns(loopingPath, u"Table1"_s, 1500).failure, Failure::Damaged);

        // A good header before damaged pages: whatever libmdb makes of them, the answer is a value.
        for (int round = 0; round < 2; ++round) {
            QByteArray damaged = northwind;
            if (round % 2 == 0) {
                damaged.replace(4096, damaged.size() - 4096, randomBytes(damaged.size() - 4096));
            } else {
                for (int i = 0; i < 400; ++i)
                    damaged[4096 + random.bounded(damaged.size() - 4096)] = char(random.bounded(256));
            }
            const QString path = write(u"damaged%1.mdb"_s.arg(round), damaged);
            const ContactsDatabase::Sources sources = ContactsDatabase::readSources(path, 1000);
            QVERIFY(sources.ok() || (!sources.error.isEmpty() && sources.tables.isEmpty()));
            for (const QString &name : {u"Customers"_s, u"Invoices"_s}) {
                const ContactsDatabase::Columns columns = ContactsDatabase::readColumns(path, name, 1000);
                QVERIFY(columns.ok() || (!columns.error.isEmpty() && columns.names.isEmpty()));
            }
        }
    }

    void readsRunSideBySideOffTheCallersThread()
    {
        QList<QFuture<ContactsDatabase::Sources>> listings;
        QList<QFuture<ContactsDatabase::Columns>> columns;
        for (int i = 0; i < 3; ++i) {
            listings << ContactsDatabase::readSourcesAsync(m_northwind)
                     << ContactsDatabase::readSourcesAsync(m_access97);
            columns << ContactsDatabase::readColumnsAsync(m_northwind, u"Customers"_s)
                    << ContactsDatabase::readColumnsAsync(m_access97, u"nothing"_s);
        }
        const ContactsDatabase::Sources northwind = ContactsDatabase::readSources(m_northwind);
        const ContactsDatabase::Sources access97 = ContactsDatabase::readSources(m_access97);
        for (qsizetype i = 0; i < listings.size(); ++i) {
            const ContactsDatabase::Sources &expected = i % 2 == 0 ? northwind : access97;
            QCOMPARE(listings[i].result().tables, expected.tables);
            QCOMPARE(listings[i].result().queries, expected.queries);
        }
        for (qsizetype i = 0; i < columns.size(); ++i) {
            QCOMPARE(columns[i].result().failure, i % 2 == 0 ? Failure::None : Failure::UnknownSource);
            QCOMPARE(columns[i].result().names.size(), i % 2 == 0 ? 11 : 0);
        }
    }
};

QTEST_GUILESS_MAIN(TestContactsDatabase)
#include "tst_contactsdatabase.moc"
