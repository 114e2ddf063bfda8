// SPDX-License-Identifier: GPL-3.0-or-later
// The script window.
#include "frmScript.h"
#include "ui_frmScript.h"

#include "errorlog.h"
#include "guarded.h"
#include "tagvalue.h"
#include "translatewidgets.h"

#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {
const QString Receiver = u"SCRIPTS"_s;
}

frmScript::frmScript(ServerLink &link, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmScript>()), m_link(link)
{
    m_ui->setupUi(this);
    Guard(u"  @  frmScript.Load"_s, [this] {
        TranslateWindow(this);
        m_form.text(m_ui->sName, u"Name"_s).text(m_ui->sParams, u"Params"_s).text(m_ui->sScript, u"Script"_s);
        connectGuarded(m_ui->OK, &QPushButton::clicked, this, u"  @  frmScript.OK_Click"_s,
                       &frmScript::OK_Click);
        connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, u"  @  frmScript.Cancel_Click"_s,
                       &frmScript::Cancel_Click);
        connectGuarded(m_ui->Tid, &QLineEdit::textChanged, this, u" @ frmScript.Tid_Change"_s,
                       &frmScript::Tid_Change);
        m_link.setReceiver(Receiver, this);
    });
}

frmScript::~frmScript()
{
    m_link.setReceiver(Receiver, nullptr);
}

WindowResult frmScript::outcome() const
{
    return m_outcome;
}

void frmScript::Tid_Change()
{
    const QString id = m_ui->Tid->text();
    if (!id.isEmpty() && leadingNumber(id) != -1)
        m_link.GetData(u"SCRIPT"_s, id);
}

void frmScript::DataArrived(const QString &, const QString &Message)
{
    // The window asks for one record only, so whatever arrives is that record; it wins over what
    // was typed meanwhile.
    Guard(u"  @  frmScript.DataArrived"_s, [&] { m_form.load(Message); });
}

void frmScript::OK_Click()
{
    QString message = u"{Cmd=SetFields}{Table=Scripts}"_s;
    QString fields;
    m_form.save(fields);
    AddVar(message, u"Fields"_s, fields);
    const QString id = m_ui->Tid->text();
    AddVar(message, u"Id"_s, id);
    m_link.SendCommand(message);
    // The list shows only the name, and a new script has no id yet: either way it reads its list again.
    m_outcome = leadingNumber(id) == -1 ? WindowResult::savedNew() : WindowResult::savedExisting(id, {});
    accept();
}

void frmScript::Cancel_Click()
{
    m_outcome = WindowResult::cancelled();
    reject();
}
