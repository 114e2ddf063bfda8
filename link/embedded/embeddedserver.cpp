// SPDX-License-Identifier: GPL-3.0-or-later
#include "embeddedserver.h"

#include "quillserver.h"

#include <QDir>
#include <QFileInfo>
#include <QHostAddress>
#include <QLoggingCategory>
#include <QStandardPaths>

#include <memory>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcEmbedded, "quill.link.embedded", QtWarningMsg)

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

QString EmbeddedServer::defaultDatabasePath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).filePath(u"demo-site.sqlite"_s);
}

bool EmbeddedServer::start(QString *error)
{
    return start(defaultDatabasePath(), error);
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
    // The server is made, used and destroyed in its own thread; the context object runs work there.
    m_context = new QObject;
    m_context->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_context, &QObject::deleteLater);
    m_thread.start();

    QString failure;
    runIn(m_context, [this, &databaseFile, &failure] {
        auto server = std::make_unique<QuillServer>();
        if (!server->open(databaseFile, &failure))
            return;
        if (server->isEmpty())
            server->seedDemo(); // first use: the demo site
        if (!server->listen(QHostAddress::LocalHost, 0, &failure))
            return;
        m_url = server->url();
        m_server = server.release();
    });
    if (!m_server) {
        if (failure.isEmpty())
            failure = u"the embedded server did not start"_s;
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
    return m_server ? m_server->createOneTimeToken() : QString(); // safe from any thread
}

void EmbeddedServer::stop()
{
    if (m_server) {
        QuillServer *server = m_server;
        m_server = nullptr;
        runIn(m_context, [server] {
            server->close();
            delete server;
        });
    }
    m_context = nullptr; // deleted by its thread as the thread ends
    m_thread.quit();
    m_thread.wait();
    m_url.clear();
}
