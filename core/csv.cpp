// SPDX-License-Identifier: GPL-3.0-or-later
#include "csv.h"

#include <QByteArrayView>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace Csv {

namespace {

constexpr qint64 firstHeadBytes = 64 * 1024;
constexpr QByteArrayView utf8Bom = "\xEF\xBB\xBF";

bool isLineBreak(QChar c)
{
    return c == u'\n' || c == u'\r';
}

// The text of bytes, or nothing when they are not UTF-8 text. Unless atEnd, bytes are only the head
// of the file and may stop inside a character: the decoder keeps those last bytes back.
std::optional<QString> decodeText(QByteArrayView bytes, bool atEnd)
{
    if (bytes.startsWith(utf8Bom))
        bytes = bytes.sliced(utf8Bom.size());
    if (bytes.contains('\0'))
        return std::nullopt;
    QStringDecoder decoder(QStringDecoder::Utf8,
                           atEnd ? QStringDecoder::Flag::Stateless : QStringDecoder::Flag::Default);
    QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

Table failed(Table table, Failure failure)
{
    table.failure = failure;
    table.records.clear();
    table.lines.clear();
    return table;
}

void fillFrom(Table &table, QByteArrayView bytes, bool atEnd, const ReadOptions &options)
{
    const std::optional<QString> text = decodeText(bytes, atEnd);
    if (!text) {
        table = failed(table, Failure::NotText);
        return;
    }
    table.separator = options.separator.isNull() ? detectSeparator(*text) : options.separator;
    const ParseResult parsed = parse(*text, table.separator, options.maxRecords, atEnd);
    table.records = parsed.records;
    table.lines = parsed.lines;
    table.truncated = !atEnd || parsed.consumed < text->size();
    if (atEnd && table.records.isEmpty())
        table = failed(table, Failure::Empty);
}

} // namespace

QChar detectSeparator(QStringView text)
{
    constexpr std::array<QChar, 3> candidates{u',', u';', u'\t'};
    std::array<qsizetype, 3> counts{};
    bool quoted = false;
    for (const QChar c : text) {
        if (c == u'"')
            quoted = !quoted; // a doubled quote flips twice
        else if (!quoted && isLineBreak(c))
            break;
        else if (!quoted)
            for (size_t i = 0; i < candidates.size(); ++i)
                counts[i] += c == candidates[i] ? 1 : 0;
    }
    // The first of the most frequent wins, so a tie and a single column both give ",".
    const auto most = std::max_element(counts.begin(), counts.end());
    return candidates[size_t(most - counts.begin())];
}

ParseResult parse(QStringView text, QChar separator, qsizetype maxRecords, bool atEnd)
{
    ParseResult result;
    QStringList record;
    QString field;
    bool quoted = false;
    bool fieldStart = true;
    bool lineHasContent = false;
    qsizetype line = 1;
    qsizetype recordLine = 1;
    const auto content = [&] {
        if (!lineHasContent)
            recordLine = line;
        lineHasContent = true;
    };
    const qsizetype size = text.size();
    qsizetype i = 0;
    while (i < size) {
        const QChar c = text[i];
        if (quoted) {
            if (c != u'"') {
                // A line break inside quotes is part of the field, and still a line of the file.
                if (c == u'\n' || (c == u'\r' && (i + 1 >= size || text[i + 1] != u'\n')))
                    ++line;
                field += c;
                ++i;
            } else if (i + 1 < size && text[i + 1] == u'"') {
                field += c;
                i += 2;
            } else {
                quoted = false;
                ++i;
            }
        } else if (c == u'"' && fieldStart) {
            quoted = true;
            content();
            fieldStart = false;
            ++i;
        } else if (c == separator) {
            record.append(field);
            field.clear();
            fieldStart = true;
            content();
            ++i;
        } else if (isLineBreak(c)) {
            i += (c == u'\r' && i + 1 < size && text[i + 1] == u'\n') ? 2 : 1;
            if (lineHasContent) {
                record.append(field);
                result.records.append(record);
                result.lines.append(recordLine);
            }
            ++line;
            record.clear();
            field.clear();
            fieldStart = true;
            lineHasContent = false;
            result.consumed = i;
            if (maxRecords > 0 && result.records.size() >= maxRecords) {
                while (result.consumed < size && isLineBreak(text[result.consumed]))
                    ++result.consumed;
                return result;
            }
        } else {
            field += c;
            fieldStart = false;
            content();
            ++i;
        }
    }
    // A last record without a line break after it, or with a quote never closed, ends with the text.
    if (atEnd && lineHasContent) {
        record.append(field);
        result.records.append(record);
        result.lines.append(recordLine);
        result.consumed = size;
    } else if (atEnd) {
        result.consumed = size;
    }
    return result;
}

Table readFile(const QString &path, const ReadOptions &options)
{
    Table table;
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        return failed(table, Failure::Missing);
    if (!info.isFile())
        return failed(table, Failure::Unreadable);
    table.fileSize = info.size();
    if (options.maxFileSize > 0 && table.fileSize > options.maxFileSize)
        return failed(table, Failure::TooLarge);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failed(table, Failure::Unreadable);

    if (options.maxRecords <= 0) {
        const QByteArray bytes = file.readAll();
        if (file.error() != QFileDevice::NoError)
            return failed(table, Failure::Unreadable);
        if (options.maxFileSize > 0 && bytes.size() > options.maxFileSize) // it grew meanwhile
            return failed(table, Failure::TooLarge);
        fillFrom(table, bytes, true, options);
        return table;
    }
    // A preview reads a small head first and more only while the records asked for go on past it.
    const qint64 cap = qMax<qint64>(1, options.maxHeadBytes);
    qint64 want = qMin(firstHeadBytes, cap);
    QByteArray bytes;
    for (;;) {
        const qint64 asked = want - bytes.size();
        const QByteArray more = file.read(asked);
        if (file.error() != QFileDevice::NoError)
            return failed(table, Failure::Unreadable);
        bytes += more;
        const bool atEnd = more.size() < asked || file.atEnd();
        fillFrom(table, bytes, atEnd, options);
        if (!table.ok() || atEnd || table.records.size() >= options.maxRecords || bytes.size() >= cap)
            return table;
        want = qMin(want * 4, cap);
    }
}

} // namespace Csv
