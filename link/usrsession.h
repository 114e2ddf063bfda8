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

// What the command line says about the session: --server URL, --user NAME, --demo, --ca FILE
// (either "--name value" or "--name=value"). A server without a scheme is taken as ws://.
struct SessionOptions {
    QUrl server;
    QString user;
    bool demo = false;
    QString caFile;
    static SessionOptions parse(const QString &commandLine);
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
    // Ends the session from the user's side (Quit while connecting): no reconnect follows, and the
    // session reports "LOGOUT" with reason, as a server's log-out would, which ends the program.
    void logOut(const QString &reason);

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
    // Asked after each failed connection attempt until the session has first been ready (a server
    // named wrongly, or not running): try again, change the server in the credentials prompt
    // (shown with the reason), or quit (the session reports "LOGOUT"). Without one, or once the
    // session has been ready, the session reconnects quietly with back-off.
    enum class ConnectChoice { Retry, ChangeServer, Quit };
    Q_ENUM(ConnectChoice)
    using FirstConnectFailure = std::function<ConnectChoice(const QString &reason)>;
    void setFirstConnectFailure(FirstConnectFailure ask);

    // Server and user kept from the last log-in typed into the prompt (never a password).
    static SessionCredentials savedCredentials();
    // True when the command line or the session's settings name a server; otherwise the tool
    // runs on its embedded server.
    static bool serverConfigured(const QString &commandLine);

    // Where a fresh one-time token comes from before each log-in (the embedded server): a token is
    // spent by its log-in, so a reconnect needs a new one.
    using TokenSource = std::function<QString()>;
    void setTokenSource(TokenSource source);
    // Reconnect back-off: the first delay doubles after each failed attempt up to maxDelayMs; the
    // keep-trying question is asked after attemptsBeforeAsking failed attempts in a row.
    void setReconnectTiming(int firstDelayMs, int maxDelayMs, int attemptsBeforeAsking);
    // How long connecting and logging in may take before the attempt counts as failed and the
    // session tries again (a server that accepts the connection but never answers). Default 20 s.
    void setLogInTimeout(int milliseconds);
    // Trusts the certificates in this PEM file for wss:// (a server's self-signed certificate).
    // --ca FILE on the command line does the same.
    bool setCaCertificateFile(const QString &path, QString *error = nullptr);

    // Frames larger than this (UTF-8 bytes) are refused in both directions.
    static constexpr qint64 MaxFrameBytes = 16 * 1024 * 1024;

signals:
    // kind: "LOGIN", "READY", "LOGOUT", or "MESSAGE" with data = one whole server frame.
    void SessionEvent(const QString &unused, const QString &kind, const QString &data);
    void stateChanged(usrSession::State state);
    // A connection attempt to server begins: the first, one the user asked for, or a reconnect.
    void connecting(const QUrl &server);

private:
    class Private;
    std::unique_ptr<Private> d;
};
