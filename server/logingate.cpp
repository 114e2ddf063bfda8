// SPDX-License-Identifier: GPL-3.0-or-later
#include "logingate.h"

#include "credentials.h"
#include "serverlog.h"

#include <QThread>

#include <algorithm>

Q_LOGGING_CATEGORY(lcServerAuth, "quill.server.auth")

using namespace std::chrono;

namespace {
// The address whose failures count together: an IPv4 address as it is (also when it comes
// IPv4-mapped), and for IPv6 the /64 network, since one host is commonly given a whole /64.
QHostAddress failureKey(const QHostAddress &peer)
{
    bool isIpv4 = false;
    const quint32 ipv4 = peer.toIPv4Address(&isIpv4);
    if (isIpv4)
        return QHostAddress(ipv4);
    if (peer.protocol() != QAbstractSocket::IPv6Protocol)
        return peer;
    Q_IPV6ADDR bytes = peer.toIPv6Address();
    std::fill(bytes.c + 8, bytes.c + 16, quint8(0));
    return QHostAddress(bytes);
}

seconds roundedUp(steady_clock::duration wait)
{
    return std::max(seconds(1), ceil<seconds>(wait));
}
} // namespace

LogInLimits LogInLimits::withFirstBackOff(milliseconds first)
{
    LogInLimits limits;
    limits.firstBackOff = first;
    limits.longestBackOff = first * 300;
    limits.forgetAfter = first * 900;
    return limits;
}

LogInGate::LogInGate(QObject *parent) : QObject(parent)
{
    setLimits(m_limits);
}

LogInGate::~LogInGate()
{
    stop();
}

void LogInGate::setLimits(const LogInLimits &limits)
{
    m_limits = limits;
    // Half the cores at most: a flood of log-ins must leave the sessions' thread a core of its own.
    const int running =
        limits.runningChecks > 0 ? limits.runningChecks : std::max(1, QThread::idealThreadCount() / 2);
    m_pool.setMaxThreadCount(running);
}

std::optional<LogInGate::Answer> LogInGate::check(const QHostAddress &peer,
                                                  const std::optional<Account> &account,
                                                  const QString &password, Done done)
{
    const Clock::time_point now = Clock::now();
    if (m_peers.size() >= m_pruneAt)
        forgetQuietPeers(now);
    const QHostAddress key = failureKey(peer);
    Peer &state = m_peers[key];
    if (state.failures > 0 && state.running == 0 && now - state.lastFailure >= m_limits.forgetAfter)
        state = Peer();
    if (now < state.heldUntil)
        return Answer{Verdict::HeldOff, roundedUp(state.heldUntil - now)};
    // While an address has failed little, a few of its log-ins may be checked side by side (tools
    // reconnecting together); near the back-off only one at a time, so that a burst of connections
    // gets no more tries than one after the other would.
    const int sideBySide = std::max(1, m_limits.failuresBeforeBackOff - state.failures);
    if (state.running >= sideBySide || m_pending.size() >= m_pool.maxThreadCount() + m_limits.waitingChecks) {
        if (state.running == 0 && state.failures == 0)
            m_peers.remove(key);
        return Answer{Verdict::Busy, seconds(1)};
    }

    ++state.running;
    const quint64 id = m_nextId++;
    m_pending.insert(id, Pending{key, std::move(done)});
    // The worker touches nothing but its copies and posts its result to this object, which waits
    // for every worker before it goes away.
    m_pool.start([this, id, account, password] {
        bool accepted = false;
        if (account)
            accepted = Credentials::verify(password, *account);
        else
            Credentials::wasteVerification(password);
        QMetaObject::invokeMethod(
            this, [this, id, accepted] { finished(id, accepted); }, Qt::QueuedConnection);
    });
    return std::nullopt;
}

void LogInGate::finished(quint64 id, bool accepted)
{
    const auto found = m_pending.constFind(id);
    if (found == m_pending.cend())
        return; // dropped by stop()
    const Pending pending = *found;
    m_pending.erase(found);

    const Clock::time_point now = Clock::now();
    Peer &state = m_peers[pending.peer];
    state.running = std::max(0, state.running - 1);
    if (accepted) {
        state.failures = 0;
        state.heldUntil = {};
    } else {
        ++state.failures;
        state.lastFailure = now;
        const int beyond = state.failures - m_limits.failuresBeforeBackOff;
        if (beyond >= 0) {
            const auto wait = std::min<milliseconds>(
                m_limits.firstBackOff * (qint64(1) << std::min(beyond, 30)), m_limits.longestBackOff);
            state.heldUntil = std::max(state.heldUntil, now + wait);
            qCInfo(lcServerAuth).noquote()
                << "log-ins from" << pending.peer.toString() << "held off for" << wait.count() << "ms after"
                << state.failures << "failures in a row";
        }
    }
    if (state.failures == 0 && state.running == 0)
        m_peers.remove(pending.peer);

    pending.done(Answer{accepted ? Verdict::Accepted : Verdict::Refused, seconds(0)});
}

void LogInGate::stop()
{
    m_pool.clear();
    m_pool.waitForDone();
    // Results already posted find nothing to answer.
    m_pending.clear();
    for (Peer &state : m_peers)
        state.running = 0;
}

void LogInGate::forgetQuietPeers(Clock::time_point now)
{
    m_peers.removeIf([&](const auto &entry) {
        const Peer &state = entry.value();
        return state.running == 0 && now >= state.heldUntil &&
               now - state.lastFailure >= m_limits.forgetAfter;
    });
    m_pruneAt = std::max<qsizetype>(1024, m_peers.size() * 2);
}
