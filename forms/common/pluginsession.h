// SPDX-License-Identifier: GPL-3.0-or-later
// Running an address-book plug-in's own settings dialog from a window, with the messages a user
// sees when the plug-in is missing or has nothing to set at that level.
#pragma once

#include <QString>

class QObject;
class QWidget;

namespace PluginSession {

// The title of those messages: the application's title followed by " Configuration".
QString messageTitle();

// Configures book's plug-in of type code at level ("Data", "User") starting from vars. The new
// settings, or nothing when the plug-in is not installed ("Could not configure ..." is shown) or
// has no settings at that level ("No user configuration available ..." for "User"; silence else).
// session keeps the plug-in's session object for the caller's life: it is made on first use, and
// again when code is another type than it was made for. A missing plug-in is also written to the
// error log under location (" @ frmAB.Config_Click").
struct Keeper
{
    QObject *object = nullptr;
    QString code;
};
bool configure(Keeper &session, const QString &code, const QString &book, const QString &level, QString &vars,
               QWidget *parent, const QString &location);

} // namespace PluginSession
