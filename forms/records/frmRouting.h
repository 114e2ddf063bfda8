// SPDX-License-Identifier: GPL-3.0-or-later
// frmRouting: the property window of one routing condition. It reads the record when its hidden Tid
// is set, shows the criteria as they were typed, and stores them with one SetFields command.
#pragma once

#include "propertywindows.h"
#include "recordform.h"
#include "serverlink.h"

#include <QDialog>

#include <memory>

namespace Ui {
class frmRouting;
}
class TipFilter;

class frmRouting : public QDialog, public IDataReceiver
{
    Q_OBJECT
public:
    // Name is cut to this many characters when saved.
    static constexpr int NameLength = 50;

    // addressBooks: the names in the main window's address-book list, in its order (rAB offers
    // them); conditionCount: how many conditions the main window lists (a condition whose record
    // holds no order of its own is saved after them).
    frmRouting(ServerLink &link, const QStringList &addressBooks, int conditionCount, QWidget *parent = nullptr);
    ~frmRouting() override;

    // How the window closed, for the list that opened it.
    WindowResult outcome() const { return m_outcome; }

    // Tid was set: reads the condition unless it is a new one (-1).
    void Tid_Change();
    // The ROUTING-ROUTING reply: the record's name and criteria.
    void DataArrived(const QString &SubRef, const QString &Message) override;
    // Sends the condition and closes.
    void OK_Click();
    // Closes without sending anything.
    void Cancel_Click();

    // The weekday rules offered in rDay after its blank entry (untranslated).
    static const QStringList &dayNames();

private:
    void Form_Load(const QStringList &addressBooks);
    QString id() const;
    bool isNew() const;

    ServerLink &m_link;
    std::unique_ptr<Ui::frmRouting> m_ui;
    RecordForm m_criteria; // the tags inside Options, in the order they are written
    TipFilter *m_tips = nullptr;
    int m_conditionCount;
    QString m_options; // Options of the record as loaded; empty for a new condition
    WindowResult m_outcome;
};
