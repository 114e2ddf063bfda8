// SPDX-License-Identifier: GPL-3.0-or-later
// Test helpers: quillserverd as a process (serverprocess.h), and a raw WebSocket client that sends
// frames and collects what comes back.
#pragma once

#include "listreplies.h"
#include "serverprocess.h"
#include "tagvalue.h"

#include <QEventLoop>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWebSocket>

#include <optional>

using namespace Qt::StringLiterals;

inline const QString ping = u"{Cmd=Ping}{Handler=Branch}"_s;
inline const QString echo = u"{Cmd=PINGECHO}"_s;

// A WebSocket client that keeps every text frame it receives, in order.
class RawClient : public QObject
{
public:
    RawClient()
    {
        m_socket.setMaxAllowedIncomingFrameSize(64 * 1024 * 1024);
        m_socket.setMaxAllowedIncomingMessageSize(64 * 1024 * 1024);
        connect(&m_socket, &QWebSocket::textMessageReceived, this,
                [this](const QString &frame) { m_frames.append(frame); });
        connect(&m_socket, &QWebSocket::disconnected, this, [this] { m_closed = true; });
    }

    // The log-in frame the tool sends; with a token instead when user is empty.
    static QString logInFrame(const QString &user, const QString &secret)
    {
        QString frame = u"{Session=Login}"_s;
        if (!user.isEmpty())
            AddVar(frame, u"User"_s, user);
        AddVar(frame, user.isEmpty() ? u"Token"_s : u"Password"_s, secret);
        AddVar(frame, u"App"_s, u"QuillServer Configuration"_s);
        return frame;
    }

    bool open(const QUrl &url, int timeoutMs = 5000)
    {
        m_closed = false;
        m_socket.open(url);
        return QTest::qWaitFor(
                   [&] { return m_socket.state() == QAbstractSocket::ConnectedState || m_closed; },
                   timeoutMs) &&
               m_socket.state() == QAbstractSocket::ConnectedState;
    }
    // Sends the log-in frame and expects "{Session=LOGIN}" then "{Session=READY}".
    bool logIn(const QString &user = TestAccount::user(), const QString &password = TestAccount::password())
    {
        send(logInFrame(user, password));
        return next() == u"{Session=LOGIN}"_s && next() == u"{Session=READY}"_s;
    }
    bool logInWithToken(const QString &token) { return logIn({}, token); }
    // open() and logIn() as the test account.
    bool openLoggedIn(const QUrl &url) { return open(url) && logIn(); }
    // Sends a log-in frame and expects "{Session=LOGOUT}" with a reason, then the connection
    // closed with nothing more sent.
    bool refusedLogIn(const QString &frame)
    {
        send(frame);
        const QString answer = next().value_or(QString());
        return answer.startsWith(u"{Session=LOGOUT}"_s) && !getText(answer, u"Reason"_s).isEmpty() &&
               waitClosed() && !next(100);
    }

    void send(const QString &frame) { m_socket.sendTextMessage(frame); }
    // The next text frame not yet taken, waiting for it up to timeoutMs.
    std::optional<QString> next(int timeoutMs = 5000)
    {
        if (m_frames.isEmpty() && !m_closed) {
            // An event loop that ends on the frame itself: no polling delay per request.
            QEventLoop loop;
            QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
            connect(&m_socket, &QWebSocket::textMessageReceived, &loop, &QEventLoop::quit,
                    Qt::QueuedConnection);
            connect(&m_socket, &QWebSocket::disconnected, &loop, &QEventLoop::quit, Qt::QueuedConnection);
            loop.exec();
        }
        if (m_frames.isEmpty())
            return std::nullopt;
        return m_frames.takeFirst();
    }
    // Sends a command and returns the next frame.
    QString request(const QString &command)
    {
        send(command);
        return next().value_or(QString());
    }
    // Sends Ping and waits for its echo: every frame sent before it has been handled by then.
    bool sync()
    {
        send(ping);
        while (const auto frame = next()) {
            if (*frame == echo)
                return true;
        }
        return false;
    }
    bool waitClosed(int timeoutMs = 5000)
    {
        return QTest::qWaitFor([&] { return m_closed; }, timeoutMs);
    }
    QWebSocket &socket() { return m_socket; }

private:
    QWebSocket m_socket;
    QStringList m_frames;
    bool m_closed = false;
};
