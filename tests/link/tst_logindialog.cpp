// SPDX-License-Identifier: GPL-3.0-or-later
// The session's dialogs: the log-in (what it offers, what it hands back, cancel) and the window shown
// while connecting (what it says, and the ways out of it).
#include "connectingdialog.h"
#include "errorlog.h"
#include "closedport.h"
#include "isolation.h"
#include "logindialog.h"
#include "pluginhost.h"
#include "translate.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
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
    QTimer::singleShot(10, [act] {
        if (auto *dialog = qobject_cast<LoginDialog *>(QApplication::activeModalWidget()))
            act(dialog);
        else
            whenDialogShows(act);
    });
}

// What the user does in the connecting window.
enum class Press { Quit, Retry, ChangeServer, Escape, CloseWindow };

void press(ConnectingDialog &dialog, Press how)
{
    const QStringList buttons{u"Quit"_s, u"Retry"_s, u"ChangeServer"_s};
    if (how == Press::Escape)
        QTest::keyClick(&dialog, Qt::Key_Escape);
    else if (how == Press::CloseWindow)
        dialog.close();
    else
        QTest::mouseClick(dialog.findChild<QPushButton *>(buttons.at(int(how))), Qt::LeftButton);
}

QPushButton *button(LoginDialog *dialog, QDialogButtonBox::StandardButton which)
{
    return dialog->findChild<QDialogButtonBox *>()->button(which);
}

// An address where nothing listens: a port that was free a moment ago.
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

    void logInStartsWhereTypingIsNeededAndHandsBackWhatWasTyped_data()
    {
        QTest::addColumn<QString>("server"); // what is known when the dialog opens
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QStringList>("typed"); // into server, user and password
        QTest::addColumn<bool>("ok");           // Enter, or Cancel
        QTest::addColumn<QString>("focus");
        QTest::addColumn<QStringList>("handedBack"); // server, user, password
        QTest::newRow("after a refusal, server and user known")
            << u"ws://pbx.example:4510"_s << u"admin"_s << u"Invalid user name or password"_s
            << QStringList{{}, {}, u"s3cret"_s} << true << u"password"_s
            << QStringList{u"ws://pbx.example:4510"_s, u"admin"_s, u"s3cret"_s};
        QTest::newRow("first time, a server without a scheme")
            << QString() << QString() << QString() << QStringList{u" 192.168.1.20:4510 "_s, u"sam"_s, u"pw"_s}
            << true << u"server"_s << QStringList{u"ws://192.168.1.20:4510"_s, u"sam"_s, u"pw"_s};
        QTest::newRow("Cancel leaves the credentials as they were")
            << u"wss://quill.example:443"_s << u"admin"_s << u"Log-in refused"_s
            << QStringList{{}, u"-changed"_s, u"pw"_s} << false << u"password"_s
            << QStringList{u"wss://quill.example:443"_s, u"admin"_s, QString()};
    }

    void logInStartsWhereTypingIsNeededAndHandsBackWhatWasTyped()
    {
        QFETCH(QString, server);
        QFETCH(QString, user);
        QFETCH(QString, reason);
        QFETCH(QStringList, typed);
        QFETCH(bool, ok);
        BracketingTranslator translator; // the reason is shown in the user's language
        setTranslator(&translator);
        const auto noTranslator = qScopeGuard([] { setTranslator(nullptr); });
        SessionCredentials credentials{QUrl(server), user, {}, {}};
        QStringList shown;
        QString shownFocus, shownReason;
        bool passwordHidden = false;
        QList<bool> okEnabled; // before and after typing
        whenDialogShows([&](LoginDialog *dialog) {
            auto *reasonLabel = dialog->findChild<QLabel *>(u"reason"_s);
            shownReason = reasonLabel->isVisible() ? reasonLabel->text() : QString();
            shownFocus = dialog->focusWidget()->objectName();
            passwordHidden = dialog->findChild<QLineEdit *>(u"password"_s)->echoMode() == QLineEdit::Password;
            okEnabled << button(dialog, QDialogButtonBox::Ok)->isEnabled();
            const QStringList fields{u"server"_s, u"user"_s, u"password"_s};
            for (qsizetype field = 0; field < fields.size(); ++field) {
                auto *edit = dialog->findChild<QLineEdit *>(fields[field]);
                shown << edit->text();
                QTest::keyClicks(edit, typed[field]);
            }
            okEnabled << button(dialog, QDialogButtonBox::Ok)->isEnabled();
            if (ok)
                QTest::keyClick(dialog, Qt::Key_Return);
            else
                QTest::mouseClick(button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
        });
        QCOMPARE(promptForCredentials(credentials, reason), ok);
        QCOMPARE(shown, (QStringList{server, user, QString()}));
        // The first time there is no reason to show.
        QCOMPARE(shownReason, reason.isEmpty() ? QString() : u'[' + reason + u']');
        QTEST(shownFocus, "focus");
        QVERIFY(passwordHidden);
        // OK needs a server and a user.
        QCOMPARE(okEnabled, (QList<bool>{!server.isEmpty() && !user.isEmpty(), true}));
        const QStringList handedBack{credentials.server.toString(), credentials.user, credentials.password};
        QTEST(handedBack, "handedBack");
    }

    void connectingWindowShowsTheServerAndEveryWayOutLogsOut_data()
    {
        QTest::addColumn<bool>("failed"); // the first attempt fails: the window asks what to do
        QTest::addColumn<QList<Press>>("presses"); // one each time the window asks, or at once
        QTest::newRow("Quit while connecting") << false << QList<Press>{Press::Quit};
        QTest::newRow("Escape while connecting") << false << QList<Press>{Press::Escape};
        QTest::newRow("window closed while connecting") << false << QList<Press>{Press::CloseWindow};
        QTest::newRow("Quit after a failure") << true << QList<Press>{Press::Quit};
        QTest::newRow("Escape after a failure") << true << QList<Press>{Press::Escape};
        QTest::newRow("window closed after a failure") << true << QList<Press>{Press::CloseWindow};
        QTest::newRow("Retry tries again") << true << QList<Press>{Press::Retry, Press::Quit};
        // The log-in dialog takes the window's place, and is cancelled.
        QTest::newRow("Change server") << true << QList<Press>{Press::ChangeServer};
    }

    void connectingWindowShowsTheServerAndEveryWayOutLogsOut()
    {
        QFETCH(bool, failed);
        QFETCH(QList<Press>, presses);
        const QUrl server = failed ? closedPort() : QUrl(u"ws://127.0.0.1:%1"_s.arg(m_silent.serverPort()));
        usrSession session;
        ConnectingDialog dialog(session);
        int logouts = 0;
        connect(&session, &usrSession::SessionEvent, this,
                [&](const QString &, const QString &kind) { logouts += kind == u"LOGOUT"_s ? 1 : 0; });
        // What the window shows when the user last acts in it.
        QString message, reason;
        bool retryOffered = false;
        qsizetype pressed = 0;
        const auto readAndPress = [&] {
            message = dialog.findChild<QLabel *>(u"message"_s)->text();
            auto *reasonLabel = dialog.findChild<QLabel *>(u"reason"_s);
            reason = reasonLabel->isVisible() ? reasonLabel->text() : QString();
            retryOffered = dialog.findChild<QPushButton *>(u"Retry"_s)->isVisible()
                && dialog.findChild<QPushButton *>(u"ChangeServer"_s)->isVisible();
            press(dialog, presses.value(pressed++));
        };
        QString asked;
        session.setFirstConnectFailure([&](const QString &failure) {
            asked = failure;
            QTimer::singleShot(0, &dialog, readAndPress); // the question runs its own event loop
            return dialog.askAfterFailure(failure);
        });
        bool prompted = false, visibleDuringPrompt = false;
        session.setCredentialsPrompt([&](SessionCredentials &, const QString &) {
            prompted = true;
            visibleDuringPrompt = dialog.isVisible();
            return false;
        });
        session.setCredentials({server, {}, {}, u"unused"_s});
        session.StartSession(u"QuillServer Configuration"_s);
        if (!failed) {
            QTRY_VERIFY(dialog.isVisible());
            readAndPress();
        }
        QTRY_COMPARE_WITH_TIMEOUT(logouts, 1, 10000);
        QCOMPARE(session.state(), usrSession::State::Closed);
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(pressed, presses.size());
        QCOMPARE(prompted, presses.contains(Press::ChangeServer));
        QVERIFY(!visibleDuringPrompt);
        QCOMPARE(message,
                 (failed ? u"Could not connect to %1."_s : u"Connecting to %1..."_s).arg(server.toString()));
        QCOMPARE(reason, asked);
        QVERIFY(asked.isEmpty() != failed);
        QCOMPARE(retryOffered, failed);
    }
};

QTEST_MAIN(LoginDialogTest)
#include "tst_logindialog.moc"
