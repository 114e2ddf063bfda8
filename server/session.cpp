// SPDX-License-Identifier: GPL-3.0-or-later
#include "session.h"

#include "quillserver.h"
#include "serverlog.h"
#include "tagentries.h"
#include "tagvalue.h"

#include <QWebSocket>

using namespace Qt::StringLiterals;

namespace {

const QString sessionPrefix = u"{Session="_s;

// A top-level entry of a session frame (sized entries first, as GetVar prefers them).
QString frameTag(const QList<TagEntry> &entries, QStringView name)
{
    const TagEntry *plain = nullptr;
    for (const TagEntry &entry : entries) {
        if (entry.name.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        if (entry.sized)
            return entry.value;
        if (!plain)
            plain = &entry;
    }
    return plain ? plain->value : QString();
}

QString sessionKind(const QString &frame)
{
    const qsizetype close = frame.indexOf(u'}');
    return close < 0 ? QString() : frame.mid(sessionPrefix.size(), close - sessionPrefix.size()).trimmed();
}

} // namespace

Session::Session(QWebSocket *socket, QuillServer &server) : m_socket(socket), m_server(server)
{
    m_socket->setParent(this);
    m_socket->setMaxAllowedIncomingFrameSize(MaxFrameBytes);
    m_socket->setMaxAllowedIncomingMessageSize(MaxFrameBytes);
    m_peer = m_socket->peerAddress().toString() + u':' + QString::number(m_socket->peerPort());

    connect(m_socket, &QWebSocket::textMessageReceived, this, &Session::frameArrived);
    connect(m_socket, &QWebSocket::binaryMessageReceived, this, &Session::binaryArrived);
    connect(m_socket, &QWebSocket::disconnected, this, &Session::disconnected);

    m_logInTimer.setSingleShot(true);
    m_logInTimer.setInterval(LogInTimeoutMs);
    connect(&m_logInTimer, &QTimer::timeout, this, [this] {
        qCInfo(lcServer).noquote() << "no log-in from" << m_peer << "in time; connection closed";
        abort();
    });
    m_logInTimer.start();
}

Session::~Session() = default;

QString Session::peer() const
{
    return m_peer;
}

QHostAddress Session::peerAddress() const
{
    return m_socket->peerAddress();
}

void Session::abort()
{
    if (m_closing)
        return;
    close(QWebSocketProtocol::CloseCodeGoingAway);
}

void Session::refuseAndClose(const QString &reason)
{
    m_server.refuse(reason + u" from "_s + m_peer + u"; connection closed"_s);
    close(QWebSocketProtocol::CloseCodePolicyViolated);
}

void Session::close(QWebSocketProtocol::CloseCode code)
{
    m_closing = true;
    m_server.commitWrites();
    m_socket->close(code);
}

void Session::send(const QString &frame)
{
    // Nothing reaches a client, of this session or another, while writes made before it are not
    // on disk: whatever a client sees next proves that they are. (A command's reply has been
    // committed by execute() already; this covers the session frames.)
    m_server.commitWrites();
    m_socket->sendTextMessage(frame);
}

void Session::frameArrived(const QString &frame)
{
    if (m_closing)
        return;
    if (m_checking) {
        m_earlyChars += quint64(frame.size());
        if (m_earlyChars > MaxFrameBytes)
            refuseAndClose(u"over 16 MiB of frames while the log-in was checked"_s);
        else
            m_early.append(frame);
        return;
    }
    if (!m_loggedIn) {
        if (frame.startsWith(u"{Session=Login}"_s, Qt::CaseInsensitive))
            logIn(frame);
        else
            refuseAndClose(u"frame before log-in"_s);
        return;
    }
    if (frame.startsWith(sessionPrefix, Qt::CaseInsensitive)) {
        sessionFrame(frame);
        return;
    }
    const QString reply = m_server.execute(frame);
    if (reply.isEmpty())
        return;
    // The client refuses frames over the limit too: a reply that large would only cost it the
    // connection, again after every reconnect.
    if (quint64(reply.size()) * 3 > MaxFrameBytes && quint64(reply.toUtf8().size()) > MaxFrameBytes) {
        m_server.refuse(
            u"reply of %1 characters to %2 is over 16 MiB; not sent"_s.arg(reply.size()).arg(m_peer));
        return;
    }
    send(reply);
}

void Session::binaryArrived()
{
    if (m_closing)
        return;
    if (!m_loggedIn)
        refuseAndClose(u"binary frame before log-in"_s);
    else
        m_server.refuse(u"binary frame from "_s + m_peer + u" ignored"_s);
}

void Session::logIn(const QString &frame)
{
    const QList<TagEntry> entries = splitEntries(frame);
    const QString user = frameTag(entries, u"User");
    const QString token = frameTag(entries, u"Token");
    const QString app = frameTag(entries, u"App");
    if (!token.isEmpty()) {
        if (m_server.acceptToken(token))
            startServing(u"(token)"_s, app);
        else
            refuseLogIn(u"The log-in token is not valid"_s, u"log-in of a token"_s);
        return;
    }
    // The hash is slow on purpose: it is worked out elsewhere while this thread serves the others.
    m_checking = true;
    const auto answer = m_server.checkPassword(
        this, user, frameTag(entries, u"Password"),
        [this, user, app](const LogInGate::Answer &checked) { logInChecked(user, app, checked); });
    if (answer)
        logInChecked(user, app, *answer);
}

void Session::logInChecked(const QString &user, const QString &app, const LogInGate::Answer &answer)
{
    m_checking = false;
    if (m_closing) {
        m_early.clear();
        return;
    }
    const QString who = u"log-in of user \"%1\""_s.arg(user.left(40));
    switch (answer.verdict) {
    case LogInGate::Verdict::Accepted:
        startServing(user, app);
        return;
    case LogInGate::Verdict::Refused:
        refuseLogIn(u"Unknown user or wrong password"_s, who);
        return;
    case LogInGate::Verdict::HeldOff:
        refuseLogIn(
            u"Too many failed log-ins from this address; try again in %1 s"_s.arg(answer.retryAfter.count()),
            who + u" held off after failed log-ins"_s);
        return;
    case LogInGate::Verdict::Busy:
        refuseLogIn(u"Too many log-ins at once; try again shortly"_s,
                    who + u" with too many log-ins at once"_s);
        return;
    }
}

void Session::startServing(const QString &user, const QString &app)
{
    m_loggedIn = true;
    m_logInTimer.stop();
    m_user = user;
    qCInfo(lcServer).noquote() << "session of" << m_user << "from" << m_peer << "opened"
                               << (app.isEmpty() ? QString() : u"by "_s + app.left(60));
    send(u"{Session=LOGIN}"_s);
    send(u"{Session=READY}"_s);
    const QStringList early = std::exchange(m_early, {});
    m_earlyChars = 0;
    for (const QString &frame : early) {
        if (m_closing)
            break;
        frameArrived(frame);
    }
}

void Session::refuseLogIn(const QString &reason, const QString &what)
{
    m_early.clear();
    QString logout = u"{Session=LOGOUT}"_s;
    AddVar(logout, u"Reason"_s, reason);
    send(logout);
    m_socket->flush();
    refuseAndClose(what);
}

void Session::sessionFrame(const QString &frame)
{
    const QString kind = sessionKind(frame);
    if (kind.compare(u"Logout", Qt::CaseInsensitive) == 0) {
        qCInfo(lcServer).noquote() << "session of" << m_user << "from" << m_peer << "logged out";
        abort();
        return;
    }
    m_server.refuse(u"session frame \"%1\" from %2 ignored"_s.arg(kind.left(30), m_peer));
}

void Session::disconnected()
{
    if (m_loggedIn)
        qCInfo(lcServer).noquote() << "session of" << m_user << "from" << m_peer << "closed";
    // Closes that the WebSocket layer made itself because of what the client sent.
    switch (m_socket->closeCode()) {
    case QWebSocketProtocol::CloseCodeTooMuchData:
        m_server.refuse(u"frame over 16 MiB from "_s + m_peer + u"; connection closed"_s);
        break;
    case QWebSocketProtocol::CloseCodeWrongDatatype:
    case QWebSocketProtocol::CloseCodeProtocolError:
        if (!m_closing)
            m_server.refuse(u"bad frame from "_s + m_peer + u" ("_s + m_socket->closeReason().left(60) +
                            u"); connection closed"_s);
        break;
    default:
        break;
    }
    emit ended(this);
}
