// SPDX-License-Identifier: GPL-3.0-or-later
// Translation of message boxes, windows and the headings of grids, tabs and lists.
#pragma once

#include <QMessageBox>
#include <QString>
#include <functional>

class QHeaderView;
class QTabBar;
class QTabWidget;
class QTableWidget;
class QTreeView;
class QWidget;

// Shows the translated prompt (placeholders filled by p1 and p2) with the given buttons and returns
// the button pressed. An empty title is replaced by the application's title.
QMessageBox::StandardButton TranslateMsgBox(const QString &prompt,
                                            QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                            const QString &p1 = {}, const QString &p2 = {},
                                            const QString &title = {});

// Answers a message box instead of showing it, given its title, its text and its buttons.
using MsgBoxAnswer = std::function<QMessageBox::StandardButton(const QString &title, const QString &text,
                                                               QMessageBox::StandardButtons buttons)>;
// Test seam: every message box is answered by answer until it is set back to an empty function.
void setMsgBoxAnswer(MsgBoxAnswer answer);

// Hands the window to the translator; without one the window keeps its English texts.
void TranslateWindow(QWidget *window);
// Translates the grid's column headings, from the first column to the last.
void TranslateGrid(QTableWidget *grid);
// Translates each tab caption, from the first tab to the last.
void TranslateTabs(QTabWidget *tabs);
void TranslateTabs(QTabBar *tabs);
// Translates each column heading of a list (a QTreeWidget or any tree view), or of a header's model.
void TranslateList(QTreeView *list);
void TranslateList(QHeaderView *header);
