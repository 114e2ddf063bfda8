// SPDX-License-Identifier: GPL-3.0-or-later
#include "folderbookdialog.h"
#include "ui_folderbookdialog.h"

#include "tagvalue.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>

using namespace Qt::StringLiterals;

FolderBookDialog::FolderBookDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::FolderBookDialog>())
{
    m_ui->setupUi(this);
    m_ui->buttons->button(QDialogButtonBox::Ok)->setObjectName(u"OK"_s);
    m_ui->buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"Cancel"_s);
    connect(m_ui->txtFolder, &QLineEdit::textChanged, this, &FolderBookDialog::updateOk);
    connect(m_ui->cmdBrowse, &QPushButton::clicked, this, &FolderBookDialog::browse);
    connect(m_ui->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_ui->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateOk();
}

FolderBookDialog::~FolderBookDialog() = default;

void FolderBookDialog::loadVars(const QString &vars)
{
    m_ui->txtFolder->setText(getText(vars, u"Folder"_s));
}

QString FolderBookDialog::vars(QString vars) const
{
    const QString path = QDir::toNativeSeparators(QFileInfo(folder()).absoluteFilePath());
    AddVar(vars, u"Caption"_s, path);
    AddVar(vars, u"Folder"_s, path);
    return vars;
}

QString FolderBookDialog::folder() const
{
    return m_ui->txtFolder->text().trimmed();
}

void FolderBookDialog::browse()
{
    const QString chosen =
        QFileDialog::getExistingDirectory(this, tr("Choose the Shared Contacts Folder"), folder());
    if (!chosen.isEmpty())
        m_ui->txtFolder->setText(QDir::toNativeSeparators(chosen));
}

void FolderBookDialog::updateOk()
{
    const bool exists = QFileInfo(folder()).isDir();
    m_ui->buttons->button(QDialogButtonBox::Ok)->setEnabled(exists);
    const QString message =
        exists || folder().isEmpty() ? QString() : tr("The folder %1 does not exist.").arg(folder());
    m_ui->lblError->setText(message);
    m_ui->lblError->setVisible(!message.isEmpty());
}
