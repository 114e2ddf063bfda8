// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in for the main window while it is not built: lists each session event as it arrives,
// with the main window's duties towards the session (load on READY, close on LOGOUT).
#pragma once

#include <QMainWindow>

class QPlainTextEdit;
class ServerLink;
class SessionEvents;

class EventListWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit EventListWindow(ServerLink &link, QWidget *parent = nullptr);

    void setProductName(const QString &productName);
    void setEndsProgram(bool ends) { m_endsProgram = ends; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    ServerLink &m_link;
    SessionEvents *m_events;
    QPlainTextEdit *m_list;
    bool m_endsProgram = false;
};
