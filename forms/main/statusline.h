// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's status line: which server the tool talks to and how the session stands.
#pragma once

#include "usrsession.h"

#include <QObject>

class QLabel;
class QStatusBar;

class StatusLine : public QObject
{
    Q_OBJECT
public:
    StatusLine(QStatusBar *bar, usrSession &session, QObject *parent = nullptr);

    // The translated words for a session state ("Connecting", "Ready", "Reconnecting", ...).
    static QString stateText(usrSession::State state);

    void update();

private:
    usrSession &m_session;
    QLabel *m_server;
    QLabel *m_state;
};
