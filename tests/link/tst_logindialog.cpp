// SPDX-License-Identifier: GPL-3.0-or-later
// The session's dialogs: the log-in (what it offers, what it hands back, cancel) and the window shown
// while connecting (what it says, and the ways out of it).
#include "connectingdialog.h"
#include "errorlog.h"
#include "isolation.h"
#include "logindialog.h"
#include "pluginhost.h"
#include "translate.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTcpServer>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace {
// Acts on the log-in dialog once it is on screen (it runs modally, so the test cannot wait for
// promptForCredentials to return first).
void whenDialogShows(std::function<void(LoginDialog *)> act)
{
    auto *poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *dialog = qobject_cast<LoginDialog *>(widget);
            if (dialog && dialog->isVisible()) {
                poll->deleteLater();
                poll->stop();
                act(dialog);
                return;
            }
        }
    });
    poll->start(10);
}

// How the user leaves the connecting window.
enum class Leave { QuitButton, Escape, CloseWindow };

void leave(ConnectingDialog &dialog, Leave how)
{
    if (how == Leave::QuitButton)
        QTest::mouseClick(dialog.findChild<QPushButton *>(u"Quit"_s), Qt::LeftButton);
    else if (how == Leave::Escape)
        QTest::keyClick(&dialog, Qt::Key_Escape);
    else
        dialog.close();
}

QPushButton *button(LoginDialog *dialog, QDialogButtonBox::StandardButton which)
{
    return dialog->findChild<QDialogButtonBox *>()->button(which);
}

// A translator that brackets every text it is given.
class BracketingTranslator : public QObject, public ITranslator
{
    Q_OBJECT
    Q_INTERFACES(ITranslator)
public:
    bool TranslateLoad(const QString &) override { return true; }
    QString Translate(const QString &, const QString &text, const QString &, const QString &) override
    {
        return u'[' + text + u']';
    }
    void TranslateWindow(QObject *) override {}
};
} // namespace

class LoginDialogTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

    // A server that accepts connections and never answers: the session stays connecting.
    QTcpServer m_silent;
    QList<QTcpSocket *> m_accepted; // kept open, owned by m_silent

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        QVERIFY(m_silent.listen(QHostAddress::LocalHost));
        connect(&m_silent, &QTcpServer::newConnection, this,
                [this] { m_accepted << m_silent.nextPendingConnection(); });
    }

    void showsWhatIsKnownAndWhyTheLastTryFailed()
    {
        SessionCredentials credentials;
        credentials.server = QUrl(u"ws://pbx.example:4510"_s);
        credentials.user = u"admin"_s;
        QString shownServer, shownUser, shownReason;
        bool reasonVisible = false, passwordFocused = false, passwordHidden = false;
        whenDialogShows([&](LoginDialog *dialog) {
            shownServer = dialog->findChild<QLineEdit *>(u"server"_s)->text();
            shownUser = dialog->findChild<QLineEdit *>(u"user"_s)->text();
            auto *reason = dialog->findChild<QLabel *>(u"reason"_s);
            shownReason = reason->text();
            reasonVisible = reason->isVisible();
            auto *password = dialog->findChild<QLineEdit *>(u"password"_s);
            passwordFocused = dialog->focusWidget() == password;
            passwordHidden = password->echoMode() == QLineEdit::Password;
            QTest::keyClicks(password, u"s3cret"_s);
            QTest::mouseClick(button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
        });
        QVERIFY(promptForCredentials(credentials, u"Invalid user name or password"_s));
        QCOMPARE(shownServer, u"ws://pbx.example:4510"_s);
        QCOMPARE(shownUser, u"admin"_s);
        QCOMPARE(shownReason, u"Invalid user name or password"_s);
        QVERIFY(reasonVisible);
        QVERIFY(passwordFocused); // server and user known: typing starts at the password
        QVERIFY(passwordHidden);
        QCOMPARE(credentials.password, u"s3cret"_s);
        QCOMPARE(credentials.user, u"admin"_s);

        // The first time there is no reason to show.
        whenDialogShows([&](LoginDialog *dialog) {
            reasonVisible = dialog->findChild<QLabel *>(u"reason"_s)->isVisible();
            QTest::mouseClick(button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
        });
        QVERIFY(promptForCredentials(credentials, {}));
        QVERIFY(!reasonVisible);
    }

    void needsServerAndUserAndTakesAServerWithoutScheme()
    {
        SessionCredentials credentials;
        credentials.token = u"kept"_s;
        bool okEnabledWhenEmpty = true, okEnabledWhenFilled = false;
        whenDialogShows([&](LoginDialog *dialog) {
            okEnabledWhenEmpty = button(dialog, QDialogButtonBox::Ok)->isEnabled();
            QTest::keyClicks(dialog->findChild<QLineEdit *>(u"server"_s), u" 192.168.1.20:4510 "_s);
            QTest::keyClicks(dialog->findChild<QLineEdit *>(u"user"_s), u"sam"_s);
            QTest::keyClicks(dialog->findChild<QLineEdit *>(u"password"_s), u"pw"_s);
            okEnabledWhenFilled = button(dialog, QDialogButtonBox::Ok)->isEnabled();
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        QVERIFY(promptForCredentials(credentials, {}));
        QVERIFY(!okEnabledWhenEmpty);
        QVERIFY(okEnabledWhenFilled);
        QCOMPARE(credentials.server, QUrl(u"ws://192.168.1.20:4510"_s));
        QCOMPARE(credentials.user, u"sam"_s);
        QCOMPARE(credentials.password, u"pw"_s);
    }

    void theReasonIsShownInTheUsersLanguage()
    {
        BracketingTranslator translator;
        setTranslator(&translator);
        LoginDialog dialog;
        dialog.setReason(u"Unknown user or wrong password"_s);
        setTranslator(nullptr);
        QCOMPARE(dialog.findChild<QLabel *>(u"reason"_s)->text(), u"[Unknown user or wrong password]"_s);
    }

    void cancelLeavesTheCredentialsAsTheyWere()
    {
        SessionCredentials credentials;
        credentials.server = QUrl(u"wss://quill.example:443"_s);
        credentials.user = u"admin"_s;
        whenDialogShows([](LoginDialog *dialog) {
            QTest::keyClicks(dialog->findChild<QLineEdit *>(u"user"_s), u"-changed"_s);
            QTest::mouseClick(button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
        });
        QVERIFY(!promptForCredentials(credentials, u"Log-in refused"_s));
        QCOMPARE(credentials.user, u"admin"_s);
        QCOMPARE(credentials.server, QUrl(u"wss://quill.example:443"_s));
        QVERIFY(credentials.password.isEmpty());
    }

    void connectingWindowShowsTheServerAndEveryWayOutLogsOut_data()
    {
        QTest::addColumn<bool>("failed"); // the first attempt failed: the window asks what to do
        QTest::addColumn<Leave>("how");
        QTest::newRow("Quit while connecting") << false << Leave::QuitButton;
        QTest::newRow("Escape while connecting") << false << Leave::Escape;
        QTest::newRow("window closed while connecting") << false << Leave::CloseWindow;
        QTest::newRow("Quit after a failure") << true << Leave::QuitButton;
        QTest::newRow("Escape after a failure") << true << Leave::Escape;
        QTest::newRow("window closed after a failure") << true << Leave::CloseWindow;
    }

    void connectingWindowShowsTheServerAndEveryWayOutLogsOut()
    {
        QFETCH(bool, failed);
        QFETCH(Leave, how);
        QTcpServer probe; // a port that was free a moment ago: nothing listens there
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        const QUrl server(u"ws://127.0.0.1:%1"_s.arg(failed ? probe.serverPort() : m_silent.serverPort()));
        probe.close();

        usrSession session;
        ConnectingDialog dialog(session);
        int logouts = 0;
        connect(&session, &usrSession::SessionEvent, this,
                [&](const QString &, const QString &kind) { logouts += kind == u"LOGOUT"_s ? 1 : 0; });
        // What the window shows when the user leaves it.
        QString message, reason;
        bool retryOffered = false;
        const auto readAndLeave = [&] {
            message = dialog.findChild<QLabel *>(u"message"_s)->text();
            auto *reasonLabel = dialog.findChild<QLabel *>(u"reason"_s);
            reason = reasonLabel->isVisible() ? reasonLabel->text() : QString();
            retryOffered = dialog.findChild<QPushButton *>(u"Retry"_s)->isVisible()
                && dialog.findChild<QPushButton *>(u"ChangeServer"_s)->isVisible();
            leave(dialog, how);
        };
        QString asked;
        session.setFirstConnectFailure([&](const QString &failure) {
            asked = failure;
            QTimer::singleShot(0, &dialog, readAndLeave); // the question runs its own event loop
            return dialog.askAfterFailure(failure);
        });
        SessionCredentials credentials;
        credentials.server = server;
        credentials.token = u"unused"_s;
        session.setCredentials(credentials);
        session.StartSession(u"QuillServer Configuration"_s);
        if (!failed) {
            QTRY_VERIFY(dialog.isVisible());
            readAndLeave();
        }
        QTRY_COMPARE_WITH_TIMEOUT(logouts, 1, 10000);
        QCOMPARE(session.state(), usrSession::State::Closed);
        QTRY_VERIFY(!dialog.isVisible());
        if (failed) {
            QCOMPARE(message, u"Could not connect to %1."_s.arg(server.toString()));
            QVERIFY(!asked.isEmpty());
            QCOMPARE(reason, asked);
            QVERIFY(retryOffered);
        } else {
            QCOMPARE(message, u"Connecting to %1..."_s.arg(server.toString()));
            QVERIFY(reason.isEmpty());
            QVERIFY(!retryOffered);
        }
    }

    void retryTriesAgainAndChangeServerMakesWayForTheLogInDialog()
    {
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        SessionCredentials credentials;
        credentials.server = QUrl(u"ws://127.0.0.1:%1"_s.arg(probe.serverPort()));
        credentials.token = u"unused"_s;
        probe.close();

        usrSession session;
        ConnectingDialog dialog(session);
        int questions = 0;
        session.setFirstConnectFailure([&](const QString &reason) {
            ++questions;
            // First Retry, then Change server, each pressed once the window asks.
            const QString choice = questions == 1 ? u"Retry"_s : u"ChangeServer"_s;
            QTimer::singleShot(0, &dialog, [&dialog, choice] {
                QTest::mouseClick(dialog.findChild<QPushButton *>(choice), Qt::LeftButton);
            });
            return dialog.askAfterFailure(reason);
        });
        bool visibleDuringPrompt = true;
        session.setCredentialsPrompt([&](SessionCredentials &, const QString &) {
            visibleDuringPrompt = dialog.isVisible();
            return false; // cancelled: the session ends
        });
        session.setCredentials(credentials);
        session.StartSession(u"QuillServer Configuration"_s);
        QTRY_COMPARE_WITH_TIMEOUT(session.state(), usrSession::State::Closed, 10000);
        QCOMPARE(questions, 2);
        QVERIFY(!visibleDuringPrompt);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(LoginDialogTest)
#include "tst_logindialog.moc"
