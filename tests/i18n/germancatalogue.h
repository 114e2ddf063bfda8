// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped German translation for the tests: loading it through the real plug-in, reading its
// catalogues, and the texts the translator reports it has no translation for.
#pragma once

#include "pluginhost.h"
#include "translate.h"

#include <QFile>
#include <QList>
#include <QLocale>
#include <QLoggingCategory>
#include <QStringList>
#include <QXmlStreamReader>

// One message of a Qt Linguist catalogue (.ts, or what lconvert makes of a .qm).
struct CatalogueMessage
{
    QString context;
    QString source;
    QString comment;      // tells two messages of one source apart
    QString extraComment; // the translator's note: for a help text, its English
    QString translation;
    bool unfinished = false;
};

inline QList<CatalogueMessage> readCatalogue(const QByteArray &xml)
{
    QList<CatalogueMessage> messages;
    QXmlStreamReader reader(xml);
    QString context;
    CatalogueMessage message;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = reader.name();
        if (name == u"name")
            context = reader.readElementText();
        else if (name == u"message")
            message = {context, {}, {}, {}, {}, false};
        else if (name == u"source")
            message.source = reader.readElementText();
        else if (name == u"comment")
            message.comment = reader.readElementText();
        else if (name == u"extracomment")
            message.extraComment = reader.readElementText();
        else if (name == u"translation") {
            message.unfinished = reader.attributes().value(QLatin1StringView("type")) == u"unfinished";
            message.translation = reader.readElementText();
            messages.append(message);
        }
    }
    return messages;
}

inline QList<CatalogueMessage> readCatalogueFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? readCatalogue(file.readAll()) : QList<CatalogueMessage>();
}

// The shipped translator, loaded as the tool loads it for a German user.
inline bool loadGermanTranslator()
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    qputenv("QUILL_PLUGIN_PATH", QUILL_APP_PLUGIN_DIR);
    PluginHost::forgetScan();
    return TranslateLoad(QStringLiteral("QSConfig"));
}

// Collects the texts the translator reports untranslated while it lives.
class TranslatorMisses
{
public:
    TranslatorMisses()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("quill.plugins.translate.debug=true"));
        s_misses.clear();
        s_previous = qInstallMessageHandler(&collect);
    }
    ~TranslatorMisses()
    {
        qInstallMessageHandler(s_previous);
        QLoggingCategory::setFilterRules(QString());
    }
    QStringList texts() const { return s_misses; }

private:
    static void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (qstrcmp(context.category, "quill.plugins.translate") == 0 &&
            message.startsWith(u"untranslated: "))
            s_misses.append(message.mid(14));
        else if (s_previous)
            s_previous(type, context, message);
    }
    static inline QStringList s_misses;
    static inline QtMessageHandler s_previous = nullptr;
};
