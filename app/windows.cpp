// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows.h"

#include "Errors.h"
#include "frmMain.h"
#include "propertywindows.h"

#include <QPointer>

void registerWindows(frmMain &main, ServerLink &link)
{
    Q_UNUSED(link);
    PropertyWindows &windows = main.propertyWindows();

    // One Errors window at a time, beside the main window rather than over it.
    windows.setOpener(QString(frmMain::ErrorsWindow), [errors = QPointer<Errors>()](const QString &, QWidget *parent) mutable {
        if (!errors) {
            errors = new Errors(parent);
            errors->setAttribute(Qt::WA_DeleteOnClose);
        }
        errors->show();
        errors->raise();
        errors->activateWindow();
        return WindowResult::cancelled();
    });
}
