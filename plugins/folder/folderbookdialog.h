// SPDX-License-Identifier: GPL-3.0-or-later
// The data settings of a contacts-folder address book: the shared folder that holds the contacts.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class FolderBookDialog;
}

class FolderBookDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FolderBookDialog(QWidget *parent = nullptr);
    ~FolderBookDialog() override;

    void loadVars(const QString &vars);
    // vars with Caption and Folder (the folder's full path) written into it.
    QString vars(QString vars) const;

private:
    void browse();
    void updateOk();
    QString folder() const;

    std::unique_ptr<Ui::FolderBookDialog> m_ui;
};
