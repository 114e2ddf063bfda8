// SPDX-License-Identifier: GPL-3.0-or-later
// The reference server run inside the tool, for the demo and when no server is configured.
#pragma once

#include <QString>
#include <QThread>
#include <QUrl>

class QuillServer;

// Runs QuillServer in a thread of its own on 127.0.0.1 at a free port. Its database lives in the
// user's data folder and holds the demo site from its first use. The tool logs in with one-time
// tokens, so no password is ever needed.
class EmbeddedServer
{
public:
    EmbeddedServer();
    ~EmbeddedServer(); // stops the server
    EmbeddedServer(const EmbeddedServer &) = delete;
    EmbeddedServer &operator=(const EmbeddedServer &) = delete;

    // "demo-site.sqlite" in QStandardPaths::AppDataLocation.
    static QString defaultDatabasePath();

    // Opens (and on first use seeds) the database and starts listening; returns once the server
    // accepts connections, or false with the reason.
    bool start(QString *error = nullptr);
    bool start(const QString &databaseFile, QString *error = nullptr);
    bool isRunning() const { return m_server != nullptr; }
    QUrl url() const { return m_url; }
    // A fresh one-time log-in token; empty when the server is not running.
    QString createToken();
    // Closes the server and its database and ends its thread.
    void stop();

private:
    QThread m_thread;
    QObject *m_context = nullptr;    // lives in m_thread: work for the server is run through it
    QuillServer *m_server = nullptr; // lives in m_thread
    QUrl m_url;
};
