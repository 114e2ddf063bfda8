// SPDX-License-Identifier: GPL-3.0-or-later
// The grid of the device window's Buttons and Events pages: one row per button or event, each
// keeping its whole action string and showing a caption of it. The edit button, a double-click or
// Enter opens the current row in the action editor and writes what it answers back into the row.
#pragma once

#include "frmButton.h"

#include <QString>
#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;
class QTableWidget;

class ActionGrid : public QWidget
{
    Q_OBJECT
public:
    enum Column { IdColumn, NameColumn, DefinitionColumn };
    // Opens the action editor on a request and answers how it closed.
    using Editor = std::function<ButtonResult(const QString &request)>;
    // What the Definition column shows for an action.
    using Caption = std::function<QString(const QString &action)>;

    // command: "Button" or "Script", the request's Cmd; nameHeading: the second column's heading.
    ActionGrid(const QString &gridName, const QString &nameHeading, const QString &command, Caption caption,
               Editor editor, QWidget *parent = nullptr);

    QTableWidget *grid() const { return m_grid; }
    QPushButton *editButton() const { return m_edit; }

    int rowCount() const;
    // Keeps the first rows (and their actions) and adds empty ones, or drops the last.
    void setRowCount(int rows);
    void setRowNames(int row, const QString &id, const QString &name);
    QString action(int row) const;
    void setAction(int row, const QString &action);

    // Opens the row (0 is the grid's first row, Index 1 in the request).
    void editRow(int row);
    void bProps_Click();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QTableWidget *m_grid;
    QPushButton *m_edit;
    QString m_command;
    Caption m_caption;
    Editor m_editor;
};
