// SPDX-License-Identifier: GPL-3.0-or-later
// Devices as a spreadsheet holds them: one title row naming device fields, one device per row.
// Reading checks every row before anything is planned or sent, and says what it found line by
// line; writing gives the CSV an export stores. QtCore only.
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace DeviceSheet {

// The device kinds a column is kept for, as bits of the kind index (EXT, AGENT, SPEED, TRUNK).
enum Kinds : int { Extension = 1, Agent = 2, SpeedDial = 4, Trunk = 8, Phones = Extension | Agent, AllKinds = 15 };

// What a column holds: the device number, the kind, a flag ("1" or "0"; left empty, a device keeps
// its own and a new one takes a new device's), or text (left empty, the field is emptied).
enum class Holds { Number, Kind, Flag, Text };

struct Column
{
    QString tag;
    Holds holds = Holds::Text;
    int cut = 0;   // characters kept when stored; 0 for no limit
    int kinds = 0; // the kinds whose device window stores it
};

// Every column a sheet may have, in the order an export writes them: Ext, Name, Type, the general
// fields, the flags, absence, the book for new contacts, notes.
const QList<Column> &columns();
// The column of that tag, in any case; nullptr for a name that is no device field.
const Column *column(QStringView name);
// What an export writes when no fields are chosen: every column but Password.
QStringList defaultExportFields();
// Columns whose values are never shown (a password): a plan or a message says only that it changes.
bool isSecret(QStringView tag);
// The stored kind ("EXT", ...) of a stored or shown kind word in any case ("ext", "Speed dial",
// or the word in the language in use); empty when it is none of the four.
QString kindFromText(const QString &text);
// The kind's index (0 to 3) of a stored kind; -1 for anything else.
int kindIndex(const QString &kind);
// A column's value as the device window would store it: cut to its length, a number trimmed and
// upper-cased, a flag "0" or "1", a kind as its stored word.
QString stored(const Column &column, const QString &value);

struct Finding
{
    enum Severity { Warning, Error };
    qsizetype line = 0; // 0 for the file as a whole
    Severity severity = Error;
    QString text;       // translated; never holds a password
};

struct Row
{
    qsizetype line = 0;
    QString ext;                    // as stored: trimmed, cut, upper-case
    QHash<QString, QString> values; // by column tag, as the file gives them (a kind as its stored word)
    bool rejected = false;
};

struct Sheet
{
    // Set when the file cannot be used at all (missing, empty, not UTF-8 text, too large, a title
    // row without Ext or with an unknown column): nothing in it is planned.
    QString failure;
    QStringList header; // the column tags, in the file's order
    QList<Row> rows;
    QList<Finding> findings; // in line order; the rows' own and the file's
    bool ok() const { return failure.isEmpty(); }
    qsizetype rejectedCount() const;
};

inline constexpr qint64 MaxFileSize = 64LL * 1024 * 1024;

// Reads and checks the file at path.
Sheet read(const QString &path, qint64 maxFileSize = MaxFileSize);
// Checks the records of a file read already (lines: where each record begins).
Sheet check(const QList<QStringList> &records, const QList<qsizetype> &lines);

// Devices as the server holds them: one row of values per device, aligned with fields.
struct Table
{
    QStringList fields;
    QList<QStringList> rows;
    // The position of a field in fields, in any case; -1 when it was not read.
    qsizetype indexOf(QStringView field) const;
};

// The CSV of devices: the title row of fields, then one line per device with each field's value
// quoted where it holds a separator, a quote or a line break. A field the table lacks is written
// empty. Lines end with CRLF.
QString write(const QStringList &fields, const Table &devices);
// One CSV line of values.
QString csvLine(const QStringList &values);

} // namespace DeviceSheet
