// SPDX-License-Identifier: GPL-3.0-or-later
// The error log: its line format, the size rule, the silenced faults and the guard around handlers.
#include "errorlog.h"
#include "isolation.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), content.size());
}

} // namespace

class TestErrorLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        m_log = m_scratch.logPath();
        // A fixed regional setting, so that the line can be checked to the character.
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    }

    void init()
    {
        ErrorLog::setPath(m_log);
        ErrorLog::setApplicationName(u"QSConfig"_s);
        ErrorLog::clear();
    }

    void lineHoldsNameDateTimeAndMessage()
    {
        QDateTime before = QDateTime::currentDateTime();
        before = before.addMSecs(-before.time().msec()); // the line holds whole seconds
        ErrorLog::write(u"Overflow @ basGlobal.AddVar"_s);
        const QDateTime after = QDateTime::currentDateTime();

        const QString content = QString::fromUtf8(readAll(m_log));
        static const QRegularExpression line(
            u"^QSConfig - (\\d\\d/\\d\\d/\\d{4} \\d\\d:\\d\\d:\\d\\d)    @ Overflow @ basGlobal\\.AddVar\\n$"_s);
        const QRegularExpressionMatch match = line.match(content);
        QVERIFY2(match.hasMatch(), qPrintable(content));
        const QDateTime written = QDateTime::fromString(match.captured(1), u"dd/MM/yyyy HH:mm:ss"_s);
        QVERIFY2(written >= before && written <= after, qPrintable(match.captured(1)));

        // By default the name is the executable's.
        ErrorLog::setApplicationName({});
        ErrorLog::write(u"Second"_s);
        const QStringList lines = QString::fromUtf8(readAll(m_log)).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY2(lines[1].startsWith(u"tst_errorlog - "_s) && lines[1].endsWith(u"    @ Second"_s),
                 qPrintable(lines[1]));
    }

    void logStartsAgainAtOneMillionBytes()
    {
        writeFile(m_log, QByteArray(ErrorLog::MaxBytes, 'x'));
        ErrorLog::write(u"After the limit"_s);
        const QByteArray restarted = readAll(m_log);
        QVERIFY(restarted.startsWith("QSConfig - "));
        QVERIFY(restarted.endsWith(" @ After the limit\n"));
        QCOMPARE(restarted.count('\n'), 1);

        writeFile(m_log, QByteArray(ErrorLog::MaxBytes - 1, 'x'));
        ErrorLog::write(u"Just below"_s);
        const QByteArray appended = readAll(m_log);
        QVERIFY(appended.size() > ErrorLog::MaxBytes);
        QCOMPARE(appended.left(ErrorLog::MaxBytes - 1), QByteArray(ErrorLog::MaxBytes - 1, 'x'));
        QVERIFY(appended.mid(ErrorLog::MaxBytes - 1).startsWith("QSConfig - "));
        QVERIFY(appended.endsWith(" @ Just below\n"));
    }

    void expectedFaultsAreNotLogged()
    {
        ErrorLog::write(u"Form cannot be created because its designer window is open. @ frmMain.Load"_s);
        ErrorLog::write(u"Address Family is not supported by protocol @ frmMain.Sess_SessionEvent: "_s);
        QVERIFY(!QFile::exists(m_log));

        QVERIFY(!Guard(u" @ frmMain.Sess_SessionEvent: "_s,
                       [] { throw Fault(u"Address Family is not supported"_s); }));
        QVERIFY(!QFile::exists(m_log));

        // Near misses are ordinary faults.
        ErrorLog::write(u"address family is not supported"_s);
        QCOMPARE(readAll(m_log).count('\n'), 1);
    }

    void unwritableLogIsSilentlySkipped()
    {
        const QString notAFolder = m_scratch.filePath(u"plain-file"_s);
        writeFile(notAFolder, "x");
        const QStringList unwritable = {notAFolder + u"/tamsel.log"_s, m_scratch.path()};
        for (const QString &path : unwritable) {
            ErrorLog::setPath(path);
            ErrorLog::write(u"Disk trouble"_s);
            QVERIFY(!Guard(u" @ basGlobal.AddVar"_s, [] { throw Fault(u"Overflow"_s); }));
            QCOMPARE(ErrorLog::tail(), u""_s);
        }
        QCOMPARE(readAll(notAFolder), QByteArray("x"));
    }

    void guardLogsEachFaultWithItsLabelAndGoesOn()
    {
        int statementsRun = 0;
        const bool completed = Guard(u" @ basGlobal.AddVar"_s, [&] {
            ++statementsRun;
            throw Fault(u"Overflow"_s);
            ++statementsRun; // never reached: the handler stops at its fault
        });
        QVERIFY(!completed);
        QCOMPARE(statementsRun, 1);

        QVERIFY(!Guard(u"  @  frmScript.OK_Click"_s, [] { throw std::runtime_error("Type mismatch"); }));
        QVERIFY(!Guard(u" @ frmMain.Sess_SessionEvent: "_s, [] { throw 42; }));
        QVERIFY(Guard(u" @ basGlobal.GetVar"_s, [&] { ++statementsRun; }));
        QCOMPARE(statementsRun, 2);

        const QStringList lines = QString::fromUtf8(readAll(m_log)).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines[0].endsWith(u"    @ Overflow @ basGlobal.AddVar"_s));
        QVERIFY(lines[1].endsWith(u"    @ Type mismatch  @  frmScript.OK_Click"_s));
        QVERIFY(lines[2].endsWith(u"    @ Unknown fault @ frmMain.Sess_SessionEvent: "_s));
    }

    void tailShowsWholeLastLinesAndClearEmpties()
    {
        ErrorLog::setApplicationName(u"Q"_s);
        for (const QString &message : {u"one"_s, u"two"_s, u"three"_s})
            ErrorLog::write(message);
        const QString all = ErrorLog::tail();
        const QStringList lines = all.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 3);

        const QString lastTwo = lines[1] + u'\n' + lines[2] + u'\n';
        QCOMPARE(ErrorLog::tail(lastTwo.toUtf8().size()), lastTwo);     // cut exactly at a line
        QCOMPARE(ErrorLog::tail(lastTwo.toUtf8().size() + 5), lastTwo); // cut inside a line
        QCOMPARE(ErrorLog::tail(lastTwo.toUtf8().size() - 1), lines[2] + u'\n');

        ErrorLog::clear();
        QCOMPARE(ErrorLog::tail(), u""_s);
        ErrorLog::write(u"fresh"_s);
        QCOMPARE(ErrorLog::tail().count(u'\n'), 1);
    }

    void defaultLogLivesInTheUsersDataFolder()
    {
        ErrorLog::setPath({});
        const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
        QCOMPARE(ErrorLog::path(), QDir(dataFolder).filePath(u"tamsel.log"_s));
        ErrorLog::write(u"first line in a new folder"_s);
        QVERIFY(ErrorLog::tail().endsWith(u" @ first line in a new folder\n"_s));
        ErrorLog::clear();
    }

private:
    TestIsolation m_scratch;
    QString m_log;
};

QTEST_GUILESS_MAIN(TestErrorLog)
#include "tst_errorlog.moc"
