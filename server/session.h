// SPDX-License-Identifier: GPL-3.0-or-later
// One client connection: its log-in, then one command per text frame, one reply per frame.
#pragma once

#include "logingate.h"

#include <QHostAddress>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWebSocketProtocol>

class QWebSocket;
class QuillServer;

class Session : public QObject
{
    Q_OBJECT
public:
    // Frames larger than this (UTF-8 bytes) are refused and the connection closed.
    static constexpr quint64 MaxFrameBytes = 16 * 1024 * 1024;
    // A connection that has not logged in by then is closed.
    static constexpr int LogInTimeoutMs = 30000;

    Session(QWebSocket *socket, QuillServer &server);
    ~Session() override;

    QString peer() const;
    QHostAddress peerAddress() const;
    // Ends the session from the server's side.
    void abort();

signals:
    void ended(Session *session);

private:
    void frameArrived(const QString &frame);
    void binaryArrived();
    void logIn(const QString &frame);
    void logInChecked(const QString &user, const QString &app, const LogInGate::Answer &answer);
    void startServing(const QString &user, const QString &app);
    void refuseLogIn(const QString &reason, const QString &what);
    void sessionFrame(const QString &frame);
    void refuseAndClose(const QString &reason);
    void disconnected();
    // Every frame to the client goes out here, after the server's open group is on disk.
    void send(const QString &frame);
    void close(QWebSocketProtocol::CloseCode code);

    QWebSocket *m_socket;
    QuillServer &m_server;
    QTimer m_logInTimer;
    QString m_peer;
    QString m_user;
    bool m_loggedIn = false;
    // While the password is checked: the frames that came behind the log-in, served once it is
    // accepted.
    bool m_checking = false;
    QStringList m_early;
    quint64 m_earlyChars = 0;
    bool m_closing = false;
};
