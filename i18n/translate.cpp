// SPDX-License-Identifier: GPL-3.0-or-later
#include "translate.h"

#include <algorithm>

#include "errorlog.h"
#include "pluginhost.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPointer>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcTranslate, "quill.i18n.translate", QtInfoMsg)

namespace {

// The one program-wide translator. QPointer: a plug-in object that goes away leaves English behind.
QPointer<QObject> translatorObject;
QString titleSet; // by start-up

ITranslator *activeTranslator()
{
    return qobject_cast<ITranslator *>(translatorObject.data());
}

QString fillPlaceholders(QString text, const QString &p1, const QString &p2)
{
    text.replace(u"<1>"_s, p1);
    text.replace(u"<2>"_s, p2);
    return text;
}

// The English plural; the word is tested on its last letters without regard to case.
QString englishPlural(const QString &word)
{
    if (word.endsWith(u"ch"_s, Qt::CaseInsensitive))
        return word + u"es"_s;
    if (word.endsWith(u"ay"_s, Qt::CaseInsensitive) || word.endsWith(u"ey"_s, Qt::CaseInsensitive))
        return word + u's';
    if (word.endsWith(u'y', Qt::CaseInsensitive))
        return word.chopped(1) + u"ies"_s;
    return word + u's';
}

} // namespace

bool TranslateLoad(const QString &appKey)
{
    translatorObject = nullptr;
    bool loaded = false;
    Guard(u"  @  TranslateLoad"_s, [&] {
        QObject *object = CreateObject(u"plgTranslate.Translate"_s);
        auto *candidate = qobject_cast<ITranslator *>(object);
        if (!candidate) {
            qCDebug(lcTranslate) << "no translator installed; texts stay in English";
            return;
        }
        if (!candidate->TranslateLoad(appKey)) {
            qCDebug(lcTranslate) << "the translator has no translation for" << appKey;
            return;
        }
        translatorObject = object;
        loaded = true;
    });
    return loaded;
}

QString Translate(const QString &text)
{
    return Translate(QString(), text);
}

QString Translate(const QString &key, const QString &text, const QString &p1, const QString &p2)
{
    // Only blanks count as nothing: a tab or a line break is text the caller meant to show.
    if (std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c == u' '; }))
        return {};
    ITranslator *active = activeTranslator();
    if (!active)
        return fillPlaceholders(text, p1, p2);
    QString result;
    const bool translated = Guard(u"  @  Translate"_s, [&] { result = active->Translate(key, text, p1, p2); });
    return translated ? result : fillPlaceholders(text, p1, p2);
}

QString TranslatePlural(qint64 count, const QString &word)
{
    const QString prefix = QString::number(count) + u' ';
    QString result = prefix + word;
    Guard(u" @ TranslatePlural"_s, [&] {
        result = prefix + Translate(count == 1 ? word : englishPlural(word));
    });
    return result;
}

QObject *translator()
{
    return activeTranslator() ? translatorObject.data() : nullptr;
}

void setTranslator(QObject *object)
{
    translatorObject = qobject_cast<ITranslator *>(object) ? object : nullptr;
}

QString applicationTitle()
{
    if (!titleSet.isEmpty())
        return titleSet;
    // QGuiApplication's display name, read as a property so this layer needs QtCore only; it
    // falls back to the application name itself when no display name was set.
    if (const QCoreApplication *app = QCoreApplication::instance()) {
        const QString displayName = app->property("applicationDisplayName").toString();
        if (!displayName.isEmpty())
            return displayName;
    }
    return QCoreApplication::applicationName();
}

void setApplicationTitle(const QString &title)
{
    titleSet = title;
}
