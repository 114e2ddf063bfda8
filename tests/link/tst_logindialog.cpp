// SPDX-License-Identifier: GPL-3.0-or-later
// The log-in dialog as the session shows it: what it offers, what it hands back, and cancel.
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
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;

namespace {
// Acts on the log-in dialog once it is on screen (it runs modally, so the test cannot wait for
// PromptForCredentials to return first).
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

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
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
        QVERIFY(PromptForCredentials(credentials, u"Invalid user name or password"_s));
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
        QVERIFY(PromptForCredentials(credentials, {}));
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
        QVERIFY(PromptForCredentials(credentials, {}));
        QVERIFY(!okEnabledWhenEmpty);
        QVERIFY(okEnabledWhenFilled);
        QCOMPARE(credentials.server, QUrl(u"ws://192.168.1.20:4510"_s));
        QCOMPARE(credentials.user, u"sam"_s);
        QCOMPARE(credentials.password, u"pw"_s);
    }

    void theReasonIsShownInTheUsersLanguage()
    {
        BracketingTranslator translator;
        SetTranslator(&translator);
        LoginDialog dialog;
        dialog.setReason(u"Unknown user or wrong password"_s);
        SetTranslator(nullptr);
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
        QVERIFY(!PromptForCredentials(credentials, u"Log-in refused"_s));
        QCOMPARE(credentials.user, u"admin"_s);
        QCOMPARE(credentials.server, QUrl(u"wss://quill.example:443"_s));
        QVERIFY(credentials.password.isEmpty());
    }
};

QTEST_MAIN(LoginDialogTest)
#include "tst_logindialog.moc"
