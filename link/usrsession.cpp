// SPDX-License-Identifier: GPL-3.0-or-later
// The session control: connects, logs in, delivers frames as session events and reconnects.
#include "usrsession.h"

#include "tagvalue.h"

#include <QFile>
#include <QLoggingCategory>
#include <QNetworkRequest>
#include <QProcess>
#include <QSettings>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QStringList>
#include <QTimer>
#include <QWebSocket>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcSession, "quill.link.session", QtWarningMsg)

namespace {
const QString SessionPrefix = u"{Session="_s;

QSettings sessionSettings()
{
    return QSettings(u"Tamsel Telecom Ltd"_s, u"QuillConfig"_s);
}

QUrl serverUrlFromText(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    return QUrl(trimmed.contains(u"://"_s) ? trimmed : u"ws://"_s + trimmed);
}

bool isSessionUrl(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty()
        && (url.scheme() == u"ws"_s || url.scheme() == u"wss"_s);
}

// The kind of a session frame: the text after "{Session=" up to the next "}".
QString sessionKind(const QString &frame)
{
    const qsizetype start = SessionPrefix.size();
    const qsizetype end = frame.indexOf(u'}', start);
    return frame.mid(start, end < 0 ? -1 : end - start).toUpper();
}

QString logoutFrame(const QString &reason)
{
    QString frame = u"{Session=LOGOUT}"_s;
    AddVar(frame, u"Reason"_s, reason);
    return frame;
}
} // namespace

SessionOptions SessionOptions::parse(const QString &commandLine)
{
    SessionOptions options;
    const QStringList words = QProcess::splitCommand(commandLine);
    for (qsizetype i = 0; i < words.size(); ++i) {
        QString name = words.at(i);
        QString value;
        const qsizetype equals = name.indexOf(u'=');
        const bool inlineValue = name.startsWith(u"--"_s) && equals > 0;
        if (inlineValue) {
            value = name.mid(equals + 1);
            name = name.left(equals);
        }
        name = name.toLower();
        const auto takeValue = [&]() -> QString {
            if (inlineValue)
                return value;
            return i + 1 < words.size() ? words.at(++i) : QString();
        };
        if (name == u"--server"_s)
            options.server = serverUrlFromText(takeValue());
        else if (name == u"--user"_s)
            options.user = takeValue();
        else if (name == u"--ca"_s)
            options.caFile = takeValue();
        else if (name == u"--demo"_s)
            options.demo = true;
    }
    return options;
}

class usrSession::Private
{
public:
    explicit Private(usrSession *owner) : q(owner) {}

    void start();
    void beginLogIn(const QString &reason, bool forcePrompt);
    bool askCredentials(QString reason);
    bool usable() const;
    void connectNow();
    void onConnected();
    void onFrame(const QString &frame);
    void onReady(const QString &frame);
    void onServerLogout(const QString &frame);
    void onConnectionLost();
    void onLogInTimeout();
    void askAfterFirstFailure();
    void retry();
    void endWithLogout(const QString &frame);
    void send(const QString &frame);
    void setState(State next);
    void saveTypedCredentials();

    usrSession *q;
    QWebSocket socket;
    QTimer reconnectTimer;
    QTimer logInTimer; // from connecting until READY
    State state = State::Idle;
    SessionCredentials credentials;
    bool typedByUser = false;  // the credentials came from the prompt: remember server and user
    bool attemptLive = false;  // a connection attempt or connection whose loss is still unhandled
    bool expectClose = false;  // we (or the server's LOGOUT) close it: no reconnect
    bool everReady = false;    // READY came since StartSession: losses are reconnected quietly
    CredentialsPrompt prompt;
    GiveUpQuestion keepTrying;
    FirstConnectFailure firstFailure;
    TokenSource tokenSource;
    QStringList pending;
    QString appTitle;
    QList<QSslCertificate> trusted;
    int firstDelayMs = 250;
    int maxDelayMs = 5000;
    int attemptsBeforeAsking = 20;
    int nextDelayMs = 250;
    int failedAttempts = 0;
    QString lastFailure;
};

usrSession::usrSession(QObject *parent) : QObject(parent), d(std::make_unique<Private>(this))
{
    d->socket.setMaxAllowedIncomingFrameSize(MaxFrameBytes);
    d->socket.setMaxAllowedIncomingMessageSize(MaxFrameBytes);
    d->reconnectTimer.setSingleShot(true);
    connect(&d->reconnectTimer, &QTimer::timeout, this, [this] { d->retry(); });
    d->logInTimer.setSingleShot(true);
    d->logInTimer.setInterval(20000);
    connect(&d->logInTimer, &QTimer::timeout, this, [this] { d->onLogInTimeout(); });
    connect(&d->socket, &QWebSocket::connected, this, [this] { d->onConnected(); });
    connect(&d->socket, &QWebSocket::disconnected, this, [this] { d->onConnectionLost(); });
    connect(&d->socket, &QWebSocket::textMessageReceived, this, [this](const QString &frame) { d->onFrame(frame); });
    connect(&d->socket, &QWebSocket::binaryMessageReceived, this, [](const QByteArray &frame) {
        qCWarning(lcSession) << "ignored a binary frame of" << frame.size() << "bytes";
    });
    connect(&d->socket, qOverload<QAbstractSocket::SocketError>(&QWebSocket::error), this, [this](QAbstractSocket::SocketError) {
        d->lastFailure = d->socket.errorString();
        qCInfo(lcSession) << "connection error:" << d->lastFailure;
        if (d->socket.state() == QAbstractSocket::UnconnectedState)
            d->onConnectionLost();
    });
#ifndef QT_NO_SSL
    connect(&d->socket, &QWebSocket::sslErrors, this, [](const QList<QSslError> &errors) {
        for (const QSslError &error : errors)
            qCWarning(lcSession) << "TLS:" << error.errorString();
    });
#endif
}

usrSession::~usrSession()
{
    d->socket.disconnect(this);
    d->reconnectTimer.stop();
    d->socket.abort();
}

void usrSession::StartSession(const QString &appTitle, const QString &, const QString &, const QString &)
{
    d->appTitle = appTitle.isEmpty() ? appname : appTitle;
    d->start();
}

void usrSession::SendCommand(const QString &commandText)
{
    if (commandText.toUtf8().size() > MaxFrameBytes) {
        qCWarning(lcSession) << "refused to send a command of more than 16 MiB";
        return;
    }
    switch (d->state) {
    case State::Ready:
        d->send(commandText);
        break;
    case State::Closed:
        qCInfo(lcSession) << "command dropped: the session is closed";
        break;
    default:
        d->pending.append(commandText); // sent in order once the session is ready again
        break;
    }
}

void usrSession::CloseSession()
{
    d->expectClose = true;
    d->reconnectTimer.stop();
    d->logInTimer.stop();
    d->pending.clear();
    if (d->socket.state() != QAbstractSocket::UnconnectedState) {
        // The last writes (the main window's OK) must leave before the program ends.
        d->socket.flush();
        d->socket.close();
    }
    d->setState(State::Closed);
}

void usrSession::logOut(const QString &reason)
{
    if (d->state == State::Closed)
        return;
    qCInfo(lcSession) << "logged out by the user:" << reason;
    d->endWithLogout(logoutFrame(reason));
}

usrSession::State usrSession::state() const
{
    return d->state;
}

QUrl usrSession::server() const
{
    return d->credentials.server;
}

void usrSession::setCredentials(const SessionCredentials &credentials)
{
    d->credentials = credentials;
    d->typedByUser = false;
}

SessionCredentials usrSession::credentials() const
{
    return d->credentials;
}

void usrSession::setCredentialsPrompt(CredentialsPrompt prompt)
{
    d->prompt = std::move(prompt);
}

void usrSession::setKeepTryingQuestion(GiveUpQuestion question)
{
    d->keepTrying = std::move(question);
}

void usrSession::setFirstConnectFailure(FirstConnectFailure ask)
{
    d->firstFailure = std::move(ask);
}

SessionCredentials usrSession::savedCredentials()
{
    QSettings settings = sessionSettings();
    settings.beginGroup(u"Session"_s);
    SessionCredentials saved;
    saved.server = serverUrlFromText(settings.value(u"Server"_s).toString());
    saved.user = settings.value(u"User"_s).toString();
    return saved;
}

bool usrSession::serverConfigured(const QString &commandLine)
{
    return !SessionOptions::parse(commandLine).server.isEmpty() || !savedCredentials().server.isEmpty();
}

void usrSession::setTokenSource(TokenSource source)
{
    d->tokenSource = std::move(source);
}

void usrSession::setReconnectTiming(int firstDelayMs, int maxDelayMs, int attemptsBeforeAsking)
{
    d->firstDelayMs = qMax(1, firstDelayMs);
    d->maxDelayMs = qMax(d->firstDelayMs, maxDelayMs);
    d->attemptsBeforeAsking = attemptsBeforeAsking;
    d->nextDelayMs = d->firstDelayMs;
}

void usrSession::setLogInTimeout(int milliseconds)
{
    d->logInTimer.setInterval(qMax(1, milliseconds));
}

bool usrSession::setCaCertificateFile(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    const QList<QSslCertificate> certificates = QSslCertificate::fromData(file.readAll(), QSsl::Pem);
    if (certificates.isEmpty()) {
        if (error)
            *error = u"no PEM certificate in %1"_s.arg(path);
        return false;
    }
    d->trusted = certificates;
    return true;
}

// --- the session's work ---

void usrSession::Private::start()
{
    const SessionOptions options = SessionOptions::parse(q->command);
    const SessionCredentials saved = savedCredentials();
    if (credentials.server.isEmpty())
        credentials.server = !options.server.isEmpty() ? options.server : saved.server;
    if (credentials.user.isEmpty())
        credentials.user = !options.user.isEmpty() ? options.user : saved.user;
    if (!options.caFile.isEmpty()) {
        QString error;
        if (!q->setCaCertificateFile(options.caFile, &error))
            qCWarning(lcSession) << "--ca" << options.caFile << "not used:" << error;
    }
    expectClose = false;
    everReady = false;
    setState(State::Connecting);
    // Runs from the event loop: start-up returns first, and the prompt may open a modal dialog.
    QTimer::singleShot(0, q, [this] { beginLogIn({}, !q->autologin); });
}

bool usrSession::Private::usable() const
{
    if (!isSessionUrl(credentials.server))
        return false;
    if (tokenSource || !credentials.token.isEmpty())
        return true;
    return !credentials.user.isEmpty() && !credentials.password.isEmpty();
}

void usrSession::Private::beginLogIn(const QString &reason, bool forcePrompt)
{
    if (state == State::Closed)
        return;
    if ((forcePrompt || !usable()) && !askCredentials(reason)) {
        endWithLogout(logoutFrame(reason.isEmpty() ? u"Log-in cancelled"_s : reason));
        return;
    }
    connectNow();
}

bool usrSession::Private::askCredentials(QString reason)
{
    if (!prompt) {
        qCWarning(lcSession) << "no credentials for" << credentials.server.toDisplayString()
                             << "and no way to ask for them";
        return false;
    }
    for (;;) {
        SessionCredentials typed = credentials;
        if (!prompt(typed, reason))
            return false;
        typed.server = serverUrlFromText(typed.server.toString());
        if (!typed.password.isEmpty()) {
            // The user chose to log in by name and password: a token no longer applies.
            typed.token.clear();
            tokenSource = nullptr;
        }
        credentials = typed;
        typedByUser = true;
        if (usable())
            return true;
        reason = isSessionUrl(credentials.server) ? u"Enter the user name and password."_s
                                                  : u"Enter the server address as ws://host:port or wss://host:port."_s;
    }
}

void usrSession::Private::connectNow()
{
    if (state == State::Closed)
        return;
    if (state != State::Reconnecting)
        setState(State::Connecting);
    expectClose = false;
    attemptLive = true;
    qCInfo(lcSession) << "connecting to" << credentials.server.toDisplayString();
#ifndef QT_NO_SSL
    if (credentials.server.scheme() == u"wss"_s) {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        if (!trusted.isEmpty())
            configuration.addCaCertificates(trusted);
        socket.setSslConfiguration(configuration);
    }
#endif
    logInTimer.start();
    emit q->connecting(credentials.server);
    socket.open(QNetworkRequest(credentials.server));
}

void usrSession::Private::onConnected()
{
    setState(State::LoggingIn);
    QString frame = u"{Session=Login}"_s;
    const QString token = tokenSource ? tokenSource() : credentials.token;
    if (!token.isEmpty()) {
        AddVar(frame, u"Token"_s, token);
    } else {
        AddVar(frame, u"User"_s, credentials.user);
        AddVar(frame, u"Password"_s, credentials.password);
    }
    AddVar(frame, u"App"_s, appTitle);
    send(frame); // never logged: it holds the password
}

void usrSession::Private::onFrame(const QString &frame)
{
    if (!frame.startsWith(SessionPrefix)) {
        emit q->SessionEvent({}, u"MESSAGE"_s, frame);
        return;
    }
    const QString kind = sessionKind(frame);
    if (kind == u"LOGIN"_s)
        emit q->SessionEvent({}, kind, frame);
    else if (kind == u"READY"_s)
        onReady(frame);
    else if (kind == u"LOGOUT"_s)
        onServerLogout(frame);
    else
        qCInfo(lcSession) << "ignored session frame of kind" << kind;
}

void usrSession::Private::onReady(const QString &frame)
{
    logInTimer.stop();
    failedAttempts = 0;
    nextDelayMs = firstDelayMs;
    everReady = true;
    setState(State::Ready);
    saveTypedCredentials();
    // What was sent while the connection was down goes first, in order, before the reload.
    while (!pending.isEmpty() && state == State::Ready)
        send(pending.takeFirst());
    emit q->SessionEvent({}, u"READY"_s, frame);
}

void usrSession::Private::onServerLogout(const QString &frame)
{
    const QString reason = getText(frame, u"Reason"_s);
    qCInfo(lcSession) << "server logged the session out:" << reason;
    const bool rejectedAtLogIn = state == State::LoggingIn;
    logInTimer.stop();
    expectClose = true;
    attemptLive = false;
    socket.abort();
    if (!rejectedAtLogIn) {
        endWithLogout(frame);
        return;
    }
    // Bad credentials: ask again with the server's reason, from the event loop rather than from
    // inside the socket's signal.
    credentials.password.clear();
    QTimer::singleShot(0, q, [this, reason] { beginLogIn(reason, true); });
}

void usrSession::Private::onConnectionLost()
{
    if (!attemptLive)
        return;
    attemptLive = false;
    logInTimer.stop();
    if (expectClose || state == State::Closed)
        return;
    if (lastFailure.isEmpty())
        lastFailure = socket.closeReason().isEmpty() ? socket.errorString() : socket.closeReason();
    if (!everReady && firstFailure) {
        // A server never reached yet is most likely named wrongly or not running: the user decides
        // now rather than after minutes of silent retries. Asked from the event loop, not from
        // inside the socket's signal, since the answer may take a modal dialog.
        qCInfo(lcSession) << "could not connect (" << lastFailure << "); asking what to do";
        setState(State::Reconnecting);
        QTimer::singleShot(0, q, [this] { askAfterFirstFailure(); });
        return;
    }
    ++failedAttempts;
    qCInfo(lcSession) << "connection lost (" << lastFailure << "); retrying in" << nextDelayMs << "ms";
    setState(State::Reconnecting);
    reconnectTimer.start(nextDelayMs);
    nextDelayMs = qMin(nextDelayMs * 2, maxDelayMs);
}

void usrSession::Private::onLogInTimeout()
{
    if (!attemptLive || state == State::Ready)
        return;
    qCInfo(lcSession) << "no answer from" << credentials.server.toDisplayString() << "in time";
    lastFailure = u"The server did not answer in time."_s;
    socket.abort();
    onConnectionLost(); // does nothing when the abort has already reported the loss
}

void usrSession::Private::askAfterFirstFailure()
{
    if (state == State::Closed)
        return;
    const QString reason = lastFailure;
    lastFailure.clear();
    const ConnectChoice choice = firstFailure(reason);
    if (state == State::Closed) // closed while the question was open (the program is ending)
        return;
    qCInfo(lcSession) << "after the failed connection:" << choice;
    switch (choice) {
    case ConnectChoice::Retry:
        connectNow();
        break;
    case ConnectChoice::ChangeServer:
        beginLogIn(reason, true);
        break;
    case ConnectChoice::Quit:
        endWithLogout(logoutFrame(reason));
        break;
    }
}

void usrSession::Private::retry()
{
    if (state == State::Closed)
        return;
    if (keepTrying && attemptsBeforeAsking > 0 && failedAttempts >= attemptsBeforeAsking) {
        if (!keepTrying(lastFailure)) {
            endWithLogout(logoutFrame(lastFailure));
            return;
        }
        failedAttempts = 0;
    }
    lastFailure.clear();
    connectNow();
}

void usrSession::Private::endWithLogout(const QString &frame)
{
    expectClose = true;
    attemptLive = false;
    reconnectTimer.stop();
    logInTimer.stop();
    pending.clear();
    socket.abort();
    setState(State::Closed);
    emit q->SessionEvent({}, u"LOGOUT"_s, frame);
}

void usrSession::Private::send(const QString &frame)
{
    if (socket.sendTextMessage(frame) <= 0 && !frame.isEmpty())
        qCWarning(lcSession) << "a command could not be sent";
}

void usrSession::Private::setState(State next)
{
    if (state == next)
        return;
    state = next;
    qCInfo(lcSession) << "state" << next;
    emit q->stateChanged(next);
}

void usrSession::Private::saveTypedCredentials()
{
    if (!typedByUser)
        return;
    QSettings settings = sessionSettings();
    settings.beginGroup(u"Session"_s);
    settings.setValue(u"Server"_s, credentials.server.toString());
    settings.setValue(u"User"_s, credentials.user);
    typedByUser = false;
}
