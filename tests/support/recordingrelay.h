// SPDX-License-Identifier: GPL-3.0-or-later
// A relay in front of the server that passes frames both ways and keeps every command the tool sent,
// so that a test can assert the exact bytes the server received.
#pragma once

#include <QStringList>
#include <QUrl>
#include <QWebSocket>
#include <QWebSocketServer>

using namespace Qt::StringLiterals;

// Passes frames both ways between the tool and the server, and keeps what the tool sent.
class RecordingRelay : public QObject
{
public:
    // Forgets the commands recorded so far.
    void clear() { m_commands.clear(); }
    bool listen(const QUrl &upstream)
    {
        m_upstream = upstream;
        connect(&m_server, &QWebSocketServer::newConnection, this, &RecordingRelay::accept);
        return m_server.listen(QHostAddress::LocalHost, 0);
    }
    QUrl url() const { return QUrl(u"ws://127.0.0.1:%1"_s.arg(m_server.serverPort())); }
    // The commands the tool sent, in order (session frames left out).
    const QStringList &commands() const { return m_commands; }

private:
    void accept()
    {
        QWebSocket *client = m_server.nextPendingConnection();
        auto *server = new QWebSocket(QString(), QWebSocketProtocol::VersionLatest, client);
        auto *queued = new QStringList;
        connect(client, &QObject::destroyed, [queued] { delete queued; });
        connect(server, &QWebSocket::connected, client, [server, queued] {
            for (const QString &frame : std::as_const(*queued))
                server->sendTextMessage(frame);
            queued->clear();
        });
        connect(client, &QWebSocket::textMessageReceived, server,
                [this, server, queued](const QString &frame) {
                    if (!frame.startsWith(u"{Session="_s))
                        m_commands.append(frame);
                    if (server->state() == QAbstractSocket::ConnectedState)
                        server->sendTextMessage(frame);
                    else
                        queued->append(frame);
                });
        connect(server, &QWebSocket::textMessageReceived, client, [client](const QString &frame) {
            if (client->state() == QAbstractSocket::ConnectedState)
                client->sendTextMessage(frame);
        });
        connect(server, &QWebSocket::disconnected, client, [client] { client->close(); });
        connect(client, &QWebSocket::disconnected, client, [client, server] {
            server->close();
            client->deleteLater();
        });
        server->open(m_upstream);
    }

    QWebSocketServer m_server{u"relay"_s, QWebSocketServer::NonSecureMode};
    QUrl m_upstream;
    QStringList m_commands;
};

