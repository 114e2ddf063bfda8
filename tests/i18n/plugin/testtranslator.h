// SPDX-License-Identifier: GPL-3.0-or-later
// A translator into German by a small fixed table, loaded for the application key "QSConfig" only.
#pragma once

#include "pluginhost.h"

#include <QObject>

class TestTranslator : public QObject, public ITranslator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUILL_ITRANSLATOR_IID FILE "testtranslator.json")
    Q_INTERFACES(ITranslator)

public:
    bool TranslateLoad(const QString &appKey) override;
    QString Translate(const QString &key, const QString &text, const QString &p1, const QString &p2) override;
    void TranslateWindow(QObject *window) override;

private:
    void translateProperty(QObject *object, const char *name);
};
