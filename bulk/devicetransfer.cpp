// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicetransfer.h"

#include "tagreader.h"
#include "tagvalue.h"
#include "translate.h"
#include "usrsession.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcBulk, "quill.bulk")

namespace {

const QString readRef = u"BULK-READ-"_s;
const QString ackRef = u"BULK-ACK-"_s;

// What one field of one device adds to a list reply, in characters, as a guess that errs high:
// "{Tag(S25)=" and "}" around a value as long as the field keeps (or a generous line of text for a
// field without a limit).
qsizetype fieldEstimate(const QString &tag)
{
    const DeviceSheet::Column *column = DeviceSheet::column(tag);
    const qsizetype value = !column ? 64
                            : column->holds == DeviceSheet::Holds::Flag ? 1
                            : column->cut > 0                           ? column->cut
                                                                        : 40;
    return tag.size() + 8 + value;
}

// The most UTF-8 bytes one list reply should carry: under the session's frame limit of 16 MiB with
// room for fields that run longer than the ones measured before them. Fewer, fuller replies are
// faster: every reply repeats each device's Id.
constexpr double replyBudget = 14'000'000;
// What a list row costs besides its fields: "{List123456(S1234)=" and the device's Id entry.
constexpr qsizetype rowOverhead = 40;
// Fields of free text (notes, absence text) are read on their own.
bool readAlone(const QString &tag)
{
    return tag.compare(u"Notes"_s, Qt::CaseInsensitive) == 0 || tag.compare(u"AbsenceText"_s, Qt::CaseInsensitive) == 0;
}

// Flags and texts are grouped apart: each kind's measured size then applies to its own kind only.
int sizeClass(const QString &tag)
{
    const DeviceSheet::Column *column = DeviceSheet::column(tag);
    return column && column->holds == DeviceSheet::Holds::Flag ? 0 : 1;
}

qsizetype utf8Size(QStringView text)
{
    qsizetype bytes = text.size();
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit >= 0x80)
            bytes += (unit < 0x800 || c.isSurrogate()) ? 1 : 2; // a surrogate pair: 4 bytes for 2 units
    }
    return bytes;
}

// A list read of fields. Only the first read is sorted (by number: the order an export writes);
// the later ones are matched to it by Id, and sorting 100,000 rows again costs the server time.
QString listCommand(const QString &ref, const QStringList &fields, bool sorted)
{
    QString command = u"{Cmd=GetList}{Table=Exts}"_s;
    AddVar(command, u"Ref"_s, ref);
    AddVar(command, u"Fields"_s, fields.join(u','));
    if (sorted)
        command += u"{Sort=Ext}"_s;
    return command;
}

} // namespace

bool isBulkReply(const QString &message)
{
    return getText(message, u"Ref"_s).startsWith(u"BULK-"_s, Qt::CaseInsensitive);
}

SessionChannel::SessionChannel(usrSession &session, QObject *parent) : BulkChannel(parent), m_session(&session)
{
    connect(&session, &usrSession::SessionEvent, this,
            [this](const QString &, const QString &kind, const QString &data) {
                if (kind == u"MESSAGE"_s && isBulkReply(data))
                    emit replyArrived(data);
                else if (kind == u"LOGOUT"_s)
                    emit lost(data.isEmpty() ? Translate(u"logged out"_s) : data);
            });
    connect(&session, &usrSession::stateChanged, this, [this](usrSession::State state) {
        if (state == usrSession::State::Reconnecting || state == usrSession::State::Closed)
            emit lost(Translate(u"the connection to the server was lost"_s));
    });
    connect(&session, &QObject::destroyed, this,
            [this] { emit lost(Translate(u"the connection to the server was lost"_s)); });
}

void SessionChannel::send(const QString &command)
{
    if (m_session)
        m_session->SendCommand(command);
}

bool SessionChannel::isOpen() const
{
    return m_session && m_session->state() == usrSession::State::Ready;
}

// ---------------------------------------------------------------------------------------------

DeviceReader::DeviceReader(BulkChannel &channel, QObject *parent) : QObject(parent), m_channel(channel)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this,
            [this] { fail(Translate(u"The server did not answer the read of the devices in time."_s)); });
    connect(&m_channel, &BulkChannel::replyArrived, this, &DeviceReader::replyArrived);
    connect(&m_channel, &BulkChannel::lost, this, [this](const QString &reason) {
        if (m_running)
            fail(Translate({}, u"The devices could not be read: <1>."_s, reason));
    });
}

void DeviceReader::start(const QStringList &fields)
{
    m_result = {};
    m_result.devices.fields = {u"Id"_s, u"Ext"_s, u"Type"_s};
    m_wanted.clear();
    for (const QString &field : fields) {
        const QString name = field.trimmed();
        if (!name.isEmpty() && m_result.devices.indexOf(name) < 0 && !m_wanted.contains(name, Qt::CaseInsensitive))
            m_wanted.append(name);
    }
    m_result.devices.fields += m_wanted;
    m_unread.clear();
    m_group.clear();
    m_scale = {0.0, 0.0};
    m_rowOfId.clear();
    m_done = 0;
    m_total = 1;
    m_running = true;
    if (!m_channel.isOpen()) {
        fail(Translate(u"The devices could not be read: there is no connection to the server."_s));
        return;
    }
    m_awaiting = readRef + u'0';
    m_channel.send(listCommand(m_awaiting, {u"Id"_s, u"Ext"_s, u"Type"_s}, true));
    m_timer.start(m_timeoutMs);
}

void DeviceReader::cancel()
{
    if (!m_running)
        return;
    m_result.cancelled = true;
    finish();
}

void DeviceReader::replyArrived(const QString &message)
{
    if (!m_running || getText(message, u"Ref"_s).toUpper() != m_awaiting)
        return;
    m_timer.stop();
    const ListRows rows(message);
    DeviceSheet::Table &devices = m_result.devices;
    const qsizetype width = devices.fields.size();
    if (m_done == 0) {
        devices.rows.reserve(rows.size());
        for (const QStringView row : rows) {
            const TagReader reader(row);
            QStringList values(width);
            values[0] = reader.text(u"Id");
            values[1] = reader.text(u"Ext");
            values[2] = reader.text(u"Type");
            m_rowOfId.insert(qint64(reader.number(u"Id")), devices.rows.size());
            devices.rows.append(values);
        }
        m_unread = m_wanted;
    } else {
        // What this reply weighed against its estimate tells how big its kind of field really is.
        const QStringList &group = m_group;
        if (!readAlone(group.constFirst())) {
            const double estimate = double(qMax<qsizetype>(1, devices.rows.size())) * groupEstimate(group);
            double &scale = m_scale[size_t(sizeClass(group.constFirst()))];
            scale = qMax(scale, double(utf8Size(message)) / estimate);
        }
        QList<qsizetype> positions;
        for (const QString &field : group)
            positions.append(devices.indexOf(field));
        for (const QStringView row : rows) {
            const TagReader reader(row);
            const auto found = m_rowOfId.constFind(qint64(reader.number(u"Id")));
            if (found == m_rowOfId.cend())
                continue; // a device stored since the first read
            QStringList &values = devices.rows[*found];
            for (qsizetype i = 0; i < group.size(); ++i)
                values[positions.at(i)] = reader.text(group.at(i));
        }
    }
    ++m_done;
    if (m_unread.isEmpty()) {
        emit progress(m_done, m_done);
        finish();
        return;
    }
    packNext();
    m_total = m_done + 1 + remainingReads();
    emit progress(m_done, m_total);
    sendNext();
}

double DeviceReader::groupEstimate(const QStringList &group) const
{
    double cost = rowOverhead;
    for (const QString &field : group)
        cost += double(fieldEstimate(field));
    return cost;
}

void DeviceReader::packNext()
{
    // Free text alone; otherwise the unread fields of the first one's kind, in order, as many as
    // fit. Until a kind has been measured its estimates are trusted for a third of the budget.
    m_group = {m_unread.takeFirst()};
    if (readAlone(m_group.constFirst()))
        return;
    const int kind = sizeClass(m_group.constFirst());
    const double measured = m_scale[size_t(kind)];
    const double budget = measured > 0 ? replyBudget / measured : replyBudget / 3;
    const double count = double(qMax<qsizetype>(1, m_result.devices.rows.size()));
    for (qsizetype i = 0; i < m_unread.size();) {
        const QString &field = m_unread.at(i);
        if (readAlone(field) || sizeClass(field) != kind) {
            ++i;
            continue;
        }
        if ((groupEstimate(m_group) + double(fieldEstimate(field))) * count > budget)
            break;
        m_group.append(m_unread.takeAt(i));
    }
}

int DeviceReader::remainingReads() const
{
    // A guess for the progress bar: the fields left, packed as the next read packs them.
    const double count = double(qMax<qsizetype>(1, m_result.devices.rows.size()));
    std::array<double, 2> cost{0, 0};
    int alone = 0;
    for (const QString &field : m_unread) {
        if (readAlone(field))
            ++alone;
        else
            cost[size_t(sizeClass(field))] += double(fieldEstimate(field));
    }
    int reads = alone;
    for (size_t kind = 0; kind < 2; ++kind) {
        const double scale = m_scale[kind] > 0 ? m_scale[kind] : 1.0;
        if (cost[kind] > 0)
            reads += int(std::ceil((cost[kind] + rowOverhead) * count * scale / replyBudget));
    }
    return reads;
}

void DeviceReader::sendNext()
{
    m_awaiting = readRef + QString::number(m_done);
    m_channel.send(listCommand(m_awaiting, QStringList{u"Id"_s} + m_group, false));
    m_timer.start(m_timeoutMs);
}

void DeviceReader::fail(const QString &error)
{
    if (!m_running)
        return;
    qCWarning(lcBulk) << "device read failed:" << error;
    m_result.error = error;
    finish();
}

void DeviceReader::finish()
{
    m_running = false;
    m_timer.stop();
    m_awaiting.clear();
    if (!m_result.ok())
        m_result.devices.rows.clear();
    emit finished(m_result);
}

// ---------------------------------------------------------------------------------------------

DeviceSender::DeviceSender(BulkChannel &channel, QObject *parent) : QObject(parent), m_channel(channel)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this,
            [this] { lost(Translate(u"the server did not confirm the writes in time"_s)); });
    connect(&m_channel, &BulkChannel::replyArrived, this, &DeviceSender::replyArrived);
    connect(&m_channel, &BulkChannel::lost, this, &DeviceSender::lost);
}

QList<DeviceSender::Item> DeviceSender::itemsOf(const DevicePlan::Plan &plan)
{
    QList<Item> items;
    for (const DevicePlan::Entry &entry : plan.entries)
        if (!entry.command.isEmpty())
            items.append({entry.line, entry.command});
    return items;
}

void DeviceSender::start(const QList<Item> &items)
{
    m_items = items;
    m_sent = 0;
    m_confirmed = 0;
    m_awaited.clear();
    m_cancelled = false;
    m_running = true;
    if (m_items.isEmpty()) {
        QTimer::singleShot(0, this, [this] { finish(Result::Done); });
        return;
    }
    if (!m_channel.isOpen()) {
        QTimer::singleShot(0, this, [this] { lost(Translate(u"there is no connection to the server"_s)); });
        return;
    }
    sendBatch();
}

void DeviceSender::cancel()
{
    if (!m_running || m_cancelled)
        return;
    m_cancelled = true;
    if (m_awaited.isEmpty())
        finish(Result::Cancelled);
}

void DeviceSender::sendBatch()
{
    while (!m_cancelled && m_awaited.size() < m_inFlight && m_sent < m_items.size()) {
        const qsizetype end = qMin(m_items.size(), m_sent + m_batchSize);
        for (; m_sent < end; ++m_sent)
            m_channel.send(m_items.at(m_sent).command);
        QString echo = u"{Cmd=Ping}{Handler=Branch}"_s;
        AddVar(echo, u"Ref"_s, QString(ackRef + QString::number(++m_batch)));
        m_channel.send(echo);
        m_awaited.append({m_batch, m_sent});
    }
    m_timer.start(m_timeoutMs);
}

void DeviceSender::replyArrived(const QString &message)
{
    if (!m_running || m_awaited.isEmpty())
        return;
    const QString ref = getText(message, u"Ref"_s).toUpper();
    if (!ref.startsWith(ackRef))
        return;
    // Echoes come in the order their batches went, each confirming everything sent before it.
    bool isNumber = false;
    const int batch = ref.mid(ackRef.size()).toInt(&isNumber);
    if (!isNumber || batch < m_awaited.constFirst().batch || batch > m_batch)
        return; // not one of this run's echoes
    while (!m_awaited.isEmpty() && m_awaited.constFirst().batch <= batch)
        m_confirmed = m_awaited.takeFirst().end;
    emit progress(m_confirmed, m_items.size());
    if (m_confirmed >= m_items.size())
        finish(Result::Done);
    else if (m_cancelled && m_awaited.isEmpty())
        finish(Result::Cancelled);
    else
        sendBatch();
}

void DeviceSender::lost(const QString &reason)
{
    if (m_running)
        finish(Result::Lost, reason);
}

void DeviceSender::finish(Result::Outcome outcome, const QString &reason)
{
    if (!m_running)
        return;
    m_running = false;
    m_timer.stop();
    Result result;
    result.outcome = outcome;
    result.reason = reason;
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        const qsizetype line = m_items.at(i).line;
        (i < m_confirmed ? result.written : i < m_sent ? result.unconfirmed : result.unsent).append(line);
    }
    if (outcome == Result::Lost)
        qCWarning(lcBulk) << "connection lost while sending:" << reason << "-" << m_confirmed << "confirmed,"
                          << m_sent - m_confirmed << "unconfirmed," << m_items.size() - m_sent << "not sent";
    m_awaited.clear();
    emit finished(result);
}

QString DeviceSender::Result::report() const
{
    QStringList parts;
    switch (outcome) {
    case Done:
        return written.size() == 1 ? Translate(u"The row was written."_s)
                                   : Translate({}, u"All <1> rows were written."_s, QString::number(written.size()));
    case Cancelled:
        parts.append(Translate(u"Cancelled."_s));
        break;
    case Lost:
        parts.append(Translate({}, u"The import stopped: <1>."_s, reason));
        break;
    }
    parts.append(written.isEmpty() ? Translate(u"No row was written."_s)
                                   : Translate({}, u"Written: lines <1>."_s, lineRanges(written)));
    if (!unconfirmed.isEmpty())
        parts.append(Translate({}, u"Sent but not confirmed (they may or may not be stored): lines <1>."_s,
                               lineRanges(unconfirmed)));
    if (!unsent.isEmpty())
        parts.append(Translate({}, u"Not written: lines <1>."_s, lineRanges(unsent)));
    if (!unconfirmed.isEmpty() || !unsent.isEmpty())
        parts.append(Translate(u"Run the same import again to finish: rows already stored then show as unchanged."_s));
    return parts.join(u'\n');
}

QString lineRanges(QList<qsizetype> lines)
{
    std::sort(lines.begin(), lines.end());
    QStringList ranges;
    for (qsizetype i = 0; i < lines.size();) {
        qsizetype j = i;
        while (j + 1 < lines.size() && lines.at(j + 1) == lines.at(j) + 1)
            ++j;
        ranges.append(j == i ? QString::number(lines.at(i))
                             : QString::number(lines.at(i)) + u'-' + QString::number(lines.at(j)));
        i = j + 1;
    }
    return ranges.join(u", "_s);
}
