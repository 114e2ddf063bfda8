// SPDX-License-Identifier: GPL-3.0-or-later
#include "csvpreviewmodel.h"

void CsvPreviewModel::setRecords(const QStringList &titles, const QList<QStringList> &rows)
{
    beginResetModel();
    m_titles = titles;
    m_rows = rows;
    // A row longer than the titles still shows all its fields.
    qsizetype columns = titles.size();
    for (const QStringList &row : rows)
        columns = qMax(columns, row.size());
    m_columns = int(columns);
    endResetModel();
}

int CsvPreviewModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CsvPreviewModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QVariant CsvPreviewModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role != Qt::DisplayRole)
        return {};
    return m_rows.at(index.row()).value(index.column());
}

QVariant CsvPreviewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < m_columns)
        return m_titles.value(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}
