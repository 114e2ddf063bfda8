// SPDX-License-Identifier: GPL-3.0-or-later
// Tagged-value strings: the one record and message format of the server and all its clients.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringView>
#include <QVariant>

// Writes one entry "{Name(Tn)=value}" at the end of vars, removing the first entry of that name
// first. An empty value only removes, unless keepEmpty is set ("{Name(S0)=}").
// The type letter follows the value's kind: N for numbers, D for dates, S for everything else.
void AddVar(QString &vars, const QString &name, const QVariant &value, bool keepEmpty = false);
// Writes by position. The walk that finds the name only ever counts the first "{", so an index of
// 1 or less rewrites the first entry and anything larger changes nothing; other clients rely on it.
void AddVar(QString &vars, int index, const QVariant &value, bool keepEmpty = false);

// Reads the entry name: sized entries first (a purely textual, case-insensitive search that also
// finds entries nested inside earlier values), then plain ones. Sized values convert by their type
// letter: N gives a double, D a QDateTime, anything else the text. Missing: defaultValue.
QVariant GetVar(const QString &vars, const QString &name, const QVariant &defaultValue = {});
// Reads the index-th top-level entry (1-based; 1 or less reads the first) and reports its name.
// No default: a missing entry reads as an invalid QVariant and an empty name.
QVariant GetVar(const QString &vars, int index, QString *nameOut = nullptr);

// Convenience for the common text read: GetVar(...).toString().
QString getText(const QString &vars, const QString &name, const QString &defaultValue = {});

// Leading-number parse: blanks, optional sign, digits with one ".", optional exponent; stops at
// the first other character; no digits give 0. consumed receives the characters used.
double leadingNumber(QStringView text, qsizetype *consumed = nullptr);

// The text a value is written as, and its type letter.
QString tagValueText(const QVariant &value);
QChar tagTypeLetter(const QVariant &value);
// Dates travel in one fixed form, "yyyy-MM-ddTHH:mm:ss" (ISO 8601), and parse back the same.
QString tagDateText(const QDateTime &when);
QDateTime parseTagDate(QStringView text);

namespace TagValue {
// Where the entry the named reads of GetVar settle on starts; shared by GetVar and the fast reader.
struct EntryRef {
    qsizetype brace = -1; // index of the entry's "{", -1 when there is none
    qsizetype nameLength = 0;
    bool sized = false;
    bool found() const { return brace >= 0; }
};
// The linear search GetVar uses.
EntryRef findEntry(QStringView vars, QStringView name);
// The value of the entry at ref as it stands in vars, with the type letter that converts it:
// "S" for a plain entry, and "S" with no text for a sized entry that has no "=".
struct EntryText {
    QStringView text;
    QChar type = u'S';
};
EntryText readEntryText(QStringView vars, const EntryRef &ref);
// Reads and converts the value of an entry found at ref.
QVariant readEntry(QStringView vars, const EntryRef &ref);
// The name of the index-th top-level entry, as reading by number finds it.
QString nameAtIndex(QStringView vars, int index, bool *found = nullptr);
} // namespace TagValue
