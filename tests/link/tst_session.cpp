// SPDX-License-Identifier: GPL-3.0-or-later
// The session against the reference server: log-in, wrong passwords, a server that dies and comes
// back, a first connection that fails, and frames that only look like session frames.
#include "errorlog.h"
#include "closedport.h"
#include "isolation.h"
#include "listreplies.h"
#include "logindialog.h"
#include "serverprocess.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <QWebSocket>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
struct Event {
    QString kind;
    QString data;
};

// Everything the session reported, in order, and the replies by their references.
class EventLog : public QObject
{
public:
    explicit EventLog(usrSession &session)
    {
        connect(&session, &usrSession::SessionEvent, this,
                [this](const QString &, const QString &kind, const QString &data) {
                    events.append({kind, data});
                    if (kind == u"MESSAGE"_s) {
                        replyRefs << getText(data, u"Ref"_s);
                        replies.insert(replyRefs.last(), data);
                    }
                });
    }
    qsizetype count(const QString &kind) const
    {
        return std::count_if(events.cbegin(), events.cend(), [&](const Event &e) { return e.kind == kind; });
    }
    QList<Event> events;
    QStringList replyRefs;           // in arrival order
    QHash<QString, QString> replies; // by reference
};

// Answers each log-in dialog that shows with the next of the given passwords: types it and presses
// OK, or presses Cancel for an empty one. Notes the reason each dialog showed.
class DialogAnswers : public QObject
{
public:
    explicit DialogAnswers(QStringList passwords) : m_passwords(std::move(passwords))
    {
        connect(&m_poll, &QTimer::timeout, this, [this] {
            auto *dialog = qobject_cast<LoginDialog *>(QApplication::activeModalWidget());
            if (!dialog || m_passwords.isEmpty())
                return;
            reasons << dialog->findChild<QLabel *>(u"reason"_s)->text();
            const QString password = m_passwords.takeFirst();
            auto *field = dialog->findChild<QLineEdit *>(u"password"_s);
            field->clear();
            QTest::keyClicks(field, password);
            const auto button = password.isEmpty() ? QDialogButtonBox::Cancel : QDialogButtonBox::Ok;
            QTest::mouseClick(dialog->findChild<QDialogButtonBox *>()->button(button), Qt::LeftButton);
        });
        m_poll.start(10);
    }
    QStringList reasons;

private:
    QStringList m_passwords;
    QTimer m_poll;
};

QString listScripts(const QString &ref)
{
    return u"{Cmd=GetList}{Table=Scripts}{Ref="_s + ref + u"}{Fields=ScriptId,Id,Name,Script}{Sort=Name}"_s;
}

QString storeScript(const QString &name, const QString &text)
{
    return setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, name}, {u"Script"_s, text}}));
}
} // namespace

class SessionTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;
    ServerProcess m_server; // no demo data needed: the session is under test
    std::unique_ptr<usrSession> m_session;
    std::unique_ptr<EventLog> m_log;

    // A session for server (the test's own server when none is given), not yet started.
    void makeSession(const QString &password, const QUrl &server = {})
    {
        m_session = std::make_unique<usrSession>();
        m_log = std::make_unique<EventLog>(*m_session);
        m_session->setReconnectTiming(20, 200, 0);
        m_session->setCredentialsPrompt(promptForCredentials);
        m_session->setCredentials(
            {server.isEmpty() ? m_server.url() : server, TestAccount::user(), password, {}});
    }
    void start() { m_session->StartSession(u"QuillServer Configuration"_s); }
    void startWhenReady()
    {
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_session->state(), usrSession::State::Ready, 20000);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        // The session remembers typed servers; that must land in the test settings, not the user's.
        QVERIFY(QSettings(u"Tamsel Telecom Ltd"_s, u"QuillConfig"_s).fileName().contains(u"qttest"_s));
        QSettings(u"Tamsel Telecom Ltd"_s, u"QuillConfig"_s).clear();
        QVERIFY2(m_server.addUser(TestAccount::user(), TestAccount::password()) && m_server.start(),
                 qPrintable(m_server.log()));
    }

    void cleanup()
    {
        m_log.reset();
        m_session.reset();
    }

    void logsInAndOnlyAFrameThatBeginsWithSessionIsASessionEvent()
    {
        makeSession(TestAccount::password());
        startWhenReady();
        QCOMPARE(m_log->events.size(), 2);
        QCOMPARE(m_log->events[0].kind, u"LOGIN"_s);
        QCOMPARE(m_log->events[1].kind, u"READY"_s);

        // A script whose name and text look like session frames comes back as data.
        m_session->SendCommand(u"{Cmd=Ping}{Handler=Branch}"_s);
        m_session->SendCommand(storeScript(u"{Session=LOGOUT}"_s, u"{Session=READY}"_s));
        m_session->SendCommand(listScripts(u"LOOKALIKE"_s));
        QTRY_COMPARE(m_log->count(u"MESSAGE"_s), 2);
        QVERIFY(m_log->events[2].data.contains(u"PINGECHO"_s));
        QVERIFY(m_log->replies.value(u"LOOKALIKE"_s).contains(u"{Session=READY}"_s));
        QCOMPARE(m_log->count(u"READY"_s), 1);
        QCOMPARE(m_log->count(u"LOGOUT"_s), 0);
        QCOMPARE(m_session->state(), usrSession::State::Ready);
        // Credentials given by the program are not written to the settings.
        QVERIFY(usrSession::savedCredentials().server.isEmpty());
    }

    void aWrongPasswordShowsTheDialogAgainWithTheServersReason()
    {
        makeSession(u"not-the-password"_s);
        DialogAnswers answers({u"still-wrong"_s, TestAccount::password()});
        startWhenReady();
        QCOMPARE(answers.reasons.size(), 2);
        QVERIFY(!answers.reasons[0].isEmpty()); // the server said why
        QCOMPARE(answers.reasons[1], answers.reasons[0]);
        QCOMPARE(m_log->count(u"READY"_s), 1);
        QCOMPARE(m_log->count(u"LOGOUT"_s), 0);
        // What was typed is remembered for next time, except the password.
        QSettings settings(u"Tamsel Telecom Ltd"_s, u"QuillConfig"_s);
        QCOMPARE(settings.value(u"Session/Server"_s).toString(), m_server.url().toString());
        QCOMPARE(settings.value(u"Session/User"_s).toString(), TestAccount::user());
        QVERIFY(!settings.allKeys().join(u' ').contains(u"assword"_s, Qt::CaseInsensitive));
        settings.clear();
    }

    void cancellingTheLogInEndsWithLogout()
    {
        makeSession(u"wrong"_s);
        DialogAnswers answers({QString()});
        m_session->SendCommand(u"{Cmd=Ping}{Handler=Branch}"_s);
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_log->count(u"LOGOUT"_s), 1, 20000);
        QCOMPARE(m_session->state(), usrSession::State::Closed);
        QCOMPARE(answers.reasons.size(), 1);
        QCOMPARE(m_log->count(u"READY"_s), 0);
        QCOMPARE(m_log->count(u"MESSAGE"_s), 0);

        // Without a way to ask, missing credentials end the session the same way.
        makeSession(QString());
        m_session->setCredentialsPrompt(nullptr);
        start();
        QTRY_COMPARE(m_log->count(u"LOGOUT"_s), 1);
    }

    void reconnectsAfterTheServerDiesAndSendsWhatWasQueuedInOrder()
    {
        makeSession(TestAccount::password());
        int asked = 0; // a connection that was up once is reconnected without asking
        m_session->setFirstConnectFailure([&](const QString &) {
            ++asked;
            return usrSession::ConnectChoice::Quit;
        });
        startWhenReady();

        m_server.kill();
        QTRY_COMPARE(m_session->state(), usrSession::State::Reconnecting);
        m_session->SendCommand(storeScript(u"Queued while down"_s, u"Beep"_s));
        m_session->SendCommand(listScripts(u"Q-1"_s));
        m_session->SendCommand(u"{Cmd=GetField}{Table=System}{Id=PBX}{Field=Options}{Ref=Q-2}"_s);
        m_session->SendCommand(listScripts(u"Q-3"_s));

        QVERIFY2(m_server.restart(), qPrintable(m_server.log()));
        QTRY_COMPARE_WITH_TIMEOUT(m_log->count(u"READY"_s), 2, 20000);
        QTRY_COMPARE(m_log->replyRefs, (QStringList{u"Q-1"_s, u"Q-2"_s, u"Q-3"_s}));
        // The write went out before the read that followed it.
        QVERIFY(m_log->replies.value(u"Q-1"_s).contains(u"Queued while down"_s));
        QCOMPARE(m_log->count(u"LOGOUT"_s), 0);
        QCOMPARE(m_log->count(u"LOGIN"_s), 2);
        QCOMPARE(asked, 0);
    }

    void aFirstConnectionThatFailsAsksWhetherToRetryChangeTheServerOrQuit()
    {
        QStringList asked;
        const auto answer = [&](usrSession::ConnectChoice choice, std::function<void()> before = {}) {
            m_session->setFirstConnectFailure([&asked, choice, before](const QString &reason) {
                asked << reason;
                if (before)
                    before();
                return choice;
            });
        };

        // Quit: LOGOUT with the reason, and no further attempt.
        makeSession(TestAccount::password(), closedPort());
        answer(usrSession::ConnectChoice::Quit);
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_log->count(u"LOGOUT"_s), 1, 10000);
        QCOMPARE(asked.size(), 1);
        QVERIFY(!asked[0].isEmpty());
        QCOMPARE(getText(m_log->events.last().data, u"Reason"_s), asked[0]);
        QCOMPARE(m_session->state(), usrSession::State::Closed);

        // Retry: the server is back by then, and the next attempt gets in.
        asked.clear();
        QVERIFY(m_server.stop());
        makeSession(TestAccount::password());
        bool restarted = false;
        answer(usrSession::ConnectChoice::Retry, [&] { restarted = m_server.start(); });
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_log->count(u"READY"_s), 1, 20000);
        QVERIFY2(restarted, qPrintable(m_server.log()));
        QCOMPARE(asked.size(), 1);

        // Change server: the prompt shows why, and the session goes where it now says.
        asked.clear();
        makeSession(TestAccount::password(), closedPort());
        QStringList prompted;
        m_session->setCredentialsPrompt([&](SessionCredentials &credentials, const QString &reason) {
            prompted << reason;
            credentials.server = m_server.url();
            return true;
        });
        answer(usrSession::ConnectChoice::ChangeServer);
        start();
        QTRY_COMPARE_WITH_TIMEOUT(m_log->count(u"READY"_s), 1, 20000);
        QCOMPARE(prompted, asked);
        QCOMPARE(m_session->server(), m_server.url());
        QCOMPARE(m_log->count(u"LOGOUT"_s), 0);
        QSettings(u"Tamsel Telecom Ltd"_s, u"QuillConfig"_s).clear(); // the typed server was remembered
    }

    void givingUpOnAServerThatStaysAwayEndsWithLogout()
    {
        makeSession(TestAccount::password());
        QStringList asked;
        bool keepTrying = true;
        m_session->setReconnectTiming(10, 40, 3);
        m_session->setKeepTryingQuestion([&](const QString &reason) {
            asked << reason;
            return keepTrying;
        });
        startWhenReady();

        m_server.stop();
        QTRY_COMPARE_WITH_TIMEOUT(asked.size(), 1, 20000); // "yes, keep trying"
        keepTrying = false;
        QTRY_COMPARE_WITH_TIMEOUT(m_log->count(u"LOGOUT"_s), 1, 20000);
        QCOMPARE(asked.size(), 2);
        QCOMPARE(m_session->state(), usrSession::State::Closed);

        // Ended for good: once the server is back, a new session gets in but this one stays out.
        QVERIFY2(m_server.restart(), qPrintable(m_server.log()));
        usrSession another;
        another.setCredentials(m_session->credentials());
        another.StartSession(u"QuillServer Configuration"_s);
        QTRY_COMPARE(another.state(), usrSession::State::Ready);
        QCOMPARE(m_log->count(u"READY"_s), 1);
        QCOMPARE(m_session->state(), usrSession::State::Closed);
    }

    void aServerThatNeverAnswersIsTriedAgain()
    {
        // It accepts the connection and then says nothing, not even to the WebSocket handshake.
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        QList<QTcpSocket *> accepted;
        connect(&silent, &QTcpServer::newConnection, this, [&] { accepted << silent.nextPendingConnection(); });
        makeSession(TestAccount::password(), QUrl(u"ws://127.0.0.1:%1"_s.arg(silent.serverPort())));
        m_session->setLogInTimeout(150);
        start();
        QTRY_VERIFY_WITH_TIMEOUT(accepted.size() >= 2, 10000);
        QVERIFY(m_session->state() != usrSession::State::Ready);
        QCOMPARE(m_log->count(u"LOGOUT"_s), 0);
        m_session->CloseSession();
    }

    void wssWorksWithTheServersOwnCertificateGivenByCa()
    {
        const QString certificate = QFINDTESTDATA("data/tls-cert.pem");
        const QString key = QFINDTESTDATA("data/tls-key.pem");
        QVERIFY(!certificate.isEmpty() && !key.isEmpty());
        ServerProcess tlsServer(m_server.dbFile());
        QVERIFY2(tlsServer.start({u"--tls-cert"_s, certificate, u"--tls-key"_s, key}),
                 qPrintable(tlsServer.log()));

        // Trusted through --ca: logs in over TLS.
        makeSession(TestAccount::password(), tlsServer.url());
        m_session->command = u"--ca \"%1\""_s.arg(certificate);
        startWhenReady();
        m_session->SendCommand(listScripts(u"OVER-TLS"_s));
        QTRY_VERIFY(!m_log->replies.value(u"OVER-TLS"_s).isEmpty());

        // A self-signed certificate nobody vouched for is not accepted.
        usrSession untrusting;
        EventLog untrustingLog(untrusting);
        untrusting.setReconnectTiming(10, 40, 2);
        untrusting.setKeepTryingQuestion([](const QString &) { return false; });
        untrusting.setCredentials(m_session->credentials());
        untrusting.StartSession(u"QuillServer Configuration"_s);
        QTRY_COMPARE_WITH_TIMEOUT(untrustingLog.count(u"LOGOUT"_s), 1, 20000);
        QCOMPARE(untrustingLog.count(u"READY"_s), 0);

        // A plain ws:// client gets nowhere on the TLS port.
        QUrl plain = tlsServer.url();
        plain.setScheme(u"ws"_s);
        QWebSocket clear;
        bool connected = false, ended = false;
        connect(&clear, &QWebSocket::connected, this, [&] { connected = true; });
        connect(&clear, &QWebSocket::disconnected, this, [&] { ended = true; });
        connect(&clear, qOverload<QAbstractSocket::SocketError>(&QWebSocket::error), this, [&] { ended = true; });
        clear.open(plain);
        QTRY_VERIFY_WITH_TIMEOUT(ended, 10000);
        QVERIFY(!connected);
        QVERIFY(tlsServer.stop());
    }
};

QTEST_MAIN(SessionTest)
#include "tst_session.moc"
