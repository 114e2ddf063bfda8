// SPDX-License-Identifier: GPL-3.0-or-later
// Plug-in interfaces (translator, session object, factory) and creation of plug-in objects by class name.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QtPlugin>
#include <utility>

// The translator behind "plgTranslate.Translate".
class ITranslator
{
public:
    virtual ~ITranslator() = default;
    // Loads the translation for the application key ("QSConfig"); false when there is none.
    virtual bool TranslateLoad(const QString &appKey) = 0;
    // The translated text with "<1>" and "<2>" filled in by p1 and p2.
    virtual QString Translate(const QString &key, const QString &text, const QString &p1,
                              const QString &p2) = 0;
    // Translates the window's own texts in place.
    virtual void TranslateWindow(QObject *window) = 0;
};

// The session object of an address-book or action plug-in ("plg" + name + ".Session").
class IPluginSession
{
public:
    virtual ~IPluginSession() = default;
    // Shows the plug-in's settings for level ("User", "Action", "Data") starting from vars and returns
    // the new vars; "{Result=FAIL}" when the plug-in has no settings at that level. parent is the
    // window the plug-in's own dialog belongs to (a QWidget, passed as QObject to keep this QtCore).
    virtual QString Configure(const QString &level, const QString &vars, QObject *parent) = 0;
};

// Implemented by the root object of a plug-in that provides several classes.
class IPluginFactory
{
public:
    virtual ~IPluginFactory() = default;
    // A new object of className, owned by the factory; nullptr when the class is not provided.
    virtual QObject *create(const QString &className) = 0;
};

#define QUILL_ITRANSLATOR_IID "com.tamsel.quill.ITranslator/1.0"
#define QUILL_IPLUGINSESSION_IID "com.tamsel.quill.IPluginSession/1.0"
#define QUILL_IPLUGINFACTORY_IID "com.tamsel.quill.IPluginFactory/1.0"
Q_DECLARE_INTERFACE(ITranslator, QUILL_ITRANSLATOR_IID)
Q_DECLARE_INTERFACE(IPluginSession, QUILL_IPLUGINSESSION_IID)
Q_DECLARE_INTERFACE(IPluginFactory, QUILL_IPLUGINFACTORY_IID)

namespace PluginHost {
// The list of installed plug-ins lives in the settings of the organisation (no application):
// group "Plugins", value name = plug-in type code, value = display name. Installing the shipped
// plug-ins writes it; RegistryListEntries in core/utilities.h reads it as a tagged-value list.
inline constexpr QStringView OrganisationName = u"Tamsel Telecom Ltd";
// Plug-ins installed under the company's former name are still offered.
inline constexpr QStringView FormerOrganisationName = u"Pellam Software Ltd";
inline constexpr QStringView PluginsGroup = u"Plugins";

// The installed plug-ins as (type code, display name), in the order the settings give them.
QList<std::pair<QString, QString>> installedPlugins();

// Where registerShippedPlugins notes each code it has added (value name = code, value = display
// name), so that a plug-in the site removed from the list stays removed.
inline constexpr QStringView RegisteredGroup = u"PluginsRegistered";

// Adds the address-book plug-ins of the search folders to the installed plug-ins, from each
// plug-in's metadata entry "addressBook": {"code": "CSV", "name": "CSV file"} (read without loading
// the plug-in; the first folder to provide a code wins). A code the site lists already, under
// either organisation name and in any case, keeps its entry, and a code added once is not added
// again. Returns the codes added.
QStringList registerShippedPlugins();

// The folders searched for plug-ins: "<appdir>/plugins", then every folder of QUILL_PLUGIN_PATH.
QStringList searchFolders();
// Forgets the cached scan of the folders (shared by CreateObject and registerShippedPlugins), so the
// next of them looks again.
void forgetScan();
} // namespace PluginHost

// Creates an object of className (case-insensitive, "plgCSV.Session") from the first plug-in whose
// metadata lists it under "classes". The object belongs to the plug-in: never delete it.
// nullptr when no plug-in provides the class or it fails to load: the "cannot be created" path.
QObject *CreateObject(const QString &className);
