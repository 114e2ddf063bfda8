// SPDX-License-Identifier: GPL-3.0-or-later
// "Connecting to <server>..." until the session is first ready, and the choice after a failed try.
#pragma once

#include "usrsession.h"

#include <QDialog>
#include <QUrl>

#include <memory>

class QEventLoop;

namespace Ui {
class ConnectingDialog;
}

// Shows itself whenever the session begins a connection attempt before its first READY, and goes
// away on READY or when the session closes: a server that cannot be reached is never a blank
// screen. Quit (or Escape, or closing the window) logs the session out, which ends the program.
class ConnectingDialog : public QDialog
{
    Q_OBJECT
public:
    explicit ConnectingDialog(usrSession &session, QWidget *parent = nullptr);
    ~ConnectingDialog() override;

    // Says why the attempt failed and waits for Retry, Change server or Quit. Fits
    // usrSession::setFirstConnectFailure.
    usrSession::ConnectChoice askAfterFailure(const QString &reason);

public slots:
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void showConnecting(const QUrl &server);
    void sessionStateChanged(usrSession::State state);
    void choose(usrSession::ConnectChoice choice);

    std::unique_ptr<Ui::ConnectingDialog> m_ui;
    usrSession &m_session;
    QUrl m_server;
    bool m_wasReady = false;          // after the first READY, reconnects stay quiet
    QEventLoop *m_question = nullptr; // runs while askAfterFailure waits for an answer
    usrSession::ConnectChoice m_choice = usrSession::ConnectChoice::Quit;
};
