// SPDX-License-Identifier: GPL-3.0-or-later
// The Network page: its six settings in and out of the PBX record.
#include "networkpage.h"
#include "ui_networkpage.h"

#include "formlayout.h"

using namespace Qt::StringLiterals;

NetworkPage::NetworkPage(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::NetworkPage>())
{
    m_ui->setupUi(this);
    alignFormLabels({this});
    m_form.text(m_ui->Alert_0, u"FatalAlert"_s)
        .text(m_ui->Alert_1, u"WarningAlert"_s)
        .text(m_ui->Alert_2, u"DailyAlert"_s)
        .option(m_ui->netSend, u"SendUpdates"_s, u"0"_s)
        .text(m_ui->netPath, u"SendPath"_s)
        .text(m_ui->netCluster, u"Cluster"_s);
}

NetworkPage::~NetworkPage() = default;

void NetworkPage::load(const QString &options)
{
    m_form.load(options);
}

void NetworkPage::save(RecordEntries &entries) const
{
    m_form.collect(entries);
}
