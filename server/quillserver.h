// SPDX-License-Identifier: GPL-3.0-or-later
// The reference QuillServer: the six tables in SQLite and the command catalogue over WebSocket
// sessions. Used by quillserverd and, in-process, by the tool's embedded demo server.
#pragma once

#include "logingate.h"

#include <QHostAddress>
#include <QMutex>
#include <QObject>
#include <QSslConfiguration>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QUrl>

#include <memory>

class CommandProcessor;
class QWebSocketServer;
class Session;
class Store;

// Thread-confined: create, use and destroy it in one thread (a worker QThread will do). Each
// instance has its own database connection. createOneTimeToken() alone may be called from any
// thread.
class QuillServer : public QObject
{
    Q_OBJECT
public:
    // Writes are committed in groups, one disk flush for many commands. The open group is
    // committed before any frame goes to any session (so a reply proves that every write sent
    // before it is on disk), at the latest GroupCommitMs after it opened or once it holds
    // MaxGroupCommands commands, and on close.
    static constexpr int GroupCommitMs = 5;
    static constexpr int MaxGroupCommands = 2000;

    explicit QuillServer(QObject *parent = nullptr);
    ~QuillServer() override;

    // Opens the SQLite file, creating the tables on first use (WAL, versioned schema).
    bool open(const QString &dbFile, QString *error = nullptr);
    // Accepts sessions on address:port; port 0 takes a free port (see port()).
    bool listen(const QHostAddress &address, quint16 port, QString *error = nullptr);
    // Serves wss:// with this PEM certificate and key; call before listen().
    bool setTls(const QString &certFile, const QString &keyFile, QString *error = nullptr);
    quint16 port() const;
    // ws://HOST:PORT (wss:// with TLS); a server listening on every address is reached on 127.0.0.1.
    QUrl url() const;

    // True while nothing has been stored in any table.
    bool isEmpty() const;
    // Fills an empty database with the demo site; does nothing to a database that holds data.
    void seedDemo();

    // Creates the admin account or sets its new password.
    bool addUser(const QString &name, const QString &password);
    // A log-in token good for one log-in ("{Session=Login}{Token(S..)=...}").
    QString createOneTimeToken();
    // How failed password log-ins are held off, and how many are checked at once.
    void setLogInLimits(const LogInLimits &limits);

    // Runs one command and returns its reply ("" when it has none). Refusals are logged. A reply
    // is given only once the command and every write before it are on disk.
    QString execute(const QString &command);

    // Stops listening, closes every session and the database.
    void close();

    // How many refusals have been logged (each is one line of category quill.server.core).
    int refusalCount() const;
    int sessionCount() const;

signals:
    void refused(const QString &reason);

private:
    friend class Session;
    // True when token is one of the one-time tokens, which it spends.
    bool acceptToken(const QString &token);
    // Checks a user's password off this thread (see LogInGate::check); done is not called once
    // the session has gone.
    std::optional<LogInGate::Answer> checkPassword(Session *session, const QString &user,
                                                   const QString &password, LogInGate::Done done);
    void refuse(const QString &reason);
    void sessionEnded(Session *session);
    // Commits the open group; false, with a refusal logged, when its writes are lost.
    bool commitWrites();
    void redoGroup();
    void groupLost(qsizetype commands);

    // The commands of the open group, with what each was refused, in case they must run again.
    struct GroupedCommand
    {
        QString command;
        QString refusal;
    };

    std::unique_ptr<Store> m_store;
    std::unique_ptr<CommandProcessor> m_commands;
    LogInGate m_logInGate{this};
    QWebSocketServer *m_server = nullptr;
    QList<Session *> m_sessions;
    QList<GroupedCommand> m_group;
    QTimer m_groupTimer{this};
    QSslConfiguration m_tls;
    bool m_useTls = false;
    int m_refusals = 0;
    QMutex m_tokenLock;
    QStringList m_tokens;
};
