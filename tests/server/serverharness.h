// SPDX-License-Identifier: GPL-3.0-or-later
// Test helpers: quillserverd as a process (serverprocess.h), and a raw WebSocket client that sends
// frames and collects what comes back.
#pragma once

#include "serverprocess.h"

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QWebSocket>

#include <optional>

// A WebSocket client that keeps every text frame it receives, in order.
class RawClient : public QObject
{
public:
    RawClient();

    bool open(const QUrl &url, int timeoutMs = 5000);
    // Sends the log-in frame and expects "{Session=LOGIN}" then "{Session=READY}".
    bool logIn(const QString &user, const QString &password);
    bool logInWithToken(const QString &token);
    void send(const QString &frame);
    void sendBinary(const QByteArray &bytes);
    // The next text frame not yet taken, waiting for it up to timeoutMs.
    std::optional<QString> next(int timeoutMs = 5000);
    // Sends a command and returns the next frame.
    QString request(const QString &command);
    // Sends Ping and waits for its echo: every frame sent before it has been handled by then.
    bool sync();
    bool waitClosed(int timeoutMs = 5000);
    bool isClosed() const { return m_closed; }
    QWebSocket &socket() { return m_socket; }

private:
    QWebSocket m_socket;
    QStringList m_frames;
    bool m_closed = false;
};
