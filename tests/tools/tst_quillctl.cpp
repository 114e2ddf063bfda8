// SPDX-License-Identifier: GPL-3.0-or-later
// quillctl as an administrator or a script uses it: the built program against quillserverd with
// the demo site, the password in the environment.
#include "closedport.h"
#include "serverprocess.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Run
{
    QString out;
    QString err;
    int exitCode = -1;
};

// The records of an export: its lines end with CRLF, a line break inside a quoted value is a bare LF.
QStringList records(const QByteArray &csv)
{
    QStringList lines = QString::fromUtf8(csv).split(u"\r\n"_s);
    if (!lines.isEmpty() && lines.constLast().isEmpty())
        lines.removeLast();
    return lines;
}

QString extOf(const QString &record)
{
    return record.section(u',', 0, 0);
}

} // namespace

class TestQuillCtl : public QObject
{
    Q_OBJECT

private:
    ServerProcess m_server;
    QTemporaryDir m_dir;

    QStringList sessionArguments(const QUrl &server = {}) const
    {
        return {u"--server"_s, (server.isEmpty() ? m_server.url() : server).toString(), u"--user"_s,
                TestAccount::user()};
    }

    // Runs quillctl with the password (when not empty) in QUILL_PASSWORD and no terminal.
    Run run(const QStringList &arguments, const QString &password = TestAccount::password())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QUILL_PASSWORD"_s);
        if (!password.isEmpty())
            environment.insert(u"QUILL_PASSWORD"_s, password);
        environment.insert(u"XDG_CONFIG_HOME"_s, m_dir.path()); // never the user's own settings
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(QUILLCTL_PROGRAM), arguments);
        if (!process.waitForStarted(10000))
            return {};
        process.closeWriteChannel();
        process.waitForFinished(60000);
        return {QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError()),
                process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1};
    }

    // The server's devices as quillctl exports them to a file; empty when the export failed.
    QByteArray exportDevices()
    {
        const QString path = m_dir.filePath(u"export.csv"_s);
        QFile::remove(path);
        const Run exported = run(sessionArguments() + QStringList{u"export"_s, u"devices"_s, u"-o"_s, path});
        QFile file(path);
        if (exported.exitCode != 0 || !file.open(QIODevice::ReadOnly)) {
            qWarning().noquote() << "export failed:" << exported.exitCode << exported.err;
            return {};
        }
        return file.readAll();
    }

    QString writeFile(const QString &name, const QByteArray &content)
    {
        const QString path = m_dir.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        return path;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(QFile::exists(QStringLiteral(QUILLCTL_PROGRAM)));
        QVERIFY(m_dir.isValid());
        QVERIFY2(m_server.addUser(TestAccount::user(), TestAccount::password()), qPrintable(m_server.log()));
        QVERIFY2(m_server.start({u"--seed-demo"_s}), qPrintable(m_server.log()));
    }

    // Export, edit the sheet as a spreadsheet would, preview, import, export again: the second export
    // is the first with exactly the edits.
    void editedExportImportsAsEdited()
    {
        const QByteArray first = exportDevices();
        QVERIFY(!first.isEmpty());
        QVERIFY(!first.startsWith("\xEF\xBB\xBF"));
        const QStringList lines = records(first);
        QVERIFY(lines.constFirst().startsWith(u"Ext,Name,Type,"_s));
        const QStringList header = lines.constFirst().split(u',');
        const qsizetype flagColumn = header.indexOf(u"DontMonitor"_s);
        QVERIFY(flagColumn > 0);
        QVERIFY(lines.size() > 20);

        // The first two extensions whose lines have no quoted values: one renamed, one flag turned over.
        QList<qsizetype> edited;
        for (qsizetype i = 1; i < lines.size() && edited.size() < 2; ++i)
            if (lines.at(i).section(u',', 2, 2) == u"EXT"_s && !lines.at(i).contains(u'"'))
                edited.append(i);
        QCOMPARE(edited.size(), 2);
        QStringList expected = lines;
        QStringList renamed = lines.at(edited[0]).split(u',');
        const QString oldName = renamed[1];
        renamed[1] = oldName + u" Jr"_s;
        expected[edited[0]] = renamed.join(u',');
        QStringList flagged = lines.at(edited[1]).split(u',');
        const QString oldFlag = flagged[flagColumn];
        flagged[flagColumn] = oldFlag == u"1"_s ? u"0"_s : u"1"_s;
        expected[edited[1]] = flagged.join(u',');
        for (const QString &record : lines)
            QVERIFY(extOf(record) != u"7901"_s && extOf(record) != u"7902"_s);
        const QString blanks(header.size() - 3, u',');
        const QString added =
            u"7901,Lobby Phone,EXT"_s + blanks + u"\r\n7902,Harbour Master,Speed dial"_s + blanks;
        const QString sheet = m_dir.filePath(u"edited.csv"_s);
        QVERIFY(
            !writeFile(u"edited.csv"_s, (expected.join(u"\r\n"_s) + u"\r\n"_s + added + u"\r\n"_s).toUtf8())
                 .isEmpty());

        // The preview names each change on its line of the file and writes nothing.
        const auto lineNumber = [&](qsizetype record) {
            qsizetype line = 1;
            for (qsizetype i = 0; i < record; ++i)
                line += lines.at(i).count(u'\n') + 1;
            return line;
        };
        const Run preview =
            run(sessionArguments() + QStringList{u"import"_s, u"devices"_s, sheet, u"--dry-run"_s});
        QVERIFY2(preview.exitCode == 0, qPrintable(preview.err));
        const QStringList shown = preview.out.split(u'\n');
        QCOMPARE(shown.constFirst(), u"2 new, 2 changed, %1 unchanged, 0 rejected"_s.arg(lines.size() - 3));
        QVERIFY2(shown.contains(u"line %1: Ext %2: Name: \"%3\" -> \"%3 Jr\""_s.arg(lineNumber(edited[0]))
                                    .arg(extOf(lines.at(edited[0])), oldName)),
                 qPrintable(preview.out));
        QVERIFY2(shown.contains(u"line %1: Ext %2: DontMonitor: \"%3\" -> \"%4\""_s.arg(lineNumber(edited[1]))
                                    .arg(extOf(lines.at(edited[1])), oldFlag, flagged[flagColumn])),
                 qPrintable(preview.out));
        QCOMPARE(exportDevices(), first);

        const Run imported = run(sessionArguments() + QStringList{u"import"_s, u"devices"_s, sheet});
        QVERIFY2(imported.exitCode == 0, qPrintable(imported.out + imported.err));
        QCOMPARE(imported.out.section(u'\n', 0, 0), shown.constFirst());

        // Every line as before but the two edited; the new devices stored with their kinds' words.
        QStringList again = records(exportDevices());
        QCOMPARE(again.size(), lines.size() + 2);
        QStringList news;
        for (qsizetype i = again.size() - 1; i >= 0; --i)
            if (extOf(again.at(i)) == u"7901"_s || extOf(again.at(i)) == u"7902"_s)
                news.prepend(again.takeAt(i));
        QCOMPARE(again, expected);
        QCOMPARE(news.size(), 2);
        QVERIFY2(news[0].startsWith(u"7901,Lobby Phone,EXT,"_s), qPrintable(news[0]));
        QVERIFY2(news[1].startsWith(u"7902,Harbour Master,SPEED,"_s), qPrintable(news[1]));
    }

    // What goes wrong ends with its exit status and says why; a rejected sheet writes nothing unless
    // --partial is given, and then only its good rows.
    void failuresEndWithTheirExitStatus()
    {
        const QByteArray rejecting = "Ext,Name,Type,DontMonitor\r\n"
                                     "7801,Side Door,EXT,0\r\n"
                                     ",No Number,EXT,0\r\n"
                                     "7802,Bad Flag,EXT,yes\r\n";
        const QString sheet = writeFile(u"rejecting.csv"_s, rejecting);
        QVERIFY(!sheet.isEmpty());
        const QStringList import{u"import"_s, u"devices"_s, sheet};
        const QString password = TestAccount::password();
        const QString newDevice = u"{Ext(S4)=7803}{Name(S3)=Gym}"_s;
        const QString storeNew =
            u"{Cmd=SetFields}{Table=Exts}{Fields(S%1)=%2}{Id=-1}"_s.arg(newDevice.size()).arg(newDevice);
        const QString rejectedPlan = u"1 new, 0 changed, 0 unchanged, 2 rejected\nline 3: "_s;
        const struct
        {
            const char *name;
            QStringList arguments;
            QUrl server; // empty: the test server
            QString password;
            int exitCode;
            QStringList out;    // texts standard output holds
            QString err;        // text standard error holds
            QStringList stored; // devices the server holds afterwards and not before
        } cases[] = {
            // clang-format off
            {"rejected rows", import, {}, password, 1, {rejectedPlan, u"\nline 4: "_s}, u"--partial"_s, {}},
            {"rejected rows, --partial", import + QStringList{u"--partial"_s}, {}, password, 1,
             {rejectedPlan, u"\nline 4: "_s, u"written"_s}, u"rejected rows were not written"_s, {u"7801"_s}},
            {"missing file", {u"import"_s, u"devices"_s, m_dir.filePath(u"absent.csv"_s)}, {}, password, 1, {},
             u"absent.csv\" does not exist"_s, {}},
            {"wrong password", {u"export"_s, u"devices"_s}, {}, u"not-the-password"_s, 2, {}, u"wrong password"_s, {}},
            {"no password, no terminal", {u"export"_s, u"devices"_s}, {}, {}, 2, {}, u"QUILL_PASSWORD"_s, {}},
            {"no server listening", {u"export"_s, u"devices"_s}, closedPort(), password, 2, {}, u"cannot connect"_s, {}},
            {"password as an argument", {u"--password=typed-here"_s, u"export"_s, u"devices"_s}, {}, password, 2, {},
             u"QUILL_PASSWORD"_s, {}},
            {"unknown export field", {u"export"_s, u"devices"_s, u"--fields"_s, u"Ext,Colour"_s}, {}, password, 2, {},
             u"Colour"_s, {}},
            {"send with a Ref", {u"send"_s, u"{Cmd=GetFields}{Table=Exts}{Fields=Ext,Name}{Ref=ctl-42}{Id=1}"_s}, {},
             password, 0, {u"{Ref(S6)=ctl-42}"_s, u"{Name("_s}, {}, {}},
            {"send a write", {u"send"_s, storeNew}, {}, password, 0, {}, {}, {u"7803"_s}},
            // clang-format on
        };
        for (const auto &c : cases) {
            const QByteArray before = exportDevices();
            QVERIFY2(!before.isEmpty(), c.name);
            const Run result = run(sessionArguments(c.server) + c.arguments, c.password);
            const QByteArray context = QByteArray(c.name) + ": exit " + QByteArray::number(result.exitCode) +
                                       "\nout: " + result.out.toUtf8() + "\nerr: " + result.err.toUtf8();
            QVERIFY2(result.exitCode == c.exitCode, context.constData());
            for (const QString &text : c.out)
                QVERIFY2(result.out.contains(text), context.constData());
            QVERIFY2(result.err.contains(c.err), context.constData());

            QStringList stored;
            QStringList known;
            for (const QString &record : records(before))
                known.append(extOf(record));
            for (const QString &record : records(exportDevices()))
                if (!known.contains(extOf(record)))
                    stored.append(extOf(record));
            QVERIFY2(stored == c.stored,
                     qPrintable(QString::fromUtf8(c.name) + u": stored "_s + stored.join(u',')));
        }
    }
};

QTEST_GUILESS_MAIN(TestQuillCtl)
#include "tst_quillctl.moc"
