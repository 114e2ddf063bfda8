// SPDX-License-Identifier: GPL-3.0-or-later
// The shipped translator "plgTranslate.Translate": Qt Linguist translations behind ITranslator.
#pragma once

#include "pluginhost.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QTranslator>

#include <memory>
#include <vector>

// The translation files are named quill_<language>.qm and hold two contexts:
//  - "QSConfig": every text of the tool, its source the English text as the program writes it
//    (accelerators and placeholders "<1>", "<2>" included);
//  - "QSConfigKeys": the help texts, their source the key ("QS001") and their English text as a
//    translator's note. Where one key stands for two texts that need different German, the second
//    is an entry of its own whose disambiguation is its English text.
// A keyed text is looked up by key and English text first, then by the key alone, then by the English
// text in "QSConfig"; a text without a translation stays English and is reported once.
//
// The translator also carries Qt's own button texts (context "QPlatformTheme") and is installed as
// an application translator when loaded, so that message-box buttons and plug-in dialogs using tr()
// are translated too. Translations of the shipped plug-ins' dialogs (plugins_<language>.qm) and
// Qt's own (qtbase_<language>.qm), where present, are installed beside it.
class QuillTranslator : public QTranslator, public ITranslator
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUILL_ITRANSLATOR_IID FILE "plgtranslate.json")
    Q_INTERFACES(ITranslator)

public:
    explicit QuillTranslator(QObject *parent = nullptr);
    ~QuillTranslator() override;

    // Loads the translation of the default locale's language (QLocale()) for "QSConfig"; false for
    // English, for another application key, or when no translation file is found.
    bool TranslateLoad(const QString &appKey) override;
    QString Translate(const QString &key, const QString &text, const QString &p1, const QString &p2) override;
    // Translates the window's title and its controls' captions, tips, placeholders, tab captions and
    // list headings, as they stand: windows call this before they fill in their data.
    void TranslateWindow(QObject *window) override;

    // The folders searched for quill_<language>.qm, in order.
    static QStringList translationFolders();

private:
    // The translation of text (by key first), or text itself; placeholders are left as they are.
    QString translated(const QString &key, const QString &text);
    void unload();

    std::vector<std::unique_ptr<QTranslator>> m_companions; // plug-in dialogs and Qt's own texts
    QSet<QString> m_given;                                  // translations handed out: already translated
    QSet<QString> m_missed;                                 // reported once each
    bool m_installed = false;
};
