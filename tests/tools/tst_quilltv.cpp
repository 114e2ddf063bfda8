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

    void getAndAddPrintTheirResultAndExitCode()
    {
        const QByteArray record = "{A(S1)=x}{B(S5)={C=1}}";
        const struct
        {
            QStringList arguments;
            QByteArray input;
            QByteArray out;
            int exitCode;
        } cases[] = {
            {{u"get"_s, u"c"_s}, record + '\n', "1\n", 0},
            {{u"get"_s, u"Count"_s}, "{Count(N5)=012.5}", "12.5\n", 0},
            {{u"get"_s, u"--index"_s, u"2"_s}, record, "{C=1}\nB\n", 0}, // the value, then the name
            {{u"get"_s, u"--index"_s, u"-4"_s}, record, "x\nA\n", 0},
            {{u"get"_s, u"Ex"_s}, "{Ext(S3)=201}", "", 1},
            {{u"get"_s, u"--index"_s, u"3"_s}, record, "", 1},
            {{u"add"_s, u"Fields"_s, u"{Name(S5)=Daily}"_s},
             "{Cmd=SetFields}\n",
             "{Cmd=SetFields}{Fields(S16)={Name(S5)=Daily}}\n",
             0},
            {{u"add"_s, u"Id"_s, u"-5"_s, u"--number"_s}, "{Id(S1)=7}", "{Id(N2)=-5}\n", 0},
            {{u"add"_s, u"--number"_s, u"Rate"_s, u"0.50"_s}, "", "{Rate(N3)=0.5}\n", 0},
            {{u"add"_s, u"Id"_s, u"seven"_s, u"--number"_s}, "", "", 2},
            {{u"add"_s, u"Name"_s, u"Zoë 😀"_s}, "", u"{Name(S6)=Zoë 😀}\n"_s.toUtf8(), 0}, // 16-bit units
            {{u"add"_s, u"Notes"_s, QString(), u"--keep-empty"_s}, "{Notes(S2)=hi}", "{Notes(S0)=}\n", 0},
            {{u"add"_s, u"--index"_s, u"1"_s, u"y"_s}, "{A(S1)=x}{B(S1)=z}", "{B(S1)=z}{A(S1)=y}\n", 0},
            // Only one line end is dropped from the input; the rest is part of the string.
            {{u"add"_s, u"B"_s, u"1"_s}, "{A(S1)=x}\n\n", "{A(S1)=x}\n{B(S1)=1}\n", 0},
            {{u"add"_s, u"B"_s, u"1"_s}, "{A(S1)=x}\r\n", "{A(S1)=x}{B(S1)=1}\n", 0},
        };
        for (const auto &c : cases) {
            const Run result = run(c.arguments, c.input);
            QCOMPARE(result.out, c.out);
            QCOMPARE(result.exitCode, c.exitCode);
        }
        QVERIFY(run({u"get"_s, u"Ex"_s}, "{Ext(S3)=201}").err.contains("no entry Ex"));
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
        // Each request with its answer; "error" stands for any answer that reports one.
        const QList<std::pair<QByteArray, QByteArray>> lines = {
            {R"({"op":"get","vars":"{Id(N3)=101}{Name(S6)=Zoë 😀}","name":"id"})",
             R"({"value":101,"name":"id"})"},
            {R"({"op":"get","vars":"{Id(N3)=101}{Name(S6)=Zoë 😀}","name":"NAME"})",
             R"({"value":"Zoë 😀","name":"NAME"})"},
            {R"({"op":"get","vars":"{A(S1)=x}{B(S5)={C=1}}","name":2})", R"({"value":"{C=1}","name":"B"})"},
            {R"({"op":"get","vars":"{A(S1)=x}","name":"Missing","default":"none"})",
             R"({"value":"none","name":"Missing"})"},
            {R"({"op":"get","vars":"{A(S1)=x}","name":5})", R"({"value":null,"name":""})"},
            {R"({"op":"add","vars":"{A(S1)=x}","name":"Rate","value":12.5})",
             R"({"vars":"{A(S1)=x}{Rate(N4)=12.5}"})"},
            {R"({"op":"add","vars":"{A(S1)=x}","name":"Face","value":"😀"})",
             R"({"vars":"{A(S1)=x}{Face(S2)=😀}"})"},
            {R"({"op":"add","vars":"{A(S1)=x}","name":"a","value":"","keepEmpty":true})",
             R"({"vars":"{a(S0)=}"})"},
            {R"({"op":"add","vars":"{A(S1)=x}{B(S1)=z}","name":1,"value":"y"})",
             R"({"vars":"{B(S1)=z}{A(S1)=y}"})"},
            {"this is not JSON", "error"},
            {R"(["get"])", "error"},
            {R"({"op":"remove","vars":"","name":"A"})", "error"},
            {R"({"op":"get","vars":{"A":1},"name":"A"})", "error"},
        };
        QByteArray requests;
        for (const auto &line : lines)
            requests += line.first + '\n';
        const Run answers = run({u"--json-lines"_s}, requests);
        QCOMPARE(answers.exitCode, 0);
        const QList<QByteArray> answered = answers.out.split('\n');
        QCOMPARE(answered.size(), lines.size() + 1); // and the empty text after the last line end
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (lines[i].second == "error")
                QVERIFY2(QJsonDocument::fromJson(answered[i]).object().contains(u"error"_s),
                         answered[i].constData());
            else
                QCOMPARE(answered[i], lines[i].second);
        }
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
