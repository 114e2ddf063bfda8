// SPDX-License-Identifier: GPL-3.0-or-later
// Generated, damaged and truncated tagged-value strings: the one-pass reader answers every read
// exactly as GetVar does, list replies read as the literal loop reads them, and reading and
// writing never break or give back more than the string holds.
#include "tagentries.h"
#include "tagreader.h"
#include "tagvalue.h"

#include "errorlog.h"
#include "isolation.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

// Names that catch the ways a lookup by name goes wrong: prefixes of each other, case variants
// that do and do not fold together (the Kelvin sign folds to "k", "ß" never to "ss"), letters
// outside ASCII and outside the 16-bit range, and names at the reader's index limit and past it,
// where it hands over to the linear search.
// clang-format off
const QStringList namePool = {
    u"Id"_s, u"ID"_s, u"Ext"_s, u"Ex"_s, u"Exts"_s, u"ExtensionId"_s, u"Name"_s, u"Type"_s,
    u"List"_s, u"List1"_s, u"List10"_s, u"Dept"_s, u"Buttons"_s, u"btn0"_s, u"Ref"_s, u"Options"_s,
    u""_s, u"Straße"_s, u"STRASSE"_s, u"Ärger"_s, u"ärger"_s, u"Ωmega"_s, u"Σigma"_s, u"ςigma"_s,
    u"\u212Aelvin"_s, u"kelvin"_s, u"İstanbul"_s, u"istanbul"_s, u"😀Smile"_s, u"😀smile"_s,
    u"\U00010400eseret"_s, u"\U00010428ESERET"_s, QString(64, u'L'), QString(65, u'L'), QString(66, u'l')};
// Pieces of text that shape the format or damage it: lengths past the end, huge and negative
// lengths, empty names, lone braces, "(" without ")", halves of surrogate pairs.
const QStringList pieces = {
    u"a"_s, u"Z"_s, u"7"_s, u"12"_s, u" "_s, u"."_s, u"-"_s, u"e"_s, u"S"_s, u"N"_s, u"D"_s, u"{"_s, u"}"_s,
    u"("_s, u")"_s, u"="_s, u"{Id(S3)="_s, u"{Name="_s, u"{List2(S"_s, u"(S99999999999)="_s, u"(S-5)="_s,
    u"(N1e308)="_s, u"(S1e999)="_s, u"(-3)="_s, u"{(S0)=}"_s, u"{=}"_s, u"{(N2)=12}"_s, u"ß"_s, u"Σ"_s,
    u"😀"_s, u"\U00010400"_s, u"é"_s, u"\n"_s, QString(QChar(0xD800)), QString(QChar(0xDC00))};
// clang-format on

// The name the "{" at brace starts: up to its "(" or "=".
QString nameAt(const QString &vars, qsizetype brace)
{
    qsizetype end = brace + 1;
    while (end < vars.size() && vars[end] != u'(' && vars[end] != u'=')
        ++end;
    return vars.mid(brace + 1, end - brace - 1);
}

class Generator
{
public:
    explicit Generator(quint32 seed) : m_random(seed) {}

    int below(int bound) { return int(m_random.bounded(bound)); }
    bool chance(int percent) { return below(100) < percent; }

    // Up to maxPieces pieces; plain text holds no "}".
    QString text(int maxPieces = 12, bool plain = false)
    {
        QString text;
        for (int i = below(maxPieces); i > 0; --i) {
            const QString &piece = pieces.at(below(int(pieces.size())));
            if (!(plain && piece.contains(u'}')))
                text += piece;
        }
        return text;
    }

    QString record(int depth)
    {
        QString record;
        for (int i = below(7); i > 0; --i) {
            record += entry(depth);
            if (chance(5))
                record += text(); // stray text between entries
        }
        return record;
    }

    // Junk, or a record cut anywhere so that its lengths run past the end.
    QString damaged()
    {
        if (chance(50))
            return text(40);
        const QString whole = record(1);
        return whole.left(below(int(whole.size()) + 1));
    }

    // A name from the pool or made up, in its own case or in capitals or small letters.
    QString name()
    {
        QString name = chance(70) ? namePool.at(below(int(namePool.size()))) : QString();
        static const QStringList letters = {
            u"a"_s, u"B"_s, u"x"_s, u"Y"_s,      u"1"_s, u"_"_s, u"ä"_s,          u"Ö"_s,          u"ß"_s,
            u"σ"_s, u"ς"_s, u"Σ"_s, u"\u212A"_s, u"k"_s, u"😀"_s, u"\U00010400"_s, u"\U00010428"_s, u"{"_s};
        for (int i = name.isEmpty() ? 1 + below(8) : 0; i > 0; --i)
            name += letters.at(below(int(letters.size())));
        const int form = below(4);
        return form == 0 ? name.toUpper() : form == 1 ? name.toLower() : name;
    }

    // The name of an entry vars holds, or a made-up one.
    QString nameIn(const QString &vars)
    {
        const qsizetype brace = vars.indexOf(u'{', below(int(vars.size()) + 1));
        if (brace < 0 || chance(30))
            return chance(25) ? QString() : text(8);
        return nameAt(vars, brace);
    }

    // A value of each kind AddVar writes; a NaN is written as "nan" and must not break anything.
    QVariant value()
    {
        const QVariant values[] = {below(100000) - 50000,
                                   m_random.generateDouble() * std::pow(10.0, below(600) - 300),
                                   chance(50),
                                   QDateTime(QDate(2000 + below(30), 1 + below(12), 1 + below(28)),
                                             QTime(below(24), below(60), below(60))),
                                   QString(),
                                   std::numeric_limits<double>::quiet_NaN(),
                                   text(40)};
        return values[below(7)];
    }

private:
    QString entry(int depth)
    {
        const QString entryName = name();
        if (chance(25))
            return u'{' + entryName + u'=' + text(12, true) + u'}';
        const QString letter = QStringList{u"S"_s, u"S"_s, u"N"_s, u"D"_s, u""_s, u"X"_s}.at(below(6));
        QString value;
        if (depth < 3 && chance(30))
            value = record(depth + 1);
        else if (letter == u"N"_s)
            value = QString::number(m_random.generateDouble() * 2000 - 1000, 'g', below(8) + 1);
        else
            value = letter == u"D"_s && chance(70) ? u"2024-05-06T07:08:09"_s : text();
        if (chance(15) && !entryName.contains(u'(') && !entryName.contains(u'=')) {
            QString written;
            AddVar(written, entryName, value, chance(50));
            return written;
        }
        return u'{' + entryName + u'(' + letter + QString::number(value.size()) + u")="_s + value + u'}';
    }

    QRandomGenerator m_random;
};

// Every name a "{" of vars starts (up to its "(" or "="), and variants of each that may or may
// not be present: other case, one character shorter or longer, with a delimiter inside.
QStringList namesToRead(const QString &vars, Generator &generator)
{
    QStringList names = namePool;
    for (qsizetype at = vars.indexOf(u'{'); at >= 0; at = vars.indexOf(u'{', at + 1)) {
        const QString name = nameAt(vars, at);
        names << name << name.toUpper() << name.toLower() << name.chopped(qMin<qsizetype>(1, name.size()))
              << name + u'x';
        if (generator.chance(10))
            names << name + u"(S"_s << name + u'=';
    }
    names << u"Missing"_s << QString(70, u'x') << generator.text(4);
    names.removeDuplicates();
    return names;
}

QString shortened(const QString &text)
{
    return text.size() <= 300 ? text : text.left(300) + u"..."_s;
}

bool sameNumber(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

// What a named read may give: the default when nothing matched, else text the string holds, a
// finite number, a date, or nothing for a date entry that holds no date.
bool isSaneRead(const QString &vars, bool found, const QVariant &result, const QVariant &fallback)
{
    if (!found)
        return result == fallback;
    switch (result.typeId()) {
    case QMetaType::QString:
        return vars.contains(result.toString());
    case QMetaType::Double:
        return std::isfinite(result.toDouble());
    case QMetaType::QDateTime:
        return result.toDateTime().isValid();
    default:
        return !result.isValid();
    }
}

// Text around a string read through a view: entries a reader that strays past either end of its
// view would find, and a "}" that would cut short a plain value running to the end.
const QString beforeView = u"{Id(S3)=out}{Name=out}{N(N1)=9}{"_s;
const QString afterView = u"}{Id(S3)=out}{Ext=out}{List1(S3)=out}"_s;

// Every read of the reader, by name and by number, against GetVar's on the same string, for a
// reader of the string and for one that reads it in place inside a longer text; and GetVar,
// splitEntries and leadingNumber give back no more than the string holds.
void checkReads(const QString &vars, Generator &generator)
{
    const auto failed = [&vars](const QString &what) {
        QTest::qFail(qPrintable(what + u" in "_s + shortened(vars)), __FILE__, __LINE__);
    };
    const QString padded = beforeView + vars + afterView;
    const TagReader reader(vars);
    const TagReader inPlace(QStringView(padded).mid(beforeView.size(), vars.size()));
    const TagReader *readers[] = {&reader, &inPlace};
    const QVariant fallback = u"<none>"_s;
    for (const QString &name : namesToRead(vars, generator)) {
        const QVariant expected = GetVar(vars, name, fallback);
        const TagValue::EntryRef ref = TagValue::findEntry(vars, name);
        if (!isSaneRead(vars, ref.found(), expected, fallback))
            return failed(u"GetVar of \"%1\" gave \"%2\""_s.arg(name, expected.toString()));
        const QString text = getText(vars, name, fallback.toString());
        const double number = GetVar(vars, name).toDouble();
        for (const TagReader *read : readers) {
            const QVariant actual = read->value(name, fallback);
            const TagValue::EntryRef actualRef = read->find(name);
            if (actual != expected || actual.typeId() != expected.typeId() || actualRef.brace != ref.brace ||
                actualRef.sized != ref.sized || read->text(name, fallback.toString()) != text ||
                !sameNumber(read->number(name), number))
                return failed(u"%1 \"%2\" gave \"%3\" at %4, GetVar \"%5\" at %6"_s.arg(
                    read == &inPlace ? u"read in place"_s : u"read"_s, name, actual.toString(),
                    QString::number(actualRef.brace), expected.toString(), QString::number(ref.brace)));
        }
    }

    const QList<TagEntry> entries = splitEntries(vars);
    if (entries.size() > vars.count(u'{'))
        return failed(u"more entries than braces"_s);
    for (const TagEntry &entry : entries) {
        if (entry.name.contains(u'(') || entry.name.contains(u'=') || !vars.contains(entry.value))
            return failed(u"entry \"%1\" is not what the string holds"_s.arg(entry.name));
    }
    QList<int> indexes = {std::numeric_limits<int>::min(), -1, 0};
    for (int index = 1; index <= entries.size() + 2; ++index)
        indexes << index;
    const QVariant first = GetVar(vars, 1);
    for (const int index : std::as_const(indexes)) {
        QString name = u"unset"_s;
        const QVariant expected = GetVar(vars, index, &name);
        if (name.size() > 60 || name.contains(u'(') || name.contains(u'=') ||
            (index < 1 && expected != first))
            return failed(u"GetVar by number %1 gave \"%2\""_s.arg(QString::number(index), name));
        for (const TagReader *read : readers) {
            QString actualName = u"unset too"_s;
            const QVariant actual = read->value(index, &actualName);
            if (actual != expected || actualName != name)
                return failed(u"by number %1: reader gave %2 \"%3\", GetVar %4 \"%5\""_s.arg(
                    QString::number(index), actualName, actual.toString(), name, expected.toString()));
        }
    }

    for (qsizetype at = 0; at < vars.size(); at += 3) {
        qsizetype consumed = -1;
        const double number = leadingNumber(QStringView(vars).mid(at), &consumed);
        if (!std::isfinite(number) || consumed < 0 || consumed > vars.size() - at ||
            (consumed == 0 && number != 0))
            return failed(u"leading number at %1 gave %2 using %3"_s.arg(
                QString::number(at), QString::number(number), QString::number(consumed)));
    }
}

// AddVar removes at most the first entry of the name, leaves everything else as it stood, and
// appends the new entry in the one form every client reads, which reads back alone.
void checkWrite(const QString &vars, const QString &name, const QVariant &value, bool keepEmpty)
{
    QString result = vars;
    AddVar(result, name, value, keepEmpty);
    const QString context = u"writing \"%1\" into %2 gave %3"_s.arg(name, shortened(vars), shortened(result));
    if (name.isEmpty()) {
        QVERIFY2(result == (vars.startsWith(u"{(S0)=}"_s) ? vars.mid(7) : vars), qPrintable(context));
        return;
    }
    const QString text = tagValueText(value);
    const bool appends = !text.isEmpty() || keepEmpty;
    const QString entry = appends ? u'{' + name + u'(' + tagTypeLetter(value) + QString::number(text.size()) +
                                        u")="_s + text + u'}'
                                  : QString();
    QVERIFY2(result.endsWith(entry), qPrintable(context));
    const QString rest = result.chopped(entry.size());
    const TagValue::EntryRef old = TagValue::findEntry(vars, name);
    if (!old.found()) {
        QVERIFY2(rest == vars, qPrintable(context));
    } else {
        QVERIFY2(rest.size() < vars.size() && rest.left(old.brace) == vars.left(old.brace) &&
                     vars.endsWith(QStringView(rest).mid(old.brace)),
                 qPrintable(context));
    }
    if (!appends || name.contains(u'{') || name.contains(u'}') || name.contains(u'(') || name.contains(u'='))
        return;
    const QVariant back = GetVar(entry, name);
    if (tagTypeLetter(value) == u'N')
        QVERIFY2(!std::isfinite(value.toDouble()) || back.toDouble() == value.toDouble(),
                 qPrintable(context));
    else
        QVERIFY2(tagValueText(back) == text, qPrintable(context));
    const QList<TagEntry> split = splitEntries(entry);
    QVERIFY2(split.size() == 1 && split.first().name == name && split.first().value == text &&
                 split.first().type == tagTypeLetter(value),
             qPrintable(context));
}

// Writing by number counts only the first "{": its name runs to "(" (an "=" stays in it).
void checkWriteByNumber(const QString &vars, int index, const QVariant &value)
{
    QString result = vars;
    AddVar(result, index, value);
    const qsizetype first = vars.indexOf(u'{');
    QString expected = vars;
    if (index <= 1 && first >= 0) {
        const QString name = vars.mid(first + 1, 60);
        AddVar(expected, name.left(name.indexOf(u'(') < 0 ? name.size() : name.indexOf(u'(')), value);
    }
    QCOMPARE(result, expected);
}

QStringList literalListLoop(const QString &reply)
{
    QStringList rows;
    const int count = int(GetVar(reply, u"ListCount"_s).toDouble());
    for (int i = 1; i <= count; ++i)
        rows << getText(reply, u"List"_s + QString::number(i));
    return rows;
}

} // namespace

class TestTagReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void stringsReadLikeGetVar_data()
    {
        QTest::addColumn<quint32>("seed");
        QTest::addColumn<bool>("damaged");
        for (quint32 seed : {1u, 2u, 3u, 20240506u, 77u, 4242u})
            QTest::addRow("records, seed %u", seed) << seed << false;
        for (quint32 seed : {5u, 6u, 7u, 8u})
            QTest::addRow("damaged, seed %u", seed) << seed << true;
    }

    void stringsReadLikeGetVar()
    {
        QFETCH(quint32, seed);
        QFETCH(bool, damaged);
        Generator generator(seed);
        for (int round = 0; round < (damaged ? 1000 : 150) && !QTest::currentTestFailed(); ++round) {
            QString vars = damaged ? generator.damaged() : generator.record(0);
            if (!damaged && round % 10 == 0) { // long strings take QString's other search algorithm
                while (vars.size() < 4000)
                    vars += generator.record(0);
            }
            checkReads(vars, generator);
        }
    }

    void damagedStringsWriteSanely()
    {
        Generator generator(5);
        for (int round = 0; round < 6000 && !QTest::currentTestFailed(); ++round) {
            const QString vars = generator.damaged();
            checkWrite(vars, generator.nameIn(vars), generator.value(), generator.chance(50));
            const int index =
                QList<int>{std::numeric_limits<int>::min(), -3, 0, 1, 1, 2, 7}.at(generator.below(7));
            checkWriteByNumber(vars, index, generator.value());
        }
        checkWrite(u"{Id(S99999999999)=ab"_s, u"ID"_s, 5, false);
        checkWrite(u"{Id(S-5)=ab}{Id=x}"_s, u"id"_s, u"new"_s, false);
        checkWrite(u"{Id(S3"_s, u"Id"_s, QString(), true);
        checkWrite(u"{(S0)=}{A(S1)=x}"_s, QString(), u"lost"_s, false);
    }

    void listRowsReadLikeTheLiteralLoop()
    {
        // Rows sent as numbers or dates, in other case, missing, as plain entries outdone by a
        // sized one later on, or first met nested in an earlier row.
        const QString tricky =
            u"{ListCount=8}{List1(N3)=1.0}{LIST2(S1)=b}{List3=plain}{List4(D19)=2024-05-06T07:08:09}"
            "{List01(S1)=x}{List5(S13)={List6(S1)=n}}{List6(S1)=f}{X(S13)={List3(S1)=s}}"
            "{L\u0130ST7(S1)=g}{List8(S3)=end}{List8(S3)=two}{LISTCOUNT=2}"_s;
        QCOMPARE(readList(tricky), (QStringList{u"1"_s, u"b"_s, u"s"_s, u"2024-05-06T07:08:09"_s,
                                                u"{List6(S1)=n}"_s, u"n"_s, QString(), u"end"_s}));

        // A big reply, rows last first (so the first met lie far beyond the braces read so far),
        // some missing, some twice, some in capitals, a plain row met before its sized one, a row
        // named inside another's notes and rows past the count.
        QString big = u"{Ref(S9)=MAIN-EXTS}{ListCount(N4)=1500}{List1499=early}"_s;
        for (int i = 1500; i >= 1; --i) {
            if (i % 50 == 0)
                continue;
            QString row;
            AddVar(row, u"Id"_s, i);
            if (i == 42)
                AddVar(row, u"Notes"_s, u"see {List41(S4)=note}"_s);
            QString entry; // each row written on its own, as the server writes them
            AddVar(entry, (i % 3 ? u"List"_s : u"LIST"_s) + QString::number(i % 7 ? i : 1501 - i), row);
            big += entry;
        }
        big += u"{List1501(S1)=z}{List2000=y}"_s;
        const QStringList bigRows = readList(big);
        QCOMPARE(bigRows.size(), 1500);
        QCOMPARE(bigRows.at(40), u"note"_s);

        for (const QString &reply :
             {tricky, big, u"{Ref(S9)=MAIN-EXTS}{ListCount(N1)=0}"_s, u"{Ref(S9)=MAIN-EXTS}"_s,
              u"{ListCount=2}{List2=b}{List1=a}"_s, u"{ListCount(N1)=3}{List1(S1)=a}{List3(S1)=c}"_s})
            QCOMPARE(readList(reply), literalListLoop(reply));
        Generator generator(99);
        for (int round = 0; round < 100; ++round) {
            QString generated = u"{Ref(S9)=MAIN-EXTS}"_s;
            const int count = generator.below(30);
            AddVar(generated, u"ListCount"_s, count);
            for (int i = 1; i <= count; ++i) {
                if (!generator.chance(5)) // else a row the server left out
                    AddVar(generated, u"List"_s + QString::number(generator.chance(5) ? i + 1 : i),
                           generator.record(1));
            }
            QCOMPARE(readList(generated), literalListLoop(generated));
        }

        // A count far beyond the braces of the reply gives one empty row per brace at most.
        const ListRows damaged(u"{ListCount(N7)=9999999}{List1(S1)=a}"_s + QString(5000, u'{'));
        QCOMPARE(damaged.size(), 5002);
        QCOMPARE(damaged.at(0), u"a"_s);
        QVERIFY(damaged.at(5001).isEmpty());

        // The rows stay readable whatever becomes of the caller's string.
        QString changing = u"{ListCount(N1)=2}{List1(S3)=one}{List2(N3)=007}"_s;
        const ListRows kept(changing);
        changing.replace(u"one"_s, u"ONE"_s);
        changing = QString();
        QCOMPARE(kept.toList(), (QStringList{u"one"_s, u"7"_s}));
        QCOMPARE(TagReader(kept.at(0)).text(u"x", u"none"_s), u"none"_s);
    }

    void pathologicalStringsStayCheap()
    {
        // Each of these would take hours if every "{" looked for its name to the end.
        const QString braces = QString(2000000, u'{');
        const TagReader open(braces);
        QCOMPARE(open.value(u"Id", u"none"_s), QVariant(u"none"_s));
        QCOMPARE(open.value(1), GetVar(braces, 1));

        const QString nameless = QString(1000000, u'{') + u"(S1)=x}"_s;
        const TagReader deep(nameless);
        QCOMPARE(deep.value(u""), QVariant(u"x"_s));
        QCOMPARE(deep.value(u"{{{"), GetVar(nameless, u"{{{"_s));
        QCOMPARE(deep.value(QString(64, u'{')), QVariant(u"x"_s));
        QCOMPARE(deep.value(QString(100, u'{')), QVariant(u"x"_s)); // past the index: linear search

        QString repeated;
        for (int i = 0; i < 20000; ++i)
            repeated += QString(60, u'{') + u'(';
        QCOMPARE(TagReader(repeated).value(QString(59, u'{')), GetVar(repeated, QString(59, u'{')));
    }

    void cleanupTestCase()
    {
        // Nothing above may have thrown inside AddVar or GetVar: the guard would have logged it.
        QFile log(ErrorLog::path());
        QVERIFY2(!log.exists() || log.size() == 0, qPrintable(ErrorLog::tail()));
    }

private:
    TestIsolation m_scratch;
};

QTEST_GUILESS_MAIN(TestTagReader)
#include "tst_tagreader.moc"
