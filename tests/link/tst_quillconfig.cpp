// SPDX-License-Identifier: GPL-3.0-or-later
// The quillconfig program itself: on its embedded demo server it logs in, a second copy started
// meanwhile ends at once, silently, and cancelling the log-in at start-up ends the program.
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class QuillConfigTest : public QObject
{
    Q_OBJECT
    QTemporaryDir m_home; // the program's whole world: settings, data folder, lock, temp files

    QString program() const { return qEnvironmentVariable("QUILL_BUILD_DIR") + u"/app/quillconfig"_s; }

    void prepare(QProcess &process) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString home = m_home.path();
        for (const QString &dir : {u"config"_s, u"data"_s, u"cache"_s, u"runtime"_s, u"tmp"_s})
            QDir(home).mkpath(dir);
        QFile::setPermissions(home + u"/runtime"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        environment.insert(u"HOME"_s, home);
        environment.insert(u"XDG_CONFIG_HOME"_s, home + u"/config"_s);
        environment.insert(u"XDG_DATA_HOME"_s, home + u"/data"_s);
        environment.insert(u"XDG_CACHE_HOME"_s, home + u"/cache"_s);
        environment.insert(u"XDG_RUNTIME_DIR"_s, home + u"/runtime"_s);
        environment.insert(u"TMPDIR"_s, home + u"/tmp"_s);
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.insert(u"QT_LOGGING_RULES"_s, u"quill.link.session.info=true"_s);
        process.setProcessEnvironment(environment);
        process.setProgram(program());
    }

private slots:
    void aSecondCopyEndsSilentlyWhileTheFirstRunsOnTheDemoServer()
    {
        QVERIFY2(QFileInfo(program()).isExecutable(), qPrintable(program()));
        QProcess first;
        prepare(first);
        first.setArguments({u"--demo"_s});
        first.start();
        QVERIFY(first.waitForStarted());
        QString firstLog;
        connect(&first, &QProcess::readyReadStandardError, this,
                [&] { firstLog += QString::fromLocal8Bit(first.readAllStandardError()); });
        // It logs in to its own server with a token and reaches READY.
        QTRY_VERIFY2_WITH_TIMEOUT(firstLog.contains(u"State::Ready"_s), qPrintable(firstLog), 60000);
        QVERIFY(QFileInfo::exists(m_home.filePath(u"data/Tamsel Telecom Ltd/QuillConfig/demo-site.sqlite"_s)));

        QProcess second;
        prepare(second);
        second.setArguments({u"--demo"_s});
        second.start();
        QVERIFY(second.waitForFinished(30000));
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(second.readAllStandardOutput().isEmpty());
        QVERIFY2(!second.readAllStandardError().contains("State::"), "the second copy opened a session");
        QCOMPARE(first.state(), QProcess::Running);

        first.terminate();
        if (!first.waitForFinished(10000))
            first.kill();
    }

    void cancellingTheLogInAtStartUpEndsTheProgramAndFreesItsLock()
    {
        QTcpServer probe; // a port that was free a moment ago: nothing listens there
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        const QString server = u"ws://127.0.0.1:%1"_s.arg(probe.serverPort());
        probe.close();

        // Twice: a copy that stayed on, or left its lock held, would make the second end silently
        // without ever opening a session.
        for (int run = 1; run <= 2; ++run) {
            QProcess process;
            prepare(process);
            QProcessEnvironment environment = process.processEnvironment();
            environment.insert(u"QUILL_TEST_LOGIN_ESCAPE"_s, u"1"_s); // Escape in the log-in dialog
            process.setProcessEnvironment(environment);
            process.setArguments({u"--server"_s, server, u"--user"_s, u"admin"_s});
            process.start();
            QVERIFY(process.waitForStarted());
            const bool ended = process.waitForFinished(15000);
            const QString log = QString::fromLocal8Bit(process.readAllStandardError());
            if (!ended) {
                process.kill();
                process.waitForFinished();
            }
            QVERIFY2(ended,
                     qPrintable(u"run %1 still running after the log-in was cancelled:\n"_s.arg(run) + log));
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
            QVERIFY2(log.contains(u"State::Closed"_s),
                     qPrintable(u"run %1 opened no session:\n"_s.arg(run) + log));
            QVERIFY2(!log.contains(u"State::Ready"_s), qPrintable(log));
        }
    }
};

QTEST_GUILESS_MAIN(QuillConfigTest)
#include "tst_quillconfig.moc"
