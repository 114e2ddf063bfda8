// SPDX-License-Identifier: GPL-3.0-or-later
#include "folderplugin.h"

#include "folderbookdialog.h"
#include "folderuserdialog.h"

#include <QWidget>

using namespace Qt::StringLiterals;

QString FolderPlugin::Configure(const QString &level, const QString &vars, QObject *parent)
{
    auto *owner = qobject_cast<QWidget *>(parent);
    if (level.compare(u"Data"_s, Qt::CaseInsensitive) == 0) {
        FolderBookDialog dialog(owner);
        dialog.loadVars(vars);
        return dialog.exec() == QDialog::Accepted ? dialog.vars(vars) : vars;
    }
    if (level.compare(u"User"_s, Qt::CaseInsensitive) == 0) {
        FolderUserDialog dialog(owner);
        dialog.loadVars(vars);
        return dialog.exec() == QDialog::Accepted ? dialog.vars(vars) : vars;
    }
    return u"{Result=FAIL}"_s;
}
