// SPDX-License-Identifier: GPL-3.0-or-later
// Password log-ins: checked in a small pool of worker threads, so that the slow hash never holds
// up the thread that serves the sessions, and held off per address after repeated failures, so
// that a guesser gets few tries however fast it connects.
#pragma once

#include "store.h"

#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QThreadPool>

#include <chrono>
#include <functional>
#include <optional>

struct LogInLimits
{
    // Failed log-ins in a row from one address before it is held off.
    int failuresBeforeBackOff = 5;
    // How long the address is held off after those; each further failure doubles it.
    std::chrono::milliseconds firstBackOff{1000};
    std::chrono::milliseconds longestBackOff{300 * 1000};
    // An address that has not failed for this long starts afresh.
    std::chrono::milliseconds forgetAfter{900 * 1000};
    // Checks that run at once (0: half the processor cores, at least one), and how many more may
    // wait for a worker before further log-ins are turned away.
    int runningChecks = 0;
    int waitingChecks = 32;

    // The back-off times as multiples of the first one, which is all quillserverd lets one set.
    static LogInLimits withFirstBackOff(std::chrono::milliseconds first);
};

// Thread-confined like the server that owns it; only the hashing runs elsewhere.
class LogInGate : public QObject
{
    Q_OBJECT
public:
    enum class Verdict {
        Accepted,
        Refused, // unknown user or wrong password
        HeldOff, // the address failed too often; retryAfter says for how much longer
        Busy,    // too many checks at once, from this address or in all
    };
    struct Answer
    {
        Verdict verdict = Verdict::Refused;
        std::chrono::seconds retryAfter{0};
    };
    using Done = std::function<void(const Answer &)>;

    explicit LogInGate(QObject *parent = nullptr);
    ~LogInGate() override;

    void setLimits(const LogInLimits &limits);
    const LogInLimits &limits() const { return m_limits; }

    // Checks password against account (none: an unknown user, which costs the same work). When
    // the answer is known at once (held off, busy) it is returned and done is never called;
    // otherwise done runs later in this object's thread.
    std::optional<Answer> check(const QHostAddress &peer, const std::optional<Account> &account,
                                const QString &password, Done done);

    // Drops the checks still waiting and waits for the running ones; their done is never called.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    struct Peer
    {
        int failures = 0;
        int running = 0;
        Clock::time_point lastFailure;
        Clock::time_point heldUntil;
    };
    struct Pending
    {
        QHostAddress peer;
        Done done;
    };

    void finished(quint64 id, bool accepted);
    void forgetQuietPeers(Clock::time_point now);

    LogInLimits m_limits;
    QThreadPool m_pool;
    QHash<QHostAddress, Peer> m_peers;
    QHash<quint64, Pending> m_pending;
    quint64 m_nextId = 1;
    qsizetype m_pruneAt = 1024;
};
