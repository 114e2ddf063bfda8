// SPDX-License-Identifier: GPL-3.0-or-later
#include "tagvalue.h"

#include "errorlog.h"

#include <QVarLengthArray>

#include <charconv>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString addVarLabel = u" @ basGlobal.AddVar"_s;
const QString getVarLabel = u" @ basGlobal.GetVar"_s;
const QString dateFormat = u"yyyy-MM-ddTHH:mm:ss"_s;

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Turns a parsed length into a count of characters: rounded to the nearest whole number (halves
// to even, as the other clients do) and never negative.
qsizetype toLength(double length)
{
    if (!(length > 0))
        return 0;
    if (length >= double(std::numeric_limits<qsizetype>::max() / 2))
        return std::numeric_limits<qsizetype>::max() / 2;
    return qsizetype(std::nearbyint(length));
}

// How many digits stand before the point from the first significant one ("123.4" gives 3, "0.5"
// gives 0, "0.05" gives -1), moved by exponent: enough to tell a number too big for a double from
// one too small.
qint64 decimalMagnitude(QByteArrayView mantissa, qint64 exponent)
{
    qsizetype point = mantissa.indexOf('.');
    if (point < 0)
        point = mantissa.size();
    qsizetype first = 0;
    while (first < mantissa.size() && (mantissa[first] == '0' || mantissa[first] == '.'))
        ++first;
    if (first == mantissa.size()) // all zeros: zero, however large the exponent
        return std::numeric_limits<qint64>::min();
    return (first < point ? point - first : point - first + 1) + exponent;
}

// toLength(leadingNumber(text)). Nearly every length is a few plain digits ended by ")", read
// here directly.
qsizetype lengthOf(QStringView text)
{
    constexpr qsizetype maxDigits = 15; // exact in a double, as the general parse gives them
    const qsizetype end = qMin(text.size(), maxDigits);
    qsizetype length = 0;
    qsizetype i = 0;
    for (; i < end && isDigit(text[i]); ++i)
        length = length * 10 + (text[i].unicode() - u'0');
    const bool whole =
        i > 0 &&
        (i == text.size() || !(isDigit(text[i]) || text[i] == u'.' || text[i] == u'e' || text[i] == u'E'));
    return whole ? length : toLength(leadingNumber(text));
}

// Whether the leading-number parse of text can find digits: only blanks, a sign, a digit or the
// point begin a number. Anything else in front reads as zero without looking further.
bool startsNumber(QStringView text)
{
    if (text.isEmpty())
        return false;
    const QChar c = text.front();
    return isDigit(c) || c == u' ' || c == u'\t' || c == u'+' || c == u'-' || c == u'.';
}

// vars.indexOf(c, from) for a character that nearly always stands a few places on, as the "=" of
// a sized entry does: looked for directly before the general search, which costs more to start.
qsizetype indexOfNear(QStringView vars, QChar c, qsizetype from)
{
    const qsizetype near = qMin(from + 16, vars.size());
    for (qsizetype i = from; i < near; ++i) {
        if (vars[i] == c)
            return i;
    }
    return near < vars.size() ? vars.indexOf(c, near) : -1;
}

QString sizedNeedle(QStringView name)
{
    return u'{' + name.toString() + u'(';
}

QString plainNeedle(QStringView name)
{
    return u'{' + name.toString() + u'=';
}

// The span of the old entry AddVar removes: from its "{" to just past its "}".
// The sized form is measured by its length, reading exactly one type letter before the digits.
std::pair<qsizetype, qsizetype> oldEntrySpan(QStringView vars, QStringView name)
{
    const qsizetype sized = vars.indexOf(sizedNeedle(name), 0, Qt::CaseInsensitive);
    if (sized >= 0) {
        qsizetype at = sized + name.size() + 2 + 1; // "{", name, "(", type letter
        qsizetype consumed = 0;
        const double length = at < vars.size() ? leadingNumber(vars.mid(at), &consumed) : 0;
        at += consumed + 2; // ")="
        const qsizetype valueLength = toLength(length);
        const qsizetype end = valueLength > vars.size() - at ? vars.size() : at + valueLength + 1;
        return {sized, qMin(end, vars.size())};
    }
    const QString plain = plainNeedle(name);
    const qsizetype start = vars.indexOf(plain, 0, Qt::CaseInsensitive);
    if (start < 0)
        return {-1, -1};
    const qsizetype close = vars.indexOf(u'}', start + plain.size());
    return {start, close < 0 ? vars.size() : close + 1};
}

void addVarNamed(QString &vars, const QString &name, const QVariant &value, bool keepEmpty)
{
    if (name.isEmpty()) {
        if (vars.startsWith(u"{(S0)=}"_s))
            vars.remove(0, 7);
        return;
    }
    const auto [start, end] = oldEntrySpan(vars, name);
    QString result = start < 0 ? vars : vars.left(start) + QStringView(vars).mid(end);
    const QString text = tagValueText(value);
    if (!text.isEmpty() || keepEmpty)
        result += u'{' + name + u'(' + tagTypeLetter(value) + QString::number(text.size()) + u")="_s + text
            + u'}';
    vars = result;
}

} // namespace

double leadingNumber(QStringView text, qsizetype *consumed)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    bool negative = false;
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';
    // Lengths and ids are most of what is read here: a few digits with nothing that could go on
    // with the number after them are the number, exactly, without the general parse.
    qsizetype end = i;
    qint64 digitsValue = 0;
    while (end < n && end - i < 15 && isDigit(text[end]))
        digitsValue = digitsValue * 10 + (text[end++].unicode() - u'0');
    if (end > i &&
        (end == n || !(isDigit(text[end]) || text[end] == u'.' || text[end] == u'e' || text[end] == u'E'))) {
        if (consumed)
            *consumed = end;
        return negative ? -double(digitsValue) : double(digitsValue);
    }
    // The characters go to a small buffer read by std::from_chars, which ignores the C locale:
    // QCoreApplication applies the user's locale, and strtod would then stop at the "." of
    // "12.5" for a German user. The buffer lives on the stack for all but freak lengths.
    QVarLengthArray<char, 64> digits;
    bool anyDigit = false;
    bool point = false;
    qint64 whole = 0; // the digits as an integer while that is exact: lengths and ids mostly
    for (; i < n; ++i) {
        const QChar c = text[i];
        if (isDigit(c)) {
            anyDigit = true;
            if (digits.size() < 15)
                whole = whole * 10 + (c.unicode() - u'0');
            digits.append(char(c.unicode()));
        } else if (c == u'.' && !point) {
            point = true;
            digits.append('.');
        } else {
            break;
        }
    }
    if (!anyDigit) {
        if (consumed)
            *consumed = 0;
        return 0;
    }
    const qsizetype mantissaSize = digits.size();
    // An exponent counts only when digits follow it.
    qint64 exponent = 0;
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        qsizetype j = i + 1;
        const bool negativeExponent = j < n && text[j] == u'-';
        if (j < n && (text[j] == u'+' || text[j] == u'-'))
            ++j;
        const qsizetype firstExponentDigit = j;
        while (j < n && isDigit(text[j])) {
            exponent = qMin<qint64>(exponent * 10 + (text[j].unicode() - u'0'), 1000000000);
            ++j;
        }
        if (j > firstExponentDigit) {
            digits.append('e');
            if (negativeExponent)
                digits.append('-');
            for (qsizetype k = firstExponentDigit; k < j; ++k)
                digits.append(char(text[k].unicode()));
            if (negativeExponent)
                exponent = -exponent;
            i = j;
        }
    }
    if (consumed)
        *consumed = i;
    if (!point && digits.size() == mantissaSize && mantissaSize <= 15)
        return negative ? -double(whole) : double(whole);
    double value = 0;
    const std::from_chars_result read =
        std::from_chars(digits.constData(), digits.constData() + digits.size(), value);
    if (read.ec == std::errc::result_out_of_range) { // too big saturates, too small is zero
        const bool tooBig = decimalMagnitude(QByteArrayView(digits.constData(), mantissaSize), exponent) > 0;
        value = tooBig ? std::numeric_limits<double>::max() : 0.0;
    } else if (read.ec != std::errc()) {
        value = 0;
    }
    return negative ? -value : value;
}

QChar tagTypeLetter(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return u'N';
    case QMetaType::QDate:
    case QMetaType::QDateTime:
    case QMetaType::QTime:
        return u'D';
    default:
        return u'S';
    }
}

QString tagDateText(const QDateTime &when)
{
    return when.toString(dateFormat);
}

QDateTime parseTagDate(QStringView text)
{
    QDateTime when = QDateTime::fromString(text.toString(), dateFormat);
    if (!when.isValid())
        when = QDateTime::fromString(text.toString(), Qt::ISODate);
    if (!when.isValid()) {
        const QDate day = QDate::fromString(text.toString(), Qt::ISODate);
        if (day.isValid())
            when = day.startOfDay();
    }
    return when;
}

QString tagValueText(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? u"True"_s : u"False"_s;
    case QMetaType::Double:
    case QMetaType::Float:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QDateTime:
        return tagDateText(value.toDateTime());
    case QMetaType::QDate:
        return tagDateText(value.toDate().startOfDay());
    case QMetaType::QTime: // a time alone is a time on the zero day of the other clients
        return tagDateText(QDateTime(QDate(1899, 12, 30), value.toTime()));
    default:
        return value.toString();
    }
}

namespace TagValue {

EntryRef findEntry(QStringView vars, QStringView name)
{
    qsizetype at = vars.indexOf(sizedNeedle(name), 0, Qt::CaseInsensitive);
    if (at >= 0)
        return {at, name.size(), true};
    at = vars.indexOf(plainNeedle(name), 0, Qt::CaseInsensitive);
    if (at >= 0)
        return {at, name.size(), false};
    return {};
}

EntryText readEntryText(QStringView vars, const EntryRef &ref)
{
    if (!ref.found())
        return {};
    const qsizetype afterName = qMin(ref.brace + 1 + ref.nameLength + 1, vars.size());
    if (!ref.sized) {
        const qsizetype close = vars.indexOf(u'}', afterName);
        return {close < 0 ? vars.mid(afterName) : vars.mid(afterName, close - afterName)};
    }
    const QStringView head = vars.mid(afterName, qMin<qsizetype>(10, vars.size() - afterName));
    QChar type = u'S';
    qsizetype length = 0;
    if (startsNumber(head)) {
        const double number = leadingNumber(head);
        if (number == 0) {
            type = head[0];
            length = lengthOf(head.mid(1));
        } else {
            length = toLength(number);
        }
    } else if (!head.isEmpty()) { // a type letter: the number cannot begin before it
        type = head[0];
        length = lengthOf(head.mid(1));
    }
    const qsizetype equals = indexOfNear(vars, u'=', afterName);
    if (equals < 0)
        return {};
    const qsizetype start = equals + 1;
    return {vars.mid(start, qMin(length, vars.size() - start)), type};
}

QVariant readEntry(QStringView vars, const EntryRef &ref)
{
    if (!ref.found())
        return {};
    const EntryText entry = readEntryText(vars, ref);
    if (entry.type == u'N')
        return leadingNumber(entry.text);
    if (entry.type == u'D') {
        const QDateTime when = parseTagDate(entry.text);
        return when.isValid() ? QVariant(when) : QVariant();
    }
    return entry.text.toString();
}

QString nameAtIndex(QStringView vars, int index, bool *found)
{
    // A number of 1 or less reads the first entry; counting down from far below would overflow.
    int remaining = qMax(index, 1);
    qsizetype depth = 0;
    for (qsizetype i = 0; i < vars.size(); ++i) {
        if (vars[i] == u'{') {
            if (++depth == 1 && --remaining <= 0) {
                QStringView name = vars.mid(i + 1, qMin<qsizetype>(60, vars.size() - i - 1));
                qsizetype cut = name.size();
                for (qsizetype k = 0; k < name.size(); ++k) {
                    if (name[k] == u'(' || name[k] == u'=') {
                        cut = k;
                        break;
                    }
                }
                if (found)
                    *found = true;
                return name.left(cut).toString();
            }
        } else if (vars[i] == u'}') {
            --depth;
        }
    }
    if (found)
        *found = false;
    return {};
}

} // namespace TagValue

void AddVar(QString &vars, const QString &name, const QVariant &value, bool keepEmpty)
{
    Guard(addVarLabel, [&] { addVarNamed(vars, name, value, keepEmpty); });
}

void AddVar(QString &vars, int index, const QVariant &value, bool keepEmpty)
{
    Guard(addVarLabel, [&] {
        // Only the first "{" of the string is ever counted on this path.
        const qsizetype first = vars.indexOf(u'{');
        if (index > 1 || first < 0)
            return;
        QStringView name = QStringView(vars).mid(first + 1, qMin<qsizetype>(60, vars.size() - first - 1));
        const qsizetype paren = name.indexOf(u'(');
        if (paren >= 0)
            name = name.left(paren);
        addVarNamed(vars, name.toString(), value, keepEmpty);
    });
}

QVariant GetVar(const QString &vars, const QString &name, const QVariant &defaultValue)
{
    QVariant result;
    const bool ok = Guard(getVarLabel, [&] {
        const TagValue::EntryRef ref = TagValue::findEntry(vars, name);
        result = ref.found() ? TagValue::readEntry(vars, ref) : defaultValue;
    });
    return ok ? result : QVariant();
}

QVariant GetVar(const QString &vars, int index, QString *nameOut)
{
    QVariant result;
    QString name;
    Guard(getVarLabel, [&] {
        bool found = false;
        name = TagValue::nameAtIndex(vars, index, &found);
        if (found)
            result = TagValue::readEntry(vars, TagValue::findEntry(vars, name));
    });
    if (nameOut)
        *nameOut = name;
    return result;
}

QString getText(const QString &vars, const QString &name, const QString &defaultValue)
{
    return tagValueText(GetVar(vars, name, defaultValue));
}
