// SPDX-License-Identifier: GPL-3.0-or-later
#include "importplanmodel.h"

#include "translate.h"

#include <QBrush>
#include <QColor>

using namespace Qt::StringLiterals;
using DevicePlan::State;

ImportPlanModel::ImportPlanModel(QObject *parent)
    : QAbstractTableModel(parent), m_headers{Translate(u"Line"_s), Translate(u"Ext"_s),
                                             Translate(u"Action"_s), Translate(u"Details"_s)}
{
}

int ImportPlanModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_lines.size());
}

int ImportPlanModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ImportPlanModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Line &line = m_lines.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case LineColumn:
            return line.line;
        case ExtColumn:
            return line.ext;
        case StateColumn:
            return DevicePlan::stateWord(line.state);
        case DetailsColumn:
            return line.details;
        }
        return {};
    case Qt::ToolTipRole:
        return index.column() == DetailsColumn && !line.tip.isEmpty() ? QVariant(line.tip) : QVariant();
    case Qt::ForegroundRole:
        // Rejected rows stand out: they are what the user has to fix or leave out.
        return line.state == State::Rejected ? QVariant(QBrush(QColor(0xb0, 0x00, 0x20))) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == LineColumn ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter)) : QVariant();
    case StateRole:
        return int(line.state);
    default:
        return {};
    }
}

QVariant ImportPlanModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return {};
    return m_headers.at(section);
}

void ImportPlanModel::setPlan(const DevicePlan::Plan &plan, const DeviceSheet::Sheet &sheet)
{
    QHash<qsizetype, const DeviceSheet::Row *> rowOfLine;
    for (const DeviceSheet::Row &row : sheet.rows)
        rowOfLine.insert(row.line, &row);

    beginResetModel();
    m_lines.clear();
    m_lines.reserve(plan.entries.size());
    for (const DevicePlan::Entry &entry : plan.entries) {
        QStringList items;
        if (entry.state == State::New) {
            // What the new device is given, in the sheet's column order.
            if (const DeviceSheet::Row *row = rowOfLine.value(entry.line)) {
                for (const QString &tag : sheet.header) {
                    const QString value = row->values.value(tag);
                    if (tag != u"Ext"_s && !value.trimmed().isEmpty())
                        items.append(DevicePlan::changeText({tag, QString(), value}));
                }
            }
        }
        for (const DevicePlan::Change &change : entry.changes)
            items.append(DevicePlan::changeText(change));
        items += entry.reasons;
        m_lines.append(
            {QString::number(entry.line), entry.ext, entry.state, items.join(u"; "_s), items.join(u'\n')});
    }
    endResetModel();
}

void ImportPlanModel::clear()
{
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

void ImportPlanFilter::setState(int state)
{
    if (state == m_state)
        return;
    m_state = state;
    invalidateFilter();
}

bool ImportPlanFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    return m_state < 0 ||
           sourceModel()->index(sourceRow, 0, sourceParent).data(ImportPlanModel::StateRole).toInt() ==
               m_state;
}
