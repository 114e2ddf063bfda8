// SPDX-License-Identifier: GPL-3.0-or-later
// frmCampaign: the property window of one campaign. It reads the record when its hidden Tid is set
// (an id, -1 for a new one, "*" + id to start from a copy), lists the contacts database's tables,
// stored queries and columns without blocking, edits the menu tree and the result list, and stores
// the campaign with one SetFields command.
#pragma once

#include "contactsdatabase.h"
#include "propertywindows.h"
#include "recordform.h"
#include "serverlink.h"

#include <QDialog>
#include <QFutureWatcher>
#include <QStringList>

#include <functional>
#include <memory>

namespace Ui {
class frmCampaign;
}
class ChoiceTree;
class TipFilter;

class frmCampaign : public QDialog, public IDataReceiver
{
    Q_OBJECT
public:
    // The campaign's name is cut to this many characters when saved.
    static constexpr int NameLength = 20;

    explicit frmCampaign(ServerLink &link, QWidget *parent = nullptr);
    ~frmCampaign() override;

    // How the window closed, for the campaign list that opened it.
    WindowResult outcome() const { return m_outcome; }

    // Test seam: answers the database file dialog instead of showing it (an empty path: cancelled).
    static std::function<QString(QWidget *parent)> &chooseDatabaseFile();

    // Tid was set: reads the campaign (a copy's original for "*" + id; -1 as well).
    void Tid_Change();
    // The CAMPAIGN-CAMPAIGN reply: fills every control and rebuilds both trees.
    void DataArrived(const QString &SubRef, const QString &Message) override;
    // A database was named: lists its tables and stored queries (in the background).
    void oSource_Change();
    // A table or query was chosen: its name becomes the campaign's, and its columns are listed with
    // the proposals for each field.
    void oTable_Click();
    void OSel_Click();
    void BMenu_Click(int index);
    void BResults_Click(int index);
    void OK_Click();
    void Cancel_Click();

    // Whether the background listing is still running, and whether the record has arrived (tests
    // wait for both).
    bool isListing() const;
    bool isLoaded() const { return m_loaded; }

private:
    void Form_Load();
    void updateButtons();
    void openProperties(const QString &descriptor);
    void tablesListed();
    void columnsListed();
    void listColumns(const QString &table, bool propose);
    QString id() const;
    bool isCopy() const;
    bool isNew() const;

    ServerLink &m_link;
    std::unique_ptr<Ui::frmCampaign> m_ui;
    ChoiceTree *m_menus = nullptr;
    ChoiceTree *m_results = nullptr;
    RecordForm m_source; // Database .. NoAnswer, in the order they are written
    TipFilter *m_tips = nullptr;
    bool m_proposeColumns = false;
    bool m_sourceOpened = false;
    bool m_loaded = false;
    QFutureWatcher<ContactsDatabase::Sources> m_tablesJob;
    QFutureWatcher<ContactsDatabase::Columns> m_columnsJob;
    WindowResult m_outcome;
};
