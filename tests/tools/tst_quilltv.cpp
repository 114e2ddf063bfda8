// SPDX-License-Identifier: GPL-3.0-or-later
// quilltv as a support engineer or a script uses it: the built program, fed on standard input.
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Run
{
    QByteArray out;
    QByteArray err;
    int exitCode = -1;
};

const QByteArray deviceDefault =
    "{CanDial=1}{CallLog=1}{ViewAB=1}{EditOwn=1}{EditAB=1}{ConfigButtons=1}{ViewBLF=1}"
    "{AllowPickup=1}{ViewTodo=1}{ViewFeatures=1}{Preview=1}{BLFName=1}{Buttons(S9)=4 buttons}"
    "{btn0(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
    "{btn1(S53)={Type(S13)=Answer/Hangup}{Display(S13)=Answer/Hangup}}"
    "{btn2(S49)={Type(S11)=Hold/Unhold}{Display(S11)=Hold/Unhold}}"
    "{btn3(S51)={Type(S12)=Show Contact}{Display(S12)=Show Contact}}"
    "{btn4(S17)={Type(S6)=(None)}}{Buttons(S9)=4 buttons}";

} // namespace

class TestQuillTv : public QObject
{
    Q_OBJECT

private:
    QString m_program;

    Run run(const QStringList &arguments, const QByteArray &input)
    {
        QProcess process;
        process.start(m_program, arguments);
        if (!process.waitForStarted(10000))
            return {};
        process.write(input);
        process.closeWriteChannel();
        process.waitForFinished(30000);
        return {process.readAllStandardOutput(), process.readAllStandardError(),
                process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1};
    }

private slots:
    void initTestCase()
    {
        m_program = qEnvironmentVariable("QUILL_BUILD_DIR") + u"/tools/quilltv/quilltv"_s;
        QVERIFY2(QFile::exists(m_program), qPrintable(m_program));
    }

    void getReadsAsTheToolReads()
    {
        // Nested entries are found, names match in any case, the first of two entries wins.
        QCOMPARE(run({u"get"_s, u"type"_s}, deviceDefault + '\n').out, QByteArray("Answer/Hangup\n"));
        QCOMPARE(run({u"get"_s, u"BUTTONS"_s}, deviceDefault).out, QByteArray("4 buttons\n"));
        QCOMPARE(run({u"get"_s, u"Count"_s}, "{Count(N5)=012.5}").out, QByteArray("12.5\n"));

        const Run byNumber = run({u"get"_s, u"--index"_s, u"2"_s}, "{A(S1)=x}{B(S5)={C=1}}\n");
        QCOMPARE(byNumber.out, QByteArray("{C=1}\nB\n"));
        QCOMPARE(byNumber.exitCode, 0);
        QCOMPARE(run({u"get"_s, u"--index"_s, u"-4"_s}, "{A(S1)=x}{B(S5)={C=1}}").out, QByteArray("x\nA\n"));

        const Run missing = run({u"get"_s, u"Ex"_s}, "{Ext(S3)=201}");
        QCOMPARE(missing.exitCode, 1);
        QVERIFY(missing.out.isEmpty());
        QVERIFY(missing.err.contains("no entry Ex"));
        QCOMPARE(run({u"get"_s, u"--index"_s, u"3"_s}, "{A(S1)=x}{B(S5)={C=1}}").exitCode, 1);
    }

    void addWritesTheWireFormat()
    {
        const QByteArray script = "{Cmd=SetFields}{Table=Scripts}";
        const Run fields = run({u"add"_s, u"Fields"_s, u"{Name(S5)=Daily}"_s}, script + '\n');
        const Run id = run({u"add"_s, u"Id"_s, u"7"_s}, fields.out);
        QCOMPARE(id.out,
                 QByteArray("{Cmd=SetFields}{Table=Scripts}{Fields(S16)={Name(S5)=Daily}}{Id(S1)=7}\n"));

        QCOMPARE(run({u"add"_s, u"Id"_s, u"-5"_s, u"--number"_s}, "{Id(S1)=7}").out,
                 QByteArray("{Id(N2)=-5}\n"));
        QCOMPARE(run({u"add"_s, u"--number"_s, u"Rate"_s, u"0.50"_s}, "").out,
                 QByteArray("{Rate(N3)=0.5}\n"));
        const Run notNumber = run({u"add"_s, u"Id"_s, u"seven"_s, u"--number"_s}, "");
        QCOMPARE(notNumber.exitCode, 2);
        QVERIFY(notNumber.out.isEmpty());

        // Lengths count 16-bit units: an emoji is two.
        QCOMPARE(run({u"add"_s, u"Name"_s, u"Zoë 😀"_s}, "").out, u"{Name(S6)=Zoë 😀}\n"_s.toUtf8());
        QCOMPARE(run({u"add"_s, u"Notes"_s, QString(), u"--keep-empty"_s}, "{Notes(S2)=hi}").out,
                 QByteArray("{Notes(S0)=}\n"));
        QCOMPARE(run({u"add"_s, u"NOTES"_s, QString()}, "{Notes(S2)=hi}{A=1}").out, QByteArray("{A=1}\n"));
        QCOMPARE(run({u"add"_s, u"--index"_s, u"1"_s, u"y"_s}, "{A(S1)=x}{B(S1)=z}").out,
                 QByteArray("{B(S1)=z}{A(S1)=y}\n"));
        QCOMPARE(run({u"add"_s, u"--index"_s, u"2"_s, u"y"_s}, "{A(S1)=x}{B(S1)=z}").out,
                 QByteArray("{A(S1)=x}{B(S1)=z}\n"));
        // Only one line end is dropped from the input; the rest is part of the string.
        QCOMPARE(run({u"add"_s, u"B"_s, u"1"_s}, "{A(S1)=x}\n\n").out, QByteArray("{A(S1)=x}\n{B(S1)=1}\n"));
        QCOMPARE(run({u"add"_s, u"B"_s, u"1"_s}, "{A(S1)=x}\r\n").out, QByteArray("{A(S1)=x}{B(S1)=1}\n"));
    }

    void prettyOpensNestedRecords()
    {
        const QByteArray reply = "{Ref(S9)=MAIN-EXTS}{ListCount(N1)=1}"
                                 "{List1(S58)={Id(N3)=101}{Name(S8)=Zoë\tDesk}{Options(S12)={Ring(N1)=3}}}"
                                 "{Odd(S13)={not a record}{Cmd=Ping}";
        QCOMPARE(QString::fromUtf8(run({u"pretty"_s}, reply + '\n').out), u"Ref(S) = MAIN-EXTS\n"
                                                                          "ListCount(N) = 1\n"
                                                                          "List1(S)\n"
                                                                          "  Id(N) = 101\n"
                                                                          "  Name(S) = Zoë\\tDesk\n"
                                                                          "  Options(S)\n"
                                                                          "    Ring(N) = 3\n"
                                                                          "Odd(S) = {not a record\n"
                                                                          "Cmd = Ping\n"_s);
        const Run damaged = run({u"pretty"_s}, "{A(S99999999999)={B=1}");
        QCOMPARE(damaged.exitCode, 0);
        QCOMPARE(damaged.out, QByteArray("A(S)\n  B = 1\n"));
    }

    void jsonLinesAnswerEachLine()
    {
        const QByteArray requests =
            R"({"op":"get","vars":"{Id(N3)=101}{Name(S6)=Zoë 😀}","name":"id"})"
            "\n"
            R"({"op":"get","vars":"{Id(N3)=101}{Name(S6)=Zoë 😀}","name":"NAME"})"
            "\n"
            R"({"op":"get","vars":"{A(S1)=x}{B(S5)={C=1}}","name":2})"
            "\n"
            R"({"op":"get","vars":"{A(S1)=x}","name":"Missing","default":"none"})"
            "\n"
            R"({"op":"get","vars":"{A(S1)=x}","name":5})"
            "\n"
            "this is not JSON\n"
            R"({"op":"add","vars":"{A(S1)=x}","name":"Rate","value":12.5})"
            "\n"
            R"({"op":"add","vars":"{A(S1)=x}","name":"Count","value":3})"
            "\n"
            R"({"op":"add","vars":"{A(S1)=x}","name":"Face","value":"😀"})"
            "\n"
            R"({"op":"add","vars":"{A(S1)=x}","name":"a","value":"","keepEmpty":true})"
            "\n"
            R"({"op":"add","vars":"{A(S1)=x}{B(S1)=z}","name":1,"value":"y"})"
            "\n"
            R"(["get"])"
            "\n"
            R"({"op":"remove","vars":"","name":"A"})"
            "\n"
            R"({"op":"get","vars":{"A":1},"name":"A"})"
            "\n";
        const Run answers = run({u"--json-lines"_s}, requests);
        QCOMPARE(answers.exitCode, 0);
        const QList<QByteArray> lines = answers.out.split('\n');
        QCOMPARE(lines.size(), 15); // fourteen answers and the empty text after the last line end
        QCOMPARE(lines[0], QByteArray(R"({"value":101,"name":"id"})"));
        QCOMPARE(lines[1], u"{\"value\":\"Zoë 😀\",\"name\":\"NAME\"}"_s.toUtf8());
        QCOMPARE(lines[2], QByteArray(R"({"value":"{C=1}","name":"B"})"));
        QCOMPARE(lines[3], QByteArray(R"({"value":"none","name":"Missing"})"));
        QCOMPARE(lines[4], QByteArray(R"({"value":null,"name":""})"));
        QVERIFY(QJsonDocument::fromJson(lines[5]).object().contains(u"error"_s));
        QCOMPARE(lines[6], QByteArray(R"({"vars":"{A(S1)=x}{Rate(N4)=12.5}"})"));
        QCOMPARE(lines[7], QByteArray(R"({"vars":"{A(S1)=x}{Count(N1)=3}"})"));
        QCOMPARE(lines[8], u"{\"vars\":\"{A(S1)=x}{Face(S2)=😀}\"}"_s.toUtf8());
        QCOMPARE(lines[9], QByteArray(R"({"vars":"{a(S0)=}"})"));
        QCOMPARE(lines[10], QByteArray(R"({"vars":"{B(S1)=z}{A(S1)=y}"})"));
        for (int i : {11, 12, 13})
            QVERIFY2(QJsonDocument::fromJson(lines[i]).object().contains(u"error"_s), lines[i].constData());
    }

    void jsonLinesAnswerBeforeTheInputEnds()
    {
        // A client sends a line and waits for its answer before it sends the next.
        QProcess process;
        process.start(m_program, {u"--json-lines"_s});
        QVERIFY(process.waitForStarted(10000));
        process.write(R"({"op":"get","vars":"{A(S1)=x}","name":"a"})"
                      "\n");
        QTRY_VERIFY_WITH_TIMEOUT(process.canReadLine() || process.waitForReadyRead(100), 10000);
        QCOMPARE(process.readLine(), QByteArray(R"({"value":"x","name":"a"})"
                                                "\n"));
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitCode(), 0);
    }

    void badCommandLinesExplainThemselves()
    {
        for (const QStringList &arguments :
             {QStringList{}, QStringList{u"frobnicate"_s}, QStringList{u"get"_s},
              QStringList{u"get"_s, u"--index"_s, u"two"_s}, QStringList{u"add"_s, u"OnlyName"_s},
              QStringList{u"get"_s, u"--colour"_s, u"x"_s}}) {
            const Run result = run(arguments, "{A(S1)=x}");
            QCOMPARE(result.exitCode, 2);
            QVERIFY2(result.err.contains("usage: quilltv"), result.err.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestQuillTv)
#include "tst_quilltv.moc"
