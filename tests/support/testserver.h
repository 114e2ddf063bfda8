// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the reference server (quillserverd) on a free loopback port for end-to-end tests.
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

class TestServer
{
public:
    explicit TestServer(bool seedDemo = true);
    ~TestServer();

    // Creates the database (the admin user, the demo site when asked) and starts the server;
    // returns once it accepts connections.
    bool start(QString *error = nullptr);
    // Starts it again on the same port and database.
    bool restart(QString *error = nullptr);
    void kill(); // SIGKILL: no chance to tidy up
    void stop(); // SIGTERM and wait

    QUrl url() const;
    quint16 port() const { return m_port; }
    QString databaseFile() const;
    QString serverLog() const { return m_log; } // what the server wrote to stderr so far
    QProcess &process() { return m_process; }

    static QString user() { return QStringLiteral("admin"); }
    static QString password() { return QStringLiteral("s3cret-Pass"); }
    static QString executable();

private:
    bool launch(QString *error);

    QTemporaryDir m_dir;
    QProcess m_process;
    quint16 m_port = 0;
    bool m_seedDemo;
    QString m_log;
};
