// SPDX-License-Identifier: GPL-3.0-or-later
#include "eventwindow.h"

#include "serverlink.h"
#include "usrsession.h"

#include <QPlainTextEdit>

using namespace Qt::StringLiterals;

EventListWindow::EventListWindow(ServerLink &link, QWidget *parent)
    : QMainWindow(parent), m_events(new QPlainTextEdit(this))
{
    m_events->setObjectName(u"events"_s);
    m_events->setReadOnly(true);
    setCentralWidget(m_events);
    resize(800, 500);
    connect(&link.session(), &usrSession::SessionEvent, this,
            [this](const QString &, const QString &kind, const QString &data) {
                m_events->appendPlainText(kind + u"  "_s + data.left(200));
            });
}
