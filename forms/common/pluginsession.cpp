// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginsession.h"

#include "errorlog.h"
#include "pluginhost.h"
#include "tagvalue.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QWidget>

using namespace Qt::StringLiterals;

namespace PluginSession {

QString messageTitle()
{
    return applicationTitle() + u" Configuration"_s;
}

bool configure(Keeper &session, const QString &code, const QString &book, const QString &level, QString &vars,
               QWidget *parent, const QString &location)
{
    if (!session.object || session.code.compare(code, Qt::CaseInsensitive) != 0) {
        session.object = code.isEmpty() ? nullptr : CreateObject(u"plg"_s + code + u".Session"_s);
        session.code = code;
    }
    auto *plugin = qobject_cast<IPluginSession *>(session.object);
    if (!plugin) {
        ErrorLog::write(u"The plug-in '"_s + code + u"' of address book '"_s + book +
                        u"' is not installed"_s + location);
        TranslateMsgBox(
            u"Could not configure '<1>'. Please ensure the '<2>' plugin is installed on this machine."_s,
            QMessageBox::Ok, book, code, messageTitle());
        return false;
    }
    const QString reply = plugin->Configure(level, vars, parent);
    if (getText(reply, u"Result"_s).compare(u"FAIL"_s, Qt::CaseInsensitive) == 0) {
        if (level.compare(u"User"_s, Qt::CaseInsensitive) == 0)
            TranslateMsgBox(u"No user configuration available for '<1>'."_s, QMessageBox::Ok, book, {},
                            messageTitle());
        return false;
    }
    vars = reply;
    return true;
}

} // namespace PluginSession
