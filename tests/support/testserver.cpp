// SPDX-License-Identifier: GPL-3.0-or-later
#include "testserver.h"

#include <QDeadlineTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {
quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

bool runOnce(const QStringList &arguments, const QByteArray &input, QString *error)
{
    QProcess process;
    process.start(TestServer::executable(), arguments);
    if (!process.waitForStarted(10000)) {
        if (error)
            *error = process.errorString();
        return false;
    }
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(60000);
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        if (error)
            *error = QString::fromUtf8(process.readAllStandardError());
        return false;
    }
    return true;
}
} // namespace

TestServer::TestServer(bool seedDemo) : m_seedDemo(seedDemo)
{
    QObject::connect(&m_process, &QProcess::readyReadStandardError,
                     [this] { m_log += QString::fromUtf8(m_process.readAllStandardError()); });
}

TestServer::~TestServer()
{
    stop();
}

QString TestServer::executable()
{
    return qEnvironmentVariable("QUILL_BUILD_DIR") + u"/server/quillserverd"_s;
}

QString TestServer::databaseFile() const
{
    return m_dir.filePath(u"quill.sqlite"_s);
}

QUrl TestServer::url() const
{
    return QUrl(u"ws://127.0.0.1:%1"_s.arg(m_port));
}

bool TestServer::start(QString *error)
{
    QStringList setup{u"--db"_s, databaseFile(), u"--add-user"_s, user()};
    if (!runOnce(setup, password().toUtf8() + '\n', error))
        return false;
    m_port = freePort();
    return launch(error);
}

bool TestServer::restart(QString *error)
{
    stop();
    return launch(error);
}

bool TestServer::launch(QString *error)
{
    QStringList arguments{u"--listen"_s, u"127.0.0.1:%1"_s.arg(m_port), u"--db"_s, databaseFile()};
    if (m_seedDemo)
        arguments << u"--seed-demo"_s; // fills only an empty database, so every launch may ask
    m_process.start(executable(), arguments);
    if (!m_process.waitForStarted(10000)) {
        if (error)
            *error = m_process.errorString();
        return false;
    }
    const QDeadlineTimer deadline(15000);
    while (!deadline.hasExpired()) {
        QTcpSocket probe;
        probe.connectToHost(QHostAddress::LocalHost, m_port);
        if (probe.waitForConnected(200))
            return true;
        if (m_process.state() == QProcess::NotRunning)
            break;
        QThread::msleep(50);
    }
    if (error)
        *error = u"quillserverd did not start listening: "_s + m_log;
    return false;
}

void TestServer::kill()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished(5000);
}

void TestServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000))
        kill();
}
