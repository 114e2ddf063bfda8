// SPDX-License-Identifier: GPL-3.0-or-later
#include "csvactiondialog.h"
#include "ui_csvactiondialog.h"

#include "tagvalue.h"

#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

void selectData(QComboBox *box, const QString &value)
{
    const int index = box->findData(value, Qt::UserRole, Qt::MatchFixedString);
    if (index >= 0)
        box->setCurrentIndex(index);
}

} // namespace

CsvActionDialog::CsvActionDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::CsvActionDialog>())
{
    m_ui->setupUi(this);
    m_ui->cboLookup->addItem(tr("The caller's number"), u"Caller"_s);
    m_ui->cboLookup->addItem(tr("The dialled number"), u"Dialled"_s);
    m_ui->cboShow->addItem(tr("The contact's name"), u"Name"_s);
    m_ui->cboShow->addItem(tr("The contact's company"), u"Company"_s);
    m_ui->cboShow->addItem(tr("The name and the company"), u"Both"_s);
    m_ui->buttons->button(QDialogButtonBox::Ok)->setObjectName(u"OK"_s);
    m_ui->buttons->button(QDialogButtonBox::Cancel)->setObjectName(u"Cancel"_s);
    connect(m_ui->buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_ui->buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

CsvActionDialog::~CsvActionDialog() = default;

void CsvActionDialog::loadVars(const QString &vars)
{
    selectData(m_ui->cboLookup, getText(vars, u"Lookup"_s));
    selectData(m_ui->cboShow, getText(vars, u"Show"_s));
}

QString CsvActionDialog::vars(QString vars) const
{
    // The names stay clear of the action's own tags (Type, Display, Number...): the action holds
    // these settings nested, and a read of its tags would find them.
    AddVar(vars, u"Action"_s, u"Lookup"_s);
    AddVar(vars, u"Lookup"_s, m_ui->cboLookup->currentData());
    AddVar(vars, u"Show"_s, m_ui->cboShow->currentData());
    return vars;
}
