// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in for the main window while it is not built: lists each session event as it arrives.
#pragma once

#include <QMainWindow>

class QPlainTextEdit;
class ServerLink;

class EventListWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit EventListWindow(ServerLink &link, QWidget *parent = nullptr);

private:
    QPlainTextEdit *m_events;
};
