// SPDX-License-Identifier: GPL-3.0-or-later
#include "routingrules.h"

#include "tagvalue.h"
#include "translate.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace RoutingRules {

namespace {

// Glob match with "*" only; pattern and text already in lower case.
bool globMatch(QStringView pattern, QStringView text)
{
    qsizetype p = 0, t = 0, star = -1, mark = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            mark = t;
        } else if (p < pattern.size() && pattern[p] == text[t]) {
            ++p;
            ++t;
        } else if (star >= 0) {
            p = star + 1;
            t = ++mark;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

bool onlyStars(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c == u'*'; });
}

bool alternativeContains(const QString &a, const QString &b)
{
    if (onlyStars(a) || a == b)
        return true;
    const qsizetype stars = a.count(u'*');
    if (stars != 1)
        return false;
    if (a.endsWith(u'*'))
        return b.startsWith(QStringView(a).chopped(1));
    if (a.startsWith(u'*'))
        return b.endsWith(QStringView(a).sliced(1));
    return false;
}

bool readNumber(QStringView text, int maxDigits, int &value)
{
    if (text.isEmpty() || text.size() > maxDigits)
        return false;
    value = 0;
    for (QChar c : text) {
        if (!c.isDigit() || c.unicode() > 127)
            return false;
        value = value * 10 + (c.unicode() - u'0');
    }
    return true;
}

// "H:MM" or "HH:MM" as minutes since midnight; "24:00" only when allowEnd.
int readClock(QStringView text, bool allowEnd)
{
    const qsizetype colon = text.indexOf(u':');
    if (colon < 0)
        return -1;
    int hours = 0, minutes = 0;
    const QStringView minutePart = text.sliced(colon + 1);
    if (!readNumber(text.first(colon), 2, hours) || minutePart.size() != 2 || !readNumber(minutePart, 2, minutes))
        return -1;
    if (minutes > 59 || hours > 24 || (hours == 24 && (minutes != 0 || !allowEnd)))
        return -1;
    return hours * 60 + minutes;
}

int dayNumberOf(const QString &options)
{
    const QString text = getText(options, u"Day"_s).trimmed();
    if (text.isEmpty())
        return -1;
    return int(leadingNumber(text));
}

} // namespace

NumberPattern NumberPattern::parse(QStringView text)
{
    NumberPattern pattern;
    for (QStringView part : text.split(u',')) {
        part = part.trimmed();
        if (!part.isEmpty())
            pattern.m_alternatives.append(part.toString().toLower());
    }
    pattern.m_all = pattern.m_alternatives.isEmpty()
                    || std::any_of(pattern.m_alternatives.cbegin(), pattern.m_alternatives.cend(),
                                   [](const QString &a) { return onlyStars(a); });
    return pattern;
}

bool NumberPattern::matches(QStringView number) const
{
    if (m_all)
        return true;
    const QString lower = number.trimmed().toString().toLower();
    return std::any_of(m_alternatives.cbegin(), m_alternatives.cend(),
                       [&](const QString &a) { return globMatch(a, lower); });
}

bool NumberPattern::contains(const NumberPattern &other) const
{
    if (m_all)
        return true;
    if (other.m_all)
        return false;
    return std::all_of(other.m_alternatives.cbegin(), other.m_alternatives.cend(), [&](const QString &b) {
        return std::any_of(m_alternatives.cbegin(), m_alternatives.cend(),
                           [&](const QString &a) { return alternativeContains(a, b); });
    });
}

DaySet DaySet::fromNumber(int day)
{
    DaySet set;
    if (day >= 1 && day <= 7)
        set.m_days = std::uint8_t(1u << (day - 1));
    else if (day == 8)
        set.m_days = 0x1F;
    else if (day == 9)
        set.m_days = 0x60;
    return set;
}

bool DaySet::matches(const QDate &date) const
{
    return date.isValid() && (m_days & (1u << (date.dayOfWeek() - 1)));
}

QDate DateSet::parseDate(QStringView text)
{
    QList<QStringView> parts;
    qsizetype from = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == u'/' || text[i] == u'.' || text[i] == u'-') {
            parts.append(text.sliced(from, i - from));
            from = i + 1;
        }
    }
    if (parts.size() != 3)
        return {};
    int a = 0, b = 0, c = 0;
    if (parts[0].size() == 4) { // ISO
        if (!text.contains(u'-') || text.contains(u'/') || text.contains(u'.'))
            return {};
        if (!readNumber(parts[0], 4, a) || !readNumber(parts[1], 2, b) || !readNumber(parts[2], 2, c))
            return {};
        return QDate(a, b, c);
    }
    if (!readNumber(parts[0], 2, a) || !readNumber(parts[1], 2, b) || !readNumber(parts[2], 4, c))
        return {};
    if (parts[2].size() == 2)
        c += 2000;
    else if (parts[2].size() != 4)
        return {};
    return QDate(c, b, a);
}

DateSet DateSet::parse(QStringView text)
{
    DateSet set;
    for (QStringView part : text.split(u',')) {
        part = part.trimmed();
        if (part.isEmpty())
            continue;
        set.m_all = false;
        const QDate date = parseDate(part);
        if (date.isValid())
            set.m_dates.append(date);
        else
            set.m_bad.append(part.toString());
    }
    std::sort(set.m_dates.begin(), set.m_dates.end());
    set.m_dates.erase(std::unique(set.m_dates.begin(), set.m_dates.end()), set.m_dates.end());
    return set;
}

bool DateSet::matches(const QDate &date) const
{
    return m_all || std::binary_search(m_dates.cbegin(), m_dates.cend(), date);
}

bool DateSet::contains(const DateSet &other) const
{
    if (m_all)
        return true;
    if (other.m_all)
        return false;
    return std::includes(m_dates.cbegin(), m_dates.cend(), other.m_dates.cbegin(), other.m_dates.cend());
}

TimeSet TimeSet::parse(QStringView text)
{
    TimeSet set;
    QList<Span> spans;
    for (QStringView part : text.split(u',')) {
        part = part.trimmed();
        if (part.isEmpty())
            continue;
        set.m_all = false;
        const qsizetype dash = part.indexOf(u'-');
        const int start = dash < 0 ? -1 : readClock(part.first(dash).trimmed(), false);
        const int end = dash < 0 ? -1 : readClock(part.sliced(dash + 1).trimmed(), true);
        if (start < 0 || end < 0) {
            set.m_bad.append(part.toString());
        } else if (end > start) {
            spans.append({start, end});
        } else if (end == start) {
            spans.append({0, 1440});
        } else {
            spans.append({start, 1440});
            if (end > 0)
                spans.append({0, end});
        }
    }
    std::sort(spans.begin(), spans.end(), [](Span x, Span y) { return x.start < y.start; });
    for (Span s : spans) {
        if (!set.m_spans.isEmpty() && s.start <= set.m_spans.last().end)
            set.m_spans.last().end = std::max(set.m_spans.last().end, s.end);
        else
            set.m_spans.append(s);
    }
    return set;
}

bool TimeSet::covers(Span span) const
{
    return std::any_of(m_spans.cbegin(), m_spans.cend(),
                       [&](Span s) { return s.start <= span.start && span.end <= s.end; });
}

bool TimeSet::matches(const QTime &time) const
{
    if (m_all)
        return true;
    if (!time.isValid())
        return false;
    const int minute = time.hour() * 60 + time.minute();
    return covers({minute, minute + 1});
}

bool TimeSet::contains(const TimeSet &other) const
{
    if (m_all)
        return true;
    if (other.m_all)
        return covers({0, 1440});
    return std::all_of(other.m_spans.cbegin(), other.m_spans.cend(), [&](Span s) { return covers(s); });
}

Condition Condition::fromFields(int id, const QString &name, int order, const QString &options)
{
    Condition c;
    c.id = id;
    c.name = name;
    c.order = order;
    c.options = options;
    c.callerText = getText(options, u"Caller"_s);
    c.calledText = getText(options, u"Called"_s);
    c.extText = getText(options, u"Ext"_s);
    c.bookText = getText(options, u"AB"_s).trimmed();
    c.dateText = getText(options, u"Date"_s);
    c.timeText = getText(options, u"Time"_s);
    c.destination = getText(options, u"Destination"_s);
    c.dayNumber = dayNumberOf(options);
    c.caller = NumberPattern::parse(c.callerText);
    c.called = NumberPattern::parse(c.calledText);
    c.ext = NumberPattern::parse(c.extText);
    c.days = DaySet::fromNumber(c.dayNumber);
    c.dates = DateSet::parse(c.dateText);
    c.times = TimeSet::parse(c.timeText);
    return c;
}

Condition Condition::fromRecord(const QString &row)
{
    return fromFields(int(GetVar(row, u"Id"_s, 0).toDouble()), getText(row, u"Name"_s),
                      int(GetVar(row, u"Order"_s, 0).toDouble()), getText(row, u"Options"_s));
}

Evaluation evaluate(const Condition &condition, const Call &call)
{
    Evaluation e;
    auto set = [&](Criterion c, bool matched) {
        e.outcomes[std::size_t(c)] = matched ? Outcome::Matched : Outcome::NotMatched;
    };
    set(Criterion::Caller, condition.caller.matches(call.caller));
    set(Criterion::Called, condition.called.matches(call.called));
    set(Criterion::Ext, condition.ext.matches(call.ext));
    if (condition.bookText.isEmpty() || call.book == BookAnswer::Found)
        set(Criterion::AddressBook, true);
    else if (call.book == BookAnswer::NotFound)
        set(Criterion::AddressBook, false);
    else
        e.outcomes[std::size_t(Criterion::AddressBook)] = Outcome::NotEvaluated;
    const QDate date = call.when.date();
    set(Criterion::Day, condition.days.matches(date));
    set(Criterion::Date, condition.dates.matches(date));
    set(Criterion::Time, condition.times.matches(call.when.time()));

    int unmatched = 0;
    for (Outcome o : e.outcomes)
        unmatched += o == Outcome::NotMatched ? 1 : 0;
    const bool bookOpen = e.outcome(Criterion::AddressBook) == Outcome::NotEvaluated;
    e.fires = unmatched == 0 && !bookOpen;
    e.mayFire = unmatched == 0 && bookOpen;
    return e;
}

QList<int> inOrder(const QList<Condition> &conditions)
{
    QList<int> order(conditions.size());
    for (int i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return conditions[a].order < conditions[b].order; });
    return order;
}

Firing firstFiring(const QList<Condition> &conditions, const Call &call)
{
    Firing firing;
    const QString caller = call.caller.trimmed().toLower();
    const QString called = call.called.trimmed().toLower();
    const QString ext = call.ext.trimmed().toLower();
    const QDate date = call.when.date();
    const QTime time = call.when.time();
    for (int i : inOrder(conditions)) {
        const Condition &c = conditions[i];
        // Cheapest criteria first; the full evaluation is for the dialog.
        if (!c.days.matches(date) || !c.times.matches(time) || !c.dates.matches(date) || !c.ext.matches(ext)
            || !c.called.matches(called) || !c.caller.matches(caller))
            continue;
        if (c.bookText.isEmpty() || call.book == BookAnswer::Found) {
            firing.index = i;
            return firing;
        }
        if (call.book == BookAnswer::Unknown)
            firing.mayFireFirst.append(i);
    }
    return firing;
}

bool shadows(const Condition &earlier, const Condition &later)
{
    if (earlier.hasUnreadableParts() || later.hasUnreadableParts())
        return false;
    return earlier.days.contains(later.days)
           && (earlier.bookText.isEmpty() || earlier.bookText.compare(later.bookText, Qt::CaseInsensitive) == 0)
           && earlier.ext.contains(later.ext) && earlier.called.contains(later.called)
           && earlier.caller.contains(later.caller) && earlier.times.contains(later.times)
           && earlier.dates.contains(later.dates);
}

QList<Warning> check(const QList<Condition> &conditions, const QStringList &books)
{
    QList<Warning> warnings;
    QSet<QString> bookNames;
    for (const QString &book : books)
        bookNames.insert(book.trimmed().toLower());
    QHash<QString, int> names;
    const QList<int> order = inOrder(conditions);
    for (qsizetype k = 0; k < order.size(); ++k) {
        const int i = order[k];
        const Condition &c = conditions[i];
        auto warn = [&](WarningKind kind, int other, const QString &text) { warnings.append({kind, i, other, text}); };

        // A condition without a name is left to the form's own check.
        const QString key = c.name.trimmed().toLower();
        if (!key.isEmpty()) {
            const auto seen = names.constFind(key);
            if (seen != names.constEnd())
                warn(WarningKind::DuplicateName, *seen,
                     Translate({}, u"The routing condition \"<1>\" has the same name as an earlier one (\"<2>\")."_s,
                               c.name, conditions[*seen].name));
            else
                names.insert(key, i);
        }

        for (qsizetype e = 0; e < k; ++e) {
            if (shadows(conditions[order[e]], c)) {
                warn(WarningKind::Shadowed, order[e],
                     Translate({}, u"The routing condition \"<1>\" can never be used: the earlier condition \"<2>\" already takes every call it matches."_s,
                               c.name, conditions[order[e]].name));
                break;
            }
        }
        if (c.destination.trimmed().isEmpty())
            warn(WarningKind::EmptyDestination, -1,
                 Translate({}, u"The routing condition \"<1>\" has no destination."_s, c.name));
        if (!c.bookText.isEmpty() && !bookNames.contains(c.bookText.toLower()))
            warn(WarningKind::UnknownAddressBook, -1,
                 Translate({}, u"The routing condition \"<1>\" looks the caller up in the address book \"<2>\", which does not exist."_s,
                           c.name, c.bookText));
        for (const QString &bad : c.dates.badParts())
            warn(WarningKind::UnreadableDate, -1,
                 Translate({}, u"The routing condition \"<1>\" has a date that cannot be read: \"<2>\"."_s, c.name, bad));
        for (const QString &bad : c.times.badParts())
            warn(WarningKind::UnreadableTime, -1,
                 Translate({}, u"The routing condition \"<1>\" has a time range that cannot be read: \"<2>\"."_s, c.name, bad));
    }
    return warnings;
}

} // namespace RoutingRules
