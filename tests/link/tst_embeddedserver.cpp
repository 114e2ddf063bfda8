// SPDX-License-Identifier: GPL-3.0-or-later
// The reference server run inside the tool: a demo site on first use, token log-in, a database
// that outlives the program.
#include "embeddedserver.h"
#include "errorlog.h"
#include "isolation.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
// Logs in with a fresh token of the server's (or with the token given), sends the commands and
// returns the reply carrying ref, or "LOGOUT" when the log-in was refused.
QString ask(EmbeddedServer &server, const QStringList &commands, const QString &ref,
            const QString &token = {})
{
    usrSession session;
    session.setCredentials({server.url(), {}, {}, token});
    if (token.isEmpty())
        session.setTokenSource([&server] { return server.createToken(); });
    QString reply;
    QObject::connect(&session, &usrSession::SessionEvent, &session,
                     [&](const QString &, const QString &kind, const QString &data) {
                         if (reply.isEmpty() && kind == u"LOGOUT"_s)
                             reply = kind;
                         else if (kind == u"MESSAGE"_s && getText(data, u"Ref"_s) == ref)
                             reply = data;
                     });
    for (const QString &command : commands)
        session.SendCommand(command);
    session.StartSession(u"QuillServer Configuration"_s);
    (void)QTest::qWaitFor([&] { return !reply.isEmpty(); }, 20000);
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

    void startsOnLoopbackWithTheDemoSiteKeepsItsDataAndTakesEachTokenOnce()
    {
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

            QString store = u"{Cmd=SetFields}{Table=Scripts}"_s;
            AddVar(store, u"Fields"_s, u"{Name(S16)=Kept across runs}"_s);
            AddVar(store, u"Id"_s, -1);
            QVERIFY(ask(server, {store, listScripts}, u"SCRIPTS-LIST"_s).contains(u"Kept across runs"_s));
        }
        // Next run: same file, the write is still there and the demo is not seeded twice.
        EmbeddedServer again;
        QVERIFY(again.start());
        QVERIFY(ask(again, {listScripts}, u"SCRIPTS-LIST"_s).contains(u"Kept across runs"_s));
        QCOMPARE(GetVar(ask(again, {listDevices}, u"DEVICES"_s), u"ListCount"_s).toInt(), demoDevices);

        // A token is good for one log-in; a session whose token was spent ends with LOGOUT.
        const QString token = again.createToken();
        QVERIFY(!token.isEmpty());
        QVERIFY(again.createToken() != token);
        QVERIFY(ask(again, {listScripts}, u"SCRIPTS-LIST"_s, token).contains(u"Kept across runs"_s));
        QCOMPARE(ask(again, {listScripts}, u"SCRIPTS-LIST"_s, token), u"LOGOUT"_s);
        again.stop();
        QVERIFY(again.createToken().isEmpty());
        QVERIFY(!again.isRunning());
    }
};

QTEST_GUILESS_MAIN(EmbeddedServerTest)
#include "tst_embeddedserver.moc"
