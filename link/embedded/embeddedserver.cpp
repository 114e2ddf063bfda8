// SPDX-License-Identifier: GPL-3.0-or-later
#include "embeddedserver.h"

#include "quillserver.h"

#include <QDir>
#include <QFileInfo>
#include <QHostAddress>
#include <QLoggingCategory>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcEmbedded, "quill.link.embedded")

namespace {
// Runs work in the server's thread and waits for it: the server and its database connection
// belong to that thread.
template <typename Work>
void runIn(QObject *context, Work &&work)
{
    QMetaObject::invokeMethod(context, std::forward<Work>(work), Qt::BlockingQueuedConnection);
}
} // namespace

EmbeddedServer::EmbeddedServer()
{
    m_thread.setObjectName(u"QuillServer"_s);
}

EmbeddedServer::~EmbeddedServer()
{
    stop();
}

QString EmbeddedServer::DefaultDatabasePath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).filePath(u"demo-site.sqlite"_s);
}

bool EmbeddedServer::start(QString *error)
{
    return start(DefaultDatabasePath(), error);
}

bool EmbeddedServer::start(const QString &databaseFile, QString *error)
{
    if (m_server)
        return true;
    if (!QDir().mkpath(QFileInfo(databaseFile).absolutePath())) {
        if (error)
            *error = u"cannot create the folder of %1"_s.arg(databaseFile);
        return false;
    }
    m_server = new QuillServer;
    m_server->moveToThread(&m_thread);
    m_thread.start();

    QString failure;
    runIn(m_server, [this, &databaseFile, &failure] {
        if (!m_server->open(databaseFile)) {
            failure = u"cannot open the database %1"_s.arg(databaseFile);
            return;
        }
        if (m_server->isEmpty())
            m_server->seedDemo(); // first use: the demo site
        if (!m_server->listen(QHostAddress::LocalHost, 0)) {
            failure = u"cannot listen on 127.0.0.1"_s;
            return;
        }
        m_url = m_server->url();
    });
    if (!failure.isEmpty()) {
        qCWarning(lcEmbedded) << failure;
        if (error)
            *error = failure;
        stop();
        return false;
    }
    qCInfo(lcEmbedded) << "embedded server at" << m_url.toDisplayString() << "on" << databaseFile;
    return true;
}

QString EmbeddedServer::createToken()
{
    if (!m_server)
        return {};
    QString token;
    runIn(m_server, [this, &token] { token = m_server->createOneTimeToken(); });
    return token;
}

void EmbeddedServer::stop()
{
    if (m_server) {
        QuillServer *server = m_server;
        m_server = nullptr;
        runIn(server, [server] { server->close(); });
        // Deleted by its own thread as that thread ends, with its sockets and database connection.
        QObject::connect(&m_thread, &QThread::finished, server, &QObject::deleteLater);
    }
    m_thread.quit();
    m_thread.wait();
    m_url.clear();
}
