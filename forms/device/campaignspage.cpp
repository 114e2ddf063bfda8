// SPDX-License-Identifier: GPL-3.0-or-later
#include "campaignspage.h"

#include "buttonrow.h"
#include "controls.h"
#include "devicerecord.h"
#include "guarded.h"
#include "propertywindows.h"
#include "tagvalue.h"
#include "translate.h"

#include <QListWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
const QString choiceWindow = u"Combo"_s;

QStringList commaList(const QString &text)
{
    return text.split(u',', Qt::SkipEmptyParts);
}
} // namespace

CampaignsPage::CampaignsPage(QWidget *parent) : QWidget(parent), m_list(new QListWidget(this))
{
    m_list->setObjectName(u"Campaigns"_s);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_buttons = new ButtonRow(u"cProps"_s, {u"&Add..."_s, u"&Remove"_s}, this, u" @ frmConfig.cProps_Click"_s,
                              [this](int index) { cProps_Click(index); });
    m_buttons->bindKeys(m_list, -1, RemoveButton);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    layout->addLayout(m_buttons->layout());

    connectGuarded(m_list, &QListWidget::itemSelectionChanged, this, u" @ frmConfig.Campaigns_Click"_s,
                   &CampaignsPage::updateButtons);
    updateButtons();
}

void CampaignsPage::setWindows(const PropertyWindows *windows)
{
    if (m_windows)
        disconnect(m_windows, nullptr, this, nullptr);
    m_windows = windows;
    if (m_windows)
        connect(m_windows, &PropertyWindows::openersChanged, this, &CampaignsPage::updateButtons);
    updateButtons();
}

void CampaignsPage::load(const QString &row)
{
    const QString campaigns = getText(row, u"Campaigns"_s);
    const QString done = getText(row, u"CampaignsDone"_s);
    m_loadedCampaigns = campaigns;
    m_loadedDone = done;
    m_list->clear();
    // With a comma on both sides no name matches inside another ("Sales" in "Sales2").
    const QString doneList = u',' + done + u',';
    const QString mark = u" ("_s + Translate(u"Done"_s) + u')';
    for (const QString &name : commaList(campaigns == MixedValue ? QString() : campaigns))
        m_list->addItem(doneList.contains(u',' + name + u',') ? name + mark : name);
    updateButtons();
}

void CampaignsPage::save(QString &row) const
{
    QStringList names;
    QStringList done;
    for (QString entry : entries()) {
        if (entry.endsWith(DeviceRecord::campaignDoneMark())) {
            entry.chop(DeviceRecord::campaignDoneMark().size());
            done.append(entry);
        }
        names.append(entry);
    }
    // Devices whose campaigns differ show none, and then nothing of theirs is emptied.
    const bool shown = m_loadedCampaigns != MixedValue;
    SetListOption(row, u"CampaignsDone"_s, done.join(u','), shown ? m_loadedDone : QString());
    SetListOption(row, u"Campaigns"_s, names.join(u','), m_loadedCampaigns);
}

void CampaignsPage::addChoice(const QString &choice)
{
    if (choice.isEmpty())
        return;
    const QStringList chosen = DeviceRecord::addCampaignChoice(entries(), choice);
    m_list->clear();
    m_list->addItems(chosen);
    m_list->setCurrentRow(m_list->count() - 1);
    updateButtons();
}

void CampaignsPage::cProps_Click(int index)
{
    if (index == AddButton) {
        if (!m_windows)
            return;
        QString request = u"{Cmd=SelectOne}{Ref=AddCampaign}"_s;
        AddVar(request, u"Choices"_s, m_names.join(u'~'), true);
        // The choice comes back through the dispatcher, as ADDCAMPAIGN to the device window.
        m_windows->open(choiceWindow, request, window());
    } else if (index == RemoveButton) {
        const QList<QListWidgetItem *> selected = m_list->selectedItems();
        if (selected.isEmpty())
            return;
        delete selected.first();
        updateButtons();
    }
}

QStringList CampaignsPage::entries() const
{
    QStringList texts;
    for (int row = 0; row < m_list->count(); ++row)
        texts.append(m_list->item(row)->text());
    return texts;
}

void CampaignsPage::updateButtons()
{
    const bool choices = m_windows && m_windows->canOpen(choiceWindow);
    m_buttons->setEnabled(AddButton, choices, choices ? QString() : PropertyWindows::unavailableTip());
    m_buttons->setEnabled(RemoveButton, !m_list->selectedItems().isEmpty());
}
