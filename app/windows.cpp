// SPDX-License-Identifier: GPL-3.0-or-later
#include "windows.h"

#include "Errors.h"
#include "frmAB.h"
#include "frmCampaign.h"
#include "frmCombo.h"
#include "frmConfig.h"
#include "frmMain.h"
#include "frmRouting.h"
#include "frmScript.h"
#include "pluginhost.h"
#include "propertywindows.h"
#include "recordlist.h"
#include "tagreader.h"
#include "tagvalue.h"

#include <QLineEdit>
#include <QPointer>

#include <memory>

namespace {

// Opens a record window modally on idText (written into its hidden Tid, or Lid for devices, which
// starts the read) and gives back how it closed.
template <typename Window>
WindowResult runModal(Window &window, const QString &idText, const QString &idField = QStringLiteral("Tid"))
{
    if (auto *tid = window.template findChild<QLineEdit *>(idField))
        tid->setText(idText);
    window.exec();
    return window.outcome();
}

// The address books as the main window lists them (the order the device row numbers them in), with
// the types of their plug-ins from the list's reply.
QList<frmConfig::SystemBook> systemBooks(const RecordList &list)
{
    QHash<QString, QString> types;
    for (const QString &row : readList(list.reply()))
        types.insert(getText(row, QStringLiteral("ABId")), getText(row, QStringLiteral("Type")));
    const QStringList ids = list.ids();
    const QStringList names = list.names();
    QList<frmConfig::SystemBook> books;
    for (qsizetype index = 0; index < names.size(); ++index)
        books.append({names.at(index), types.value(ids.value(index))});
    return books;
}

} // namespace

void registerWindows(frmMain &main, ServerLink &link)
{
    PropertyWindows &windows = main.propertyWindows();

    // Devices: the id text goes into Lid. The action editor of the Buttons and Events pages offers
    // the scripts of the main window's list.
    windows.setOpener(QStringLiteral("Exts"), [&link, &main](const QString &idText, QWidget *parent) {
        frmConfig window(link, parent);
        window.setScriptCatalogue(main.recordList(RecordKind::Scripts)->reply());
        window.setPlugins(PluginHost::installedPlugins());
        window.setAddressBooks(systemBooks(*main.recordList(RecordKind::AddressBooks)));
        window.setCampaignNames(main.recordList(RecordKind::Campaigns)->names());
        window.setWindows(&main.propertyWindows());
        return runModal(window, idText, QStringLiteral("Lid"));
    });
    windows.setOpener(QStringLiteral("Scripts"), [&link](const QString &idText, QWidget *parent) {
        frmScript window(link, parent);
        return runModal(window, idText);
    });
    // Address books: a public one from the main window's list, a device's private one ("-2:" and its
    // record) from the device window, which receives the book back in the result.
    windows.setOpener(QStringLiteral("AB"), [&link](const QString &idText, QWidget *parent) {
        frmAB window(link, PluginHost::installedPlugins(), parent);
        return runModal(window, idText);
    });
    // Campaigns: an id, -1 for a new one, or "*" + id for a new one that starts as a copy.
    windows.setOpener(QStringLiteral("Campaigns"), [&link](const QString &idText, QWidget *parent) {
        frmCampaign window(link, parent);
        return runModal(window, idText);
    });
    // The choice dialog answers through the dispatcher, as the server would: the window that asked
    // hears it there, so the result here is always "nothing saved".
    windows.setOpener(QStringLiteral("Combo"), [&link](const QString &request, QWidget *parent) {
        frmCombo window(link, parent);
        window.DataArrived(request);
        return WindowResult::cancelled();
    });
    // A routing condition offers the main window's address books, and a condition saved here takes
    // the place after the last one listed.
    windows.setOpener(QStringLiteral("Routing"), [&link, &main](const QString &idText, QWidget *parent) {
        frmRouting window(link, main.recordList(RecordKind::AddressBooks)->names(),
                          int(main.recordList(RecordKind::Routing)->ids().size()), parent);
        return runModal(window, idText);
    });

    // One Errors window at a time, beside the main window rather than over it. The opener is run
    // as a copy, so the window it keeps is shared between the copies.
    auto errors = std::make_shared<QPointer<Errors>>();
    windows.setOpener(QString(frmMain::ErrorsWindow), [errors](const QString &, QWidget *parent) {
        if (!*errors) {
            *errors = new Errors(parent);
            (*errors)->setAttribute(Qt::WA_DeleteOnClose);
        }
        (*errors)->show();
        (*errors)->raise();
        (*errors)->activateWindow();
        return WindowResult::cancelled();
    });
}
