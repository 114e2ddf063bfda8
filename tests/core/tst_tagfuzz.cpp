// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged, random and truncated tagged-value strings: reading and writing never break, and what
// they give back stays within what the string holds.
#include "tagentries.h"
#include "tagreader.h"
#include "tagvalue.h"

#include "errorlog.h"
#include "isolation.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

// Fragments that damage the structure: lengths past the end, huge and negative lengths, empty
// names, lone braces, "(" without ")", halves of surrogate pairs.
// clang-format off
const QStringList fragments = {
    u"{"_s, u"}"_s, u"("_s, u")"_s, u"="_s, u"S"_s, u"N"_s, u"D"_s, u"0"_s, u"5"_s, u"12"_s, u"-"_s,
    u"."_s, u"e"_s, u" "_s, u"a"_s, u"Id"_s, u"(S99999999999)="_s, u"(S-5)="_s, u"(N1e308)="_s,
    u"(S1e999)="_s, u"(-3)="_s, u"(S"_s, u"{Id(S3)="_s, u"{Id="_s, u"{(S0)=}"_s, u"{=}"_s,
    u"{(N2)=12}"_s, u"😀"_s, QString(QChar(0xD800)), QString(QChar(0xDC00)), u"ß"_s, u"\n"_s};
// clang-format on

class Fuzzer
{
public:
    explicit Fuzzer(quint32 seed) : m_random(seed) {}

    int below(int bound) { return int(m_random.bounded(bound)); }

    QString junk()
    {
        QString text;
        const int count = below(40);
        for (int i = 0; i < count; ++i)
            text += fragments.at(below(int(fragments.size())));
        return text;
    }

    // A string AddVar wrote, cut anywhere: lengths then run past the end.
    QString truncated()
    {
        QString vars;
        const int count = 1 + below(5);
        for (int i = 0; i < count; ++i) {
            QString inner;
            AddVar(inner, u"Name"_s, junk());
            AddVar(inner, u"Id"_s, below(1000));
            AddVar(vars, u"Row"_s + QString::number(i), below(2) ? QVariant(inner) : QVariant(junk()));
        }
        return vars.left(below(int(vars.size()) + 1));
    }

    QString input() { return below(2) ? junk() : truncated(); }

    QVariant value()
    {
        switch (below(9)) {
        case 0:
            return below(100000) - 50000;
        case 1:
            return m_random.generateDouble() * std::pow(10.0, below(600) - 300);
        case 2:
            return below(2) == 1;
        case 3:
            return QDateTime(QDate(2000 + below(30), 1 + below(12), 1 + below(28)),
                             QTime(below(24), below(60), below(60)));
        case 4:
            return QString();
        case 5:
            return std::numeric_limits<double>::quiet_NaN(); // written as text; must not break
        default:
            return junk();
        }
    }

    QString name(const QString &vars)
    {
        const qsizetype brace = vars.indexOf(u'{', below(int(vars.size()) + 1));
        if (below(3) > 0 && brace >= 0) {
            qsizetype end = brace + 1;
            while (end < vars.size() && vars[end] != u'(' && vars[end] != u'=')
                ++end;
            return vars.mid(brace + 1, end - brace - 1);
        }
        return below(4) == 0 ? QString() : junk().left(below(8));
    }

private:
    QRandomGenerator m_random;
};

bool hasDelimiter(const QString &name)
{
    return name.contains(u'{') || name.contains(u'}') || name.contains(u'(') || name.contains(u'=');
}

QString shown(const QString &text)
{
    return text.size() <= 200 ? text : text.left(200) + u"..."_s;
}

// What a named read may return: the default when nothing matched, else text the string holds,
// a finite number or a date.
bool isSaneRead(const QString &vars, const QString &name, const QVariant &result, const QVariant &fallback)
{
    if (!TagValue::FindEntry(vars, name).found())
        return result == fallback;
    switch (result.typeId()) {
    case QMetaType::QString:
        return vars.contains(result.toString());
    case QMetaType::Double:
        return std::isfinite(result.toDouble());
    case QMetaType::QDateTime:
        return result.toDateTime().isValid();
    default:
        return !result.isValid(); // a "D" value that is no date
    }
}

void checkReads(const QString &vars, Fuzzer &fuzzer)
{
    const TagReader reader(vars);
    const QVariant fallback = u"<none>"_s;
    for (int i = 0; i < 8; ++i) {
        const QString name = fuzzer.name(vars);
        const QVariant result = GetVar(vars, name, fallback);
        if (!isSaneRead(vars, name, result, fallback))
            QFAIL(qPrintable(
                u"read of \"%1\" gave \"%2\" from %3"_s.arg(name, result.toString(), shown(vars))));
        if (reader.value(name, fallback) != result)
            QFAIL(qPrintable(u"reader and GetVar differ on \"%1\" in %2"_s.arg(name, shown(vars))));
    }
    const QList<TagEntry> entries = SplitEntries(vars);
    if (entries.size() > vars.count(u'{'))
        QFAIL(qPrintable(u"more entries than braces in "_s + shown(vars)));
    for (const TagEntry &entry : entries) {
        if (entry.name.contains(u'(') || entry.name.contains(u'=') || !vars.contains(entry.value))
            QFAIL(qPrintable(u"entry \"%1\" is not what %2 holds"_s.arg(entry.name, shown(vars))));
    }
    for (int index : {std::numeric_limits<int>::min(), -1, 0, 1, 2, 3, int(entries.size()) + 1}) {
        QString name = u"unset"_s;
        const QVariant result = GetVar(vars, index, &name);
        bool found = false;
        const QString expectedName = TagValue::NameAtIndex(vars, index, &found);
        const bool sane = name == expectedName && name.size() <= 60 && !name.contains(u'(') &&
                          !name.contains(u'=') &&
                          (found ? result == GetVar(vars, name) : (!result.isValid() && name.isEmpty()));
        if (!sane)
            QFAIL(qPrintable(u"read by number %1 gave \"%2\" = \"%3\" in %4"_s.arg(
                QString::number(index), name, result.toString(), shown(vars))));
        QString readerName;
        if (reader.value(index, &readerName) != result || readerName != name)
            QFAIL(
                qPrintable(u"reader differs by number %1 in %2"_s.arg(QString::number(index), shown(vars))));
    }
    QCOMPARE(GetVar(vars, std::numeric_limits<int>::min()), GetVar(vars, 1));
}

void checkNumbers(const QString &vars)
{
    for (qsizetype at = 0; at < vars.size(); at += 3) {
        qsizetype consumed = -1;
        const double number = LeadingNumber(QStringView(vars).mid(at), &consumed);
        if (!std::isfinite(number) || consumed < 0 || consumed > vars.size() - at ||
            (consumed == 0 && number != 0))
            QFAIL(qPrintable(u"leading number of \"%1\" gave %2 using %3"_s.arg(
                shown(vars.mid(at)), QString::number(number), QString::number(consumed))));
    }
}

// The entry AddVar appends, in the one form every client reads.
QString writtenEntry(const QString &name, const QVariant &value)
{
    const QString text = TagValueText(value);
    return u'{' + name + u'(' + TagTypeLetter(value) + QString::number(text.size()) + u")="_s + text + u'}';
}

void checkWrite(const QString &vars, const QString &name, const QVariant &value, bool keepEmpty)
{
    QString result = vars;
    AddVar(result, name, value, keepEmpty);
    const QString context = u"writing \"%1\" into %2 gave %3"_s.arg(name, shown(vars), shown(result));
    if (name.isEmpty()) {
        QCOMPARE(result, vars.startsWith(u"{(S0)=}"_s) ? vars.mid(7) : vars);
        return;
    }
    const bool appends = !TagValueText(value).isEmpty() || keepEmpty;
    const QString entry = appends ? writtenEntry(name, value) : QString();
    QVERIFY2(result.endsWith(entry), qPrintable(context));
    const QString rest = result.chopped(entry.size());
    // At most the first entry of that name is gone; everything else stands as it stood.
    const TagValue::EntryRef old = TagValue::FindEntry(vars, name);
    if (!old.found()) {
        QVERIFY2(rest == vars, qPrintable(context));
    } else {
        QVERIFY2(rest.size() < vars.size() && rest.left(old.brace) == vars.left(old.brace) &&
                     vars.endsWith(QStringView(rest).mid(old.brace)),
                 qPrintable(context));
    }
    if (!appends || hasDelimiter(name))
        return;
    // The new entry reads back alone, by name and structurally.
    const QVariant back = GetVar(entry, name);
    const QString text = TagValueText(value);
    if (TagTypeLetter(value) == u'N') {
        if (std::isfinite(value.toDouble()))
            QVERIFY2(back.toDouble() == value.toDouble(), qPrintable(context));
    } else if (TagTypeLetter(value) == u'D') {
        QVERIFY2(back.toDateTime() == value.toDateTime(), qPrintable(context));
    } else {
        QVERIFY2(back == QVariant(text), qPrintable(context));
    }
    const QList<TagEntry> split = SplitEntries(entry);
    QVERIFY2(split.size() == 1 && split.first().name == name && split.first().value == text,
             qPrintable(context));
}

void checkWriteByNumber(const QString &vars, int index, const QVariant &value)
{
    QString result = vars;
    AddVar(result, index, value);
    const qsizetype first = vars.indexOf(u'{');
    if (index > 1 || first < 0) {
        QCOMPARE(result, vars);
        return;
    }
    // Only the first "{" is counted on this path; its name runs to "(" (an "=" stays in it).
    QString name = vars.mid(first + 1, 60);
    name = name.left(name.indexOf(u'(') < 0 ? name.size() : name.indexOf(u'('));
    QString byName = vars;
    AddVar(byName, name, value);
    QCOMPARE(result, byName);
}

} // namespace

class TestTagFuzz : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
    }

    void damagedStringsReadSanely_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed : {5u, 6u, 7u, 8u})
            QTest::newRow(qPrintable(u"seed %1"_s.arg(seed))) << seed;
    }

    void damagedStringsReadSanely()
    {
        QFETCH(quint32, seed);
        Fuzzer fuzzer(seed);
        for (int round = 0; round < 1500 && !QTest::currentTestFailed(); ++round) {
            const QString vars = fuzzer.input();
            checkReads(vars, fuzzer);
            checkNumbers(vars);
        }
        for (const QString &vars :
             {u"{"_s, u"{Id"_s, u"{Id("_s, u"{Id(S"_s, u"{Id(S3"_s, u"{Id(S3)"_s, u"{Id(S3)="_s,
              u"{Id(S99999999999)=ab}"_s, u"{Id(S-5)=ab}{Id=x}"_s, u"{Id(1e999)=ab"_s, u"{Id=abc"_s,
              u"{(S0)=}"_s, u"{="_s, u"(((("_s, u"}}}}{Id(S1)=x}"_s})
            checkReads(vars, fuzzer);
        QCOMPARE(GetVar(u"{Id(S99999999999)=ab}"_s, u"id"_s), QVariant(u"ab}"_s)); // what exists
        QCOMPARE(GetVar(u"{Id(S-5)=ab}"_s, u"id"_s), QVariant(QString()));
        QCOMPARE(GetVar(u"{Id=abc"_s, u"id"_s), QVariant(u"abc"_s));
    }

    void damagedStringsWriteSanely_data() { damagedStringsReadSanely_data(); }

    void damagedStringsWriteSanely()
    {
        QFETCH(quint32, seed);
        Fuzzer fuzzer(seed);
        for (int round = 0; round < 1500 && !QTest::currentTestFailed(); ++round) {
            const QString vars = fuzzer.input();
            checkWrite(vars, fuzzer.name(vars), fuzzer.value(), fuzzer.below(2) == 1);
            if (QTest::currentTestFailed())
                return;
            const int index =
                QList<int>{std::numeric_limits<int>::min(), -3, 0, 1, 1, 2, 7}.at(fuzzer.below(7));
            checkWriteByNumber(vars, index, fuzzer.value());
        }
        checkWrite(u"{Id(S99999999999)=ab"_s, u"ID"_s, 5, false);
        checkWrite(u"{Id(S-5)=ab}{Id=x}"_s, u"id"_s, u"new"_s, false);
        checkWrite(u"{Id(S3"_s, u"Id"_s, QString(), true);
        checkWrite(u"{(S0)=}{A(S1)=x}"_s, QString(), u"lost"_s, false);
    }

    void writtenStringsSplitBackIntoTheirEntries()
    {
        Fuzzer fuzzer(11);
        for (int round = 0; round < 300; ++round) {
            QString vars;
            QList<std::pair<QString, QVariant>> written;
            const int count = fuzzer.below(8);
            for (int i = 0; i < count; ++i) {
                const QString name = u"F"_s + QString::number(i) + (i % 2 ? u"😀"_s : u"é"_s);
                const QVariant value = i % 3 ? QVariant(fuzzer.junk()) : QVariant(i * 1.5);
                if (TagValueText(value).isEmpty())
                    continue;
                AddVar(vars, name, value);
                written.append({name, value});
            }
            const QList<TagEntry> entries = SplitEntries(vars);
            QCOMPARE(entries.size(), written.size());
            for (qsizetype i = 0; i < entries.size(); ++i) {
                QCOMPARE(entries[i].name, written[i].first);
                QCOMPARE(entries[i].value, TagValueText(written[i].second));
                QCOMPARE(entries[i].type, TagTypeLetter(written[i].second));
            }
        }
    }

    void numbersReadAlike()
    {
        const struct
        {
            QString text;
            double value;
            qsizetype consumed;
        } cases[] = {
            {u"12.5"_s, 12.5, 4},
            {u"  -3e2x"_s, -300, 6},
            {u"5."_s, 5, 2},
            {u".5"_s, 0.5, 2},
            {u"+.5e-1"_s, 0.05, 6},
            {u"1e"_s, 1, 1},
            {u"1e+"_s, 1, 1},
            {u"abc"_s, 0, 0},
            {u"--5"_s, 0, 0},
            {u"."_s, 0, 0},
            {u"1.2.3"_s, 1.2, 3},
            {u"\t7)="_s, 7, 2},
            {u"1e999"_s, std::numeric_limits<double>::max(), 5},
            {u"-1e999"_s, std::numeric_limits<double>::lowest(), 6},
            {u"1e-999"_s, 0, 6},
            {u"0.000e99999999999999"_s, 0, 20},
            {u"99999999999999999999"_s, 99999999999999999999.0, 20},
            {QString(400, u'9'), std::numeric_limits<double>::max(), 400},
            {u"0."_s + QString(400, u'0') + u'1', 0, 403},
        };
        for (const auto &c : cases) {
            qsizetype consumed = -1;
            QCOMPARE(LeadingNumber(c.text, &consumed), c.value);
            QCOMPARE(consumed, c.consumed);
        }
    }

    // The decimal point is "." whatever the user's locale; QCoreApplication applies the locale
    // from the environment, so a German desk would otherwise read "12.5" as 12.
    void numbersIgnoreTheUserLocale()
    {
        const QByteArray previous = std::setlocale(LC_NUMERIC, nullptr);
        if (!useCommaLocale())
            QSKIP("no locale with a decimal comma can be set up here");
        const QVariant count = GetVar(u"{Count(N4)=12.5}"_s, u"Count"_s);
        const double number = LeadingNumber(u"3.25e1");
        std::setlocale(LC_NUMERIC, previous.constData());
        QCOMPARE(count, QVariant(12.5));
        QCOMPARE(number, 32.5);
    }

    void cleanupTestCase()
    {
        // Nothing above may have thrown inside AddVar or GetVar: the guard would have logged it.
        QFile log(ErrorLog::Path());
        QVERIFY2(!log.exists() || log.size() == 0, qPrintable(ErrorLog::Tail()));
    }

private:
    bool useCommaLocale()
    {
        const auto decimalComma = [] { return QByteArray(std::localeconv()->decimal_point) == ","; };
        for (const char *name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"}) {
            if (std::setlocale(LC_NUMERIC, name) && decimalComma())
                return true;
        }
        // Build one from the system's locale sources when none is installed.
        const QString target = m_scratch.filePath(u"locales/de_DE.UTF-8"_s);
        QDir().mkpath(m_scratch.filePath(u"locales"_s));
        QProcess localedef;
        localedef.start(u"localedef"_s, {u"-i"_s, u"de_DE"_s, u"-f"_s, u"UTF-8"_s, target});
        if (!localedef.waitForFinished(60000) || localedef.exitCode() != 0)
            return false;
        qputenv("LOCPATH", QFile::encodeName(m_scratch.filePath(u"locales"_s)));
        const bool ok = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
        qunsetenv("LOCPATH");
        return ok && decimalComma();
    }

    TestIsolation m_scratch;
};

QTEST_GUILESS_MAIN(TestTagFuzz)
#include "tst_tagfuzz.moc"
