// SPDX-License-Identifier: GPL-3.0-or-later
// Reading CSV files (RFC 4180 quoting, UTF-8, "," ";" or tab between fields), whole or only their
// first records. Failures are values: the caller words the message for the user.
#pragma once

#include <QChar>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace Csv {

enum class Failure {
    None,
    Missing,    // no file at that path
    Unreadable, // a folder, or a file that could not be opened or read
    Empty,      // no record at all (blank lines and a byte order mark only count as empty)
    NotText,    // NUL bytes or invalid UTF-8 in what was read
    TooLarge,   // bigger than ReadOptions::maxFileSize; nothing was read
};

inline constexpr qint64 DefaultMaxFileSize = 64LL * 1024 * 1024;

struct ReadOptions
{
    // Stop after this many records (a preview); 0 reads them all. With a limit only the head of the
    // file is read, a few kilobytes for a few records, never more than maxHeadBytes.
    qsizetype maxRecords = 0;
    // Files bigger than this are refused before anything is read; 0 accepts any size.
    qint64 maxFileSize = DefaultMaxFileSize;
    // The most a limited read looks at; a preview of records longer than that shows fewer of them.
    qint64 maxHeadBytes = 4LL * 1024 * 1024;
    // The field separator; a null QChar detects it from the first record.
    QChar separator;
};

struct Table
{
    Failure failure = Failure::None;
    qint64 fileSize = 0;
    QChar separator = u',';
    QList<QStringList> records;
    // The line of the file on which each record begins (1 for the first line), aligned with records.
    QList<qsizetype> lines;
    // True when the records stop before the end of the file (the limit of ReadOptions was reached).
    bool truncated = false;

    bool ok() const { return failure == Failure::None; }
};

// Reads the file at path.
Table readFile(const QString &path, const ReadOptions &options = {});

struct ParseResult
{
    QList<QStringList> records;
    // The line on which each record begins (1 for the first line), aligned with records.
    QList<qsizetype> lines;
    // Where the text after the last record returned begins (text.size() when all was used).
    qsizetype consumed = 0;
};

// Splits text into records. Quoted fields may hold separators, doubled quotes and line breaks;
// records end at CRLF, LF or a lone CR; empty lines are skipped. With maxRecords > 0 parsing stops
// after that many. When atEnd is false the text is only the head of something longer: a last record
// that is not closed by a line break is left out, as it may go on.
ParseResult parse(QStringView text, QChar separator, qsizetype maxRecords = 0, bool atEnd = true);

// The separator of the first record of text: whichever of ",", ";" and tab occurs most often
// outside quotes; "," when none does.
QChar detectSeparator(QStringView text);

} // namespace Csv
