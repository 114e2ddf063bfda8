// SPDX-License-Identifier: GPL-3.0-or-later
#include "pluginhost.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QLoggingCategory>
#include <QPluginLoader>
#include <QSet>
#include <QSettings>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcPluginHost, "quill.plugins.host", QtInfoMsg)

namespace {

struct ProvidedClass
{
    QString file;
    QString className; // as the plug-in spells it
};

// Class names are looked up case-insensitively, as automation class names always were.
using ClassIndex = QHash<QString, ProvidedClass>;

// A plug-in file and the metadata it declares, read without loading it.
struct ScannedFile
{
    QString path;
    QJsonObject metaData; // the plug-in's own "MetaData" object
};

struct ScanCache
{
    bool done = false;
    QList<ScannedFile> files; // in the order of the search folders, then by name
    ClassIndex classes;
};

ScanCache &cache()
{
    static ScanCache instance;
    return instance;
}

QStringList classesOf(const QJsonObject &metaData)
{
    QStringList names;
    const QJsonArray classes = metaData.value(u"classes"_s).toArray();
    for (const QJsonValue &entry : classes) {
        if (entry.isString() && !entry.toString().isEmpty())
            names.append(entry.toString());
    }
    return names;
}

// The libraries in folder, by name.
QStringList libraryFiles(const QString &folder)
{
    QStringList libraries;
    const QDir dir(folder);
    const QStringList files = dir.entryList(QDir::Files | QDir::Readable, QDir::Name);
    for (const QString &name : files) {
        const QString path = dir.absoluteFilePath(name);
        if (QLibrary::isLibrary(path))
            libraries.append(path);
    }
    return libraries;
}

// Reads each plug-in's metadata once, without loading it; the first folder to provide a class wins.
// Start-up's registration of the shipped plug-ins and CreateObject share this one scan.
const ScanCache &scan()
{
    ScanCache &scanned = cache();
    if (scanned.done)
        return scanned;
    for (const QString &folder : PluginHost::searchFolders()) {
        const QStringList files = libraryFiles(folder);
        for (const QString &path : files) {
            const ScannedFile file{path, QPluginLoader(path).metaData().value(u"MetaData"_s).toObject()};
            scanned.files.append(file);
            const QStringList names = classesOf(file.metaData);
            for (const QString &className : names) {
                const QString key = className.toCaseFolded();
                if (!scanned.classes.contains(key))
                    scanned.classes.insert(key, {path, className});
            }
            if (!names.isEmpty())
                qCDebug(lcPluginHost) << path << "provides" << names;
        }
    }
    scanned.done = true;
    return scanned;
}

} // namespace

namespace PluginHost {

QList<std::pair<QString, QString>> installedPlugins()
{
    QList<std::pair<QString, QString>> plugins;
    QSet<QString> seen;
    for (const QStringView organisation : {OrganisationName, FormerOrganisationName}) {
        QSettings settings(organisation.toString());
        settings.beginGroup(PluginsGroup.toString());
        const QStringList codes = settings.childKeys();
        for (const QString &code : codes) {
            if (!seen.contains(code.toUpper()))
                plugins.append({code, settings.value(code).toString()});
            seen.insert(code.toUpper());
        }
    }
    return plugins;
}

QStringList searchFolders()
{
    QStringList folders;
    if (QCoreApplication::instance())
        folders.append(QCoreApplication::applicationDirPath() + u"/plugins"_s);
    const QString extra = qEnvironmentVariable("QUILL_PLUGIN_PATH");
    const QStringList extraFolders = extra.split(QDir::listSeparator(), Qt::SkipEmptyParts);
    for (const QString &folder : extraFolders)
        folders.append(folder);
    return folders;
}

QStringList registerShippedPlugins()
{
    // Every code listed, added before, or already met in an earlier folder, in upper case.
    QSet<QString> known;
    for (const auto &[code, name] : installedPlugins())
        known.insert(code.toUpper());
    QSettings settings(OrganisationName.toString());
    settings.beginGroup(RegisteredGroup.toString());
    const QStringList registeredBefore = settings.childKeys();
    settings.endGroup();
    for (const QString &code : registeredBefore)
        known.insert(code.toUpper());

    QStringList added;
    for (const ScannedFile &file : scan().files) {
        const QJsonObject book = file.metaData.value(u"addressBook"_s).toObject();
        const QString code = book.value(u"code"_s).toString().trimmed();
        // A settings key cannot hold a slash: such a code could never be looked up again.
        if (code.isEmpty() || code.contains(u'/') || code.contains(u'\\') || known.contains(code.toUpper()))
            continue;
        const QString name = book.value(u"name"_s).toString().trimmed();
        const QString shown = name.isEmpty() ? code : name;
        settings.setValue(PluginsGroup.toString() + u'/' + code, shown);
        settings.setValue(RegisteredGroup.toString() + u'/' + code, shown);
        known.insert(code.toUpper());
        added.append(code);
        qCInfo(lcPluginHost) << "registered the address book" << code << "of" << file.path;
    }
    return added;
}

void forgetScan()
{
    cache() = {};
}

} // namespace PluginHost

QObject *CreateObject(const QString &className)
{
    const auto found = scan().classes.constFind(className.toCaseFolded());
    if (found == scan().classes.constEnd()) {
        qCDebug(lcPluginHost) << "no plug-in provides" << className;
        return nullptr;
    }
    QPluginLoader loader(found->file);
    QObject *root = loader.instance();
    if (!root) {
        qCWarning(lcPluginHost) << "cannot load" << found->file << loader.errorString();
        return nullptr;
    }
    if (auto *factory = qobject_cast<IPluginFactory *>(root)) {
        QObject *object = factory->create(found->className);
        if (!object)
            qCWarning(lcPluginHost) << found->file << "did not create" << found->className;
        return object;
    }
    return root;
}
