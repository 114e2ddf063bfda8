// SPDX-License-Identifier: GPL-3.0-or-later
#include "logindialog.h"

#include "translate.h"
#include "translatewidgets.h"
#include "ui_logindialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

using namespace Qt::StringLiterals;

LoginDialog::LoginDialog(QWidget *parent) : QDialog(parent), m_ui(std::make_unique<Ui::LoginDialog>())
{
    m_ui->setupUi(this);
    m_ui->reason->hide();
    TranslateWindow(this);
    connect(m_ui->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_ui->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_ui->server, &QLineEdit::textChanged, this, &LoginDialog::updateOkButton);
    connect(m_ui->user, &QLineEdit::textChanged, this, &LoginDialog::updateOkButton);
    updateOkButton();
}

LoginDialog::~LoginDialog() = default;

void LoginDialog::setCredentials(const SessionCredentials &credentials)
{
    m_credentials = credentials;
    m_ui->server->setText(credentials.server.toString());
    m_ui->user->setText(credentials.user);
    m_ui->password->setText(credentials.password);
    // Start where typing is still needed.
    QLineEdit *first = m_ui->server->text().isEmpty() ? m_ui->server
                       : m_ui->user->text().isEmpty() ? m_ui->user
                                                      : m_ui->password;
    first->setFocus();
}

SessionCredentials LoginDialog::credentials() const
{
    SessionCredentials typed = m_credentials;
    const QString server = m_ui->server->text().trimmed();
    typed.server = QUrl(server.isEmpty() || server.contains(u"://"_s) ? server : u"ws://"_s + server);
    typed.user = m_ui->user->text().trimmed();
    typed.password = m_ui->password->text();
    return typed;
}

void LoginDialog::setReason(const QString &reason)
{
    m_ui->reason->setText(Translate(reason)); // the session's and the server's reasons are English
    m_ui->reason->setVisible(!reason.isEmpty());
}

void LoginDialog::updateOkButton()
{
    const bool complete =
        !m_ui->server->text().trimmed().isEmpty() && !m_ui->user->text().trimmed().isEmpty();
    m_ui->buttons->button(QDialogButtonBox::Ok)->setEnabled(complete);
}

bool promptForCredentials(SessionCredentials &credentials, const QString &reason)
{
    LoginDialog dialog(QApplication::activeWindow());
    dialog.setCredentials(credentials);
    dialog.setReason(reason);
    // Test seam: with QUILL_TEST_LOGIN_ESCAPE set, Escape reaches the dialog as soon as it is on
    // screen (exec shows it before the posted key is delivered), as if the user had pressed it, so
    // that a test can cancel the log-in of a quillconfig it started. The dialog's own Escape
    // handling does the rest.
    if (qEnvironmentVariableIsSet("QUILL_TEST_LOGIN_ESCAPE"))
        QCoreApplication::postEvent(&dialog, new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    credentials = dialog.credentials();
    return true;
}

bool askKeepTrying(const QString &reason)
{
    const QString text = reason.isEmpty() ? u"The server does not answer. Keep trying to connect?"_s
                                          : u"The server does not answer (<1>). Keep trying to connect?"_s;
    // The session's reasons are English.
    return TranslateMsgBox(text, QMessageBox::Yes | QMessageBox::No, Translate(reason)) == QMessageBox::Yes;
}
