// SPDX-License-Identifier: GPL-3.0-or-later
// The server library in-process, as the tool embeds it for its demo: one-time tokens, refusals
// counted, an instance in a worker thread beside another one.
#include "listreplies.h"
#include "quillserver.h"
#include "serverharness.h"

#include <QLoggingCategory>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

class tst_ServerEmbedded : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules(u"quill.server.*.info=false"_s); }
    void oneTimeTokensLogInOnce();
    void refusalsAreCountedAndLeaveDataAlone();
    void aWriteThatFailsPartWayIsUndoneAloneNotWithTheWritesBesideIt_data();
    void aWriteThatFailsPartWayIsUndoneAloneNotWithTheWritesBesideIt();
    void instancesInTwoThreadsKeepTheirOwnData();
    void tlsSettingsAreCheckedBeforeListening();
};

void tst_ServerEmbedded::oneTimeTokensLogInOnce()
{
    QTemporaryDir dir;
    QuillServer server;
    QString error;
    QVERIFY2(server.open(dir.filePath(u"embedded/demo.sqlite"_s), &error),
             qPrintable(error)); // folder made on demand
    QVERIFY(server.listen(QHostAddress::LocalHost, 0, &error));
    QVERIFY(server.port() != 0);
    QCOMPARE(server.url(), QUrl(u"ws://127.0.0.1:%1"_s.arg(server.port())));

    const QString token = server.createOneTimeToken();
    QVERIFY(token.size() >= 32);
    QVERIFY(server.createOneTimeToken() != token);

    RawClient first;
    QVERIFY(first.open(server.url()));
    QVERIFY(first.logInWithToken(token));
    QCOMPARE(first.request(ping), echo);

    // Spent: the same token (or a made-up one) is refused.
    for (const QString &spent : {token, u"00ff"_s.repeated(16)}) {
        RawClient again;
        QVERIFY(again.open(server.url()));
        QVERIFY(again.refusedLogIn(RawClient::logInFrame({}, spent)));
    }
    QCOMPARE(server.refusalCount(), 2);

    // Accounts work in-process too.
    QVERIFY(server.addUser(TestAccount::user(), TestAccount::password()));
    QVERIFY(!server.addUser(u"nopassword"_s, QString()));
    RawClient byPassword;
    QVERIFY(byPassword.openLoggedIn(server.url()));
}

void tst_ServerEmbedded::refusalsAreCountedAndLeaveDataAlone()
{
    QTemporaryDir dir;
    QuillServer server;
    QVERIFY(server.open(dir.filePath(u"db.sqlite"_s)));
    QVERIFY(server.isEmpty());
    QSignalSpy refusals(&server, &QuillServer::refused);

    QCOMPARE(server.execute(setFieldsCommand(u"Scripts"_s, u"{Name(S3)=One}"_s)), QString());
    QCOMPARE(server.execute(setFieldsCommand(u"Scripts"_s, u"{Name(S3)=Two}"_s)), QString());
    QVERIFY(!server.isEmpty());
    QCOMPARE(refusals.count(), 0);

    QCOMPARE(server.execute(u"{Cmd=Explode}{Table=Scripts}"_s), QString());
    QCOMPARE(refusals.count(), 1);
    QVERIFY(refusals.at(0).at(0).toString().contains(u"Explode"_s));

    // Ids that exist are deleted, the one that does not is refused in one line.
    QCOMPARE(server.execute(u"{Cmd=Delete}{Table=Scripts}{Id=1,404}"_s), QString());
    QCOMPARE(refusals.count(), 2);
    QVERIFY(refusals.at(1).at(0).toString().contains(u"404"_s));
    const QString list = server.execute(u"{Cmd=GetList}{Table=Scripts}{Fields=Id,Name}{Sort=Id}"_s);
    QCOMPARE(GetVar(list, u"ListCount"_s).toInt(), 1);
    QCOMPARE(getText(getText(list, u"List1"_s), u"Name"_s), u"Two"_s);
    QCOMPARE(server.refusalCount(), 2);

    // A read the storage cannot do answers nothing, rather than a record with no fields that a
    // window would fill with defaults and save back.
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"saboteur"_s);
        other.setDatabaseName(dir.filePath(u"db.sqlite"_s));
        QVERIFY(other.open());
        QSqlQuery drop(other);
        QVERIFY2(drop.exec(u"DROP INDEX field_by_record"_s), qPrintable(drop.lastError().text()));
        other.close();
    }
    QCOMPARE(server.execute(u"{Cmd=GetFields}{Table=Scripts}{Fields=Name}{Ref=SCRIPTS-SCRIPT}{Id=2}"_s),
             QString());
    QCOMPARE(refusals.count(), 3);
    QVERIFY(refusals.at(2).at(0).toString().contains(u"storage"_s));
    QSqlDatabase::removeDatabase(u"saboteur"_s);

    // A closed server answers nothing and refuses.
    server.close();
    QCOMPARE(server.execute(u"{Cmd=Ping}"_s), QString());
    QCOMPARE(refusals.count(), 4);
}

void tst_ServerEmbedded::aWriteThatFailsPartWayIsUndoneAloneNotWithTheWritesBesideIt_data()
{
    QTest::addColumn<QString>("failure");
    QTest::newRow("the statement fails") << u"ABORT"_s;
    // As after a full disk or an I/O error: SQLite undoes every write since the last commit.
    QTest::newRow("the transaction is undone") << u"ROLLBACK"_s;
}

void tst_ServerEmbedded::aWriteThatFailsPartWayIsUndoneAloneNotWithTheWritesBesideIt()
{
    QFETCH(QString, failure);
    QTemporaryDir dir;
    const QString file = dir.filePath(u"db.sqlite"_s);
    {
        QuillServer server;
        QVERIFY(server.open(file));
        QSignalSpy refusals(&server, &QuillServer::refused);
        {
            // The storage refuses one value: a command storing it fails after it has written the
            // fields before it.
            QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"saboteur"_s);
            other.setDatabaseName(file);
            QVERIFY(other.open());
            QSqlQuery trigger(other);
            QVERIFY2(trigger.exec(
                         u"CREATE TRIGGER failing_disk BEFORE INSERT ON field WHEN NEW.value = 'unstorable'"
                         " BEGIN SELECT RAISE(%1, 'disk failure'); END"_s.arg(failure)),
                     qPrintable(trigger.lastError().text()));
            other.close();
        }
        QSqlDatabase::removeDatabase(u"saboteur"_s);

        // Three writes with no reply between them share one group with the read after them.
        QCOMPARE(server.execute(setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, u"Before"_s}}))),
                 QString());
        QCOMPARE(server.execute(setFieldsCommand(
                     u"Scripts"_s, record({{u"Name"_s, u"Half"_s}, {u"Script"_s, u"unstorable"_s}}))),
                 QString());
        QCOMPARE(server.execute(setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, u"After"_s}}))),
                 QString());
        const QString list = server.execute(u"{Cmd=GetList}{Table=Scripts}{Fields=Name}{Sort=Id}"_s);
        QCOMPARE(listColumn(list, u"Name"_s), QStringList({u"Before"_s, u"After"_s}));
        QCOMPARE(refusals.count(), 1);
        QVERIFY2(refusals.at(0).at(0).toString().contains(u"storage failure"_s),
                 qPrintable(refusals.at(0).at(0).toString()));

        // The server goes on: the next write and read work.
        QCOMPARE(server.execute(setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, u"Next"_s}}))), QString());
        QCOMPARE(
            GetVar(server.execute(u"{Cmd=GetList}{Table=Scripts}{Fields=Name}"_s), u"ListCount"_s).toInt(),
            3);
    }
    // What was answered is in the file.
    QuillServer reopened;
    QVERIFY(reopened.open(file));
    QCOMPARE(listColumn(reopened.execute(u"{Cmd=GetList}{Table=Scripts}{Fields=Name}{Sort=Id}"_s), u"Name"_s),
             QStringList({u"Before"_s, u"After"_s, u"Next"_s}));
}

void tst_ServerEmbedded::instancesInTwoThreadsKeepTheirOwnData()
{
    QTemporaryDir dir;
    QuillServer here;
    QVERIFY(here.open(dir.filePath(u"here.sqlite"_s)));
    QVERIFY(here.listen(QHostAddress::LocalHost, 0));

    // The other instance is created, used and destroyed in its own thread.
    QThread worker;
    worker.start();
    QObject context;
    context.moveToThread(&worker);
    QuillServer *there = nullptr;
    QUrl thereUrl;
    QString thereToken;
    QMetaObject::invokeMethod(
        &context,
        [&] {
            there = new QuillServer;
            if (there->open(dir.filePath(u"there.sqlite"_s)) && there->listen(QHostAddress::LocalHost, 0))
                thereUrl = there->url();
            thereToken = there->createOneTimeToken();
        },
        Qt::BlockingQueuedConnection);
    QVERIFY(thereUrl.isValid());

    RawClient hereClient;
    RawClient thereClient;
    QVERIFY(hereClient.open(here.url()));
    QVERIFY(hereClient.logInWithToken(here.createOneTimeToken()));
    QVERIFY(thereClient.open(thereUrl));
    QVERIFY(thereClient.logInWithToken(thereToken));

    hereClient.send(setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, u"Here"_s}})));
    thereClient.send(setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, u"There"_s}})));
    for (auto [client, name] : {std::pair{&hereClient, u"Here"_s}, std::pair{&thereClient, u"There"_s}}) {
        const QString list = client->request(u"{Cmd=GetList}{Table=Scripts}{Fields=Name}{Sort=Name}"_s);
        QCOMPARE(GetVar(list, u"ListCount"_s).toInt(), 1);
        QCOMPARE(getText(getText(list, u"List1"_s), u"Name"_s), name);
    }

    QMetaObject::invokeMethod(
        &context, [&] { delete there; }, Qt::BlockingQueuedConnection);
    QVERIFY(thereClient.waitClosed());
    worker.quit();
    QVERIFY(worker.wait(5000));
    QCOMPARE(hereClient.request(u"{Cmd=Ping}"_s), u"{Cmd=PINGECHO}"_s);
}

void tst_ServerEmbedded::tlsSettingsAreCheckedBeforeListening()
{
    QTemporaryDir dir;
    QuillServer server;
    QString error;
    QVERIFY(!server.setTls(dir.filePath(u"missing.pem"_s), dir.filePath(u"missing.key"_s), &error));
    QVERIFY(error.contains(u"certificate"_s));
    QVERIFY(server.open(dir.filePath(u"db.sqlite"_s)));
    QVERIFY(server.listen(QHostAddress::LocalHost, 0));
    QCOMPARE(server.url().scheme(), u"ws"_s);
    QVERIFY(!server.setTls(dir.filePath(u"missing.pem"_s), dir.filePath(u"missing.key"_s), &error));
    QVERIFY(!server.listen(QHostAddress::LocalHost, 0, &error)); // once is enough
}

QTEST_GUILESS_MAIN(tst_ServerEmbedded)
#include "tst_serverembedded.moc"
