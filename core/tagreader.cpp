// SPDX-License-Identifier: GPL-3.0-or-later
#include "tagreader.h"

#include "errorlog.h"

#include <QHashFunctions>
#include <QtAlgorithms>

#include <algorithm>
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

// "List" followed by the row number, kept on the stack.
class ListName
{
public:
    explicit ListName(qsizetype row)
    {
        char16_t digits[24];
        qsizetype count = 0;
        do {
            digits[count++] = char16_t(u'0' + row % 10);
            row /= 10;
        } while (row > 0);
        while (count > 0)
            m_units[m_size++] = digits[--count];
    }
    QStringView view() const { return QStringView(m_units, m_size); }

private:
    char16_t m_units[32] = {u'L', u'i', u's', u't'};
    qsizetype m_size = 4;
};

} // namespace

TagReader::TagReader(const QString &vars) : m_vars(vars)
{
    buildIndex();
}

void TagReader::buildIndex()
{
    const char16_t *units = QStringView(m_vars).utf16();
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
        const bool topLevel = ++depth == 1;
        if (topLevel)
            m_topLevel.append(TopLevel{qint32(i), -1});
        if (delimiter <= i)
            delimiter = findEither(units, i + 1, size, u'(', u'=');
        const qsizetype nameLength = delimiter - i - 1;
        if (delimiter < size && nameLength <= MaxIndexedName) {
            const qsizetype entry = addCandidate(Candidate{i, nameLength, units[delimiter] == u'('}, recent);
            if (topLevel)
                m_topLevel.last().entry = qint32(entry);
        }
    }
}

qsizetype TagReader::addCandidate(const Candidate &candidate, std::unique_ptr<RecentNames> &recent)
{
    if (!m_hashed) {
        if (m_candidates.size() < MaxListed) {
            m_candidates.append(candidate);
            return -1;
        }
        m_hashed = true;
        recent = std::make_unique<RecentNames>();
        qsizetype top = 0; // the top-level entries met so far learn their entries too
        for (const Candidate &listed : std::as_const(m_candidates)) {
            const qsizetype entry = record(listed);
            markFirst(entry, listed);
            while (top < m_topLevel.size() && m_topLevel[top].brace < listed.brace)
                ++top;
            if (top < m_topLevel.size() && m_topLevel[top].brace == listed.brace)
                m_topLevel[top].entry = qint32(entry);
        }
        m_candidates.clear();
    }
    // The rows of a list repeat the same field names: a name written exactly like a recent one
    // is that one's entry, without hashing.
    const char16_t *name = QStringView(m_vars).utf16() + candidate.brace + 1;
    const qsizetype length = candidate.nameLength;
    RecentName &seen =
        (*recent)[(length > 0 ? length * 7 + name[0] + 3 * name[length - 1] : 0) % recent->size()];
    if (seen.length == length && seen.entry >= 0 &&
        sameUnits(name, QStringView(m_vars).utf16() + seen.start, length)) {
        markFirst(seen.entry, candidate);
        return seen.entry;
    }
    seen = RecentName{candidate.brace + 1, length, record(candidate)};
    markFirst(seen.entry, candidate);
    return seen.entry;
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
    const QStringView name = QStringView(m_vars).mid(candidate.brace + 1, candidate.nameLength);
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
        return TagValue::FindEntry(m_vars, name);
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
    try {
        if (ref.found())
            return TagValue::ReadEntry(m_vars, ref);
        return defaultValue ? *defaultValue : QVariant();
    } catch (...) {
        Guard(getVarLabel, [] { throw; }); // logs the fault exactly as GetVar's guard does
        return {};
    }
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
    if (!m_indexed)
        return GetVar(m_vars, index, nameOut);
    const qsizetype position = qsizetype(qMax(index, 1)) - 1;
    QString name;
    QVariant result;
    if (position < m_topLevel.size()) {
        const qsizetype brace = m_topLevel[position].brace;
        QStringView text =
            QStringView(m_vars).mid(brace + 1, qMin(indexNameWidth, m_vars.size() - brace - 1));
        for (qsizetype k = 0; k < text.size(); ++k) {
            if (isDelimiter(text[k].unicode())) {
                text = text.left(k);
                break;
            }
        }
        name = text.toString();
        result = value(name);
    }
    if (nameOut)
        *nameOut = name;
    return result;
}

QString TagReader::text(QStringView name, const QString &defaultValue) const
{
    return TagValueText(value(name, defaultValue));
}

TagValue::EntryRef TagReader::findRow(QStringView name, qsizetype &cursor) const
{
    // Row n of a reply is nearly always the top-level entry after row n-1: when that entry's name
    // is the one asked for, its index entry is the name's entry, found without hashing and
    // without leaving the part of the reply being read.
    if (m_hashed && indexable(name)) {
        for (qsizetype k = cursor; k < qMin(cursor + 4, m_topLevel.size()); ++k) {
            const qsizetype entry = m_topLevel[k].entry;
            if (entry < 0 || !sameName(m_vars, m_entries[entry].first() + 1, name))
                continue;
            cursor = k + 1;
            const Entry &found = m_entries[entry];
            return found.sized >= 0 ? TagValue::EntryRef{found.sized, name.size(), true}
                                    : TagValue::EntryRef{found.plain, name.size(), false};
        }
    }
    const TagValue::EntryRef ref = find(name);
    // Pick up the thread after a gap in the rows.
    const auto next =
        std::lower_bound(m_topLevel.cbegin(), m_topLevel.cend(), ref.brace,
                         [](const TopLevel &top, qsizetype brace) { return top.brace < brace; });
    if (ref.found() && next != m_topLevel.cend() && next->brace == ref.brace)
        cursor = (next - m_topLevel.cbegin()) + 1;
    return ref;
}

QStringList TagReader::list() const
{
    const QVariant countValue = value(u"ListCount");
    // The count arrives as a number ("{ListCount(N2)=12}") or as text from a hand-made reply.
    const double count = countValue.typeId() == QMetaType::Double ? countValue.toDouble()
                                                                  : LeadingNumber(TagValueText(countValue));
    if (!(count >= 1))
        return {};
    const qsizetype rows = qMin(qsizetype(std::floor(qMin(count, 1e15))), m_braceCount);
    QStringList list;
    list.reserve(rows);
    qsizetype cursor = 0;
    for (qsizetype row = 1; row <= rows; ++row)
        list.append(TagValueText(read(findRow(ListName(row).view(), cursor), nullptr)));
    return list;
}

QStringList ReadList(const QString &reply)
{
    return TagReader(reply).list();
}
