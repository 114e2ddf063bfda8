// SPDX-License-Identifier: GPL-3.0-or-later
// The one-pass reader answers every read exactly as GetVar does, on generated and on real strings.
#include "tagentries.h"
#include "tagreader.h"
#include "tagvalue.h"

#include "errorlog.h"

#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

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

// Compares every named read and every read by number of the reader with GetVar's.
void compareWithGetVar(const QString &vars, const QStringList &names)
{
    const TagReader reader(vars);
    const QVariant fallback = u"<none>"_s;
    for (const QString &name : names) {
        const QVariant expected = GetVar(vars, name, fallback);
        const QVariant actual = reader.value(name, fallback);
        const TagValue::EntryRef expectedRef = TagValue::FindEntry(vars, name);
        const TagValue::EntryRef actualRef = reader.find(name);
        if (actual != expected || actualRef.brace != expectedRef.brace ||
            actualRef.sized != expectedRef.sized)
            QFAIL(qPrintable(u"name \"%1\": reader gave \"%2\" at %3, GetVar \"%4\" at %5 in %6"_s.arg(
                name, actual.toString(), QString::number(actualRef.brace), expected.toString(),
                QString::number(expectedRef.brace), shortened(vars))));
        if (reader.text(name) != GetText(vars, name))
            QFAIL(qPrintable(u"text of \"%1\" differs in %2"_s.arg(name, shortened(vars))));
    }
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
            QFAIL(qPrintable(u"by number %1: reader gave %2 \"%3\", GetVar %4 \"%5\" in %6"_s.arg(
                QString::number(index), actualName, actual.toString(), expectedName, expected.toString(),
                shortened(vars))));
    }
}

QStringList literalListLoop(const QString &reply)
{
    QStringList rows;
    const int count = int(GetVar(reply, u"ListCount"_s).toDouble());
    for (int i = 1; i <= count; ++i)
        rows << GetText(reply, u"List"_s + QString::number(i));
    return rows;
}

} // namespace

class TestTagReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        QVERIFY(m_logDir.isValid());
        ErrorLog::SetPath(m_logDir.filePath(u"tamsel.log"_s));
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
    QTemporaryDir m_logDir;
};

QTEST_GUILESS_MAIN(TestTagReader)
#include "tst_tagreader.moc"
