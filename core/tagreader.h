// SPDX-License-Identifier: GPL-3.0-or-later
// One-pass reading of big tagged-value strings: list replies of thousands of rows.
#pragma once

#include "tagvalue.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVarLengthArray>
#include <QVariant>

#include <array>
#include <memory>
#include <vector>

// Indexes a tagged-value string once, in one pass, and then answers every read exactly as GetVar
// answers it on the same string: the same textual, case-insensitive "first occurrence anywhere"
// rule (entries nested in earlier values included, sized before plain), the same conversion by
// type letter, the same default. Reading every row of a reply with GetVar searches from the start
// each time and grows with the square of the reply; a TagReader keeps each read to the size of
// the value it returns.
//
// Names up to MaxIndexedName characters are looked up in the index; longer names, and names that
// hold "(" or "=", take GetVar's own linear search, so the answer is the same for every name.
class TagReader
{
public:
    static constexpr qsizetype MaxIndexedName = 64;

    explicit TagReader(const QString &vars);

    // GetVar(vars, name) and GetVar(vars, name, defaultValue).
    QVariant value(QStringView name) const;
    QVariant value(QStringView name, const QVariant &defaultValue) const;
    // GetVar(vars, index, nameOut): the index-th top-level entry (1 or less reads the first).
    QVariant value(int index, QString *nameOut = nullptr) const;
    // GetText(vars, name, defaultValue).
    QString text(QStringView name, const QString &defaultValue = {}) const;
    // Where GetVar's named search settles: TagValue::FindEntry(vars, name).
    TagValue::EntryRef find(QStringView name) const;
    // The rows of this string read as a list reply; see ReadList.
    QStringList list() const;

    const QString &vars() const { return m_vars; }
    // How many "{" the string holds: an upper bound on any count of entries it can carry.
    qsizetype braceCount() const { return m_braceCount; }

private:
    // A "{" whose name, up to its "(" or "=", is short enough to index.
    struct Candidate
    {
        qsizetype brace = -1;
        qsizetype nameLength = 0;
        bool sized = false;
    };
    // The first sized and the first plain entry of one case-folded name ("{" positions). The
    // index holds positions in 32 bits: a list of a million rows keeps it small enough to stay
    // near the processor.
    struct Entry
    {
        qint32 sized = -1;
        qint32 plain = -1;
        qsizetype first() const { return sized < 0 ? plain : (plain < 0 ? sized : qMin(sized, plain)); }
    };
    // Open addressing over the entries; the hash is kept so growing never reads the text again.
    struct Slot
    {
        quint32 hash = 0;
        quint32 entry = 0; // index into m_entries plus one; 0 marks a free slot
    };
    // A "{" at depth one, with the entry of its name once the names are hashed.
    struct TopLevel
    {
        qint32 brace = -1;
        qint32 entry = -1;
    };
    // Names met lately while indexing, by a cheap key: the rows of a list repeat their names.
    struct RecentName
    {
        qsizetype start = 0;
        qsizetype length = -1;
        qsizetype entry = -1;
    };
    using RecentNames = std::array<RecentName, 64>;
    // A record of a few fields is read fastest by comparing its names one by one; past this many
    // the names go into a hash table.
    static constexpr qsizetype MaxListed = 16;

    void buildIndex();
    // The entry of the candidate's name, or -1 while the names are listed, not hashed.
    qsizetype addCandidate(const Candidate &candidate, std::unique_ptr<RecentNames> &recent);
    qsizetype record(const Candidate &candidate); // the entry of the candidate's name
    void markFirst(qsizetype entry, const Candidate &candidate);
    void grow();
    qsizetype lookup(QStringView name, quint32 hash) const; // entry index or -1
    bool indexable(QStringView name) const;
    TagValue::EntryRef findListed(QStringView name) const;
    TagValue::EntryRef findRow(QStringView name, qsizetype &cursor) const;
    QVariant read(const TagValue::EntryRef &ref, const QVariant *defaultValue) const;

    QString m_vars;
    bool m_indexed = false; // false: every read takes the linear search
    bool m_hashed = false;  // false: the names are in m_candidates
    qsizetype m_braceCount = 0;
    QVarLengthArray<Candidate, MaxListed> m_candidates;
    std::vector<Entry> m_entries;
    std::vector<Slot> m_slots;
    QVarLengthArray<TopLevel, 16> m_topLevel; // for reads by number and the rows of a list
};

// The rows of a list reply: the values of List1 .. List<ListCount>, each read as GetVar reads it
// (as text). A row the reply lacks reads empty. A count beyond the number of entries the reply
// could hold is damage, not data, and is cut to that number.
QStringList ReadList(const QString &reply);
