// SPDX-License-Identifier: GPL-3.0-or-later
// frmScript: the property window of one client script (a record of the Scripts table): its main
// function, its parameters and its text.
#pragma once

#include "propertywindows.h"
#include "recordform.h"
#include "serverlink.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmScript;
}

class frmScript : public QDialog, public IDataReceiver
{
    Q_OBJECT
public:
    // Receives the "SCRIPTS" replies while it is open. The record is read once its hidden Tid is set.
    explicit frmScript(ServerLink &link, QWidget *parent = nullptr);
    ~frmScript() override;

    // How the window closed, for the script list.
    WindowResult outcome() const;

    // Stores the three boxes as they stand (empty ones left out) under the id in Tid, then closes.
    void OK_Click();
    // Closes without sending anything.
    void Cancel_Click();
    // The id was set: reads that script, unless it is a new one ("-1").
    void Tid_Change();
    // The script's record: fills the three boxes, a missing field empties its box.
    void DataArrived(const QString &SubRef, const QString &Message) override;

private:
    std::unique_ptr<Ui::frmScript> m_ui;
    ServerLink &m_link;
    RecordForm m_form;
    WindowResult m_outcome;
};
