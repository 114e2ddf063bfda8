// SPDX-License-Identifier: GPL-3.0-or-later
#include "eventwindow.h"

#include "serverlink.h"
#include "startup.h"
#include "usrsession.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPlainTextEdit>

using namespace Qt::StringLiterals;

EventListWindow::EventListWindow(ServerLink &link, QWidget *parent)
    : QMainWindow(parent), m_link(link), m_events(new SessionEvents(link, this)), m_list(new QPlainTextEdit(this))
{
    m_list->setObjectName(u"events"_s);
    m_list->setReadOnly(true);
    setCentralWidget(m_list);
    resize(800, 500);
    connect(&link.session(), &usrSession::SessionEvent, this,
            [this](const QString &unused, const QString &kind, const QString &data) {
                m_list->appendPlainText(kind + u"  "_s + data.left(200));
                m_events->Sess_SessionEvent(unused, kind, data);
            });
    connect(m_events, &SessionEvents::loadStarted, this, &QWidget::show);
    connect(m_events, &SessionEvents::logout, this, &QWidget::close);
}

void EventListWindow::setProductName(const QString &productName)
{
    setWindowTitle(Startup::WindowTitle(productName));
}

void EventListWindow::closeEvent(QCloseEvent *event)
{
    m_link.session().CloseSession();
    event->accept();
    if (m_endsProgram)
        QApplication::quit();
}
