// SPDX-License-Identifier: GPL-3.0-or-later
#include "serverprocess.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

ServerProcess::ServerProcess(const QString &dbFile)
    : m_db(dbFile.isEmpty() ? m_dir.filePath(u"server.sqlite"_s) : dbFile)
{
    m_process.setProgram(executable());
    QObject::connect(&m_process, &QProcess::readyReadStandardError,
                     [this] { m_stderr += m_process.readAllStandardError(); });
}

ServerProcess::~ServerProcess()
{
    if (isRunning())
        kill();
}

QString ServerProcess::executable()
{
    return qEnvironmentVariable("QUILL_BUILD_DIR") + u"/server/quillserverd"_s;
}

int ServerProcess::runToEnd(const QStringList &arguments, const QByteArray &stdinText, QString *output)
{
    QProcess process;
    process.start(executable(), arguments);
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
    QString output;
    const bool added =
        runToEnd({u"--db"_s, m_db, u"--add-user"_s, name}, password.toUtf8() + '\n', &output) == 0;
    m_stderr = output.toUtf8();
    return added;
}

bool ServerProcess::start(const QStringList &extraArguments)
{
    m_extraArguments = extraArguments;
    m_stderr.clear();
    m_url.clear();
    m_process.setArguments(QStringList{u"--db"_s, m_db, u"--listen"_s, u"127.0.0.1:%1"_s.arg(m_port)} +
                           extraArguments);
    m_process.start();
    if (!m_process.waitForStarted(10000))
        return false;
    static const QRegularExpression listening(u"listening on (wss?://[^\\s]+)"_s);
    const bool listens = QTest::qWaitFor(
        [&] {
            const auto match = listening.match(QString::fromUtf8(m_stderr));
            if (match.hasMatch())
                m_url = QUrl(match.captured(1));
            return m_url.isValid() || m_process.state() == QProcess::NotRunning;
        },
        15000);
    if (!listens || !m_url.isValid())
        return false;
    m_port = m_url.port();
    return true;
}

bool ServerProcess::restart()
{
    stop();
    return start(m_extraArguments);
}

bool ServerProcess::stop()
{
    if (!isRunning())
        return false;
    m_process.terminate();
    if (!m_process.waitForFinished(10000)) {
        kill();
        return false;
    }
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
