// SPDX-License-Identifier: GPL-3.0-or-later
#include "tagreader.h"

#include "errorlog.h"

#include <QHashFunctions>
#include <QtAlgorithms>

#include <cmath>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

using namespace Qt::StringLiterals;

namespace {

const QString getVarLabel = u" @ basGlobal.GetVar"_s;

// Names reach GetVar's search as many characters as the reading by number takes.
constexpr qsizetype indexNameWidth = 60;
// Positions and entry numbers are kept in 32 bits in the slots; a bigger string (far beyond any
// message the server sends) is read with the linear search instead.
constexpr qsizetype maxIndexedString = qsizetype(1) << 31;

bool isDelimiter(char16_t c)
{
    return c == u'(' || c == u'=';
}

// The first position at or after from that holds a or b, or size. Most of a reply is values, so
// the reader spends its time here: eight units at a time where the processor allows.
qsizetype findEither(const char16_t *units, qsizetype from, qsizetype size, char16_t a, char16_t b)
{
#if defined(__SSE2__)
    const __m128i wantA = _mm_set1_epi16(short(a));
    const __m128i wantB = _mm_set1_epi16(short(b));
    for (; from + 8 <= size; from += 8) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i *>(units + from));
        const __m128i hits = _mm_or_si128(_mm_cmpeq_epi16(chunk, wantA), _mm_cmpeq_epi16(chunk, wantB));
        const uint mask = uint(_mm_movemask_epi8(hits));
        if (mask != 0)
            return from + qCountTrailingZeroBits(mask) / 2;
    }
#endif
    while (from < size && units[from] != a && units[from] != b)
        ++from;
    return from;
}

// The case folding QString::indexOf(..., Qt::CaseInsensitive) compares with: simple case folding
// of each UTF-16 unit, where a low surrogate that follows a high one folds as the whole character.
// The unit before a name is always its "{", so the first unit never pairs backwards.
char32_t foldedAt(const char16_t *name, qsizetype i)
{
    const char16_t c = name[i];
    if (c < 0x80)
        return (c >= u'A' && c <= u'Z') ? char32_t(c + 32) : char32_t(c);
    if (QChar::isLowSurrogate(c) && i > 0 && QChar::isHighSurrogate(name[i - 1]))
        return QChar::toCaseFolded(QChar::surrogateToUcs4(name[i - 1], c));
    return QChar::toCaseFolded(char32_t(c));
}

quint32 nameHash(QStringView name)
{
    // Seeded per process like QHash, so that text typed into a record (a note full of crafted
    // names) cannot line its names up in one chain of the table.
    static const quint32 seed = quint32(QHashSeed::globalSeed());
    const auto *units = name.utf16();
    quint32 hash = 2166136261u ^ seed; // FNV-1a over the folded units
    for (qsizetype i = 0; i < name.size(); ++i)
        hash = (hash ^ foldedAt(units, i)) * 16777619u;
    // Spread every unit into the low bits that pick the slot.
    hash ^= hash >> 16;
    hash *= 0x85ebca6bu;
    hash ^= hash >> 13;
    return hash;
}

// Whether the candidate text at candidate (the characters after a "{") is the name and ends there
// with "(" or "=", compared as GetVar compares. Equal units fold alike (a low surrogate only folds
// differently after a different high surrogate, which itself never folds to another), so only the
// units that differ are folded.
bool sameName(QStringView vars, qsizetype candidate, QStringView name)
{
    const qsizetype end = candidate + name.size();
    if (end >= vars.size() || !isDelimiter(vars[end].unicode()))
        return false;
    const char16_t *text = vars.utf16() + candidate;
    const char16_t *wanted = name.utf16();
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (text[i] != wanted[i] && foldedAt(text, i) != foldedAt(wanted, i))
            return false;
    }
    return true;
}

// Names are a few characters long: a plain loop beats a call to memcmp.
bool sameUnits(const char16_t *a, const char16_t *b, qsizetype length)
{
    for (qsizetype i = 0; i < length; ++i) {
        if (a[i] != b[i])
            return false;
    }
    return true;
}

// Reads through f, logging any fault exactly as GetVar's guard does and giving an empty result.
template <typename Read> auto guardedRead(Read read) -> decltype(read())
{
    try {
        return read();
    } catch (...) {
        Guard(getVarLabel, [] { throw; });
        return {};
    }
}

// Whether text is a whole number in the form the shortest decimal text of its value takes: up to
// 15 digits, no sign, no leading zero, and few enough trailing zeros that the form with an
// exponent ("1e+05") is not the shorter one.
bool isOwnNumberText(QStringView text)
{
    const qsizetype size = text.size();
    if (size == 0 || size > 15 || (size > 1 && text.front() == u'0'))
        return false;
    qsizetype trailingZeros = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t c = text[i].unicode();
        if (c < u'0' || c > u'9')
            return false;
        trailingZeros = c == u'0' ? trailingZeros + 1 : 0;
    }
    return size == 1 || trailingZeros <= 3;
}

// tagValueText of readEntry's value for the entry, made without the QVariant. Ids and counts are
// mostly already written the way the number reads back, and are then taken as they stand.
QString madeText(const TagValue::EntryText &entry)
{
    if (entry.type == u'N') {
        if (isOwnNumberText(entry.text))
            return entry.text.toString();
        return QString::number(leadingNumber(entry.text), 'g', QLocale::FloatingPointShortest);
    }
    if (entry.type == u'D') {
        const QDateTime when = parseTagDate(entry.text);
        return when.isValid() ? tagDateText(when) : QString();
    }
    return entry.text.toString();
}

// Whether the text getText gives for the entry differs from the text standing in the string.
bool isConverted(const TagValue::EntryText &entry)
{
    return entry.type == u'N' || entry.type == u'D';
}

// Whether the units at name fold to the lower-case ASCII word, as GetVar's search compares.
bool foldsTo(const char16_t *name, QLatin1StringView word)
{
    for (qsizetype i = 0; i < word.size(); ++i) {
        if (foldedAt(name, i) != char32_t(word[i].unicode()))
            return false;
    }
    return true;
}

} // namespace

TagReader::TagReader(const QString &vars) : m_shared(vars), m_vars(m_shared)
{
    buildIndex();
}

TagReader::TagReader(QStringView vars) : m_vars(vars)
{
    buildIndex();
}

void TagReader::buildIndex()
{
    const char16_t *units = m_vars.utf16();
    const qsizetype size = m_vars.size();
    m_indexed = size < maxIndexedString;
    if (!m_indexed) {
        m_braceCount = m_vars.count(u'{');
        return;
    }
    std::unique_ptr<RecentNames> recent; // only once the names are hashed
    // The candidate name of a "{" runs to the first "(" or "=" after it. That delimiter only moves
    // forward from one brace to the next, so finding them all is one pass even for "{{{{...".
    qsizetype delimiter = 0;
    qsizetype depth = 0;
    for (qsizetype i = findEither(units, 0, size, u'{', u'}'); i < size;
         i = findEither(units, i + 1, size, u'{', u'}')) {
        if (units[i] == u'}') {
            --depth;
            continue;
        }
        ++m_braceCount;
        if (++depth == 1)
            m_topLevel.append(qint32(i));
        if (delimiter <= i)
            delimiter = findEither(units, i + 1, size, u'(', u'=');
        const qsizetype nameLength = delimiter - i - 1;
        if (delimiter < size && nameLength <= MaxIndexedName)
            addCandidate(Candidate{i, nameLength, units[delimiter] == u'('}, recent);
    }
}

void TagReader::addCandidate(const Candidate &candidate, std::unique_ptr<RecentNames> &recent)
{
    if (!m_hashed) {
        if (m_candidates.size() < MaxListed) {
            m_candidates.append(candidate);
            return;
        }
        m_hashed = true;
        recent = std::make_unique<RecentNames>();
        for (const Candidate &listed : std::as_const(m_candidates))
            markFirst(record(listed), listed);
        m_candidates.clear();
    }
    // The rows of a list repeat the same field names: a name written exactly like a recent one
    // is that one's entry, without hashing.
    const char16_t *name = m_vars.utf16() + candidate.brace + 1;
    const qsizetype length = candidate.nameLength;
    RecentName &seen =
        (*recent)[(length > 0 ? length * 7 + name[0] + 3 * name[length - 1] : 0) % recent->size()];
    if (!(seen.length == length && seen.entry >= 0 && sameUnits(name, m_vars.utf16() + seen.start, length)))
        seen = RecentName{candidate.brace + 1, length, record(candidate)};
    markFirst(seen.entry, candidate);
}

// Braces arrive in order, so the first of each form is the one GetVar's search meets first.
void TagReader::markFirst(qsizetype entry, const Candidate &candidate)
{
    qint32 &position = candidate.sized ? m_entries[entry].sized : m_entries[entry].plain;
    if (position < 0)
        position = qint32(candidate.brace);
}

qsizetype TagReader::record(const Candidate &candidate)
{
    const QStringView name = m_vars.mid(candidate.brace + 1, candidate.nameLength);
    const quint32 hash = nameHash(name);
    const qsizetype found = lookup(name, hash);
    if (found >= 0)
        return found;
    if (2 * (m_entries.size() + 1) > m_slots.size())
        grow();
    // The entry's first position is set by the caller before anything reads it.
    m_entries.push_back(Entry{});
    const qsizetype mask = qsizetype(m_slots.size()) - 1;
    qsizetype at = hash & mask;
    while (m_slots[at].entry != 0)
        at = (at + 1) & mask;
    m_slots[at] = Slot{hash, quint32(m_entries.size())};
    return qsizetype(m_entries.size()) - 1;
}

void TagReader::grow()
{
    const qsizetype size = qMax<qsizetype>(64, 2 * qsizetype(m_slots.size()));
    std::vector<Slot> table(size);
    const qsizetype mask = size - 1;
    for (const Slot &slot : std::as_const(m_slots)) {
        if (slot.entry == 0)
            continue;
        qsizetype at = slot.hash & mask;
        while (table[at].entry != 0)
            at = (at + 1) & mask;
        table[at] = slot;
    }
    m_slots = std::move(table);
}

qsizetype TagReader::lookup(QStringView name, quint32 hash) const
{
    if (m_slots.empty())
        return -1;
    const qsizetype mask = qsizetype(m_slots.size()) - 1;
    for (qsizetype at = hash & mask; m_slots[at].entry != 0; at = (at + 1) & mask) {
        const Slot &slot = m_slots[at];
        if (slot.hash != hash)
            continue;
        if (sameName(m_vars, m_entries[slot.entry - 1].first() + 1, name))
            return slot.entry - 1;
    }
    return -1;
}

bool TagReader::indexable(QStringView name) const
{
    if (!m_indexed || name.size() > MaxIndexedName)
        return false;
    for (const QChar c : name) {
        if (isDelimiter(c.unicode()))
            return false;
    }
    return true;
}

TagValue::EntryRef TagReader::findListed(QStringView name) const
{
    // The candidates stand in string order: the first sized match is the answer, a plain match
    // only until a sized one turns up.
    TagValue::EntryRef plain;
    for (const Candidate &candidate : m_candidates) {
        if (candidate.nameLength != name.size() || (!candidate.sized && plain.found()))
            continue;
        if (!sameName(m_vars, candidate.brace + 1, name))
            continue;
        if (candidate.sized)
            return {candidate.brace, name.size(), true};
        plain = {candidate.brace, name.size(), false};
    }
    return plain;
}

TagValue::EntryRef TagReader::find(QStringView name) const
{
    if (!indexable(name))
        return TagValue::findEntry(m_vars, name);
    if (!m_hashed)
        return findListed(name);
    const qsizetype found = lookup(name, nameHash(name));
    if (found < 0)
        return {};
    const Entry &entry = m_entries[found];
    if (entry.sized >= 0)
        return {entry.sized, name.size(), true};
    return {entry.plain, name.size(), false};
}

QVariant TagReader::read(const TagValue::EntryRef &ref, const QVariant *defaultValue) const
{
    // Values go straight to the caller: a list page reads millions of them, and every extra move
    // of a QVariant shows.
    return guardedRead([&]() -> QVariant {
        if (ref.found())
            return TagValue::readEntry(m_vars, ref);
        return defaultValue ? *defaultValue : QVariant();
    });
}

QVariant TagReader::value(QStringView name) const
{
    return read(find(name), nullptr);
}

QVariant TagReader::value(QStringView name, const QVariant &defaultValue) const
{
    return read(find(name), &defaultValue);
}

QVariant TagReader::value(int index, QString *nameOut) const
{
    QString name;
    QVariant result;
    if (!m_indexed) { // GetVar's own steps, on the text where it stands
        Guard(getVarLabel, [&] {
            bool found = false;
            name = TagValue::nameAtIndex(m_vars, index, &found);
            if (found)
                result = TagValue::readEntry(m_vars, TagValue::findEntry(m_vars, name));
        });
    } else {
        const qsizetype position = qsizetype(qMax(index, 1)) - 1;
        if (position < m_topLevel.size()) {
            const qsizetype brace = m_topLevel[position];
            QStringView text = m_vars.mid(brace + 1, qMin(indexNameWidth, m_vars.size() - brace - 1));
            for (qsizetype k = 0; k < text.size(); ++k) {
                if (isDelimiter(text[k].unicode())) {
                    text = text.left(k);
                    break;
                }
            }
            name = text.toString();
            result = value(name);
        }
    }
    if (nameOut)
        *nameOut = name;
    return result;
}

QString TagReader::text(QStringView name, const QString &defaultValue) const
{
    const TagValue::EntryRef ref = find(name);
    if (!ref.found())
        return defaultValue;
    return guardedRead([&] { return madeText(TagValue::readEntryText(m_vars, ref)); });
}

double TagReader::number(QStringView name) const
{
    const TagValue::EntryRef ref = find(name);
    if (!ref.found())
        return 0;
    return guardedRead([&] {
        const TagValue::EntryText entry = TagValue::readEntryText(m_vars, ref);
        // Text and dates convert as QVariant converts them; they are rare where numbers are read.
        return entry.type == u'N' ? leadingNumber(entry.text) : TagValue::readEntry(m_vars, ref).toDouble();
    });
}

namespace {

// Where the first entry of one name stands for GetVar's search: the first sized entry, else the
// first plain one. Kept as one number, the position times two plus one for the sized form.
class FirstEntry
{
public:
    bool found() const { return m_code >= 0; }
    void offer(qsizetype brace, bool sized)
    {
        const qsizetype code = 2 * brace + (sized ? 1 : 0);
        if (!found() || (sized && !isSized()) || (sized == isSized() && code < m_code))
            m_code = code;
    }
    void offer(FirstEntry other)
    {
        if (other.found())
            offer(other.m_code / 2, other.isSized());
    }
    TagValue::EntryRef ref(qsizetype nameLength) const
    {
        return found() ? TagValue::EntryRef{m_code / 2, nameLength, isSized()} : TagValue::EntryRef{};
    }

private:
    bool isSized() const { return (m_code & 1) != 0; }
    qint64 m_code = -1;
};

// One pass over a list reply that finds, for ListCount and for every row number n, where GetVar's
// search for "ListCount" and "List<n>" settles. Only names that fold to "list" are looked at: no
// other entry can be one of these.
class ListScan
{
public:
    explicit ListScan(QStringView reply) : m_reply(reply) { scan(); }

    qsizetype braceCount() const { return m_braceCount; }
    TagValue::EntryRef count() const { return m_count.ref(QLatin1StringView("ListCount").size()); }
    // The entry of row n (1-based), once settleRows has taken in the rows met far ahead.
    TagValue::EntryRef row(qsizetype n) const
    {
        return n < qsizetype(m_rows.size()) ? m_rows[size_t(n)].ref(4 + digitCount(n)) : TagValue::EntryRef{};
    }
    // Takes in the rows met far ahead of the rest, up to row rows.
    void settleRows(qsizetype rows)
    {
        if (qsizetype(m_rows.size()) <= rows && !m_farRows.empty())
            m_rows.resize(size_t(rows) + 1);
        for (const auto &[n, first] : m_farRows) {
            if (n <= rows)
                m_rows[size_t(n)].offer(first);
        }
        m_farRows.clear();
    }

private:
    static qsizetype digitCount(qsizetype n)
    {
        qsizetype count = 1;
        for (; n >= 10; n /= 10)
            ++count;
        return count;
    }

    void scan()
    {
        const char16_t *units = m_reply.utf16();
        const qsizetype size = m_reply.size();
        for (qsizetype i = findEither(units, 0, size, u'{', u'{'); i < size;
             i = findEither(units, i + 1, size, u'{', u'{')) {
            ++m_braceCount;
            const char16_t first = i + 1 < size ? units[i + 1] : u'\0';
            if ((first < 0x80 && (first | 0x20) != u'l') || size - i < 7 ||
                !foldsTo(units + i + 1, "list"_L1))
                continue;
            const qsizetype after = i + 5;
            if (units[after] >= u'1' && units[after] <= u'9')
                readRowName(i, after);
            else if (size - after > 5 && foldsTo(units + after, "count"_L1) && isDelimiter(units[after + 5]))
                m_count.offer(i, units[after + 5] == u'(');
        }
    }

    // "{List" and digits: a row's name when the digits end at a "(" or "=".
    void readRowName(qsizetype brace, qsizetype digits)
    {
        const char16_t *units = m_reply.utf16();
        const qsizetype size = m_reply.size();
        qsizetype n = 0;
        qsizetype at = digits;
        for (; at < size && at - digits < 18 && units[at] >= u'0' && units[at] <= u'9'; ++at)
            n = n * 10 + (units[at] - u'0');
        if (at >= size || !isDelimiter(units[at]) || n > size)
            return;
        const bool sized = units[at] == u'(';
        // Rows come in order; a number far beyond the braces met so far waits on the side, so a
        // stray big number never makes a big table.
        if (n < qsizetype(m_rows.size())) {
            m_rows[size_t(n)].offer(brace, sized);
        } else if (n <= 2 * m_braceCount + 1024) {
            m_rows.resize(qMax(size_t(n) + 1, m_rows.size()));
            m_rows[size_t(n)].offer(brace, sized);
        } else {
            FirstEntry first;
            first.offer(brace, sized);
            m_farRows.emplace_back(n, first);
        }
    }

    QStringView m_reply;
    qsizetype m_braceCount = 0;
    FirstEntry m_count;
    std::vector<FirstEntry> m_rows; // by row number; 0 is never a row
    std::vector<std::pair<qsizetype, FirstEntry>> m_farRows;
};

} // namespace

ListRows::ListRows(const QString &reply) : m_reply(reply)
{
    ListScan scan(m_reply);
    const TagValue::EntryRef countRef = scan.count();
    if (!countRef.found())
        return;
    // The count arrives as a number ("{ListCount(N2)=12}") or as text from a hand-made reply.
    const double count = guardedRead([&] {
        const TagValue::EntryText entry = TagValue::readEntryText(m_reply, countRef);
        return entry.type == u'N' ? leadingNumber(entry.text) : leadingNumber(madeText(entry));
    });
    if (!(count >= 1))
        return;
    const qsizetype rows = qMin(qsizetype(std::floor(qMin(count, 1e15))), scan.braceCount());
    scan.settleRows(rows);
    m_rows.reserve(size_t(rows));
    for (qsizetype n = 1; n <= rows; ++n) {
        const TagValue::EntryRef ref = scan.row(n);
        if (!ref.found()) {
            m_rows.emplace_back();
            continue;
        }
        m_rows.push_back(guardedRead([&] {
            const TagValue::EntryText entry = TagValue::readEntryText(m_reply, ref);
            if (!isConverted(entry))
                return entry.text;
            m_made.append(madeText(entry));
            return QStringView(m_made.constLast());
        }));
    }
}

QStringList ListRows::toList() const
{
    QStringList list;
    list.reserve(size());
    for (const QStringView row : m_rows)
        list.append(row.toString());
    return list;
}

QStringList readList(const QString &reply)
{
    return ListRows(reply).toList();
}
