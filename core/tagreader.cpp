// SPDX-License-Identifier: GPL-3.0-or-later
#include "tagreader.h"

#include "errorlog.h"

#include <cmath>
#include <limits>

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
    const auto *units = name.utf16();
    quint32 hash = 2166136261u; // FNV-1a over the folded units
    for (qsizetype i = 0; i < name.size(); ++i)
        hash = (hash ^ foldedAt(units, i)) * 16777619u;
    // Spread every unit into the low bits that pick the slot.
    hash ^= hash >> 16;
    hash *= 0x85ebca6bu;
    hash ^= hash >> 13;
    return hash;
}

// Whether the candidate text at candidate (the characters after a "{") is the name and ends there
// with "(" or "=", compared as GetVar compares.
bool sameName(QStringView vars, qsizetype candidate, QStringView name)
{
    const qsizetype end = candidate + name.size();
    if (end >= vars.size() || !isDelimiter(vars[end].unicode()))
        return false;
    const QStringView text = vars.mid(candidate, name.size());
    if (text == name) // the usual case: written the same way
        return true;
    const auto *a = text.utf16();
    const auto *b = name.utf16();
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (foldedAt(a, i) != foldedAt(b, i))
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
    for (qsizetype i = 0; i < size; ++i) {
        if (units[i] == u'{')
            ++m_braceCount;
    }
    m_indexed = size < maxIndexedString;
    if (!m_indexed)
        return;
    // The candidate name of a "{" runs to the first "(" or "=" after it. That delimiter only moves
    // forward from one brace to the next, so finding them all is one pass even for "{{{{...".
    qsizetype delimiter = 0;
    qsizetype depth = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t c = units[i];
        if (c == u'}') {
            --depth;
            continue;
        }
        if (c != u'{')
            continue;
        if (++depth == 1)
            m_topLevel.append(i);
        if (delimiter <= i) {
            delimiter = i + 1;
            while (delimiter < size && !isDelimiter(units[delimiter]))
                ++delimiter;
        }
        const qsizetype nameLength = delimiter - i - 1;
        if (delimiter < size && nameLength <= MaxIndexedName)
            record(i, nameLength, units[delimiter] == u'(');
    }
}

void TagReader::record(qsizetype brace, qsizetype nameLength, bool sized)
{
    const QStringView name = QStringView(m_vars).mid(brace + 1, nameLength);
    const quint32 hash = nameHash(name);
    qsizetype found = lookup(name, hash);
    if (found < 0) {
        if (2 * (m_entries.size() + 1) > m_slots.size())
            grow();
        m_entries.append(Entry{});
        found = m_entries.size() - 1;
        const qsizetype mask = m_slots.size() - 1;
        qsizetype at = hash & mask;
        while (m_slots[at].entry != 0)
            at = (at + 1) & mask;
        m_slots[at] = Slot{hash, quint32(found + 1)};
    }
    // Braces arrive in order, so the first of each form is the one GetVar's search meets first.
    Entry &entry = m_entries[found];
    qsizetype &position = sized ? entry.sized : entry.plain;
    if (position < 0)
        position = brace;
}

void TagReader::grow()
{
    const qsizetype size = qMax<qsizetype>(16, 2 * m_slots.size());
    QVarLengthArray<Slot, 16> table(size);
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
    if (m_slots.isEmpty())
        return -1;
    const qsizetype mask = m_slots.size() - 1;
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

TagValue::EntryRef TagReader::find(QStringView name) const
{
    if (!indexable(name))
        return TagValue::FindEntry(m_vars, name);
    const qsizetype found = lookup(name, nameHash(name));
    if (found < 0)
        return {};
    const Entry &entry = m_entries[found];
    if (entry.sized >= 0)
        return {entry.sized, name.size(), true};
    return {entry.plain, name.size(), false};
}

QVariant TagReader::value(QStringView name, const QVariant &defaultValue) const
{
    QVariant result;
    const bool ok = Guard(getVarLabel, [&] {
        const TagValue::EntryRef ref = find(name);
        result = ref.found() ? TagValue::ReadEntry(m_vars, ref) : defaultValue;
    });
    return ok ? result : QVariant();
}

QVariant TagReader::value(int index, QString *nameOut) const
{
    if (!m_indexed)
        return GetVar(m_vars, index, nameOut);
    const qsizetype position = qsizetype(qMax(index, 1)) - 1;
    QString name;
    QVariant result;
    if (position < m_topLevel.size()) {
        const qsizetype brace = m_topLevel[position];
        QStringView text = QStringView(m_vars).mid(brace + 1, qMin(indexNameWidth, m_vars.size() - brace - 1));
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

QStringList ReadList(const QString &reply)
{
    const TagReader reader(reply);
    const QVariant countValue = reader.value(u"ListCount");
    // The count arrives as a number ("{ListCount(N2)=12}") or as text from a hand-made reply.
    const double count = countValue.typeId() == QMetaType::Double ? countValue.toDouble()
                                                                   : LeadingNumber(TagValueText(countValue));
    if (!(count >= 1))
        return {};
    const qsizetype rows = qMin(qsizetype(std::floor(qMin(count, 1e15))), reader.braceCount());
    QStringList list;
    list.reserve(rows);
    for (qsizetype row = 1; row <= rows; ++row)
        list.append(reader.text(ListName(row).view()));
    return list;
}
