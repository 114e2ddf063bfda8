// SPDX-License-Identifier: GPL-3.0-or-later
// "plgCSV.Session": an address book read from a CSV file. The book's data settings choose the file
// and its name, company and number columns; an action looks a number up in the book. Users have
// no settings of their own.
#pragma once

#include "pluginhost.h"

#include <QObject>

class CsvPlugin : public QObject, public IPluginSession
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUILL_IPLUGINSESSION_IID FILE "csvplugin.json")
    Q_INTERFACES(IPluginSession)

public:
    // "Data": the file and its columns; "Action": the look-up a button or event runs; "User" and
    // anything else: "{Result=FAIL}". A cancelled dialog gives vars back unchanged.
    QString Configure(const QString &level, const QString &vars, QObject *parent) override;
};
