// SPDX-License-Identifier: GPL-3.0-or-later
// The Site page of the main window: the site and telephone-system settings of System/PBX.
#pragma once

#include "recordform.h"

#include <QStringList>
#include <QWidget>

#include <memory>

namespace Ui {
class SitePage;
}

namespace SettingsRecord {
// The tags of the PBX settings record in the order they are written: AutoDir, Name, ..., VMIp.
const QStringList &pbxTags();
} // namespace SettingsRecord

class SitePage : public QWidget
{
    Q_OBJECT
public:
    explicit SitePage(QWidget *parent = nullptr);
    ~SitePage() override;

    // The telephone systems offered in sType, as the record stores them.
    static const QStringList &systemTypes();
    // The voice-mail types offered in sVMType.
    static const QStringList &voiceMailTypes();
    // The connections offered in Comm: "Tcp/Ip", then the serial ports "Com1:" .. "Com8:".
    static const QStringList &connections();

    // Fills the page from the PBX record (the "Options" of the MAIN-PBX reply), defaults included.
    void load(const QString &options);
    // The page's fields as entries, by tag.
    void save(RecordEntries &entries) const;

    // The selected telephone-system type as the list shows it ("" when none is selected).
    QString systemType() const;

    // Shows the groups of controls the selected type needs.
    void sType_Click();
    // Shows the network or the serial settings of the chosen connection, unless the type fixes it.
    void Comm_Click();
    // Enables the voice-mail number and address the chosen voice-mail type needs.
    void sVMType_Click();

private:
    std::unique_ptr<Ui::SitePage> m_ui;
    // The page's fields with their tags; load and save both go through this table. The type is
    // not among them: a stored "NORTEL CTE" is shown as the list's "Nortel BCM".
    RecordForm m_form;
};
