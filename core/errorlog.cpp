// SPDX-License-Identifier: GPL-3.0-or-later
#include "errorlog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMutex>
#include <QStandardPaths>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
QMutex logMutex;
QString overridePath;
QString applicationName;

// Faults that are expected in normal operation and deliberately kept out of the log.
bool isSilenced(const QString &message)
{
    return message.contains(u"cannot be created because its designer window is open."_s)
        || message.contains(u"Address Family is not supported"_s);
}

QString defaultPath()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (dir.isEmpty())
        dir = QDir::homePath();
    return dir + u"/tamsel.log"_s;
}

QString appName()
{
    if (!applicationName.isEmpty())
        return applicationName;
    if (QCoreApplication::instance())
        return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    return u"quillconfig"_s;
}

QString timestamp()
{
    // The regional short date and long time, as the line format asks.
    const QLocale locale = QLocale::system();
    const QDateTime now = QDateTime::currentDateTime();
    return locale.toString(now.date(), QLocale::ShortFormat) + u' '
        + locale.toString(now.time(), QLocale::LongFormat);
}

void writeLine(const QString &path, const QString &message)
{
    QString pending; // the writer's own fault, reported on the line it could not prevent
    QFileInfo info(path);
    if (info.exists() && info.size() >= ErrorLog::MaxBytes) {
        QFile old(path);
        if (!old.remove())
            pending = old.errorString();
    }
    QDir().mkpath(info.absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return;
    const QString line = appName() + u" - "_s + timestamp() + u"   "_s + pending + u" @ "_s + message + u'\n';
    file.write(line.toUtf8());
    file.flush();
    ::fsync(file.handle());
}
} // namespace

namespace ErrorLog {

void Write(const QString &message) noexcept
{
    try {
        if (isSilenced(message))
            return;
        QMutexLocker lock(&logMutex);
        writeLine(Path(), message);
    } catch (...) {
        // The writer never adds a fault of its own.
    }
}

QString Path()
{
    return overridePath.isEmpty() ? defaultPath() : overridePath;
}

void SetPath(const QString &path)
{
    QMutexLocker lock(&logMutex);
    overridePath = path;
}

void SetApplicationName(const QString &name)
{
    QMutexLocker lock(&logMutex);
    applicationName = name;
}

QString Tail(qsizetype maxBytes)
{
    QMutexLocker lock(&logMutex);
    QFile file(Path());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > maxBytes) {
        file.seek(file.size() - maxBytes);
        file.readLine(); // start at a whole line
    }
    return QString::fromUtf8(file.readAll());
}

void Clear()
{
    QMutexLocker lock(&logMutex);
    QFile::remove(Path());
}

} // namespace ErrorLog
