// SPDX-License-Identifier: GPL-3.0-or-later
// The Buttons page of the device window: how many programmable buttons the user has (none, 4 or 8)
// and the action of each, the preview button's included. Reads and writes Buttons and btn0..btn8.
#pragma once

#include "actiongrid.h"

#include <QList>
#include <QString>
#include <QWidget>

class QComboBox;
class QLabel;
class TipFilter;

class ButtonsPage : public QWidget
{
    Q_OBJECT
public:
    // The preview button and the eight numbered ones: btn0..btn8.
    static constexpr int actionCount = 9;

    ButtonsPage(QLabel *tipArea, ActionGrid::Editor editor, QWidget *parent = nullptr);

    // The Buttons value of a count choice: "0 buttons", "4 buttons", "8 buttons".
    static QString countText(int index);
    // The choice of a Buttons value: its leading number divided by 4, or -1 for the mixed marker
    // and for a value that names no choice ("12 buttons", "abc", nothing).
    static int countIndex(const QString &value);

    // Fills the count list and the grid from the device row.
    void load(const QString &row);
    // Writes Buttons and btn0 up to the last row shown; a row still mixed is left out. With no
    // count chosen, a value the list does not offer goes back as it came and the grid holds all
    // nine buttons.
    void save(QString &row) const;

    ActionGrid *actions() const { return m_grid; }

    // Another count: the grid gets that many numbered rows (a hidden row keeps its action).
    void btnStyle_Click();

private:
    int shownRows() const;
    void fillGrid();

    QComboBox *m_style;
    ActionGrid *m_grid;
    TipFilter *m_tips;
    QString m_loadedCount;
    QList<QString> m_actions; // btn0..btn8, for the rows the count hides
};
