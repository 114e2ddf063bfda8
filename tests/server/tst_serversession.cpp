// SPDX-License-Identifier: GPL-3.0-or-later
// Log-in and the life of sessions on quillserverd.
#include "serverharness.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const QString wrongPassword = TestAccount::password().toLower(); // the right one but for its case
} // namespace

class tst_ServerSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void logInAcceptsTheRightPasswordOnly();
    void framesBeforeLogInAreRefusedAndTheConnectionClosed();
    void sessionsShareCommittedWritesAndLogOut();
    void repliesOverTheLimitAreNotSent();
    void passwordChecksOutliveTheirSessionsAndTheServerStopsCleanly();

private:
    std::unique_ptr<ServerProcess> m_server;
};

void tst_ServerSession::initTestCase()
{
    m_server = std::make_unique<ServerProcess>();
    QVERIFY(m_server->addUser(TestAccount::user(), TestAccount::password()));
    QVERIFY(m_server->start());
    QCOMPARE(m_server->url().scheme(), u"ws"_s);
    QCOMPARE(m_server->url().host(), u"127.0.0.1"_s);
}

void tst_ServerSession::cleanupTestCase()
{
    QVERIFY(m_server->stop());
}

void tst_ServerSession::logInAcceptsTheRightPasswordOnly()
{
    // The user name is not case-sensitive; the password is.
    const int refusalsBefore = m_server->refusalLines();
    for (const auto &[user, password] :
         {std::pair{u"ADMIN"_s, wrongPassword}, std::pair{u"nobody"_s, TestAccount::password()}}) {
        RawClient bad;
        QVERIFY(bad.open(m_server->url()));
        QVERIFY(bad.refusedLogIn(RawClient::logInFrame(user, password)));
    }
    QTRY_COMPARE(m_server->refusalLines(), refusalsBefore + 2);

    // A command sent right behind the log-in, while the password is still being checked, is
    // answered after READY.
    RawClient caseless;
    QVERIFY(caseless.open(m_server->url()));
    caseless.send(RawClient::logInFrame(u"Admin"_s, TestAccount::password()));
    caseless.send(ping);
    for (const QString &expected : {u"{Session=LOGIN}"_s, u"{Session=READY}"_s, echo})
        QCOMPARE(caseless.next().value_or(QString()), expected);

    // Passwords never reach the log, right or wrong.
    const QString log = m_server->log();
    QVERIFY(!log.contains(TestAccount::password()));
    QVERIFY(!log.contains(wrongPassword, Qt::CaseInsensitive));
}

void tst_ServerSession::framesBeforeLogInAreRefusedAndTheConnectionClosed()
{
    const int refusalsBefore = m_server->refusalLines();

    // A command, a log-in sent as a binary frame, and a session frame other than the log-in.
    for (const QString &first : {u"{Cmd=GetList}{Table=Exts}{Ref=MAIN-EXTS}{Fields=Id,Ext}{Sort=Ext}"_s,
                                 u"binary {Session=Login}"_s, u"{Session=Hello}{User=admin}"_s}) {
        RawClient early;
        QVERIFY(early.open(m_server->url()));
        if (first.startsWith(u"binary"_s))
            early.socket().sendBinaryMessage(QByteArrayLiteral("{Session=Login}"));
        else
            early.send(first);
        QVERIFY2(early.waitClosed(), qPrintable(first));
        QVERIFY(!early.next(100));
    }
    QTRY_COMPARE(m_server->refusalLines(), refusalsBefore + 3);
    QVERIFY(m_server->isRunning());
}

void tst_ServerSession::sessionsShareCommittedWritesAndLogOut()
{
    RawClient writer;
    RawClient reader;
    QVERIFY(writer.openLoggedIn(m_server->url()));
    QVERIFY(reader.openLoggedIn(m_server->url()));

    writer.send(setFieldsCommand(u"Scripts"_s, u"{Name(S7)=Shared1}"_s));
    QVERIFY(writer.sync());
    const QString list = reader.request(
        u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=ScriptId,Id,Name,Options}{Sort=Name}"_s);
    QVERIFY2(list.contains(u"Shared1"_s), qPrintable(list));

    // (That a record named like a session frame comes back as data is the tool's session test.)
    // The client may end its session; the other one goes on.
    writer.send(u"{Session=Logout}"_s);
    QVERIFY(writer.waitClosed());
    QCOMPARE(reader.request(ping), echo);
}

void tst_ServerSession::repliesOverTheLimitAreNotSent()
{
    RawClient client;
    QVERIFY(client.openLoggedIn(m_server->url()));
    // Three notes of 6 MiB each: every write fits in a frame, the list of all three does not.
    for (int i = 0; i < 3; ++i) {
        QString fields;
        AddVar(fields, u"Name"_s, u"Big %1"_s.arg(i));
        AddVar(fields, u"Script"_s, QString(6 * 1024 * 1024, QChar(u'a' + i)));
        client.send(setFieldsCommand(u"Scripts"_s, fields));
    }
    QVERIFY(client.sync());
    const int refusalsBefore = m_server->refusalLines();
    client.send(u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=Id,Name,Script}{Sort=Name}"_s);
    QCOMPARE(client.request(ping), echo);
    QTRY_COMPARE(m_server->refusalLines(), refusalsBefore + 1);

    // The session goes on, and a smaller reply still arrives.
    const QString names =
        client.request(u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=Id,Name}{Sort=Name}"_s);
    QVERIFY(names.contains(u"Big 2"_s));
}

void tst_ServerSession::passwordChecksOutliveTheirSessionsAndTheServerStopsCleanly()
{
    ServerProcess server; // its own, as it ends with checks under way
    QVERIFY(QFile::copy(m_server->dbFile(), server.dbFile()));
    QVERIFY(server.start());
    const QString wrong = RawClient::logInFrame(TestAccount::user(), wrongPassword);

    // Clients that hang up while their password is checked: the answer finds no session, and the
    // failed log-in is logged all the same.
    for (int i = 0; i < 3; ++i) {
        RawClient gone;
        QVERIFY(gone.open(server.url()));
        gone.send(wrong);
        gone.socket().flush();
        gone.socket().abort();
    }
    RawClient good;
    QVERIFY(good.openLoggedIn(server.url()));
    QCOMPARE(good.request(ping), echo);
    QTRY_COMPARE(server.refusalLines(), 3);

    // Stopped while checks run and wait: it ends by itself, with status 0.
    std::vector<std::unique_ptr<RawClient>> waiting;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(waiting.emplace_back(std::make_unique<RawClient>())->open(server.url()));
        waiting.back()->send(wrong);
    }
    QVERIFY(good.sync()); // the log-ins have arrived
    QVERIFY(server.stop());
    QVERIFY(!server.log().contains(wrongPassword));
}

QTEST_GUILESS_MAIN(tst_ServerSession)
#include "tst_serversession.moc"
