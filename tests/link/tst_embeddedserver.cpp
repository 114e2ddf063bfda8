// SPDX-License-Identifier: GPL-3.0-or-later
// The reference server run inside the tool: a demo site on first use, token log-in, a database
// that outlives the program.
#include "embeddedserver.h"
#include "errorlog.h"
#include "isolation.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
// Logs in with the server's tokens, sends the commands and returns the reply carrying ref.
QString ask(EmbeddedServer &server, const QStringList &commands, const QString &ref)
{
    usrSession session;
    SessionCredentials credentials;
    credentials.server = server.url();
    session.setCredentials(credentials);
    session.setTokenSource([&server] { return server.createToken(); });
    QString reply;
    QObject::connect(&session, &usrSession::SessionEvent, &session,
                     [&](const QString &, const QString &kind, const QString &data) {
                         if (kind == u"MESSAGE"_s && getText(data, u"Ref"_s) == ref)
                             reply = data;
                     });
    for (const QString &command : commands)
        session.SendCommand(command);
    session.StartSession(u"QuillServer Configuration"_s);
    (void)QTest::qWaitFor([&] { return !reply.isEmpty() || session.state() == usrSession::State::Closed; }, 20000);
    session.CloseSession();
    return reply;
}

const QString listDevices = u"{Cmd=GetList}{Table=Exts}{Ref=DEVICES}{Fields=Id,Ext,Name}{Sort=Ext}"_s;
const QString listScripts = u"{Cmd=GetList}{Table=Scripts}{Ref=SCRIPTS-LIST}{Fields=Id,Name}{Sort=Name}"_s;
} // namespace

class EmbeddedServerTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        QFile::remove(EmbeddedServer::defaultDatabasePath());
    }

    void startsOnLoopbackWithTheDemoSiteAndKeepsItsData()
    {
        QCOMPARE(QFileInfo(EmbeddedServer::defaultDatabasePath()).fileName(), u"demo-site.sqlite"_s);
        QVERIFY(EmbeddedServer::defaultDatabasePath().startsWith(
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)));

        qsizetype demoDevices = 0;
        {
            EmbeddedServer server;
            QString error;
            QVERIFY2(server.start(&error), qPrintable(error));
            QCOMPARE(server.url().scheme(), u"ws"_s);
            QCOMPARE(server.url().host(), u"127.0.0.1"_s);
            QVERIFY(server.url().port() > 0);
            QVERIFY(QFileInfo::exists(EmbeddedServer::defaultDatabasePath()));

            const QString devices = ask(server, {listDevices}, u"DEVICES"_s);
            demoDevices = GetVar(devices, u"ListCount"_s).toInt();
            QVERIFY2(demoDevices > 0, qPrintable(devices)); // seeded on first use

            QString fields;
            AddVar(fields, u"Name"_s, u"Kept across runs"_s);
            QString store = u"{Cmd=SetFields}{Table=Scripts}"_s;
            AddVar(store, u"Fields"_s, fields);
            AddVar(store, u"Id"_s, -1);
            QVERIFY(ask(server, {store, listScripts}, u"SCRIPTS-LIST"_s).contains(u"Kept across runs"_s));
        }
        // Next run: same file, the write is still there and the demo is not seeded twice.
        EmbeddedServer again;
        QVERIFY(again.start());
        QVERIFY(ask(again, {listScripts}, u"SCRIPTS-LIST"_s).contains(u"Kept across runs"_s));
        QCOMPARE(GetVar(ask(again, {listDevices}, u"DEVICES"_s), u"ListCount"_s).toInt(), demoDevices);
    }

    void eachLogInNeedsAFreshToken()
    {
        EmbeddedServer server;
        QVERIFY(server.start(m_scratch.filePath(u"tokens.sqlite"_s)));
        const QString token = server.createToken();
        QVERIFY(!token.isEmpty());
        QVERIFY(server.createToken() != token);

        // A token already spent is refused; the session then ends with LOGOUT.
        const auto logInWith = [&server](const QString &spent) {
            usrSession session;
            SessionCredentials credentials;
            credentials.server = server.url();
            credentials.token = spent;
            session.setCredentials(credentials);
            QStringList kinds;
            QObject::connect(&session, &usrSession::SessionEvent, &session,
                             [&](const QString &, const QString &kind, const QString &) { kinds << kind; });
            session.StartSession(u"QuillServer Configuration"_s);
            (void)QTest::qWaitFor([&] { return kinds.contains(u"READY"_s) || kinds.contains(u"LOGOUT"_s); }, 20000);
            return kinds.value(kinds.size() - 1);
        };
        QCOMPARE(logInWith(token), u"READY"_s);
        QCOMPARE(logInWith(token), u"LOGOUT"_s);

        server.stop();
        QVERIFY(server.createToken().isEmpty());
        QVERIFY(!server.isRunning());
    }
};

QTEST_GUILESS_MAIN(EmbeddedServerTest)
#include "tst_embeddedserver.moc"
