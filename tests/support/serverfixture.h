// SPDX-License-Identifier: GPL-3.0-or-later
// quillserverd with the demo site behind a recording relay, and a logged-in session whose MAIN-
// replies reach the test: what the end-to-end window tests share.
#pragma once

#include "isolation.h"
#include "listreplies.h"
#include "propertywindows.h"
#include "recordingrelay.h"
#include "serverlink.h"
#include "serverprocess.h"
#include "usrsession.h"

#include <QHash>
#include <QTest>

#include <functional>

class ServerFixture : public QObject, public IDataReceiver
{
public:
    ServerFixture()
    {
        m_scratch.enter();
    }
    ~ServerFixture() override { session.CloseSession(); }

    bool start(QString *error)
    {
        if (!m_server.addUser(TestAccount::user(), TestAccount::password()) ||
            !m_server.start({u"--seed-demo"_s})) {
            *error = m_server.log();
            return false;
        }
        if (!relay.listen(m_server.url())) {
            *error = u"relay could not listen"_s;
            return false;
        }
        connect(&session, &usrSession::SessionEvent, this,
                [this](const QString &, const QString &kind, const QString &data) {
                    if (kind == u"READY"_s)
                        m_ready = true;
                    else if (kind == u"MESSAGE"_s)
                        link.HandleCallback(data);
                });
        link.setReceiver(u"MAIN"_s, this);
        session.setCredentials({relay.url(), TestAccount::user(), TestAccount::password(), {}});
        session.StartSession(u"QuillServer Configuration"_s);
        if (!QTest::qWaitFor([this] { return m_ready; }, 20000)) {
            *error = u"no READY from the session: "_s + m_server.log();
            return false;
        }
        return true;
    }

    // Restarts the server on its port and database, and waits until the session is ready again.
    bool restartServer()
    {
        m_ready = false;
        return m_server.restart() && QTest::qWaitFor([this] { return m_ready; }, 30000);
    }

    void DataArrived(const QString &SubRef, const QString &Message) override
    {
        m_replies[SubRef] += 1;
        m_last[SubRef] = Message;
        if (onReply)
            onReply(SubRef, Message);
    }

    int replyCount(const QString &subRef) const { return m_replies.value(subRef); }
    QString lastReply(const QString &subRef) const { return m_last.value(subRef); }

    // Asks for a MAIN- list and waits for its answer ("MAIN-EXTS" -> reply "EXTS").
    QString fetch(const QString &key)
    {
        const QString subRef = key.mid(5).toUpper();
        const int before = replyCount(subRef);
        link.GetData(key);
        if (!waitForReply(subRef, before))
            return {};
        return lastReply(subRef);
    }
    bool waitForReply(const QString &subRef, int countBefore)
    {
        return QTest::qWaitFor([&] { return replyCount(subRef) > countBefore; }, 20000);
    }

    // The ids of a list reply, in its order.
    static QStringList replyIds(const QString &reply) { return listColumn(reply, u"Id"_s); }
    static QString fieldOf(const QString &reply, const QString &id, const QString &field)
    {
        const QStringList rows = readList(reply);
        for (const QString &row : rows) {
            if (getText(row, u"Id"_s) == id)
                return getText(row, field);
        }
        return {};
    }

    // Stores a new record in table: "{Cmd=SetFields}{Table=...}" with Fields and Id -1.
    void create(const QString &table, const QString &fields) { link.SendCommand(setFieldsCommand(table, fields)); }

    // The server process itself (to stop or kill it under a live session).
    ServerProcess &server() { return m_server; }

    RecordingRelay relay;
    usrSession session;
    ServerLink link{session};
    PropertyWindows windows;
    std::function<void(const QString &subRef, const QString &message)> onReply;

private:
    TestIsolation m_scratch;
    ServerProcess m_server;
    bool m_ready = false;
    QHash<QString, int> m_replies;
    QHash<QString, QString> m_last;
};

