// SPDX-License-Identifier: GPL-3.0-or-later
// What the main-window tests share: quillserverd with the demo site, a relay in front of it that
// records every frame the tool sends, a logged-in session whose MAIN- replies reach the test, and
// small helpers for records and message boxes.
#pragma once

#include "errorlog.h"
#include "isolation.h"
#include "propertywindows.h"
#include "serverlink.h"
#include "serverprocess.h"
#include "tagreader.h"
#include "tagvalue.h"
#include "translatewidgets.h"
#include "usrsession.h"

#include <QHash>
#include <QTest>
#include <QWebSocket>
#include <QWebSocketServer>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

// Passes frames both ways between the tool and the server, and keeps what the tool sent.
class RecordingRelay : public QObject
{
public:
    bool listen(const QUrl &upstream)
    {
        m_upstream = upstream;
        connect(&m_server, &QWebSocketServer::newConnection, this, &RecordingRelay::accept);
        return m_server.listen(QHostAddress::LocalHost, 0);
    }
    QUrl url() const { return QUrl(u"ws://127.0.0.1:%1"_s.arg(m_server.serverPort())); }
    // The commands the tool sent, in order (session frames left out).
    const QStringList &commands() const { return m_commands; }

private:
    void accept()
    {
        QWebSocket *client = m_server.nextPendingConnection();
        auto *server = new QWebSocket(QString(), QWebSocketProtocol::VersionLatest, client);
        auto *queued = new QStringList;
        connect(client, &QObject::destroyed, [queued] { delete queued; });
        connect(server, &QWebSocket::connected, client, [server, queued] {
            for (const QString &frame : std::as_const(*queued))
                server->sendTextMessage(frame);
            queued->clear();
        });
        connect(client, &QWebSocket::textMessageReceived, server,
                [this, server, queued](const QString &frame) {
                    if (!frame.startsWith(u"{Session="_s))
                        m_commands.append(frame);
                    if (server->state() == QAbstractSocket::ConnectedState)
                        server->sendTextMessage(frame);
                    else
                        queued->append(frame);
                });
        connect(server, &QWebSocket::textMessageReceived, client, [client](const QString &frame) {
            if (client->state() == QAbstractSocket::ConnectedState)
                client->sendTextMessage(frame);
        });
        connect(server, &QWebSocket::disconnected, client, [client] { client->close(); });
        connect(client, &QWebSocket::disconnected, client, [client, server] {
            server->close();
            client->deleteLater();
        });
        server->open(m_upstream);
    }

    QWebSocketServer m_server{u"relay"_s, QWebSocketServer::NonSecureMode};
    QUrl m_upstream;
    QStringList m_commands;
};

class ListFixture : public QObject, public IDataReceiver
{
public:
    ListFixture()
    {
        m_scratch.enter();
    }
    ~ListFixture() override { session.CloseSession(); }

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
    static QStringList replyIds(const QString &reply)
    {
        QStringList ids;
        const QStringList rows = ReadList(reply);
        for (const QString &row : rows)
            ids.append(GetText(row, u"Id"_s));
        return ids;
    }
    static QString fieldOf(const QString &reply, const QString &id, const QString &field)
    {
        const QStringList rows = ReadList(reply);
        for (const QString &row : rows) {
            if (GetText(row, u"Id"_s) == id)
                return GetText(row, field);
        }
        return {};
    }

    // Stores a new record in table: "{Cmd=SetFields}{Table=...}" with Fields and Id -1.
    void create(const QString &table, const QString &fields)
    {
        QString command = u"{Cmd=SetFields}{Table="_s + table + u'}';
        AddVar(command, u"Fields"_s, fields);
        AddVar(command, u"Id"_s, -1);
        link.SendCommand(command);
    }

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

// A record built with AddVar from name/value pairs, in order.
inline QString record(std::initializer_list<std::pair<QString, QVariant>> fields)
{
    QString vars;
    for (const auto &[name, value] : fields)
        AddVar(vars, name, value);
    return vars;
}

// A list reply of these rows, in this order.
inline QString listReply(const QStringList &rows)
{
    QString reply;
    AddVar(reply, u"ListCount"_s, int(rows.size()));
    for (qsizetype row = 0; row < rows.size(); ++row)
        AddVar(reply, u"List"_s + QString::number(row + 1), rows[row]);
    return reply;
}

// The same list reply with its rows the other way round.
inline QString reversedReply(const QString &reply)
{
    QStringList rows = ReadList(reply);
    std::reverse(rows.begin(), rows.end());
    return listReply(rows);
}

// The top-level tag names of a record, in order.
inline QStringList tagNames(const QString &record)
{
    QStringList names;
    for (int index = 1;; ++index) {
        QString name;
        GetVar(record, index, &name);
        if (name.isEmpty())
            return names;
        names << name;
    }
}

// The order in which the PBX settings record is written.
inline const QStringList pbxOrder{
    u"AutoDir"_s,  u"Name"_s,       u"Trunk"_s,        u"LCR"_s,        u"Area"_s,
    u"Operator"_s, u"PBX"_s,        u"Comm"_s,         u"Random"_s,     u"Numbers"_s,
    u"Settings"_s, u"Ip"_s,         u"Port"_s,         u"Server"_s,     u"Username"_s,
    u"Password"_s, u"FatalAlert"_s, u"WarningAlert"_s, u"DailyAlert"_s, u"SendUpdates"_s,
    u"SendPath"_s, u"Cluster"_s,    u"VMType"_s,       u"VM"_s,         u"VMIp"_s};

// Answers every message box with answer, noting its text in asked; whileAsked runs while the box
// would be open (a reply arriving then, say).
inline void answerMessageBoxes(QMessageBox::StandardButton answer, QStringList &asked,
                               std::function<void()> whileAsked = {})
{
    SetMsgBoxAnswer(
        [&asked, answer, whileAsked](const QString &, const QString &text, QMessageBox::StandardButtons) {
            asked.append(text);
            if (whileAsked)
                whileAsked();
            return answer;
        });
}
