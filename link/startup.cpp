// SPDX-License-Identifier: GPL-3.0-or-later
#include "startup.h"

#include "errorlog.h"
#include "serverlink.h"
#include "translate.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace Startup {

QString productName(const QString &executablePath)
{
    // The whole name, without folder or extension, in any case; both separators, since the name
    // may come from either kind of system.
    QString name = executablePath.section(u'/', -1).section(u'\\', -1);
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot > 0)
        name.truncate(dot);
    return name.compare(u"HLCONFIG"_s, Qt::CaseInsensitive) == 0 ? u"Halyard"_s : u"QuillServer"_s;
}

QString applicationTitle(const QString &productName)
{
    return productName + u" Configuration"_s;
}

QString windowTitle(const QString &productName)
{
    return Translate(QString(), u"<1> configuration"_s, productName);
}

QString lockFilePath()
{
    // One copy per user: the user's own runtime folder, not the temporary folder that every user
    // of the machine shares (there another user's running copy would stop this user's silently).
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return QDir(folder).filePath(u"quillconfig.lock"_s);
}

bool acquireSingleInstance(QLockFile &lock)
{
    lock.setStaleLockTime(0); // a copy that died leaves a stale lock, which is removed
    QDir().mkpath(QFileInfo(lock.fileName()).absolutePath());
    // Only a lock that another copy holds ends this one: a folder where no lock can be made at
    // all must not keep the tool from ever starting.
    return lock.tryLock(0) || lock.error() != QLockFile::LockFailedError;
}

QStringList initialLoadKeys()
{
    return {u"MAIN-EXTS"_s,     u"MAIN-PBX"_s,     u"MAIN-AB"_s,     u"MAIN-CAMPAIGNS"_s,
            u"MAIN-FEATURES"_s, u"MAIN-SCRIPTS"_s, u"MAIN-ROUTING"_s};
}

} // namespace Startup

SessionEvents::SessionEvents(ServerLink &link, QObject *parent) : QObject(parent), m_link(link) {}

void SessionEvents::Sess_SessionEvent(const QString &, const QString &kind, const QString &data)
{
    Guard(u" @ frmMain.Sess_SessionEvent: "_s, [&] {
        const QString k = kind.toUpper();
        if (k == u"LOGIN"_s)
            return;
        if (k == u"READY"_s) {
            m_link.setDeviceSort(u"Type"_s);
            for (const QString &key : Startup::initialLoadKeys())
                m_link.GetData(key);
            emit loadStarted();
        } else if (k == u"LOGOUT"_s) {
            emit logout();
        } else {
            m_link.HandleCallback(data);
        }
    });
}
