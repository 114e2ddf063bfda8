// SPDX-License-Identifier: GPL-3.0-or-later
// "plgFolder.Session": an address book kept as a shared folder of contacts. The book's data
// settings choose the shared folder; each user's settings choose the user's own folder inside it.
// It offers no button actions.
#pragma once

#include "pluginhost.h"

#include <QObject>

class FolderPlugin : public QObject, public IPluginSession
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUILL_IPLUGINSESSION_IID FILE "folderplugin.json")
    Q_INTERFACES(IPluginSession)

public:
    // "Data": the shared folder; "User": the user's folder; "Action" and anything else:
    // "{Result=FAIL}". A cancelled dialog gives vars back unchanged.
    QString Configure(const QString &level, const QString &vars, QObject *parent) override;
};
