// SPDX-License-Identifier: GPL-3.0-or-later
// Reading every device's fields from the server and sending many store commands, over one session,
// with progress, Cancel, and a straight account of what reached the server when the connection
// drops. QtCore only: the window and the command line share it.
#pragma once

#include "deviceplan.h"
#include "devicesheet.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <array>

class usrSession;

// Where the bulk work's commands go and its replies come from. Replies are the frames whose Ref
// begins with "BULK-".
class BulkChannel : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    virtual void send(const QString &command) = 0;
    virtual bool isOpen() const = 0;

signals:
    void replyArrived(const QString &message);
    // The connection is gone: whatever was in flight may or may not have reached the server.
    void lost(const QString &reason);
};

// The channel over a logged-in session.
class SessionChannel : public BulkChannel
{
    Q_OBJECT
public:
    explicit SessionChannel(usrSession &session, QObject *parent = nullptr);
    void send(const QString &command) override;
    bool isOpen() const override;

private:
    QPointer<usrSession> m_session;
};

// True when message is a reply meant for the bulk work (its Ref begins with "BULK-").
bool isBulkReply(const QString &message);

// Reads fields of every device: one list read for the numbers and kinds, then the other fields in
// groups small enough that no reply comes near the session's frame limit.
class DeviceReader : public QObject
{
    Q_OBJECT
public:
    explicit DeviceReader(BulkChannel &channel, QObject *parent = nullptr);

    // Starts reading; Id, Ext and Type are always read. Ends with finished().
    void start(const QStringList &fields);
    void cancel();
    // How long one reply may take before the read fails. Default 120 s.
    void setReplyTimeout(int milliseconds) { m_timeoutMs = milliseconds; }

    struct Result
    {
        QString error; // translated; empty when every device was read
        bool cancelled = false;
        DeviceSheet::Table devices; // fields: Id, Ext, Type, then the others asked for
        bool ok() const { return error.isEmpty() && !cancelled; }
    };

signals:
    // Reads done out of all the reads this start needs.
    void progress(int done, int total);
    void finished(const DeviceReader::Result &result);

private:
    void packNext();
    double groupEstimate(const QStringList &group) const;
    int remainingReads() const;
    void sendNext();
    void replyArrived(const QString &message);
    void fail(const QString &error);
    void finish();

    BulkChannel &m_channel;
    QStringList m_wanted;
    QStringList m_unread; // fields not yet asked for
    QStringList m_group;  // the fields of the read in flight
    // UTF-8 bytes a reply of flags (0) and of texts (1) weighs per estimated character; 0 until
    // one has arrived.
    std::array<double, 2> m_scale{0.0, 0.0};
    int m_total = 0;
    int m_done = 0;
    QString m_awaiting; // the Ref of the read in flight, upper-case
    QHash<qint64, qsizetype> m_rowOfId;
    Result m_result;
    QTimer m_timer;
    int m_timeoutMs = 120000;
    bool m_running = false;
};

// Sends store commands in batches, each followed by a keep-alive that carries a Ref: its echo
// proves every command before it was handled and is on the server's disk.
class DeviceSender : public QObject
{
    Q_OBJECT
public:
    struct Item
    {
        qsizetype line = 0; // the sheet line the command comes from
        QString command;
    };
    struct Result
    {
        enum Outcome { Done, Cancelled, Lost };
        Outcome outcome = Done;
        QString reason;                // why the connection was lost
        QList<qsizetype> written;      // lines whose command the server confirmed
        QList<qsizetype> unconfirmed;  // sent, but the connection went before the confirmation
        QList<qsizetype> unsent;       // never sent
        // What happened, line by line in ranges, translated.
        QString report() const;
    };

    // The commands of a plan's rows that send one, in file order, with their lines.
    static QList<Item> itemsOf(const DevicePlan::Plan &plan);

    explicit DeviceSender(BulkChannel &channel, QObject *parent = nullptr);
    void start(const QList<Item> &items);
    // Sends nothing more; finished() follows once what is in flight is confirmed.
    void cancel();
    void setBatchSize(int commands) { m_batchSize = qMax(1, commands); }
    void setReplyTimeout(int milliseconds) { m_timeoutMs = milliseconds; }

signals:
    void progress(qsizetype confirmed, qsizetype total);
    void finished(const DeviceSender::Result &result);

private:
    void sendBatch();
    void replyArrived(const QString &message);
    void lost(const QString &reason);
    void finish(Result::Outcome outcome, const QString &reason = {});

    BulkChannel &m_channel;
    QList<Item> m_items;
    qsizetype m_sent = 0;      // items handed to the channel
    qsizetype m_confirmed = 0; // items confirmed by an echo
    struct Awaited
    {
        int batch = 0;
        qsizetype end = 0; // the items sent before its echo
    };
    QList<Awaited> m_awaited; // echoes still awaited, oldest first
    int m_batch = 0;
    int m_batchSize = 250;
    int m_inFlight = 4; // batches sent ahead of their echoes
    bool m_cancelled = false;
    bool m_running = false;
    QTimer m_timer;
    int m_timeoutMs = 120000;
};

// "2-14, 17, 20-31": line numbers as ranges.
QString lineRanges(QList<qsizetype> lines);
