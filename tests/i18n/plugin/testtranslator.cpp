// SPDX-License-Identifier: GPL-3.0-or-later
#include "testtranslator.h"

#include <QHash>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {
const QHash<QString, QString> &table()
{
    static const QHash<QString, QString> german{
        {u"Extension"_s, u"Nebenstelle"_s},
        {u"extensions"_s, u"Nebenstellen"_s},
        {u"day"_s, u"Tag"_s},
        {u"days"_s, u"Tage"_s},
        {u"Name"_s, u"Bezeichnung"_s},
        {u"&General"_s, u"&Allgemein"_s},
        {u"Buttons"_s, u"Tasten"_s},
        {u"Device Properties"_s, u"Geraeteeigenschaften"_s},
        {u"<1> configuration"_s, u"Konfiguration von <1>"_s},
        {u"Delete <1> from <2>?"_s, u"<1> aus <2> loeschen?"_s},
    };
    return german;
}
} // namespace

bool TestTranslator::TranslateLoad(const QString &appKey)
{
    return appKey == u"QSConfig"_s;
}

QString TestTranslator::Translate(const QString &key, const QString &text, const QString &p1, const QString &p2)
{
    // Help texts are found by their key, everything else by its English text.
    QString translated = key == u"QS001"_s ? u"Hilfetext eins"_s : table().value(text, text);
    translated.replace(u"<1>"_s, p1);
    translated.replace(u"<2>"_s, p2);
    return translated;
}

void TestTranslator::TranslateWindow(QObject *window)
{
    translateProperty(window, "windowTitle");
    const QList<QObject *> children = window->findChildren<QObject *>();
    for (QObject *child : children) {
        translateProperty(child, "text");
        translateProperty(child, "title");
    }
}

void TestTranslator::translateProperty(QObject *object, const char *name)
{
    const QVariant value = object->property(name);
    if (value.typeId() == QMetaType::QString)
        object->setProperty(name, Translate(QString(), value.toString(), QString(), QString()));
}
