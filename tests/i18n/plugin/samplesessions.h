// SPDX-License-Identifier: GPL-3.0-or-later
// A plug-in with two session classes behind one factory: "plgSample.Session" has settings for
// users only, "plgSampleAction.Session" for button actions only, "plgSampleData.Session" for a book's data source.
#pragma once

#include "pluginhost.h"

#include <QObject>

class SampleSession : public QObject, public IPluginSession
{
    Q_OBJECT
    Q_INTERFACES(IPluginSession)

public:
    SampleSession(const QString &level, QObject *parent) : QObject(parent), m_level(level) {}
    QString Configure(const QString &level, const QString &vars, QObject *parent) override;

private:
    QString m_level;
};

class SampleSessionFactory : public QObject, public IPluginFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUILL_IPLUGINFACTORY_IID FILE "samplesessions.json")
    Q_INTERFACES(IPluginFactory)

public:
    QObject *create(const QString &className) override;
};
