// SPDX-License-Identifier: GPL-3.0-or-later
// The session control: one WebSocket session with QuillServer, its log-in and its reconnects.
#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <memory>

// Where the session connects and as whom. Filled from the command line (--server, --user, --demo),
// then the session's own settings, then the log-in dialog. The password is never stored.
struct SessionCredentials {
    QUrl server;      // ws://host:port or wss://host:port
    QString user;
    QString password; // or the one-time token of the embedded server (token set instead)
    QString token;
};

class usrSession : public QObject
{
    Q_OBJECT
public:
    enum class State { Idle, Connecting, LoggingIn, Ready, Reconnecting, Closed };
    Q_ENUM(State)

    explicit usrSession(QObject *parent = nullptr);
    ~usrSession() override;

    // The program's whole command line, read for --server, --user and --demo.
    QString command;
    // Fixed in the main window's design: log in without asking when credentials are known, and the
    // application name sent at log-in.
    bool autologin = true;
    QString appname;

    // Opens the session (connect, log in). appTitle is sent as App at log-in.
    void StartSession(const QString &appTitle, const QString &a = {}, const QString &b = {},
                      const QString &c = {});
    // Sends one command whole. Commands sent while not logged in are queued in order and sent once
    // the session is ready again.
    void SendCommand(const QString &commandText);
    // Ends the session; no reconnect follows.
    void CloseSession();

    State state() const;
    QUrl server() const;
    void setCredentials(const SessionCredentials &credentials);
    SessionCredentials credentials() const;

    // How the session asks the user for credentials (the log-in dialog, set by the application);
    // returns false when the user cancels. Without one, missing credentials end the session.
    using CredentialsPrompt = std::function<bool(SessionCredentials &credentials, const QString &reason)>;
    void setCredentialsPrompt(CredentialsPrompt prompt);
    // Asked after repeated failures to reconnect; returning false gives up (the session then reports
    // "LOGOUT"). Without one the session keeps trying.
    using GiveUpQuestion = std::function<bool(const QString &reason)>;
    void setKeepTryingQuestion(GiveUpQuestion question);

signals:
    // kind: "LOGIN", "READY", "LOGOUT", or "MESSAGE" with data = one whole server frame.
    void SessionEvent(const QString &unused, const QString &kind, const QString &data);
    void stateChanged(usrSession::State state);

private:
    class Private;
    std::unique_ptr<Private> d;
};
