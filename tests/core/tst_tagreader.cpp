// SPDX-License-Identifier: GPL-3.0-or-later
// The one-pass reader answers every read exactly as GetVar does, on generated and on real strings.
#include "tagentries.h"
#include "tagreader.h"
#include "tagvalue.h"

#include "errorlog.h"
#include "isolation.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString deviceDefault =
    u"{CanDial=1}{CallLog=1}{ViewAB=1}{EditOwn=1}{EditAB=1}{ConfigButtons=1}{ViewBLF=1}"
    "{AllowPickup=1}{ViewTodo=1}{ViewFeatures=1}{Preview=1}{BLFName=1}{Buttons(S9)=4 buttons}"
    "{btn0(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
    "{btn1(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
    "{btn2(S49)={Type(S11)=Hold/Unhold}{Display(S11)=Hold/Unhold}}"
    "{btn3(S51)={Type(S12)=Show Contact}{Display(S12)=Show Contact}}"
    "{btn4(S17)={Type(S6)=(None)}}{Buttons(S9)=4 buttons}"_s;

// Names that catch the ways a lookup by name goes wrong: prefixes of each other, case variants
// that do and do not fold together (the Kelvin sign folds to "k", "ß" never to "ss"), letters
// outside ASCII and outside the 16-bit range.
// clang-format off
const QStringList shortNames = {
    u"Id"_s, u"ID"_s, u"Ext"_s, u"Ex"_s, u"Exts"_s, u"ExtensionId"_s, u"Name"_s, u"Type"_s,
    u"List"_s, u"List1"_s, u"List10"_s, u"Dept"_s, u"Buttons"_s, u"btn0"_s, u"Ref"_s, u"Options"_s,
    u""_s, u"Straße"_s, u"STRASSE"_s, u"Ärger"_s, u"ärger"_s, u"Ωmega"_s, u"Σigma"_s, u"ςigma"_s,
    u"\u212Aelvin"_s, u"kelvin"_s, u"İstanbul"_s, u"istanbul"_s, u"😀Smile"_s, u"😀smile"_s,
    u"\U00010400eseret"_s, u"\U00010428ESERET"_s};
// clang-format on
// Names at the reader's index limit and past it, where it hands over to the linear search.
const QStringList longNames = {QString(64, u'L'), QString(65, u'L'), QString(66, u'l')};
const QStringList namePool = shortNames + longNames;

class Generator
{
public:
    explicit Generator(quint32 seed) : m_random(seed) {}

    int below(int bound) { return int(m_random.bounded(bound)); }
    bool chance(int percent) { return below(100) < percent; }

    QString name()
    {
        QString name = chance(70) ? namePool.at(below(int(namePool.size()))) : randomName();
        switch (below(4)) {
        case 0:
            return name.toUpper();
        case 1:
            return name.toLower();
        default:
            return name;
        }
    }

    // Characters that shape the format, mixed with letters, digits and non-BMP characters.
    QString text(bool plain)
    {
        static const QStringList pieces = {
            u"a"_s,        u"Z"_s, u"7"_s, u" "_s, u"."_s,          u"-"_s,        u"e"_s,
            u"{"_s,        u"}"_s, u"("_s, u")"_s, u"="_s,          u"{Id(S3)="_s, u"{Name="_s,
            u"{List2(S"_s, u"ß"_s, u"Σ"_s, u"😀"_s, u"\U00010400"_s, u"é"_s,        u"\n"_s};
        QString text;
        const int count = below(12);
        for (int i = 0; i < count; ++i) {
            const QString &piece = pieces.at(below(int(pieces.size())));
            if (!(plain && piece.contains(u'}')))
                text += piece;
        }
        return text;
    }

    QString record(int depth)
    {
        QString record;
        const int count = below(7);
        for (int i = 0; i < count; ++i) {
            record += entry(depth);
            if (chance(5))
                record += text(false); // stray text between entries
        }
        return record;
    }

    QString entry(int depth)
    {
        const QString entryName = name();
        if (chance(25))
            return u'{' + entryName + u'=' + text(true) + u'}';
        QString value;
        QString letter = QStringList{u"S"_s, u"S"_s, u"N"_s, u"D"_s, u""_s, u"X"_s}.at(below(6));
        if (depth < 3 && chance(30))
            value = record(depth + 1);
        else if (letter == u"N"_s)
            value = QString::number(m_random.generateDouble() * 2000 - 1000, 'g', below(8) + 1);
        else if (letter == u"D"_s)
            value = chance(70) ? u"2024-05-06T07:08:09"_s : text(false);
        else
            value = text(false);
        if (chance(15) && !entryName.contains(u'(') && !entryName.contains(u'=')) {
            QString written;
            AddVar(written, entryName, value, chance(50));
            return written;
        }
        return u'{' + entryName + u'(' + letter + QString::number(value.size()) + u")="_s + value + u'}';
    }

private:
    QString randomName()
    {
        static const QStringList letters = {
            u"a"_s, u"B"_s, u"x"_s, u"Y"_s,      u"1"_s, u"_"_s, u"ä"_s,          u"Ö"_s,          u"ß"_s,
            u"σ"_s, u"ς"_s, u"Σ"_s, u"\u212A"_s, u"k"_s, u"😀"_s, u"\U00010400"_s, u"\U00010428"_s, u"{"_s};
        QString name;
        const int length = 1 + below(8);
        for (int i = 0; i < length; ++i)
            name += letters.at(below(int(letters.size())));
        return name;
    }

    QRandomGenerator m_random;
};

// Every name a "{" of vars starts (up to its "(" or "="), and variants of each that may or may
// not be present: other case, one character shorter or longer, with a delimiter inside.
QStringList namesToRead(const QString &vars, Generator &generator)
{
    QStringList names = namePool;
    for (qsizetype at = vars.indexOf(u'{'); at >= 0; at = vars.indexOf(u'{', at + 1)) {
        qsizetype end = at + 1;
        while (end < vars.size() && vars[end] != u'(' && vars[end] != u'=')
            ++end;
        const QString name = vars.mid(at + 1, end - at - 1);
        names << name << name.toUpper() << name.toLower() << name.chopped(qMin<qsizetype>(1, name.size()))
              << name + u'x';
        if (generator.chance(10))
            names << name + u"(S"_s << name + u'=';
    }
    names << u"Missing"_s << u"zzz"_s << QString(70, u'x');
    names.removeDuplicates();
    return names;
}

QString shortened(const QString &text)
{
    return text.size() <= 300 ? text : text.left(300) + u"..."_s;
}

// Compares the reader's reads by number with GetVar's.
void compareByNumber(const TagReader &reader, const QString &vars, const QString &how)
{
    const int topLevel = int(SplitEntries(vars).size());
    QList<int> indexes = {std::numeric_limits<int>::min(), -1, 0};
    for (int index = 1; index <= topLevel + 2; ++index)
        indexes << index;
    for (const int index : std::as_const(indexes)) {
        QString expectedName = u"unset"_s;
        QString actualName = u"unset too"_s;
        const QVariant expected = GetVar(vars, index, &expectedName);
        const QVariant actual = reader.value(index, &actualName);
        if (actual != expected || actualName != expectedName)
            QFAIL(qPrintable(u"%1, by number %2: reader gave %3 \"%4\", GetVar %5 \"%6\" in %7"_s.arg(
                how, QString::number(index), actualName, actual.toString(), expectedName, expected.toString(),
                shortened(vars))));
    }
}

bool sameNumber(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

// Text around a string read through a view: entries a reader that strays past either end of its
// view would find, and a "}" that would cut short a plain value running to the end.
const QString beforeView = u"{Id(S3)=out}{Name=out}{N(N1)=9}{"_s;
const QString afterView = u"}{Id(S3)=out}{Ext=out}{List1(S3)=out}"_s;

// Compares every read of the reader with GetVar's, for a reader of the string and for one that
// reads it in place inside a longer text.
void compareWithGetVar(const QString &vars, const QStringList &names)
{
    const QString padded = beforeView + vars + afterView;
    const TagReader reader(vars);
    const TagReader inPlace(QStringView(padded).mid(beforeView.size(), vars.size()));
    const QVariant fallback = u"<none>"_s;
    for (const QString &name : names) {
        const QVariant expected = GetVar(vars, name, fallback);
        const TagValue::EntryRef expectedRef = TagValue::FindEntry(vars, name);
        const QString expectedText = GetText(vars, name);
        const QString expectedOrDefault = GetText(vars, name, u"<none>"_s);
        const double expectedNumber = GetVar(vars, name).toDouble();
        for (const TagReader *read : {&reader, &inPlace}) {
            const QString how = read == &inPlace ? u"read in place"_s : u"read"_s;
            const QVariant actual = read->value(name, fallback);
            const TagValue::EntryRef actualRef = read->find(name);
            if (actual != expected || actualRef.brace != expectedRef.brace ||
                actualRef.sized != expectedRef.sized)
                QFAIL(
                    qPrintable(u"%1, name \"%2\": reader gave \"%3\" at %4, GetVar \"%5\" at %6 in %7"_s.arg(
                        how, name, actual.toString(), QString::number(actualRef.brace), expected.toString(),
                        QString::number(expectedRef.brace), shortened(vars))));
            if (read->text(name) != expectedText || read->text(name, u"<none>"_s) != expectedOrDefault)
                QFAIL(qPrintable(u"%1: text of \"%2\" differs in %3"_s.arg(how, name, shortened(vars))));
            if (!sameNumber(read->number(name), expectedNumber))
                QFAIL(qPrintable(u"%1: number of \"%2\" is %3, GetVar's %4 in %5"_s.arg(
                    how, name, QString::number(read->number(name)), QString::number(expectedNumber),
                    shortened(vars))));
        }
    }
    compareByNumber(reader, vars, u"read"_s);
    if (!QTest::currentTestFailed())
        compareByNumber(inPlace, vars, u"read in place"_s);
}

QStringList literalListLoop(const QString &reply)
{
    QStringList rows;
    const int count = int(GetVar(reply, u"ListCount"_s).toDouble());
    for (int i = 1; i <= count; ++i)
        rows << GetText(reply, u"List"_s + QString::number(i));
    return rows;
}

QStringList rowsInPlace(const ListRows &rows)
{
    QStringList list;
    for (const QStringView row : rows)
        list << row.toString();
    return list;
}

} // namespace

class TestTagReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
    }

    void readsTheDeviceDefaultRecordLikeGetVar()
    {
        const TagReader reader(deviceDefault);
        QCOMPARE(reader.value(u"Type"), QVariant(u"Answer/Hangup"_s)); // nested inside btn0
        QCOMPARE(reader.value(u"buttons"), QVariant(u"4 buttons"_s));
        QCOMPARE(reader.value(u"candial"), QVariant(u"1"_s));
        QCOMPARE(reader.value(u"btn4"), QVariant(u"{Type(S6)=(None)}"_s));
        QCOMPARE(reader.value(u"Butto", u"none"_s), QVariant(u"none"_s)); // a prefix never matches
        QCOMPARE(reader.value(u"CanDial(", u"none"_s), GetVar(deviceDefault, u"CanDial("_s, u"none"_s));
        QString name;
        QCOMPARE(reader.value(13, &name), QVariant(u"4 buttons"_s));
        QCOMPARE(name, u"Buttons"_s);

        const QString counts = u"{A(N3)=0.5}{B(S3)=0.5}{C=0.5}{D(S0)=}{E(10)={F=1}{G=2}}"_s;
        const TagReader typed(counts);
        QCOMPARE(typed.value(u"a"), QVariant(0.5));
        QCOMPARE(typed.value(u"b"), QVariant(u"0.5"_s));
        QCOMPARE(typed.value(u"c"), QVariant(u"0.5"_s));
        QCOMPARE(typed.value(u"d", u"x"_s), QVariant(QString()));
        QCOMPARE(typed.value(u"e"), QVariant(u"{F=1}{G=2}"_s)); // no type letter: text
        QCOMPARE(typed.value(u"g"), QVariant(u"2"_s));
        Generator generator(1);
        compareWithGetVar(deviceDefault, namesToRead(deviceDefault, generator));
    }

    void readsLengthsAndNumbersByTheirRules()
    {
        // What stands between "(" and ")=" gives the type and the length; a value is taken by its
        // length from the first "=" on. Each answer holds for GetVar and for the reader alike.
        const QDateTime when(QDate(2024, 5, 6), QTime(7, 8, 9));
        const QList<std::pair<QString, QVariant>> cases = {
            {u"{A(S3)=abcd}"_s, u"abc"_s},
            {u"{A(3)=abcd}"_s, u"abc"_s},                          // no type letter: text
            {u"{A(S 3)=abcd}"_s, u"abc"_s},                        // blanks before the digits
            {u"{A(S0012)=abcdefghijklmnop}"_s, u"abcdefghijkl"_s}, // leading zeros
            {u"{A(S2.5)=abcd}"_s, u"ab"_s},                        // halves round to even
            {u"{A(S3.5)=abcde}"_s, u"abcd"_s},
            {u"{A(S1e1)=abcdefghijkl}"_s, u"abcdefghij"_s},
            {u"{A(S1e)=ab}"_s, u"a"_s}, // an exponent without digits is no exponent
            {u"{A(S-1)=ab}"_s, u""_s},
            {u"{A(S99)=ab}"_s, u"ab}"_s},  // past the end: what there is
            {u"{A(X3)=abcd}"_s, u"abc"_s}, // an unknown letter reads as text
            {u"{A(0N2)=12}"_s, u""_s},     // "0" is the letter, and no length follows it
            {u"{A(S3}"_s, QString()},      // no "=": empty text
            {u"{A(N2)=12}"_s, 12.0},
            {u"{A(N5)= -1.5x}"_s, -1.5},
            {u"{A(N3)=1e3}"_s, 1000.0},
            {u"{A(N2)=1e}"_s, 1.0},
            {u"{A(N3)=abc}"_s, 0.0},
            {u"{A(N1)=5}{A=7}"_s, 5.0},
            {u"{A(D19)=2024-05-06T07:08:09}"_s, when},
            {u"{A(D3)=abc}"_s, QVariant()}, // no date: nothing
        };
        for (const auto &[vars, expected] : cases) {
            QCOMPARE(GetVar(vars, u"A"_s), expected);
            QCOMPARE(TagReader(vars).value(u"a"), expected);
            QCOMPARE(TagReader(vars).text(u"a"), GetText(vars, u"A"_s));
            QCOMPARE(TagReader(vars).number(u"a"), GetVar(vars, u"A"_s).toDouble());
        }

        // Numbers read as text take their shortest decimal form, whatever form they were sent in.
        const QList<std::pair<QString, QString>> texts = {{u"0"_s, u"0"_s},
                                                          {u"7"_s, u"7"_s},
                                                          {u"0012"_s, u"12"_s},
                                                          {u"5.0"_s, u"5"_s},
                                                          {u"1000"_s, u"1000"_s},
                                                          {u"100000"_s, u"1e+05"_s},
                                                          {u"123456"_s, u"123456"_s},
                                                          {u" 42x"_s, u"42"_s},
                                                          {u"+5"_s, u"5"_s},
                                                          {u"12.50"_s, u"12.5"_s},
                                                          {u"1e3"_s, u"1000"_s},
                                                          {u"abc"_s, u"0"_s},
                                                          {u"123456789012345"_s, u"123456789012345"_s}};
        for (const auto &[sent, shown] : texts) {
            QString vars;
            AddVar(vars, u"Id"_s, sent);
            vars.replace(u"(S"_s, u"(N"_s); // sent as a number
            QCOMPARE(GetText(vars, u"Id"_s), shown);
            QCOMPARE(TagReader(vars).text(u"id"), shown);
        }
        for (const QString &sent : {u"10000"_s, u"1200000"_s, u"1234567890123456"_s, u"-0"_s, u"9990"_s,
                                    u"1000000000000000"_s, u"100000000000000"_s, u"0.000001"_s}) {
            const QString vars = u"{Id(N%1)=%2}"_s.arg(sent.size()).arg(sent);
            QCOMPARE(TagReader(vars).text(u"Id"), GetText(vars, u"Id"_s));
        }

        // Read as numbers, text converts as a QVariant converts it: all of it or nothing.
        const TagReader numbers(u"{A(S4)=12.5}{B(S3)=12x}{C=7}{D(D19)=2024-05-06T07:08:09}{E(N2)=3x}"_s);
        QCOMPARE(numbers.number(u"a"), 12.5);
        QCOMPARE(numbers.number(u"b"), 0.0);
        QCOMPARE(numbers.number(u"c"), 7.0);
        QCOMPARE(numbers.number(u"d"), 0.0);
        QCOMPARE(numbers.number(u"e"), 3.0);
        QCOMPARE(numbers.number(u"missing"), 0.0);
    }

    void foldsCaseLikeTheTextualSearch()
    {
        // Sized before plain wherever they stand; case never matters; folding follows QString.
        const QString vars = u"{Mode=plain}{Outer(S16)={MODE(S5)=sized}}{\u212Aey(S1)=k}{Σx(S1)=s}"
                             "{\U00010400n(S1)=d}{Straße(S1)=b}{😀(S1)=e}{İd(S1)=i}"_s;
        const TagReader reader(vars);
        QCOMPARE(reader.text(u"mode"), u"sized"_s);
        QCOMPARE(reader.text(u"KEY"), u"k"_s);             // Kelvin sign folds to k
        QCOMPARE(reader.text(u"ςX"), u"s"_s);              // final sigma folds with sigma
        QCOMPARE(reader.text(u"\U00010428N"), u"d"_s);     // a case pair outside 16 bits
        QCOMPARE(reader.text(u"STRASSE", u"-"_s), u"-"_s); // one character never folds to two
        QCOMPARE(reader.text(u"straße"), u"b"_s);
        QCOMPARE(reader.text(u"😀"), u"e"_s);
        QCOMPARE(reader.text(u"\xD83D", u"-"_s), u"-"_s); // half a surrogate pair is no name
        compareWithGetVar(vars,
                          {u"id"_s, u"İD"_s, u"i̇d"_s, u"ID"_s, u"\U00010400N"_s, u"σx"_s, u"ΣX"_s, u"key"_s});
    }

    void generatedStringsReadLikeGetVar_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed : {1u, 2u, 3u, 20240506u, 77u, 4242u})
            QTest::newRow(qPrintable(u"seed %1"_s.arg(seed))) << seed;
    }

    void generatedStringsReadLikeGetVar()
    {
        QFETCH(quint32, seed);
        Generator generator(seed);
        for (int round = 0; round < 150; ++round) {
            QString vars = generator.record(0);
            if (round % 10 == 0) { // long strings take QString's other search algorithm
                while (vars.size() < 4000)
                    vars += generator.record(0);
            }
            compareWithGetVar(vars, namesToRead(vars, generator));
            if (QTest::currentTestFailed())
                return;
        }
    }

    void readsListRepliesLikeTheLiteralLoop()
    {
        QString reply = u"{Ref(S9)=MAIN-EXTS}"_s;
        AddVar(reply, u"ListCount"_s, 3);
        for (int i = 1; i <= 3; ++i) {
            QString row;
            AddVar(row, u"Id"_s, i);
            AddVar(row, u"Name"_s, u"Desk 😀 %1"_s.arg(i));
            AddVar(reply, u"List"_s + QString::number(i), row);
        }
        QCOMPARE(ReadList(reply),
                 (QStringList{u"{Id(N1)=1}{Name(S9)=Desk 😀 1}"_s, u"{Id(N1)=2}{Name(S9)=Desk 😀 2}"_s,
                              u"{Id(N1)=3}{Name(S9)=Desk 😀 3}"_s}));
        QCOMPARE(ReadList(u"{Ref(S9)=MAIN-EXTS}{ListCount(N1)=0}"_s), QStringList());
        QCOMPARE(ReadList(u"{Ref(S9)=MAIN-EXTS}"_s), QStringList());
        QCOMPARE(ReadList(u"{ListCount=2}{List2=b}{List1=a}"_s), (QStringList{u"a"_s, u"b"_s}));
        // A row missing from the reply reads empty, as the loop reads it.
        QCOMPARE(ReadList(u"{ListCount(N1)=3}{List1(S1)=a}{List3(S1)=c}"_s),
                 (QStringList{u"a"_s, QString(), u"c"_s}));
        // A damaged count does not make millions of empty rows.
        const QString damaged = u"{ListCount(N12)=999999999999}{List1(S1)=a}{List2(S1)=b}"_s;
        const QStringList rows = ReadList(damaged);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.mid(0, 2), (QStringList{u"a"_s, u"b"_s}));

        Generator generator(99);
        for (int round = 0; round < 100; ++round) {
            QString generated = u"{Ref(S9)=MAIN-EXTS}"_s;
            const int count = generator.below(30);
            AddVar(generated, u"ListCount"_s, count);
            for (int i = 1; i <= count; ++i) {
                if (generator.chance(5))
                    continue; // a row the server left out
                AddVar(generated, u"List"_s + QString::number(generator.chance(5) ? i + 1 : i),
                       generator.record(1));
            }
            QCOMPARE(ReadList(generated), literalListLoop(generated));
        }

        // Rows out of order, missing, repeated and written in other case, in a reply big enough
        // for the reader's hash table; a name inside a row's notes is found before its own row.
        QString shuffled = u"{Ref(S9)=MAIN-EXTS}{ListCount(N3)=300}"_s;
        QList<int> order;
        for (int i = 1; i <= 300; ++i)
            order << (i % 7 == 0 ? 301 - i : i);
        for (const int i : std::as_const(order)) {
            QString row;
            AddVar(row, u"Id"_s, i);
            if (i == 40)
                AddVar(row, u"Notes"_s, u"see {List41(S4)=note}"_s);
            if (i % 50 == 0)
                continue;
            QString entry; // each row written on its own, as the server writes them
            AddVar(entry, (i % 3 ? u"List"_s : u"LIST"_s) + QString::number(i), row);
            shuffled += entry;
        }
        QCOMPARE(ReadList(shuffled), literalListLoop(shuffled));
        QCOMPARE(ReadList(shuffled).at(40), u"note"_s);
    }

    void listRowsAreReadInPlace()
    {
        // Rows sent as numbers or dates, in other case, as plain entries outdone by a sized one
        // later on, or first met nested in an earlier row read as the literal loop reads them.
        const QString reply =
            u"{ListCount=8}{List1(N3)=1.0}{LIST2(S1)=b}{List3=plain}{List4(D19)=2024-05-06T07:08:09}"
            "{List01(S1)=x}{List5(S13)={List6(S1)=n}}{List6(S1)=f}{X(S13)={List3(S1)=s}}"
            "{L\u0130ST7(S1)=g}{List8(S3)=end}{List8(S3)=two}{LISTCOUNT=2}"_s;
        const ListRows rows(reply);
        QCOMPARE(rowsInPlace(rows), literalListLoop(reply));
        QCOMPARE(rows.toList(), literalListLoop(reply));
        QCOMPARE(rows.size(), 8);
        QCOMPARE(rowsInPlace(rows).first(6),
                 (QStringList{u"1"_s, u"b"_s, u"s"_s, u"2024-05-06T07:08:09"_s, u"{List6(S1)=n}"_s, u"n"_s}));
        QCOMPARE(rows.at(7), u"end"_s);

        // The rows stay readable whatever becomes of the caller's string.
        QString changing = u"{ListCount(N1)=2}{List1(S3)=one}{List2(N3)=007}"_s;
        const ListRows kept(changing);
        changing.replace(u"one"_s, u"ONE"_s);
        changing = QString();
        QCOMPARE(rowsInPlace(kept), (QStringList{u"one"_s, u"7"_s}));
        QCOMPARE(TagReader(kept.at(0)).text(u"x", u"none"_s), u"none"_s);

        // Rows far out of order (the last first) and a plain row met before the sized one.
        QString reversed = u"{Ref(S9)=MAIN-EXTS}{ListCount(N4)=1500}{List1499=early}"_s;
        for (int i = 1500; i >= 1; --i) {
            QString row;
            AddVar(row, u"Id"_s, i);
            QString entry;
            AddVar(entry, u"List"_s + QString::number(i), row);
            reversed += entry;
        }
        reversed += u"{List1501(S1)=z}{List2000=y}"_s;
        const QStringList expected = literalListLoop(reversed);
        QCOMPARE(rowsInPlace(ListRows(reversed)), expected);
        QCOMPARE(expected.at(1498), u"{Id(N4)=1499}"_s);
        QCOMPARE(expected.size(), 1500);

        // A count far beyond the braces of the reply gives one empty row per brace at most.
        const ListRows damaged(u"{ListCount(N7)=9999999}{List1(S1)=a}"_s + QString(5000, u'{'));
        QCOMPARE(damaged.size(), 5002);
        QCOMPARE(damaged.at(0), u"a"_s);
        QVERIFY(damaged.at(5001).isEmpty());
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
        const TagReader groups(repeated);
        QCOMPARE(groups.value(QString(59, u'{')), GetVar(repeated, QString(59, u'{')));
    }

private:
    TestIsolation m_scratch;
};

QTEST_GUILESS_MAIN(TestTagReader)
#include "tst_tagreader.moc"
