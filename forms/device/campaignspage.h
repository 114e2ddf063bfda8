// SPDX-License-Identifier: GPL-3.0-or-later
// The Campaigns page of the device window (agents only): the campaigns assigned to the agent and
// which of them are done. Reads and writes Campaigns and CampaignsDone, both joined with ",".
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class ButtonRow;
class PropertyWindows;
class QListWidget;

class CampaignsPage : public QWidget
{
    Q_OBJECT
public:
    enum Button { AddButton, RemoveButton };

    explicit CampaignsPage(QWidget *parent = nullptr);

    // Every campaign of the system, offered by the choice dialog ("Combo") that Add opens.
    void setCampaignNames(const QStringList &names) { m_names = names; }
    void setWindows(const PropertyWindows *windows);

    // A done campaign shows as its name and " (" + the translated "Done" + ")".
    void load(const QString &row);
    // Writes CampaignsDone, then Campaigns. Only an entry ending in the English " (Done)" counts as
    // done: under a translation the mark is not recognised and the entry goes back as shown. Devices
    // whose lists differ show none, and an empty list is not written: each keeps its own until the
    // user adds a campaign.
    void save(QString &row) const;

    // The choice dialog's answer: the campaign is added, replacing an entry of the same name.
    void addChoice(const QString &choice);

    // Add a campaign (0), remove the selected one (1).
    void cProps_Click(int index);

private:
    QStringList entries() const;
    void updateButtons();

    QListWidget *m_list;
    ButtonRow *m_buttons;
    const PropertyWindows *m_windows = nullptr;
    QString m_loadedCampaigns; // as loaded: a list emptied since is written empty
    QString m_loadedDone;
    QStringList m_names;
};
