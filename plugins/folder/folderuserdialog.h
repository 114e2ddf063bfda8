// SPDX-License-Identifier: GPL-3.0-or-later
// One user's settings of a contacts-folder address book: the user's own folder inside the shared
// folder, and whether the folders inside it are searched too.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class FolderUserDialog;
}

class FolderUserDialog : public QDialog
{
    Q_OBJECT

public:
    explicit FolderUserDialog(QWidget *parent = nullptr);
    ~FolderUserDialog() override;

    void loadVars(const QString &vars);
    // vars with SubFolder (left out when the user has the whole shared folder) and
    // IncludeSubFolders (1 or 0) written into it.
    QString vars(QString vars) const;

private:
    void updateOk();
    QString subFolder() const;

    std::unique_ptr<Ui::FolderUserDialog> m_ui;
};
