// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of the main window's pages.
#include "screenshots.h"

#include "frmMain.h"
#include "tips.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QPointer>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace {
QString fileName(int page)
{
    QString name = Tips::pageNames().value(page).toLower();
    name.replace(u' ', u'-');
    return u"page-%1-%2.png"_s.arg(page).arg(name);
}
} // namespace

QStringList savePageScreenshots(frmMain &window, const QString &dir, QString *error)
{
    QStringList files;
    auto *tabs = window.findChild<QTabWidget *>(u"Tabs"_s);
    if (!tabs || !QDir().mkpath(dir)) {
        if (error)
            *error = u"cannot write pictures into "_s + dir;
        return files;
    }
    if (!window.isVisible())
        window.show();
    const int selected = tabs->currentIndex();
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        // Let the layouts settle on the page just shown before it is painted.
        QCoreApplication::processEvents();
        const QString path = QDir(dir).filePath(fileName(page));
        if (window.grab().save(path)) {
            files << path;
        } else if (error) {
            *error = u"cannot write "_s + path;
        }
    }
    tabs->setCurrentIndex(selected);
    return files;
}

void savePageScreenshotsWhenLoaded(frmMain &window, const QString &dir,
                                   std::function<void(const QStringList &files)> done)
{
    auto save = [target = QPointer<frmMain>(&window), dir, done] {
        const QStringList files = target ? savePageScreenshots(*target, dir) : QStringList();
        if (done)
            done(files);
    };
    if (window.isLoaded()) {
        save();
        return;
    }
    QObject::connect(&window, &frmMain::loaded, &window, save, Qt::SingleShotConnection);
}
