// SPDX-License-Identifier: GPL-3.0-or-later
#include "folderuserdialog.h"
#include "ui_folderuserdialog.h"

#include "tagvalue.h"

#include <QPushButton>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

// A folder given from the shared folder down: not from a root or a drive, and never above it.
bool staysInside(const QString &folder)
{
    static const QRegularExpression root(u"^([/\\\\]|[A-Za-z]:)"_s);
    static const QRegularExpression separators(u"[/\\\\]"_s);
    return !root.match(folder).hasMatch() && !folder.split(separators).contains(u".."_s);
}

} // namespace

FolderUserDialog::FolderUserDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::FolderUserDialog>())
{
    m_ui->setupUi(this);
    m_ui->buttons->button(QDialogButtonBox::Ok)->setObjectName(u"OK"_s);
    m_ui->buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"Cancel"_s);
    connect(m_ui->txtSubFolder, &QLineEdit::textChanged, this, &FolderUserDialog::updateOk);
    connect(m_ui->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_ui->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    updateOk();
}

FolderUserDialog::~FolderUserDialog() = default;

void FolderUserDialog::loadVars(const QString &vars)
{
    m_ui->txtSubFolder->setText(getText(vars, u"SubFolder"_s));
    m_ui->chkSubFolders->setChecked(getText(vars, u"IncludeSubFolders"_s, u"1"_s) != u"0"_s);
}

QString FolderUserDialog::vars(QString vars) const
{
    AddVar(vars, u"SubFolder"_s, subFolder());
    AddVar(vars, u"IncludeSubFolders"_s, m_ui->chkSubFolders->isChecked() ? 1 : 0);
    return vars;
}

QString FolderUserDialog::subFolder() const
{
    return m_ui->txtSubFolder->text().trimmed();
}

void FolderUserDialog::updateOk()
{
    const bool inside = staysInside(subFolder());
    m_ui->buttons->button(QDialogButtonBox::Ok)->setEnabled(inside);
    m_ui->lblError->setText(
        inside ? QString() : tr("Enter a folder inside the shared contacts folder, such as Sales/Smith."));
    m_ui->lblError->setVisible(!inside);
}
