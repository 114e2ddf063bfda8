// SPDX-License-Identifier: GPL-3.0-or-later
// Test helpers: quillserverd started on a free loopback port with a temporary database, and a raw
// WebSocket client that sends frames and collects what comes back.
#pragma once

#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>
#include <QWebSocket>

#include <optional>

// One quillserverd process. The database lives in a temporary folder unless a file is given.
class ServerProcess
{
public:
    explicit ServerProcess(const QString &dbFile = {});
    ~ServerProcess();

    static QString Executable();

    // quillserverd --add-user NAME, the password on stdin.
    bool addUser(const QString &name, const QString &password);
    // Starts the server on 127.0.0.1 (a free port) and waits until it listens.
    bool start(const QStringList &extraArguments = {});
    // SIGTERM and wait; true when the process ended by itself with status 0.
    bool stop();
    // SIGKILL: the process gets no chance to tidy up.
    void kill();
    bool isRunning() const;

    QUrl url() const { return m_url; }
    QString dbFile() const { return m_db; }
    // Everything the process has written to stderr so far.
    QString log();
    // Lines of the log that record a refusal.
    int refusalLines();

    // Runs quillserverd with arguments to completion; gives its exit code (-1 when it would not run).
    static int RunToEnd(const QStringList &arguments, const QByteArray &stdinText = {},
                        QString *output = nullptr);

private:
    QTemporaryDir m_dir;
    QString m_db;
    QProcess m_process;
    QByteArray m_stderr;
    QUrl m_url;
};

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
