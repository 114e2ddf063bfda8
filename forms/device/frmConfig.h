// SPDX-License-Identifier: GPL-3.0-or-later
// frmConfig: the property window of devices. It creates one device or a numbered range of them,
// edits one device, or edits several at once (a field whose devices differ shows the mixed marker
// and is left as each device has it). The row is read when the hidden Lid is set and stored with
// one SetFields command per device.
#pragma once

#include "addressbookspage.h"
#include "frmButton.h"
#include "propertywindows.h"
#include "recordform.h"
#include "serverlink.h"
#include "tipfilter.h"

#include <QDialog>
#include <QList>

#include <memory>

namespace Ui {
class frmConfig;
}
class ButtonsPage;
class CampaignsPage;
class EventsPage;
class QCheckBox;

class frmConfig : public QDialog, public IDataReceiver
{
    Q_OBJECT
public:
    explicit frmConfig(ServerLink &link, QWidget *parent = nullptr);
    ~frmConfig() override;

    // How the window closed, for the directory that opened it.
    WindowResult outcome() const { return m_outcome; }

    // What the action editor of a button or event row offers: the script catalogue as the main
    // window keeps it, and the installed plug-ins. Both are empty until given.
    void setScriptCatalogue(const QString &scripts) { m_scripts = scripts; }
    void setPlugins(const frmButton::PluginList &plugins) { m_plugins = plugins; }
    // The system's address books in the main window's order (book i, from 1, is stored as
    // AB<i>Use and AB<i>Vars), with the type codes of their plug-ins. Given before Lid is set.
    using SystemBook = SystemAddressBook;
    void setAddressBooks(const QList<SystemBook> &books);
    // Every campaign of the system, which the choice dialog offers to add.
    void setCampaignNames(const QStringList &names);
    // The windows the pages open: a private address book ("AB") and the choice dialog ("Combo").
    void setWindows(const PropertyWindows *windows);

    // Lid was set: reads the row ("-1" reads nothing back and starts from the new device's defaults).
    void Lid_Change();
    // The EXTS-EXT reply fills every control from the row; the choice dialog's ADDCAMPAIGN answer
    // adds its campaign to the Campaigns page.
    void DataArrived(const QString &SubRef, const QString &Message) override;
    // Another kind: the pages and panels for it, and the title.
    void Typ_Click();
    void Ext_Change();
    void Tabs_Click(int page);
    // Stores the device, each device of a range, or the devices being edited.
    void OK_Click();
    void Cancel_Click();
    // Cancel, Esc or the close box: while a range is being sent, the sending stops after the
    // current device and the window closes then.
    void reject() override;

private:
    void Form_Load();
    QString idList() const;
    bool isNew() const;
    qsizetype selectionCount() const;
    int kindIndex() const;
    bool extensionPanelShown() const { return kindIndex() < 2; }
    bool trunkPanelShown() const { return kindIndex() == 3; }
    void showPagesForKind();
    void updateTitle();
    QString tipText(const ControlTip &tip) const;
    QString buildRow() const;
    void sendAll(const QStringList &commands);
    ButtonResult editAction(const QString &request);

    ServerLink &m_link;
    std::unique_ptr<Ui::frmConfig> m_ui;
    QList<QCheckBox *> m_flags; // chk_0 .. chk_23
    // One table per group of the row, each written only while its controls are shown.
    RecordForm m_extensionFields;
    RecordForm m_trunkFields;
    RecordForm m_flagFields;
    RecordForm m_absenceFields;
    RecordForm m_notesFields;
    ButtonsPage *m_buttons = nullptr;
    EventsPage *m_events = nullptr;
    AddressBooksPage *m_addressBooks = nullptr;
    CampaignsPage *m_campaigns = nullptr;
    QString m_scripts;
    frmButton::PluginList m_plugins;
    TipFilter *m_tips = nullptr;
    QString m_loadedType; // Type of the row as loaded: the several-devices title names it
    WindowResult m_outcome;
    bool m_sending = false;
    bool m_stopSending = false;
};
