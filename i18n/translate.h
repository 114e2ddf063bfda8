// SPDX-License-Identifier: GPL-3.0-or-later
// The translation layer: every user-visible text passes through here, with or without a translator.
#pragma once

#include <QObject>
#include <QString>

// Creates the translator "plgTranslate.Translate" and keeps it only if it has a translation for
// appKey ("QSConfig"). A missing plug-in is not an error: texts then stay in English.
bool TranslateLoad(const QString &appKey);

// The translation of text without a key: the same as Translate({}, text).
QString Translate(const QString &text);
// The translation of text under key, with "<1>" replaced by p1 and then "<2>" by p2 (every
// occurrence, so a "<2>" inside p1 is filled as well). Text of only blanks gives empty text.
QString Translate(const QString &key, const QString &text, const QString &p1 = {}, const QString &p2 = {});

// "3 extensions": the count, a blank and the translated singular (count 1) or English plural.
QString TranslatePlural(qint64 count, const QString &word);

// The translator in use, nullptr when texts stay in English.
QObject *translator();
// Sets the translator directly (tests, or start-up with an object of its own); nullptr drops it.
// An object that does not implement ITranslator counts as none.
void setTranslator(QObject *translator);

// The application's title, shown where a message box has no title of its own: the title set by
// start-up, else the application's display name.
QString applicationTitle();
void setApplicationTitle(const QString &title);
