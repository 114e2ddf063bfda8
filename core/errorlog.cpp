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

// The regional long time format without its time-zone part: the line carries the wall-clock time
// alone, and a zone name ("Central European Standard Time") would add blanks to the line.
QString timeFormatWithoutZone(const QString &format)
{
    QString result;
    bool quoted = false;
    for (const QChar c : format) {
        if (c == u'\'')
            quoted = !quoted;
        if (quoted || c != u't')
            result += c;
    }
    return result.simplified();
}

QString timestamp()
{
    // The regional short date and long time ("ddddd ttttt"). QLocale() follows the system's
    // regional settings unless the application chose a locale.
    const QLocale locale;
    const QDateTime now = QDateTime::currentDateTime();
    return locale.toString(now.date(), QLocale::ShortFormat) + u' '
        + locale.toString(now.time(), timeFormatWithoutZone(locale.timeFormat(QLocale::LongFormat)));
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

void write(const QString &message) noexcept
{
    try {
        if (isSilenced(message))
            return;
        QMutexLocker lock(&logMutex);
        writeLine(path(), message);
    } catch (...) {
        // The writer never adds a fault of its own.
    }
}

QString path()
{
    return overridePath.isEmpty() ? defaultPath() : overridePath;
}

void setPath(const QString &path)
{
    QMutexLocker lock(&logMutex);
    overridePath = path;
}

void setApplicationName(const QString &name)
{
    QMutexLocker lock(&logMutex);
    applicationName = name;
}

QString tail(qsizetype maxBytes)
{
    QMutexLocker lock(&logMutex);
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (file.size() > maxBytes) {
        // Start at a whole line: skip the rest of the line the cut falls into, unless the cut
        // falls exactly at the start of a line.
        char before = 0;
        file.seek(file.size() - maxBytes - 1);
        file.getChar(&before);
        if (before != '\n')
            file.readLine();
    }
    return QString::fromUtf8(file.readAll());
}

void clear()
{
    QMutexLocker lock(&logMutex);
    QFile::remove(path());
}

} // namespace ErrorLog
