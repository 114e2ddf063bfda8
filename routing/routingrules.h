// SPDX-License-Identifier: GPL-3.0-or-later
// The tool's own reading of routing conditions: which criteria a call meets, the first condition
// that fires, and the warnings shown on the Routing page. The server decides the real routing.
#pragma once

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

namespace RoutingRules {

enum class Criterion { Caller, Called, Ext, AddressBook, Day, Date, Time };
inline constexpr int CriterionCount = 7;

enum class Outcome { Matched, NotMatched, NotEvaluated };
// Whether the caller is in the condition's address book: only the server can look it up.
enum class BookAnswer { Found, NotFound, Unknown };

// Number criteria: alternatives separated by ",", blanks around them ignored, "*" any run of
// characters, case-insensitive. No alternatives match anything.
class NumberPattern
{
public:
    static NumberPattern parse(QStringView text);
    bool matchesAll() const { return m_all; }
    bool matches(QStringView number) const;
    // True when this pattern matches every number that other matches, by a conservative test
    // ("*", identical alternatives, "p*" over anything starting with p, "*s" over anything ending
    // with s). False means "not shown", never "overlaps".
    bool contains(const NumberPattern &other) const;

private:
    QStringList m_alternatives; // lower case
    bool m_all = true;
};

// Day numbers: -1 none chosen and 0 any day, 1 Monday ... 7 Sunday, 8 Monday-Friday, 9 weekends.
// Held as a set of weekdays (bit 0 = Monday).
class DaySet
{
public:
    static DaySet fromNumber(int day);
    bool matches(const QDate &date) const;
    bool contains(const DaySet &other) const { return (m_days & other.m_days) == other.m_days; }
    std::uint8_t days() const { return m_days; }

private:
    std::uint8_t m_days = 0x7F;
};

// Dates: comma-separated, each d/m/y, d.m.y or d-m-y (two-digit years are 20xx) or ISO
// yyyy-mm-dd. No dates match any date; parts that cannot be read are kept for the warning and
// match nothing.
class DateSet
{
public:
    static DateSet parse(QStringView text);
    bool matchesAll() const { return m_all; }
    bool matches(const QDate &date) const;
    bool contains(const DateSet &other) const;
    const QStringList &badParts() const { return m_bad; }
    static QDate parseDate(QStringView text);

private:
    QList<QDate> m_dates; // sorted, no repeats
    QStringList m_bad;
    bool m_all = true;
};

// Times: comma-separated ranges "HH:MM-HH:MM" (H:MM too). A range includes its start minute and
// excludes its end minute; an end before the start runs past midnight (22:00-06:00 covers 23:30
// and 05:59, not 06:00); an end equal to the start covers the whole day; "24:00" may end a range.
// Seconds of the call's time are ignored. No ranges match any time.
class TimeSet
{
public:
    static TimeSet parse(QStringView text);
    bool matchesAll() const { return m_all; }
    bool matches(const QTime &time) const;
    // The union of this set's ranges covers every range of other.
    bool contains(const TimeSet &other) const;
    const QStringList &badParts() const { return m_bad; }

private:
    struct Span {
        int start; // minutes since midnight, included
        int end;   // excluded, at most 1440
    };
    bool covers(Span span) const;
    QList<Span> m_spans; // sorted, merged, none past midnight
    QStringList m_bad;
    bool m_all = true;
};

struct Call {
    QString caller;
    QString called;
    QString ext;
    QDateTime when;
    BookAnswer book = BookAnswer::Unknown;
};

struct Condition {
    int id = 0;
    QString name;
    int order = 0;
    QString options; // the record's Options as read

    // Raw criterion texts.
    QString callerText, calledText, extText, bookText, dateText, timeText, destination;
    int dayNumber = -1;

    NumberPattern caller, called, ext;
    DaySet days;
    DateSet dates;
    TimeSet times;

    // A list row: {Id=..}{Name=..}{Order=..}{Options=..} with Options a tagged-value string.
    static Condition fromRecord(const QString &row);
    static Condition fromFields(int id, const QString &name, int order, const QString &options);
    bool hasUnreadableParts() const { return !dates.badParts().isEmpty() || !times.badParts().isEmpty(); }
};

struct Evaluation {
    std::array<Outcome, CriterionCount> outcomes{};
    bool fires = false;   // every criterion matched
    bool mayFire = false; // only the address book criterion was not evaluated
    Outcome outcome(Criterion c) const { return outcomes[std::size_t(c)]; }
};

// Every criterion is evaluated, also after the first that does not match.
Evaluation evaluate(const Condition &condition, const Call &call);

struct Firing {
    int index = -1;         // into the given list; -1 when none fires
    QList<int> mayFireFirst; // conditions before it in Order that fire if the caller is in their book
};
// Conditions are taken in Order (equal orders keep their places in the list).
Firing firstFiring(const QList<Condition> &conditions, const Call &call);
// Indexes of conditions in Order.
QList<int> inOrder(const QList<Condition> &conditions);

// Every call later matches, earlier matches too (conservatively: false when not shown). A
// condition with a date or time that cannot be read is never compared: its own warning comes first.
bool shadows(const Condition &earlier, const Condition &later);

enum class WarningKind { Shadowed, EmptyDestination, UnknownAddressBook, UnreadableDate, UnreadableTime, DuplicateName };

struct Warning {
    WarningKind kind;
    int condition = -1; // index into the given list
    int other = -1;     // the earlier condition for Shadowed and DuplicateName
    QString text;       // translated
};

// The Routing page's warnings, conditions in Order; books are the address books that exist.
QList<Warning> check(const QList<Condition> &conditions, const QStringList &books);

} // namespace RoutingRules
