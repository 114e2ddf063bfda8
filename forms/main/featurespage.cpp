// SPDX-License-Identifier: GPL-3.0-or-later
// The Features page: a two-column grid of feature and code.
#include "featurespage.h"

#include "tagentries.h"
#include "tagvalue.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr int TagRole = Qt::UserRole;
}

FeaturesPage::FeaturesPage(QWidget *parent) : QWidget(parent), m_grid(new QTableWidget(0, 2, this))
{
    m_grid->setObjectName(u"Features"_s);
    m_grid->setHorizontalHeaderLabels({u"Feature"_s, u"Code"_s});
    TranslateGrid(m_grid);
    m_grid->verticalHeader()->hide();
    m_grid->horizontalHeader()->setSectionResizeMode(FeatureColumn, QHeaderView::ResizeToContents);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::AllEditTriggers);
    m_grid->setAlternatingRowColors(true);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_grid);

    for (const FeatureCode &feature : commonFeatures())
        addRow(feature.tag, feature.caption);
    load(QString());
}

const QList<FeatureCode> &FeaturesPage::commonFeatures()
{
    static const QList<FeatureCode> features{
        {u"Pickup"_s, Translate(u"Pickup"_s)},
        {u"Park"_s, Translate(u"Park"_s)},
        {u"Call forward"_s, Translate(u"Call forward"_s)},
        {u"Do not disturb"_s, Translate(u"Do not disturb"_s)},
        {u"Voice mail"_s, Translate(u"Voice mail"_s)},
        {u"Conference"_s, Translate(u"Conference"_s)},
        {u"Transfer"_s, Translate(u"Transfer"_s)},
        {u"Intrude"_s, Translate(u"Intrude"_s)},
    };
    return features;
}

void FeaturesPage::load(const QString &options)
{
    m_grid->setRowCount(int(commonFeatures().size()));
    m_form = RecordForm();
    for (int row = 0; row < m_grid->rowCount(); ++row)
        m_form.cell(m_grid->item(row, CodeColumn), m_grid->item(row, FeatureColumn)->data(TagRole).toString());
    // Every other tag of the record gets a row of its own, in its order.
    const QList<TagEntry> entries = splitEntries(options);
    for (const TagEntry &entry : entries) {
        if (!entry.name.isEmpty() && rowOf(entry.name) < 0) {
            addRow(entry.name, entry.name);
            m_form.cell(m_grid->item(m_grid->rowCount() - 1, CodeColumn), entry.name);
        }
    }
    m_form.load(options);
    m_grid->resizeColumnToContents(FeatureColumn);
}

QString FeaturesPage::record() const
{
    return m_form.record();
}

QString FeaturesPage::code(const QString &tag) const
{
    const int row = rowOf(tag);
    return row < 0 ? QString() : m_grid->item(row, CodeColumn)->text();
}

bool FeaturesPage::setCode(const QString &tag, const QString &code)
{
    const int row = rowOf(tag);
    if (row < 0)
        return false;
    m_grid->item(row, CodeColumn)->setText(code);
    return true;
}

void FeaturesPage::addRow(const QString &tag, const QString &caption)
{
    const int row = m_grid->rowCount();
    m_grid->insertRow(row);
    auto *feature = new QTableWidgetItem(caption);
    feature->setData(TagRole, tag);
    feature->setFlags(feature->flags() & ~Qt::ItemIsEditable);
    m_grid->setItem(row, FeatureColumn, feature);
    m_grid->setItem(row, CodeColumn, new QTableWidgetItem);
}

int FeaturesPage::rowOf(const QString &tag) const
{
    for (int row = 0; row < m_grid->rowCount(); ++row) {
        if (m_grid->item(row, FeatureColumn)->data(TagRole).toString().compare(tag, Qt::CaseInsensitive) == 0)
            return row;
    }
    return -1;
}
