// SPDX-License-Identifier: GPL-3.0-or-later
// What the server has acknowledged survives a kill; the database file is versioned and guarded.
#include "serverharness.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
QString createScript(int n)
{
    QString fields;
    AddVar(fields, u"Name"_s, u"Script %1"_s.arg(n, 3, 10, QLatin1Char('0')));
    AddVar(fields, u"Script"_s, u"Beep %1"_s.arg(n));
    return setFieldsCommand(u"Scripts"_s, fields);
}

QString createCampaign(int n)
{
    return setFieldsCommand(u"Campaigns"_s,
                            record({{u"Name"_s, u"Campaign %1"_s.arg(n, 3, 10, QLatin1Char('0'))}}));
}

// Runs statement on the SQLite file directly, outside any server.
QVariant sqlite(const QString &file, const QString &statement)
{
    QVariant result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"probe"_s);
        db.setDatabaseName(file);
        if (db.open()) {
            QSqlQuery query(db);
            if (query.exec(statement) && query.next())
                result = query.value(0);
        }
    }
    QSqlDatabase::removeDatabase(u"probe"_s);
    return result;
}
} // namespace

class tst_ServerDurability : public QObject
{
    Q_OBJECT

private slots:
    void acknowledgedWritesSurviveAKill();
    void theDatabaseFileIsVersionedAndGuarded();
};

void tst_ServerDurability::acknowledgedWritesSurviveAKill()
{
    ServerProcess server;
    QVERIFY(server.addUser(TestAccount::user(), TestAccount::password()));
    QVERIFY(server.start());
    {
        // A second session writes at the same time; its writes may share commits with the first's.
        RawClient client;
        RawClient other;
        QVERIFY(client.openLoggedIn(server.url()));
        QVERIFY(other.openLoggedIn(server.url()));
        for (int n = 1; n <= 50; ++n) {
            client.send(createScript(n));
            other.send(createCampaign(n));
        }
        QString edit = u"{Cmd=SetFields}{Table=Scripts}{Id=7}"_s;
        AddVar(edit, u"Fields"_s, u"{Params(S9)=Queue=1,2}"_s);
        client.send(edit);
        client.send(u"{Cmd=Delete}{Table=Scripts}{Id=50}"_s);
        // The echo comes after every command sent before it has been handled and committed.
        QVERIFY(client.sync());
    }
    server.kill();
    QVERIFY(!server.isRunning());

    QVERIFY(server.start());
    RawClient client;
    QVERIFY(client.openLoggedIn(server.url()));
    // Of the other session's writes, not acknowledged to it, those that survived are its first
    // ones, in order: a later write is never on disk without the ones before it.
    const QStringList campaigns =
        listColumn(client.request(u"{Cmd=GetList}{Table=Campaigns}{Fields=Name}{Sort=Id}"_s), u"Name"_s);
    for (qsizetype i = 0; i < campaigns.size(); ++i)
        QCOMPARE(campaigns[i], u"Campaign %1"_s.arg(i + 1, 3, 10, QLatin1Char('0')));
    const QString list = client.request(
        u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=ScriptId,Id,Name}{Sort=Name}"_s);
    QCOMPARE(GetVar(list, u"ListCount"_s).toInt(), 49);
    QCOMPARE(getText(getText(list, u"List49"_s), u"Name"_s), u"Script 049"_s);
    const QString seventh =
        client.request(u"{Cmd=GetFields}{Table=Scripts}{Id=7}{Fields=Name,Params,Script}"_s);
    QCOMPARE(getText(seventh, u"Name"_s), u"Script 007"_s);
    QCOMPARE(getText(seventh, u"Params"_s), u"Queue=1,2"_s);

    // Ids are never handed out twice, not even across a kill.
    client.send(createScript(51));
    const QString after = client.request(u"{Cmd=GetList}{Table=Scripts}{Fields=Id,Name}{Sort=Name}"_s);
    QCOMPARE(GetVar(getText(after, u"List50"_s), u"Id"_s).toInt(), 51);

    // Writes with nothing after them, not even a ping, reach the disk by themselves moments later.
    for (int n = 52; n <= 61; ++n)
        client.send(createScript(n));
    const auto scriptsOnDisk = [&] {
        return sqlite(server.dbFile(), u"SELECT count(*) FROM record WHERE tbl = 6"_s).toInt();
    };
    QTRY_COMPARE_WITH_TIMEOUT(scriptsOnDisk(), 60, 10000);
    server.kill();
    QVERIFY(server.start());
    RawClient afterKill;
    QVERIFY(afterKill.openLoggedIn(server.url()));
    const QString last = afterKill.request(u"{Cmd=GetList}{Table=Scripts}{Fields=Id,Name}{Sort=Id}"_s);
    QCOMPARE(GetVar(last, u"ListCount"_s).toInt(), 60);
    QCOMPARE(getText(getText(last, u"List60"_s), u"Name"_s), u"Script 061"_s);
    QVERIFY(server.stop());
}

void tst_ServerDurability::theDatabaseFileIsVersionedAndGuarded()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"quill.sqlite"_s);
    ServerProcess server(file);
    QVERIFY(server.addUser(TestAccount::user(), TestAccount::password()));
    QCOMPARE(sqlite(file, u"PRAGMA user_version"_s).toInt(), 1);
    QCOMPARE(sqlite(file, u"PRAGMA journal_mode"_s).toString(), u"wal"_s);

    // Accounts hold a salted, slow hash, never the password.
    QVERIFY(server.addUser(u"second"_s, TestAccount::password()));
    QVERIFY(sqlite(file, u"SELECT min(iterations) FROM account"_s).toInt() >= 100000);
    QCOMPARE(sqlite(file, u"SELECT count(DISTINCT hash) FROM account WHERE length(salt) >= 16"_s).toInt(), 2);
    const QString holdsPassword = u"SELECT count(*) FROM account WHERE instr(hash, CAST('%1' AS BLOB)) > 0"_s;
    QCOMPARE(sqlite(file, holdsPassword.arg(TestAccount::password())).toInt(), 0);

    // A file from a newer server, or a database of something else, is left alone.
    QVERIFY(sqlite(file, u"PRAGMA user_version = 99"_s).isNull());
    QString output;
    QCOMPARE(ServerProcess::runToEnd({u"--db"_s, file, u"--listen"_s, u"127.0.0.1:0"_s}, {}, &output), 1);
    QVERIFY2(output.contains(u"newer server"_s), qPrintable(output));
    QCOMPARE(sqlite(file, u"PRAGMA user_version"_s).toInt(), 99);

    const QString foreign = dir.filePath(u"other.sqlite"_s);
    sqlite(foreign, u"CREATE TABLE invoices (n INTEGER)"_s);
    QCOMPARE(ServerProcess::runToEnd({u"--db"_s, foreign, u"--listen"_s, u"127.0.0.1:0"_s}, {}, &output), 1);
    QVERIFY2(output.contains(u"not a QuillServer database"_s), qPrintable(output));
    QCOMPARE(sqlite(foreign, u"SELECT count(*) FROM sqlite_master"_s).toInt(), 1);

    // --add-user needs a password; an empty one stores nothing.
    const QString fresh = dir.filePath(u"fresh.sqlite"_s);
    QVERIFY(ServerProcess::runToEnd({u"--db"_s, fresh, u"--add-user"_s, u"ops"_s}, "\n") != 0);
    QCOMPARE(sqlite(fresh, u"SELECT count(*) FROM account"_s).toInt(), 0);
}

QTEST_GUILESS_MAIN(tst_ServerDurability)
#include "tst_serverdurability.moc"
