// SPDX-License-Identifier: GPL-3.0-or-later
// The look-up a button or an event runs in a CSV address book: which number it looks up and what
// it shows of the contact found.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class CsvActionDialog;
}

class CsvActionDialog : public QDialog
{
    Q_OBJECT

public:
    explicit CsvActionDialog(QWidget *parent = nullptr);
    ~CsvActionDialog() override;

    void loadVars(const QString &vars);
    // vars with Action ("Lookup"), Lookup ("Caller" or "Dialled") and Show ("Name", "Company" or
    // "Both") written into it.
    QString vars(QString vars) const;

private:
    std::unique_ptr<Ui::CsvActionDialog> m_ui;
};
