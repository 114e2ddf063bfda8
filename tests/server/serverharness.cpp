// SPDX-License-Identifier: GPL-3.0-or-later
#include "serverharness.h"

#include "tagvalue.h"

#include <QEventLoop>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

RawClient::RawClient()
{
    m_socket.setMaxAllowedIncomingFrameSize(64 * 1024 * 1024);
    m_socket.setMaxAllowedIncomingMessageSize(64 * 1024 * 1024);
    connect(&m_socket, &QWebSocket::textMessageReceived, this,
            [this](const QString &frame) { m_frames.append(frame); });
    connect(&m_socket, &QWebSocket::disconnected, this, [this] { m_closed = true; });
}

bool RawClient::open(const QUrl &url, int timeoutMs)
{
    m_closed = false;
    m_socket.open(url);
    return QTest::qWaitFor([&] { return m_socket.state() == QAbstractSocket::ConnectedState || m_closed; },
                           timeoutMs) &&
           m_socket.state() == QAbstractSocket::ConnectedState;
}

bool RawClient::logIn(const QString &user, const QString &password)
{
    QString frame = u"{Session=Login}"_s;
    AddVar(frame, u"User"_s, user);
    AddVar(frame, u"Password"_s, password);
    AddVar(frame, u"App"_s, u"QuillServer Configuration"_s);
    send(frame);
    return next() == u"{Session=LOGIN}"_s && next() == u"{Session=READY}"_s;
}

bool RawClient::logInWithToken(const QString &token)
{
    QString frame = u"{Session=Login}"_s;
    AddVar(frame, u"Token"_s, token);
    AddVar(frame, u"App"_s, u"QuillServer Configuration"_s);
    send(frame);
    return next() == u"{Session=LOGIN}"_s && next() == u"{Session=READY}"_s;
}

void RawClient::send(const QString &frame)
{
    m_socket.sendTextMessage(frame);
}

void RawClient::sendBinary(const QByteArray &bytes)
{
    m_socket.sendBinaryMessage(bytes);
}

std::optional<QString> RawClient::next(int timeoutMs)
{
    if (m_frames.isEmpty() && !m_closed) {
        // An event loop that ends on the frame itself: no polling delay per request.
        QEventLoop loop;
        QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
        const auto arrived = connect(&m_socket, &QWebSocket::textMessageReceived, &loop, &QEventLoop::quit,
                                     Qt::QueuedConnection);
        const auto closed =
            connect(&m_socket, &QWebSocket::disconnected, &loop, &QEventLoop::quit, Qt::QueuedConnection);
        loop.exec();
        disconnect(arrived);
        disconnect(closed);
    }
    if (m_frames.isEmpty())
        return std::nullopt;
    return m_frames.takeFirst();
}

QString RawClient::request(const QString &command)
{
    send(command);
    return next().value_or(QString());
}

bool RawClient::sync()
{
    send(u"{Cmd=Ping}{Handler=Branch}"_s);
    while (const auto frame = next()) {
        if (*frame == u"{Cmd=PINGECHO}"_s)
            return true;
    }
    return false;
}

bool RawClient::waitClosed(int timeoutMs)
{
    return QTest::qWaitFor([&] { return m_closed; }, timeoutMs);
}
