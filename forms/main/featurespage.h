// SPDX-License-Identifier: GPL-3.0-or-later
// The Features page of the main window: the codes dialled for the telephone system's special
// features, kept in the System/FEATURES record, one tag per feature.
#pragma once

#include "recordform.h"

#include <QList>
#include <QString>
#include <QWidget>

class QTableWidget;

struct FeatureCode
{
    QString tag;     // as the FEATURES record stores it
    QString caption; // as the grid shows it (translated)
};

class FeaturesPage : public QWidget
{
    Q_OBJECT
public:
    enum Column { FeatureColumn, CodeColumn };

    explicit FeaturesPage(QWidget *parent = nullptr);

    // The features every telephone system has, in the order the grid shows them.
    static const QList<FeatureCode> &commonFeatures();

    // Fills the codes from the FEATURES record; a feature the record holds beyond the common ones
    // gets a row of its own, named by its tag, so that it is shown and saved back.
    void load(const QString &options);
    // The FEATURES record: one tag per row, in grid order; a row without a code is left out.
    QString record() const;

    // The code shown for a feature's tag (any case); empty when there is no such row.
    QString code(const QString &tag) const;
    bool setCode(const QString &tag, const QString &code);

    QTableWidget *grid() const { return m_grid; }

private:
    void addRow(const QString &tag, const QString &caption);
    int rowOf(const QString &tag) const;

    QTableWidget *m_grid;
    RecordForm m_form; // one code cell per row, by the row's tag
};
