// SPDX-License-Identifier: GPL-3.0-or-later
#include "serverharness.h"

#include "tagvalue.h"

#include <QEventLoop>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

ServerProcess::ServerProcess(const QString &dbFile)
    : m_db(dbFile.isEmpty() ? m_dir.filePath(u"server.sqlite"_s) : dbFile)
{
    m_process.setProgram(Executable());
    QObject::connect(&m_process, &QProcess::readyReadStandardError,
                     [this] { m_stderr += m_process.readAllStandardError(); });
}

ServerProcess::~ServerProcess()
{
    if (isRunning())
        kill();
}

QString ServerProcess::Executable()
{
    return qEnvironmentVariable("QUILL_BUILD_DIR") + u"/server/quillserverd"_s;
}

int ServerProcess::RunToEnd(const QStringList &arguments, const QByteArray &stdinText, QString *output)
{
    QProcess process;
    process.start(Executable(), arguments);
    if (!process.waitForStarted(10000))
        return -1;
    process.write(stdinText);
    process.closeWriteChannel();
    if (!process.waitForFinished(30000))
        return -1;
    if (output)
        *output = QString::fromUtf8(process.readAllStandardError());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

bool ServerProcess::addUser(const QString &name, const QString &password)
{
    return RunToEnd({u"--db"_s, m_db, u"--add-user"_s, name}, password.toUtf8() + '\n') == 0;
}

bool ServerProcess::start(const QStringList &extraArguments)
{
    m_stderr.clear();
    m_url.clear();
    m_process.setArguments(QStringList{u"--db"_s, m_db, u"--listen"_s, u"127.0.0.1:0"_s} + extraArguments);
    m_process.start();
    if (!m_process.waitForStarted(10000))
        return false;
    static const QRegularExpression listening(u"listening on (wss?://[^\\s]+)"_s);
    const bool up = QTest::qWaitFor(
        [&] {
            const auto match = listening.match(QString::fromUtf8(m_stderr));
            if (match.hasMatch())
                m_url = QUrl(match.captured(1));
            return m_url.isValid() || m_process.state() == QProcess::NotRunning;
        },
        15000);
    return up && m_url.isValid();
}

bool ServerProcess::stop()
{
    if (!isRunning())
        return false;
    m_process.terminate();
    if (!m_process.waitForFinished(10000))
        return false;
    m_stderr += m_process.readAllStandardError();
    return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

void ServerProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(10000);
}

bool ServerProcess::isRunning() const
{
    return m_process.state() == QProcess::Running;
}

QString ServerProcess::log()
{
    m_stderr += m_process.readAllStandardError();
    return QString::fromUtf8(m_stderr);
}

int ServerProcess::refusalLines()
{
    int count = 0;
    const QStringList lines = log().split(u'\n');
    for (const QString &line : lines) {
        if (line.contains(u"quill.server"_s) && line.contains(u"refused:"_s))
            ++count;
    }
    return count;
}

RawClient::RawClient()
{
    m_socket.setMaxAllowedIncomingFrameSize(64 * 1024 * 1024);
    m_socket.setMaxAllowedIncomingMessageSize(64 * 1024 * 1024);
    connect(&m_socket, &QWebSocket::textMessageReceived, this,
            [this](const QString &frame) { m_frames.append(frame); });
    connect(&m_socket, &QWebSocket::disconnected, this, [this] { m_closed = true; });
}

bool RawClient::open(const QUrl &url, int timeoutMs)
{
    m_closed = false;
    m_socket.open(url);
    return QTest::qWaitFor([&] { return m_socket.state() == QAbstractSocket::ConnectedState || m_closed; },
                           timeoutMs) &&
           m_socket.state() == QAbstractSocket::ConnectedState;
}

bool RawClient::logIn(const QString &user, const QString &password)
{
    QString frame = u"{Session=Login}"_s;
    AddVar(frame, u"User"_s, user);
    AddVar(frame, u"Password"_s, password);
    AddVar(frame, u"App"_s, u"QuillServer Configuration"_s);
    send(frame);
    return next() == u"{Session=LOGIN}"_s && next() == u"{Session=READY}"_s;
}

bool RawClient::logInWithToken(const QString &token)
{
    QString frame = u"{Session=Login}"_s;
    AddVar(frame, u"Token"_s, token);
    AddVar(frame, u"App"_s, u"QuillServer Configuration"_s);
    send(frame);
    return next() == u"{Session=LOGIN}"_s && next() == u"{Session=READY}"_s;
}

void RawClient::send(const QString &frame)
{
    m_socket.sendTextMessage(frame);
}

void RawClient::sendBinary(const QByteArray &bytes)
{
    m_socket.sendBinaryMessage(bytes);
}

std::optional<QString> RawClient::next(int timeoutMs)
{
    if (m_frames.isEmpty() && !m_closed) {
        // An event loop that ends on the frame itself: no polling delay per request.
        QEventLoop loop;
        QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
        const auto arrived = connect(&m_socket, &QWebSocket::textMessageReceived, &loop, &QEventLoop::quit,
                                     Qt::QueuedConnection);
        const auto closed =
            connect(&m_socket, &QWebSocket::disconnected, &loop, &QEventLoop::quit, Qt::QueuedConnection);
        loop.exec();
        disconnect(arrived);
        disconnect(closed);
    }
    if (m_frames.isEmpty())
        return std::nullopt;
    return m_frames.takeFirst();
}

QString RawClient::request(const QString &command)
{
    send(command);
    return next().value_or(QString());
}

bool RawClient::sync()
{
    send(u"{Cmd=Ping}{Handler=Branch}"_s);
    while (const auto frame = next()) {
        if (*frame == u"{Cmd=PINGECHO}"_s)
            return true;
    }
    return false;
}

bool RawClient::waitClosed(int timeoutMs)
{
    return QTest::qWaitFor([&] { return m_closed; }, timeoutMs);
}
