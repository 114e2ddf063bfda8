// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the reference server (quillserverd) on a loopback port for end-to-end tests.
#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

// The account the client tests log in with.
namespace TestAccount {
inline QString user()
{
    return QStringLiteral("admin");
}
inline QString password()
{
    return QStringLiteral("s3cret-Pass");
}
} // namespace TestAccount

// One quillserverd process. The database lives in a temporary folder unless a file is given.
class ServerProcess
{
public:
    explicit ServerProcess(const QString &dbFile = {});
    ~ServerProcess();

    static QString executable();
    // Runs quillserverd with arguments to completion; gives its exit code (-1 when it would not run).
    static int runToEnd(const QStringList &arguments, const QByteArray &stdinText = {},
                        QString *output = nullptr);

    // quillserverd --add-user NAME, the password on stdin. When it fails, log() says why.
    bool addUser(const QString &name, const QString &password);
    // Starts the server on 127.0.0.1 and waits until it listens: on a free port the first time,
    // on the same port after that, so clients find it where they left it.
    bool start(const QStringList &extraArguments = {});
    // Stops it and starts it again with the same arguments, port and database.
    bool restart();
    // SIGTERM and wait; true when the process ended by itself with status 0.
    bool stop();
    // SIGKILL: the process gets no chance to tidy up.
    void kill();
    bool isRunning() const;

    QUrl url() const { return m_url; }
    QString dbFile() const { return m_db; }
    // What the server wrote to stderr since it last started (after addUser: what --add-user wrote).
    QString log();
    // Lines of the log that record a refusal.
    int refusalLines();

private:
    QTemporaryDir m_dir;
    QString m_db;
    QProcess m_process;
    QStringList m_extraArguments;
    QByteArray m_stderr;
    QUrl m_url;
    int m_port = 0; // 0 until the first start picks one
};
