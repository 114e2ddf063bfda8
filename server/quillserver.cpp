// SPDX-License-Identifier: GPL-3.0-or-later
#include "quillserver.h"

#include "commands.h"
#include "credentials.h"
#include "demosite.h"
#include "serverlog.h"
#include "session.h"
#include "store.h"

#include <QFile>
#include <QMutexLocker>
#include <QPointer>
#include <QSslCertificate>
#include <QSslKey>
#include <QWebSocket>
#include <QWebSocketServer>

#include <utility>

Q_LOGGING_CATEGORY(lcServer, "quill.server.core")

using namespace Qt::StringLiterals;

namespace {
bool failWith(QString *error, const QString &message)
{
    if (error)
        *error = message;
    qCWarning(lcServer).noquote() << message;
    return false;
}

std::optional<QSslKey> readKey(const QString &keyFile)
{
    QFile file(keyFile);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray pem = file.readAll();
    for (const QSsl::KeyAlgorithm algorithm : {QSsl::Rsa, QSsl::Ec, QSsl::Dsa}) {
        QSslKey key(pem, algorithm, QSsl::Pem, QSsl::PrivateKey);
        if (!key.isNull())
            return key;
    }
    return std::nullopt;
}
} // namespace

QuillServer::QuillServer(QObject *parent)
    : QObject(parent), m_store(std::make_unique<Store>()),
      m_commands(std::make_unique<CommandProcessor>(*m_store))
{
    m_groupTimer.setSingleShot(true);
    m_groupTimer.setTimerType(Qt::PreciseTimer);
    m_groupTimer.setInterval(GroupCommitMs);
    connect(&m_groupTimer, &QTimer::timeout, this, &QuillServer::commitWrites);
}

QuillServer::~QuillServer()
{
    close();
}

bool QuillServer::open(const QString &dbFile, QString *error)
{
    QString why;
    if (!m_store->open(dbFile, &why))
        return failWith(error, u"cannot open the database: "_s + why);
    qCInfo(lcServer).noquote() << "database" << dbFile << "open";
    return true;
}

bool QuillServer::setTls(const QString &certFile, const QString &keyFile, QString *error)
{
    if (m_server)
        return failWith(error, u"TLS must be set before the server listens"_s);
    const QList<QSslCertificate> chain = QSslCertificate::fromPath(certFile, QSsl::Pem);
    if (chain.isEmpty())
        return failWith(error, u"no certificate in %1"_s.arg(certFile));
    const auto key = readKey(keyFile);
    if (!key)
        return failWith(error, u"no private key in %1"_s.arg(keyFile));
    m_tls = QSslConfiguration::defaultConfiguration();
    m_tls.setLocalCertificate(chain.first());
    if (chain.size() > 1)
        m_tls.setLocalCertificateChain(chain);
    m_tls.setPrivateKey(*key);
    m_tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    m_useTls = true;
    return true;
}

bool QuillServer::listen(const QHostAddress &address, quint16 port, QString *error)
{
    if (m_server)
        return failWith(error, u"the server is already listening"_s);
    m_server = new QWebSocketServer(
        u"QuillServer"_s, m_useTls ? QWebSocketServer::SecureMode : QWebSocketServer::NonSecureMode, this);
    if (m_useTls)
        m_server->setSslConfiguration(m_tls);
    connect(m_server, &QWebSocketServer::newConnection, this, [this] {
        while (m_server && m_server->hasPendingConnections()) {
            QWebSocket *socket = m_server->nextPendingConnection();
            if (!socket)
                break;
            auto *session = new Session(socket, *this);
            m_sessions.append(session);
            connect(session, &Session::ended, this, &QuillServer::sessionEnded);
        }
    });
    connect(m_server, &QWebSocketServer::serverError, this, [this](QWebSocketProtocol::CloseCode) {
        qCInfo(lcServer).noquote() << "a connection failed its handshake:" << m_server->errorString();
    });
    connect(m_server, &QWebSocketServer::sslErrors, this, [](const QList<QSslError> &errors) {
        qCInfo(lcServer).noquote() << "TLS handshake failed:"
                                   << (errors.isEmpty() ? QString() : errors.first().errorString());
    });
    if (!m_server->listen(address, port)) {
        const QString why = m_server->errorString();
        delete m_server;
        m_server = nullptr;
        return failWith(error, u"cannot listen on %1:%2: %3"_s.arg(address.toString()).arg(port).arg(why));
    }
    qCInfo(lcServer).noquote() << "listening on" << url().toString();
    return true;
}

quint16 QuillServer::port() const
{
    return m_server ? m_server->serverPort() : 0;
}

QUrl QuillServer::url() const
{
    if (!m_server)
        return {};
    QHostAddress host = m_server->serverAddress();
    if (host == QHostAddress::Any || host == QHostAddress::AnyIPv4 || host == QHostAddress::AnyIPv6 ||
        host.isNull())
        host = QHostAddress::LocalHost;
    QUrl url;
    url.setScheme(m_useTls ? u"wss"_s : u"ws"_s);
    url.setHost(host.toString());
    url.setPort(port());
    return url;
}

bool QuillServer::isEmpty() const
{
    return m_store->isOpen() && m_store->isEmpty();
}

void QuillServer::seedDemo()
{
    if (!m_store->isOpen()) {
        qCWarning(lcServer) << "no database is open; the demo site was not loaded";
        return;
    }
    commitWrites(); // the site goes in as one transaction of its own
    if (!isEmpty()) {
        qCInfo(lcServer) << "the database holds data; the demo site was not loaded";
        return;
    }
    QString why;
    if (DemoSite::seed(*m_store, &why))
        qCInfo(lcServer) << "demo site loaded";
    else
        qCWarning(lcServer).noquote() << "the demo site could not be loaded:" << why;
}

bool QuillServer::addUser(const QString &name, const QString &password)
{
    const QString user = name.trimmed();
    if (user.isEmpty() || password.isEmpty() || !m_store->isOpen())
        return false;
    const Account account = Credentials::hashPassword(password);
    commitWrites(); // the account goes in as one transaction of its own, on disk when this returns
    if (!m_store->begin())
        return false;
    if (!m_store->setAccount(user, account) || !m_store->commit()) {
        m_store->rollback();
        qCWarning(lcServer).noquote() << "cannot store the account" << user << ":" << m_store->lastError();
        return false;
    }
    qCInfo(lcServer).noquote() << "account" << user << "stored";
    return true;
}

QString QuillServer::createOneTimeToken()
{
    const QString token = Credentials::newToken();
    QMutexLocker lock(&m_tokenLock);
    m_tokens.append(token);
    return token;
}

void QuillServer::setLogInLimits(const LogInLimits &limits)
{
    m_logInGate.setLimits(limits);
}

bool QuillServer::acceptToken(const QString &token)
{
    const QByteArray offered = token.toUtf8();
    QMutexLocker lock(&m_tokenLock);
    qsizetype match = -1;
    for (qsizetype i = 0; i < m_tokens.size(); ++i) {
        if (Credentials::constantTimeEquals(m_tokens[i].toUtf8(), offered))
            match = i;
    }
    if (match < 0)
        return false;
    m_tokens.removeAt(match); // good for one log-in only
    return true;
}

std::optional<LogInGate::Answer> QuillServer::checkPassword(Session *session, const QString &user,
                                                            const QString &password, LogInGate::Done done)
{
    // The account is read here, in the thread the database belongs to; only the hashing moves.
    const QString name = user.trimmed();
    const auto account = name.isEmpty() || !m_store->isOpen() ? std::nullopt : m_store->account(name);
    const QString who = u"log-in of user \"%1\" from %2"_s.arg(user.left(40), session->peer());
    return m_logInGate.check(session->peerAddress(), account, password,
                             [this, session = QPointer<Session>(session), who,
                              done = std::move(done)](const LogInGate::Answer &answer) {
                                 if (session)
                                     done(answer);
                                 else if (answer.verdict == LogInGate::Verdict::Refused)
                                     refuse(who + u"; the client had gone"_s); // a guess all the same
                             });
}

QString QuillServer::execute(const QString &command)
{
    if (!m_store->isOpen()) {
        refuse(u"no database is open"_s);
        return {};
    }
    if (!m_store->inGroup() && m_store->beginGroup())
        m_groupTimer.start();
    const bool grouped = m_store->inGroup();
    const CommandOutcome outcome = m_commands->execute(command);
    if (!outcome.refusal.isEmpty())
        refuse(outcome.refusal);
    if (grouped && !m_store->inGroup())
        redoGroup();
    else if (grouped)
        m_group.append({command, outcome.refusal});
    if (outcome.reply.isEmpty()) {
        if (m_group.size() >= MaxGroupCommands)
            commitWrites();
        return {};
    }
    // A reply read what the group wrote; it goes out only once that is on disk.
    return commitWrites() ? outcome.reply : QString();
}

bool QuillServer::commitWrites()
{
    m_groupTimer.stop();
    const qsizetype commands = std::exchange(m_group, {}).size();
    if (!m_store->inGroup() || m_store->commitGroup())
        return true;
    groupLost(commands);
    return false;
}

void QuillServer::groupLost(qsizetype commands)
{
    refuse(u"storage failure: the %1 commands since the last commit were lost: %2"_s.arg(commands).arg(
        m_store->lastError()));
}

// Some failures (a full disk, an I/O error) make SQLite undo the whole transaction, not only the
// command that met them. The group's earlier commands are then run again, once, in a new group,
// so that the failing command alone is lost, as if each command had its own transaction.
void QuillServer::redoGroup()
{
    const QList<GroupedCommand> group = std::exchange(m_group, {});
    if (group.isEmpty())
        return;
    if (m_store->beginGroup()) {
        for (const GroupedCommand &grouped : group) {
            const CommandOutcome again = m_commands->execute(grouped.command);
            if (!m_store->inGroup())
                break;
            // What was refused the first time has been logged already.
            if (!again.refusal.isEmpty() && again.refusal != grouped.refusal)
                refuse(again.refusal);
            m_group.append(grouped);
        }
    }
    if (!m_store->inGroup()) {
        m_group.clear();
        groupLost(group.size());
        return;
    }
    m_groupTimer.start();
}

void QuillServer::refuse(const QString &reason)
{
    ++m_refusals;
    qCWarning(lcServer).noquote() << "refused:" << reason;
    emit refused(reason);
}

void QuillServer::sessionEnded(Session *session)
{
    m_sessions.removeOne(session);
    session->deleteLater();
}

void QuillServer::close()
{
    commitWrites();
    if (m_server) {
        m_server->close();
        delete m_server;
        m_server = nullptr;
    }
    m_logInGate.stop();
    const QList<Session *> sessions = m_sessions;
    m_sessions.clear();
    for (Session *session : sessions) {
        disconnect(session, nullptr, this, nullptr);
        session->abort();
        delete session;
    }
    if (m_store->isOpen()) {
        m_store->close();
        qCInfo(lcServer) << "database closed";
    }
}

int QuillServer::refusalCount() const
{
    return m_refusals;
}

int QuillServer::sessionCount() const
{
    return int(m_sessions.size());
}
