// SPDX-License-Identifier: GPL-3.0-or-later
#include "translator.h"

#include "windowtexts.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>

#include <algorithm>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcPluginTranslate, "quill.plugins.translate", QtWarningMsg)

namespace {

constexpr char textsContext[] = "QSConfig";
constexpr char keysContext[] = "QSConfigKeys";
const QString applicationKey = u"QSConfig"_s;
const QString catalogue = u"quill"_s;
// Beside the tool's catalogue: the shipped plug-ins' dialogs, then Qt's own texts from Qt's folder.
const QString pluginsCatalogue = u"plugins"_s;
const QString qtCatalogue = u"qtbase"_s;

bool hasLetters(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isLetter(); });
}

} // namespace

QuillTranslator::QuillTranslator(QObject *parent) : QTranslator(parent) {}

QuillTranslator::~QuillTranslator()
{
    unload();
}

QStringList QuillTranslator::translationFolders()
{
    QStringList folders;
    // "translations" beside each plug-in folder: <appdir>/translations in the build tree.
    for (const QString &pluginFolder : PluginHost::searchFolders())
        folders << QDir::cleanPath(pluginFolder + u"/../translations"_s);
    if (QCoreApplication::instance()) {
        const QString appDir = QCoreApplication::applicationDirPath();
        folders << QDir::cleanPath(appDir + u"/translations"_s)
                << QDir::cleanPath(appDir + u"/../share/quillconfig/translations"_s);
    }
    folders.removeDuplicates();
    return folders;
}

bool QuillTranslator::TranslateLoad(const QString &appKey)
{
    unload();
    if (appKey.compare(applicationKey, Qt::CaseInsensitive) != 0)
        return false;
    // The default locale: the system's, unless the command line chose a language.
    const QLocale locale;
    if (locale.language() == QLocale::English || locale.language() == QLocale::C) {
        qCDebug(lcPluginTranslate) << "English needs no translation";
        return false;
    }
    QString folder;
    const QStringList folders = translationFolders();
    for (const QString &candidate : folders) {
        if (load(locale, catalogue, u"_"_s, candidate)) {
            folder = candidate;
            break;
        }
    }
    if (folder.isEmpty()) {
        qCInfo(lcPluginTranslate) << "no translation for" << locale.name() << "in" << folders;
        return false;
    }
    qCInfo(lcPluginTranslate) << "loaded" << filePath();

    const std::pair<QString, QString> companions[]{
        {pluginsCatalogue, folder}, {qtCatalogue, QLibraryInfo::path(QLibraryInfo::TranslationsPath)}};
    for (const auto &[name, companionFolder] : companions) {
        auto companion = std::make_unique<QTranslator>();
        if (companion->load(locale, name, u"_"_s, companionFolder))
            m_companions.push_back(std::move(companion));
    }
    if (QCoreApplication::instance()) {
        // Installed last is asked first: ours before Qt's own, so that our button texts win.
        for (auto it = m_companions.rbegin(); it != m_companions.rend(); ++it)
            QCoreApplication::installTranslator(it->get());
        QCoreApplication::installTranslator(this);
        m_installed = true;
    }
    return true;
}

void QuillTranslator::unload()
{
    // After the application object has gone, so have its translators.
    if (m_installed && QCoreApplication::instance()) {
        QCoreApplication::removeTranslator(this);
        for (const auto &companion : m_companions)
            QCoreApplication::removeTranslator(companion.get());
    }
    m_installed = false;
    m_companions.clear();
    m_given.clear();
    m_missed.clear();
    // A load drops what was loaded before; no data loads nothing in its place.
    if (!isEmpty() && load(nullptr, 0))
        qCWarning(lcPluginTranslate) << "empty data loaded a translation";
}

QString QuillTranslator::translated(const QString &key, const QString &text)
{
    const QByteArray source = text.toUtf8();
    QString found;
    if (!key.isEmpty())
        found = translate(keysContext, key.toUtf8().constData(), source.constData());
    if (found.isEmpty())
        found = translate(textsContext, source.constData());
    if (!found.isEmpty()) {
        m_given.insert(found);
        return found;
    }
    // A text translated once already (a caption the window set through Translate and that
    // TranslateWindow meets again) is no miss.
    if (!m_given.contains(text) && hasLetters(text) && !isEmpty()) {
        const QString missKey = key + u'\n' + text;
        if (!m_missed.contains(missKey)) {
            m_missed.insert(missKey);
            qCDebug(lcPluginTranslate).noquote()
                << "untranslated:" << (key.isEmpty() ? QString() : key + u' ') + text;
        }
    }
    return text;
}

QString QuillTranslator::Translate(const QString &key, const QString &text, const QString &p1,
                                   const QString &p2)
{
    QString result = translated(key, text);
    // As the layer fills them without a translator: "<1>" first, so a "<2>" brought in by p1 is filled too.
    result.replace(u"<1>"_s, p1);
    result.replace(u"<2>"_s, p2);
    return result;
}

void QuillTranslator::TranslateWindow(QObject *window)
{
    if (!window || isEmpty())
        return;
    translateWindowTexts(window, [this](const QString &text) { return translated(QString(), text); });
}
