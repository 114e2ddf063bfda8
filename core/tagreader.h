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

    // Reads vars, sharing its text.
    explicit TagReader(const QString &vars);
    // Reads vars where it stands, without a copy: the text must outlive the reader. A list page
    // reads each row of a reply this way (see ListRows).
    explicit TagReader(QStringView vars);

    // GetVar(vars, name) and GetVar(vars, name, defaultValue).
    QVariant value(QStringView name) const;
    QVariant value(QStringView name, const QVariant &defaultValue) const;
    // GetVar(vars, index, nameOut): the index-th top-level entry (1 or less reads the first).
    QVariant value(int index, QString *nameOut = nullptr) const;
    // getText(vars, name, defaultValue), made straight from the entry.
    QString text(QStringView name, const QString &defaultValue = {}) const;
    // GetVar(vars, name).toDouble(): a number entry is read without going through a QVariant.
    double number(QStringView name) const;
    // Where GetVar's named search settles: TagValue::findEntry(vars, name).
    TagValue::EntryRef find(QStringView name) const;

    QStringView vars() const { return m_vars; }
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
    void addCandidate(const Candidate &candidate, std::unique_ptr<RecentNames> &recent);
    qsizetype record(const Candidate &candidate); // the entry of the candidate's name
    void markFirst(qsizetype entry, const Candidate &candidate);
    void grow();
    qsizetype lookup(QStringView name, quint32 hash) const; // entry index or -1
    bool indexable(QStringView name) const;
    TagValue::EntryRef findListed(QStringView name) const;
    QVariant read(const TagValue::EntryRef &ref, const QVariant *defaultValue) const;

    QString m_shared;       // the text when the reader was given a QString: keeps m_vars alive
    QStringView m_vars;     // the text read
    bool m_indexed = false; // false: every read takes the linear search
    bool m_hashed = false;  // false: the names are in m_candidates
    qsizetype m_braceCount = 0;
    QVarLengthArray<Candidate, MaxListed> m_candidates;
    std::vector<Entry> m_entries;
    std::vector<Slot> m_slots;
    QVarLengthArray<qint32, 16> m_topLevel; // the "{" of each entry at depth one, for reads by number
};

// The rows of a list reply: the values of List1 .. List<ListCount>, each read as GetVar reads it
// (as text), found in one pass over the reply. A row the reply lacks reads empty. A count beyond
// the number of entries the reply could hold is damage, not data, and is cut to that number.
//
// Each row is a view into the reply, so a page that keeps only the fields of its rows copies no
// row: read each with TagReader(QStringView). The reply's text is shared, not copied, so the views
// stay valid as long as this object lives, whatever becomes of the caller's string.
class ListRows
{
public:
    explicit ListRows(const QString &reply);

    qsizetype size() const { return qsizetype(m_rows.size()); }
    QStringView at(qsizetype index) const { return m_rows[size_t(index)]; } // row index + 1
    std::vector<QStringView>::const_iterator begin() const { return m_rows.cbegin(); }
    std::vector<QStringView>::const_iterator end() const { return m_rows.cend(); }
    QStringList toList() const;

private:
    QString m_reply;
    // Rows sent as numbers or dates read as text made from them; the views point in here. A
    // QString keeps its characters in place when the list moves it.
    QStringList m_made;
    std::vector<QStringView> m_rows;
};

// The rows of a list reply as strings: ListRows(reply).toList().
QStringList readList(const QString &reply);
