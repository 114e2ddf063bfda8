// SPDX-License-Identifier: GPL-3.0-or-later
// The session's log-in dialog: server address, user and password, and why the last try failed.
#pragma once

#include "usrsession.h"

#include <QDialog>

#include <memory>

namespace Ui {
class LoginDialog;
}

class LoginDialog : public QDialog
{
    Q_OBJECT
public:
    explicit LoginDialog(QWidget *parent = nullptr);
    ~LoginDialog() override;

    void setCredentials(const SessionCredentials &credentials);
    // What was typed; a server without a scheme is taken as ws://.
    SessionCredentials credentials() const;
    // The server's reason for refusing the last log-in; empty hides the line.
    void setReason(const QString &reason);

private:
    void updateOkButton();

    std::unique_ptr<Ui::LoginDialog> m_ui;
    SessionCredentials m_credentials; // keeps what the dialog does not show (the token)
};

// Shows the log-in dialog over the active window; on OK updates credentials and returns true.
// Fits usrSession::setCredentialsPrompt.
bool promptForCredentials(SessionCredentials &credentials, const QString &reason);
// Asks whether to go on trying to reach a server that does not answer; fits
// usrSession::setKeepTryingQuestion.
bool askKeepTrying(const QString &reason);
