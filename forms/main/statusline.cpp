// SPDX-License-Identifier: GPL-3.0-or-later
// The status line follows the session's state changes.
#include "statusline.h"

#include "translate.h"

#include <QLabel>
#include <QStatusBar>

using namespace Qt::StringLiterals;

StatusLine::StatusLine(QStatusBar *bar, usrSession &session, QObject *parent)
    : QObject(parent), m_session(session), m_server(new QLabel(bar)), m_state(new QLabel(bar))
{
    m_server->setObjectName(u"ServerUrl"_s);
    m_state->setObjectName(u"SessionState"_s);
    m_server->setTextFormat(Qt::PlainText);
    m_state->setTextFormat(Qt::PlainText);
    bar->addWidget(m_server, 1);
    bar->addPermanentWidget(m_state);
    connect(&session, &usrSession::stateChanged, this, &StatusLine::update);
    update();
}

QString StatusLine::stateText(usrSession::State state)
{
    switch (state) {
    case usrSession::State::Idle:
        return Translate(u"Not connected"_s);
    case usrSession::State::Connecting:
        return Translate(u"Connecting"_s);
    case usrSession::State::LoggingIn:
        return Translate(u"Logging in"_s);
    case usrSession::State::Ready:
        return Translate(u"Ready"_s);
    case usrSession::State::Reconnecting:
        return Translate(u"Reconnecting"_s);
    case usrSession::State::Closed:
        return Translate(u"Session closed"_s);
    }
    return {};
}

void StatusLine::update()
{
    // The server is known only once the session has read its settings, so it is read each time.
    const QUrl server = m_session.server();
    m_server->setText(server.isEmpty() ? QString() : server.toString(QUrl::RemoveUserInfo));
    m_state->setText(stateText(m_session.state()));
}
