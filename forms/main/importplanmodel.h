// SPDX-License-Identifier: GPL-3.0-or-later
// The import window's preview: one row per line of the device sheet with its number, what the
// import does with it and what changes (or why it is left out), and the filter by state.
#pragma once

#include "deviceplan.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

class ImportPlanModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { LineColumn, ExtColumn, StateColumn, DetailsColumn, ColumnCount };
    // The row's DevicePlan::State as an int.
    static constexpr int StateRole = Qt::UserRole + 1;

    explicit ImportPlanModel(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // Shows plan; a new device's row shows the values sheet gives it.
    void setPlan(const DevicePlan::Plan &plan, const DeviceSheet::Sheet &sheet);
    void clear();

private:
    struct Line
    {
        QString line;
        QString ext;
        DevicePlan::State state;
        QString details; // one line
        QString tip;     // the same, one item a line
    };
    QList<Line> m_lines;
    QStringList m_headers;
};

// Shows the rows of one state, or all.
class ImportPlanFilter : public QSortFilterProxyModel
{
    Q_OBJECT
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    // -1 shows every row.
    void setState(int state);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const override;

private:
    int m_state = -1;
};
