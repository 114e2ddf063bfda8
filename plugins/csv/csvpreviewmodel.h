// SPDX-License-Identifier: GPL-3.0-or-later
// The first rows of a CSV file as a table: the file's first record gives the column titles.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>

class CsvPreviewModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setRecords(const QStringList &titles, const QList<QStringList> &rows);
    void clear() { setRecords({}, {}); }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QStringList m_titles;
    QList<QStringList> m_rows;
    int m_columns = 0;
};
