// SPDX-License-Identifier: GPL-3.0-or-later
// One running copy of the tool for end-to-end tests: its own session to a server, its link and its
// main window, which loads every list once the session is ready.
#pragma once

#include "frmMain.h"
#include "serverlink.h"
#include "serverprocess.h"
#include "startup.h"
#include "usrsession.h"

#include <QLabel>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

// One running copy of the tool: its session, its link and its main window.
struct MainTool
{
    usrSession session;
    ServerLink link{session};
    frmMain window{link};

    explicit MainTool(const QUrl &server)
    {
        session.setCredentials({server, TestAccount::user(), TestAccount::password(), {}});
        session.StartSession(Startup::applicationTitle(u"QuillServer"_s));
    }
    bool waitLoaded()
    {
        return QTest::qWaitFor([this] { return window.isLoaded(); }, 20000);
    }

    template <typename T> T *control(const QString &name) const { return window.findChild<T *>(name); }
    QLabel *tip() const { return control<QLabel>(u"Tip"_s); }
    QTabWidget *tabs() const { return control<QTabWidget>(u"Tabs"_s); }
};

