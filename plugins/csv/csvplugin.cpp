// SPDX-License-Identifier: GPL-3.0-or-later
#include "csvplugin.h"

#include "csvactiondialog.h"
#include "csvbookdialog.h"

#include <QWidget>

using namespace Qt::StringLiterals;

QString CsvPlugin::Configure(const QString &level, const QString &vars, QObject *parent)
{
    auto *owner = qobject_cast<QWidget *>(parent);
    if (level.compare(u"Data"_s, Qt::CaseInsensitive) == 0) {
        CsvBookDialog dialog(owner);
        dialog.loadVars(vars);
        return dialog.exec() == QDialog::Accepted ? dialog.vars(vars) : vars;
    }
    if (level.compare(u"Action"_s, Qt::CaseInsensitive) == 0) {
        CsvActionDialog dialog(owner);
        dialog.loadVars(vars);
        return dialog.exec() == QDialog::Accepted ? dialog.vars(vars) : vars;
    }
    return u"{Result=FAIL}"_s;
}
