// SPDX-License-Identifier: GPL-3.0-or-later
// Reading and writing tagged-value strings exactly as the server and the other clients do.
#include "errorlog.h"
#include "isolation.h"
#include "tagentries.h"
#include "tagvalue.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {
// The record every new device starts from, with its deliberate second Buttons entry.
const QString deviceDefault =
    u"{CanDial=1}{CallLog=1}{ViewAB=1}{EditOwn=1}{EditAB=1}{ConfigButtons=1}{ViewBLF=1}{AllowPickup=1}"
    "{ViewTodo=1}{ViewFeatures=1}{Preview=1}{BLFName=1}{Buttons(S9)=4 buttons}"
    "{btn0(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
    "{btn1(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
    "{btn2(S49)={Type(S11)=Hold/Unhold}{Display(S11)=Hold/Unhold}}"
    "{btn3(S51)={Type(S12)=Show Contact}{Display(S12)=Show Contact}}{btn4(S17)={Type(S6)=(None)}}"
    "{Buttons(S9)=4 buttons}"_s;
} // namespace

class TagValueTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void buildsCommandsByteForByte()
    {
        QString vars = u"{Cmd=SetFields}{Table=Scripts}"_s;
        AddVar(vars, u"Fields"_s, u"{Name(S5)=Daily}"_s);
        AddVar(vars, u"Id"_s, u"7"_s);
        QCOMPARE(vars, u"{Cmd=SetFields}{Table=Scripts}{Fields(S16)={Name(S5)=Daily}}{Id(S1)=7}"_s);

        // A script record with an empty parameter list leaves the field out.
        QString fields;
        AddVar(fields, u"Name"_s, u"Daily"_s);
        AddVar(fields, u"Params"_s, QString());
        AddVar(fields, u"Script"_s, u"Beep"_s);
        QString message = u"{Cmd=SetFields}{Table=Scripts}"_s;
        AddVar(message, u"Fields"_s, fields);
        AddVar(message, u"Id"_s, u"7"_s);
        QCOMPARE(message, u"{Cmd=SetFields}{Table=Scripts}{Fields(S33)={Name(S5)=Daily}{Script(S4)=Beep}}{Id(S1)=7}"_s);
    }

    void rebuildsTheDeviceDefaultRecord()
    {
        auto button = [](const QString &type) {
            QString b;
            AddVar(b, u"Type"_s, type);
            if (type != u"(None)"_s)
                AddVar(b, u"Display"_s, type);
            return b;
        };
        QString record = deviceDefault.left(deviceDefault.indexOf(u"{Buttons"_s));
        AddVar(record, u"Buttons"_s, u"4 buttons"_s);
        AddVar(record, u"btn0"_s, button(u"Answer/Hangup"_s));
        AddVar(record, u"btn1"_s, button(u"Answer/Hangup"_s));
        AddVar(record, u"btn2"_s, button(u"Hold/Unhold"_s));
        AddVar(record, u"btn3"_s, button(u"Show Contact"_s));
        AddVar(record, u"btn4"_s, button(u"(None)"_s));
        record += u"{Buttons(S9)=4 buttons}"_s;
        QCOMPARE(record, deviceDefault);
        QCOMPARE(GetVar(deviceDefault, u"btn0"_s).toString().size(), 53);
    }

    void namedReadsAreTextualAndCaseBlind()
    {
        // The named search does not skip nested values: Type comes out of btn0.
        QCOMPARE(GetText(deviceDefault, u"Type"_s), u"Answer/Hangup"_s);
        QCOMPARE(GetText(deviceDefault, u"candial"_s), u"1"_s);
        QCOMPARE(GetText(deviceDefault, u"Buttons"_s), u"4 buttons"_s);
        // A name never matches a longer one.
        QCOMPARE(GetVar(u"{Ext=201}"_s, u"Ex"_s, u"none"_s).toString(), u"none"_s);
        // The sized form wins over an earlier plain entry of the same name.
        QCOMPARE(GetText(u"{A=plain}{A(S5)=sized}"_s, u"a"_s), u"sized"_s);
        // A sized value is taken by its length, braces and all; a plain value stops at "}".
        QCOMPARE(GetText(u"{Notes(S11)=a}{Name=x}b}"_s, u"Notes"_s), u"a}{Name=x}b"_s);
        QCOMPARE(GetText(u"{Notes=a}b}"_s, u"Notes"_s), u"a"_s);
        QCOMPARE(GetText(u"{Notes=open"_s, u"Notes"_s), u"open"_s);
        QCOMPARE(GetVar(u"{Notes(S0)=}"_s, u"Notes"_s, u"x"_s).toString(), QString());
        // Length past the end yields what exists; a missing type letter reads as text.
        QCOMPARE(GetText(u"{A(S40)=short}"_s, u"A"_s), u"short}"_s);
        QCOMPARE(GetText(u"{A(3)=abcdef}"_s, u"A"_s), u"abc"_s);
        // Missing: the default, or empty.
        QCOMPARE(GetVar(u"{A=1}"_s, u"B"_s, 42).toInt(), 42);
        QVERIFY(!GetVar(u"{A=1}"_s, u"B"_s).isValid());
    }

    void valuesConvertByTheirTypeLetter()
    {
        QCOMPARE(GetVar(u"{Count(N3)=0.5}"_s, u"Count"_s).typeId(), QMetaType::Double);
        QCOMPARE(GetVar(u"{Count(N3)=0.5}"_s, u"Count"_s).toDouble(), 0.5);
        QCOMPARE(GetVar(u"{Count(S3)=0.5}"_s, u"Count"_s).typeId(), QMetaType::QString);
        QCOMPARE(GetVar(u"{Count=0.5}"_s, u"Count"_s).toString(), u"0.5"_s);
        QCOMPARE(GetVar(u"{N(N4)=12ab}"_s, u"N"_s).toDouble(), 12.0);

        QString vars;
        AddVar(vars, u"Int"_s, 17);
        AddVar(vars, u"Real"_s, 12.5);
        AddVar(vars, u"Flag"_s, true);
        AddVar(vars, u"Off"_s, false);
        const QDateTime when(QDate(2026, 3, 2), QTime(9, 15, 0));
        AddVar(vars, u"When"_s, when);
        QCOMPARE(vars, u"{Int(N2)=17}{Real(N4)=12.5}{Flag(S4)=True}{Off(S5)=False}{When(D19)=2026-03-02T09:15:00}"_s);
        QCOMPARE(GetVar(vars, u"When"_s).toDateTime(), when);
        QCOMPARE(GetVar(vars, u"Int"_s).toInt(), 17);
    }

    void lengthsCountUtf16Units()
    {
        QString vars;
        const QString emoji = u"caf\u00e9 \U0001F600"_s; // 5 + a surrogate pair
        AddVar(vars, u"Name"_s, emoji);
        QCOMPARE(vars, u"{Name(S7)="_s + emoji + u'}');
        AddVar(vars, u"After"_s, u"x"_s);
        QCOMPARE(GetText(vars, u"Name"_s), emoji);
        QCOMPARE(GetText(vars, u"After"_s), u"x"_s);
    }

    void writingReplacesTheFirstEntryAndAppends()
    {
        QString vars = u"{CanDial=1}{CallLog=1}"_s;
        AddVar(vars, u"CANDIAL"_s, 1);
        QCOMPARE(vars, u"{CallLog=1}{CANDIAL(N1)=1}"_s);

        // Only the first Buttons entry goes; the record still holds two.
        QString record = deviceDefault;
        AddVar(record, u"Buttons"_s, u"5 buttons"_s);
        QCOMPARE(record.count(u"{Buttons("_s), 2);
        QVERIFY(record.endsWith(u"{Buttons(S9)=4 buttons}{Buttons(S9)=5 buttons}"_s));
        QCOMPARE(GetText(record, u"Buttons"_s), u"4 buttons"_s);

        // Empty removes, keepEmpty writes an empty entry at the end.
        vars = u"{A(S1)=x}{B(S1)=y}"_s;
        AddVar(vars, u"A"_s, QString());
        QCOMPARE(vars, u"{B(S1)=y}"_s);
        AddVar(vars, u"B"_s, QString(), true);
        QCOMPARE(vars, u"{B(S0)=}"_s);

        // A plain entry is cut through its first "}".
        vars = u"{Cmd=GetList}{Table=Exts}"_s;
        AddVar(vars, u"table"_s, u"AB"_s);
        QCOMPARE(vars, u"{Cmd=GetList}{table(S2)=AB}"_s);

        // The sized value's braces are skipped by its length when it is removed.
        vars = u"{Notes(S6)={a}{b}}{X=1}"_s;
        AddVar(vars, u"Notes"_s, u"n"_s);
        QCOMPARE(vars, u"{X=1}{Notes(S1)=n}"_s);

        // An empty name only drops a leading empty entry.
        vars = u"{(S0)=}{A(S1)=x}"_s;
        AddVar(vars, QString(), u"v"_s);
        QCOMPARE(vars, u"{A(S1)=x}"_s);
    }

    void readsAndWritesByNumber()
    {
        const QString vars = u"{A(S1)=x}{B(S5)={C=1}}"_s;
        QString name;
        QCOMPARE(GetVar(vars, 2, &name).toString(), u"{C=1}"_s);
        QCOMPARE(name, u"B"_s);
        QVERIFY(!GetVar(vars, 3, &name).isValid());
        QCOMPARE(name, QString());
        QCOMPARE(GetVar(vars, 0, &name).toString(), u"x"_s);
        QCOMPARE(name, u"A"_s);
        // The text "2" is a name, not a position.
        QCOMPARE(GetVar(vars, u"2"_s, u"no"_s).toString(), u"no"_s);
        // By number the name is looked up again, so the second Buttons reads as the first.
        QString last;
        GetVar(deviceDefault, 19, &last);
        QCOMPARE(last, u"Buttons"_s);

        QString written = vars;
        AddVar(written, 2, u"z"_s);
        QCOMPARE(written, vars);
        AddVar(written, 1, u"z"_s);
        QCOMPARE(written, u"{B(S5)={C=1}}{A(S1)=z}"_s);
    }

    void splitsTopLevelEntries()
    {
        const QList<TagEntry> entries = SplitEntries(u"{Cmd=SetFields}{Fields(S16)={Name(S5)=Daily}}{Id(N1)=7}"_s);
        QCOMPARE(entries.size(), 3);
        QCOMPARE(entries[0].name, u"Cmd"_s);
        QVERIFY(!entries[0].sized);
        QCOMPARE(entries[1].value, u"{Name(S5)=Daily}"_s);
        QCOMPARE(entries[2].type, QChar(u'N'));
        QCOMPARE(SplitEntries(deviceDefault).size(), 19);
    }
};

QTEST_GUILESS_MAIN(TagValueTest)
#include "tst_tagvalue.moc"
