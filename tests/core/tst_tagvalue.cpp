// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing tagged-value strings exactly as the server and the other clients do; every
// named read here is also put to the fast reader, which must answer alike.
#include "errorlog.h"
#include "isolation.h"
#include "tagentries.h"
#include "tagreader.h"
#include "tagvalue.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <clocale>
#include <limits>

using namespace Qt::StringLiterals;

namespace {
const QVariant none = u"<none>"_s; // the default passed in: what a missing entry reads as
} // namespace

class TagValueTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void writesEntriesByteForByte_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QVariant>("name"); // a number writes by position
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("keepEmpty");
        QTest::addColumn<QString>("after");
        const auto row = [](const char *tag, const QString &before, const QVariant &name,
                            const QVariant &value, const QString &after, bool keepEmpty = false) {
            QTest::newRow(tag) << before << name << value << keepEmpty << after;
        };
        row("nested record", u"{Cmd=SetFields}{Table=Scripts}"_s, u"Fields"_s,
            u"{Name(S5)=Daily}{Script(S4)=Beep}"_s,
            u"{Cmd=SetFields}{Table=Scripts}{Fields(S33)={Name(S5)=Daily}{Script(S4)=Beep}}"_s);
        row("text", QString(), u"Id"_s, u"7"_s, u"{Id(S1)=7}"_s);
        row("whole number", QString(), u"Int"_s, 17, u"{Int(N2)=17}"_s);
        row("real number", QString(), u"Real"_s, 12.5, u"{Real(N4)=12.5}"_s);
        row("true", QString(), u"Flag"_s, true, u"{Flag(S4)=True}"_s);
        row("false", QString(), u"Off"_s, false, u"{Off(S5)=False}"_s);
        row("date and time", QString(), u"When"_s, QDateTime(QDate(2026, 3, 2), QTime(9, 15)),
            u"{When(D19)=2026-03-02T09:15:00}"_s);
        row("date", QString(), u"Day"_s, QDate(2026, 3, 2), u"{Day(D19)=2026-03-02T00:00:00}"_s);
        row("time on the zero day", QString(), u"At"_s, QTime(9, 15), u"{At(D19)=1899-12-30T09:15:00}"_s);
        row("length in UTF-16 units", QString(), u"Name"_s, u"caf\u00e9 \U0001F600"_s,
            u"{Name(S7)=caf\u00e9 \U0001F600}"_s);
        row("old entry found in any case", u"{CanDial=1}{CallLog=1}"_s, u"CANDIAL"_s, 1,
            u"{CallLog=1}{CANDIAL(N1)=1}"_s);
        row("only the first of two goes", u"{B(S1)=1}{X=0}{B(S1)=2}"_s, u"b"_s, u"3"_s,
            u"{X=0}{B(S1)=2}{b(S1)=3}"_s);
        row("sized goes before an earlier plain", u"{A=p}{A(S1)=s}"_s, u"A"_s, u"n"_s, u"{A=p}{A(S1)=n}"_s);
        row("plain goes through its first }", u"{Cmd=GetList}{Table=Exts}"_s, u"table"_s, u"AB"_s,
            u"{Cmd=GetList}{table(S2)=AB}"_s);
        row("plain without } goes to the end", u"{A(S1)=x}{Notes=open"_s, u"notes"_s, u"n"_s,
            u"{A(S1)=x}{notes(S1)=n}"_s);
        row("sized goes by its length", u"{Notes(S6)={a}{b}}{X=1}"_s, u"Notes"_s, u"n"_s,
            u"{X=1}{Notes(S1)=n}"_s);
        row("empty only removes", u"{A(S1)=x}{B(S1)=y}"_s, u"A"_s, QString(), u"{B(S1)=y}"_s);
        row("keepEmpty writes an empty entry", u"{B(S1)=y}"_s, u"B"_s, QString(), u"{B(S0)=}"_s, true);
        row("empty name drops a leading empty entry", u"{(S0)=}{A(S1)=x}"_s, QString(), u"v"_s,
            u"{A(S1)=x}"_s);
        row("position 1 rewrites the first", u"{A(S1)=x}{B(S5)={C=1}}"_s, 1, u"z"_s,
            u"{B(S5)={C=1}}{A(S1)=z}"_s);
        row("position 2 changes nothing", u"{A(S1)=x}{B(S5)={C=1}}"_s, 2, u"z"_s,
            u"{A(S1)=x}{B(S5)={C=1}}"_s);
    }

    void writesEntriesByteForByte()
    {
        QFETCH(QString, before);
        QFETCH(QVariant, name);
        QFETCH(QVariant, value);
        QFETCH(bool, keepEmpty);
        QString vars = before;
        if (name.typeId() == QMetaType::Int)
            AddVar(vars, name.toInt(), value, keepEmpty);
        else
            AddVar(vars, name.toString(), value, keepEmpty);
        QTEST(vars, "after");
    }

    void namedReadsFollowTheWireRules_data()
    {
        QTest::addColumn<QString>("vars");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char *tag, const QString &vars, const QString &name,
                            const QVariant &expected) { QTest::newRow(tag) << vars << name << expected; };
        // Names that fold, or do not, as QString's case-insensitive search folds them.
        const QString folding = u"{\u212Aey(S1)=k}{Σx(S1)=s}{\U00010400n(S1)=d}{Straße(S1)=b}{İd(S1)=i}"_s;
        row("nested values are searched", u"{btn0(S17)={Type(S6)=Answer}}{Type(S1)=x}"_s, u"type"_s,
            u"Answer"_s);
        row("first of two wins", u"{A(S5)=first}{a(S6)=second}"_s, u"A"_s, u"first"_s);
        row("sized wins over an earlier plain", u"{A=plain}{A(S5)=sized}"_s, u"a"_s, u"sized"_s);
        row("no prefix match", u"{Ext=201}"_s, u"Ex"_s, none);
        row("a number is a name", u"{A(S1)=x}{B(S5)={C=1}}"_s, u"2"_s, none);
        row("sized value by its length", u"{Notes(S11)=a}{Name=x}b}"_s, u"Notes"_s, u"a}{Name=x}b"_s);
        row("plain value to its }", u"{Notes=a}b}"_s, u"Notes"_s, u"a"_s);
        row("plain value to the end", u"{Notes=open"_s, u"Notes"_s, u"open"_s);
        row("empty sized value", u"{Notes(S0)=}"_s, u"Notes"_s, QString());
        row("length past the end", u"{A(S99)=ab}"_s, u"A"_s, u"ab}"_s);
        row("no type letter", u"{A(3)=abcd}"_s, u"A"_s, u"abc"_s);
        row("blanks before the length", u"{A(S 3)=abcd}"_s, u"A"_s, u"abc"_s);
        row("leading zeros", u"{A(S0012)=abcdefghijklmnop}"_s, u"A"_s, u"abcdefghijkl"_s);
        row("half rounds down to even", u"{A(S2.5)=abcd}"_s, u"A"_s, u"ab"_s);
        row("half rounds up to even", u"{A(S3.5)=abcde}"_s, u"A"_s, u"abcd"_s);
        row("length with exponent", u"{A(S1e1)=abcdefghijkl}"_s, u"A"_s, u"abcdefghij"_s);
        row("exponent without digits", u"{A(S1e)=ab}"_s, u"A"_s, u"a"_s);
        row("negative length", u"{A(S-1)=ab}"_s, u"A"_s, QString());
        row("unknown letter", u"{A(X3)=abcd}"_s, u"A"_s, u"abc"_s);
        row("0 is the letter", u"{A(0N2)=12}"_s, u"A"_s, QString());
        row("no =", u"{A(S3}"_s, u"A"_s, QString());
        row("S keeps text", u"{Count(S3)=0.5}"_s, u"count"_s, u"0.5"_s);
        row("plain keeps text", u"{Count=0.5}"_s, u"count"_s, u"0.5"_s);
        row("N gives a double", u"{Count(N3)=0.5}"_s, u"count"_s, 0.5);
        row("N reads the leading number", u"{A(N5)= -1.5x}"_s, u"A"_s, -1.5);
        row("N with exponent", u"{A(N3)=1e3}"_s, u"A"_s, 1000.0);
        row("N exponent without digits", u"{A(N2)=1e}"_s, u"A"_s, 1.0);
        row("N without digits", u"{A(N3)=abc}"_s, u"A"_s, 0.0);
        row("D gives a date", u"{A(D19)=2024-05-06T07:08:09}"_s, u"A"_s,
            QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)));
        row("D without a date", u"{A(D3)=abc}"_s, u"A"_s, QVariant());
        row("Kelvin sign folds to k", folding, u"KEY"_s, u"k"_s);
        row("final sigma folds with sigma", folding, u"ςX"_s, u"s"_s);
        row("case pair beyond 16 bits", folding, u"\U00010428N"_s, u"d"_s);
        row("one letter never folds to two", folding, u"STRASSE"_s, none);
        row("dotted capital I is no i", folding, u"id"_s, none);
        row("half a surrogate pair", u"{😀(S1)=e}"_s, u"\xD83D"_s, none);
    }

    void namedReadsFollowTheWireRules()
    {
        QFETCH(QString, vars);
        QFETCH(QString, name);
        QFETCH(QVariant, expected);
        const TagReader reader(vars);
        for (const QVariant &read : {GetVar(vars, name, none), reader.value(name, none)}) {
            QCOMPARE(read, expected);
            QCOMPARE(read.typeId(), expected.typeId());
        }
        QCOMPARE(reader.text(name, none.toString()), getText(vars, name, none.toString()));
        QCOMPARE(reader.number(name), GetVar(vars, name).toDouble());
        if (expected == none)
            QVERIFY(!GetVar(vars, name).isValid());
    }

    void numbersReadAsTextTakeTheirShortestForm()
    {
        // clang-format off
        const QList<std::pair<QString, QString>> texts = {
            {u"0"_s, u"0"_s}, {u"0012"_s, u"12"_s}, {u"5.0"_s, u"5"_s}, {u"9990"_s, u"9990"_s},
            {u"1000"_s, u"1000"_s}, {u"10000"_s, u"10000"_s}, {u"100000"_s, u"1e+05"_s},
            {u"1200000"_s, u"1200000"_s}, {u"100000000000000"_s, u"1e+14"_s},
            {u"123456789012345"_s, u"123456789012345"_s}, {u"1234567890123456"_s, u"1234567890123456"_s},
            {u"1000000000000000"_s, u"1e+15"_s}, {u" 42x"_s, u"42"_s}, {u"+5"_s, u"5"_s}, {u"-0"_s, u"0"_s},
            {u"12.50"_s, u"12.5"_s}, {u"1e3"_s, u"1000"_s}, {u"0.000001"_s, u"1e-06"_s}, {u"abc"_s, u"0"_s}};
        // clang-format on
        for (const auto &[sent, shown] : texts) {
            const QString vars = u"{Id(N%1)=%2}"_s.arg(sent.size()).arg(sent);
            QCOMPARE(getText(vars, u"Id"_s), shown);
            QCOMPARE(TagReader(vars).text(u"id"), shown);
        }
    }

    void readsByNumberAmongTopLevelEntries()
    {
        const QString vars = u"{A(S1)=x}{B(S5)={C=1}}"_s;
        const struct
        {
            QString vars;
            int index;
            QVariant value;
            QString name;
        } cases[] = {
            {vars, 2, u"{C=1}"_s, u"B"_s},
            {vars, 3, QVariant(), QString()}, // nested entries are not counted
            {vars, 0, u"x"_s, u"A"_s},        // 1 or less reads the first
            {vars, std::numeric_limits<int>::min(), u"x"_s, u"A"_s},
            {u"{A(S1)=1}{B=2}{a(S1)=3}"_s, 3, u"1"_s, u"a"_s}, // the name is looked up again
        };
        for (const auto &c : cases) {
            QString name = u"unset"_s;
            QString readerName = u"unset"_s;
            QCOMPARE(GetVar(c.vars, c.index, &name), c.value);
            QCOMPARE(name, c.name);
            QCOMPARE(TagReader(c.vars).value(c.index, &readerName), c.value);
            QCOMPARE(readerName, c.name);
        }
    }

    void splitsTopLevelEntries()
    {
        const QList<TagEntry> entries =
            splitEntries(u"{Cmd=SetFields}{Fields(S16)={Name(S5)=Daily}}{Id(N1)=7}"_s);
        QCOMPARE(entries.size(), 3);
        QCOMPARE(entries[0].name, u"Cmd"_s);
        QCOMPARE(entries[0].value, u"SetFields"_s);
        QVERIFY(!entries[0].sized);
        QCOMPARE(entries[1].value, u"{Name(S5)=Daily}"_s);
        QCOMPARE(entries[2].type, QChar(u'N'));
    }

    void leadingNumbersStopAtTheFirstOtherCharacter()
    {
        const struct
        {
            QString text;
            double value;
            qsizetype consumed;
        } cases[] = {
            // clang-format off
            {u"12.5"_s, 12.5, 4}, {u"  -3e2x"_s, -300, 6}, {u"5."_s, 5, 2}, {u".5"_s, 0.5, 2},
            {u"+.5e-1"_s, 0.05, 6}, {u"1e"_s, 1, 1}, {u"1e+"_s, 1, 1}, {u"abc"_s, 0, 0}, {u"--5"_s, 0, 0},
            {u"."_s, 0, 0}, {u"1.2.3"_s, 1.2, 3}, {u"\t7)="_s, 7, 2},
            {u"1e999"_s, std::numeric_limits<double>::max(), 5},
            {u"-1e999"_s, std::numeric_limits<double>::lowest(), 6},
            {u"1e-999"_s, 0, 6}, {u"0.000e99999999999999"_s, 0, 20},
            {u"99999999999999999999"_s, 99999999999999999999.0, 20},
            {QString(400, u'9'), std::numeric_limits<double>::max(), 400},
            {u"0."_s + QString(400, u'0') + u'1', 0, 403},
            // clang-format on
        };
        for (const auto &c : cases) {
            qsizetype consumed = -1;
            QCOMPARE(leadingNumber(c.text, &consumed), c.value);
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
        const double number = leadingNumber(u"3.25e1");
        std::setlocale(LC_NUMERIC, previous.constData());
        QCOMPARE(count, QVariant(12.5));
        QCOMPARE(number, 32.5);
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
        const QString folder = m_scratch.filePath(u"locales"_s);
        QDir().mkpath(folder);
        QProcess localedef;
        localedef.start(u"localedef"_s,
                        {u"-i"_s, u"de_DE"_s, u"-f"_s, u"UTF-8"_s, folder + u"/de_DE.UTF-8"_s});
        if (!localedef.waitForFinished(60000) || localedef.exitCode() != 0)
            return false;
        qputenv("LOCPATH", QFile::encodeName(folder));
        const bool ok = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
        qunsetenv("LOCPATH");
        return ok && decimalComma();
    }
};

QTEST_GUILESS_MAIN(TagValueTest)
#include "tst_tagvalue.moc"
