// SPDX-License-Identifier: GPL-3.0-or-later
// The Network page: its six settings in and out of the PBX record.
#include "networkpage.h"
#include "ui_networkpage.h"

#include "controls.h"
#include "tagvalue.h"

using namespace Qt::StringLiterals;

NetworkPage::NetworkPage(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::NetworkPage>())
{
    m_ui->setupUi(this);
    AlignFormLabels({this});
}

NetworkPage::~NetworkPage() = default;

void NetworkPage::load(const QString &options)
{
    m_ui->Alert_0->setText(GetText(options, u"FatalAlert"_s));
    m_ui->Alert_1->setText(GetText(options, u"WarningAlert"_s));
    m_ui->Alert_2->setText(GetText(options, u"DailyAlert"_s));
    GetOption(m_ui->netSend, GetText(options, u"SendUpdates"_s, u"0"_s));
    m_ui->netPath->setText(GetText(options, u"SendPath"_s));
    m_ui->netCluster->setText(GetText(options, u"Cluster"_s));
    for (QLineEdit *edit : findChildren<QLineEdit *>())
        edit->setCursorPosition(0);
}

void NetworkPage::save(RecordValues &values) const
{
    values.insert(u"FatalAlert"_s, m_ui->Alert_0->text());
    values.insert(u"WarningAlert"_s, m_ui->Alert_1->text());
    values.insert(u"DailyAlert"_s, m_ui->Alert_2->text());
    values.insert(u"SendUpdates"_s, m_ui->netSend->isChecked() ? 1 : 0);
    values.insert(u"SendPath"_s, m_ui->netPath->text());
    values.insert(u"Cluster"_s, m_ui->netCluster->text());
}
