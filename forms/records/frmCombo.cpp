// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmCombo.h"
#include "ui_frmCombo.h"

#include "errorlog.h"
#include "guarded.h"
#include "serverlink.h"
#include "tagvalue.h"
#include "translatewidgets.h"

using namespace Qt::StringLiterals;

namespace {
const QString dataArrivedLabel = u"  @  frmCombo.DataArrived"_s;
}

frmCombo::frmCombo(ServerLink &link, QWidget *parent)
    : QDialog(parent), m_link(link), m_ui(std::make_unique<Ui::frmCombo>())
{
    m_ui->setupUi(this);
    TranslateWindow(this);
    m_ui->OK->setEnabled(false);
    connectGuarded(m_ui->List, &QListWidget::itemSelectionChanged, this, dataArrivedLabel, &frmCombo::List_Click);
    connectGuarded(m_ui->List, &QListWidget::itemDoubleClicked, this, dataArrivedLabel, &frmCombo::OK_Click);
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, dataArrivedLabel, &frmCombo::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, dataArrivedLabel, &frmCombo::Cancel_Click);
}

frmCombo::~frmCombo() = default;

QStringList frmCombo::splitChoices(const QString &choices)
{
    QStringList entries;
    QStringView rest(choices);
    while (!rest.isEmpty()) {
        const qsizetype cut = rest.indexOf(u'~');
        entries.append((cut < 0 ? rest : rest.left(cut)).toString());
        rest = cut < 0 ? QStringView() : rest.mid(cut + 1);
    }
    return entries;
}

void frmCombo::DataArrived(const QString &Request)
{
    bool show = false;
    Guard(dataArrivedLabel, [&] {
        m_request = Request;
        if (getText(Request, u"Cmd"_s).toUpper() != u"SELECTONE"_s)
            return;
        m_ui->List->clear();
        m_ui->List->addItems(splitChoices(getText(Request, u"Choices"_s)));
        List_Click();
        show = true;
    });
    if (show)
        exec();
}

void frmCombo::List_Click()
{
    m_ui->OK->setEnabled(!m_ui->List->selectedItems().isEmpty());
}

void frmCombo::OK_Click()
{
    const QList<QListWidgetItem *> selected = m_ui->List->selectedItems();
    if (selected.isEmpty())
        return;
    // Plain entries: a choice must not hold "}".
    const QString answer = u"{Ref="_s + getText(m_request, u"Ref"_s) + u"}{Choice="_s + selected.first()->text() + u'}';
    accept();
    m_link.HandleCallback(answer);
}

void frmCombo::Cancel_Click()
{
    reject();
}
