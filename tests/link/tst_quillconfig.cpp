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

    // Starts quillconfig in the test's home with arguments (and the variables in extra).
    void start(QProcess &process, const QStringList &arguments, const QStringList &extra = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString home = m_home.path();
        environment.insert(u"HOME"_s, home);
        const QList<QPair<QString, QString>> folders{{u"XDG_CONFIG_HOME"_s, u"config"_s},
                                                     {u"XDG_DATA_HOME"_s, u"data"_s},
                                                     {u"XDG_CACHE_HOME"_s, u"cache"_s},
                                                     {u"XDG_RUNTIME_DIR"_s, u"runtime"_s},
                                                     {u"TMPDIR"_s, u"tmp"_s}};
        for (const auto &[variable, dir] : folders) {
            QDir(home).mkpath(dir);
            environment.insert(variable, home + u'/' + dir);
        }
        QFile::setPermissions(home + u"/runtime"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.insert(u"QT_LOGGING_RULES"_s, u"quill.link.session.info=true"_s);
        for (const QString &variable : extra)
            environment.insert(variable, u"1"_s);
        process.setProcessEnvironment(environment);
        process.start(program(), arguments);
        QVERIFY(process.waitForStarted());
    }

private slots:
    void aSecondCopyEndsSilentlyWhileTheFirstRunsOnTheDemoServer()
    {
        QVERIFY2(QFileInfo(program()).isExecutable(), qPrintable(program()));
        QProcess first;
        QString firstLog;
        connect(&first, &QProcess::readyReadStandardError, this,
                [&] { firstLog += QString::fromLocal8Bit(first.readAllStandardError()); });
        start(first, {u"--demo"_s});
        // It logs in to its own server with a token and reaches READY.
        QTRY_VERIFY2_WITH_TIMEOUT(firstLog.contains(u"State::Ready"_s), qPrintable(firstLog), 60000);
        QVERIFY(QFileInfo::exists(m_home.filePath(u"data/Tamsel Telecom Ltd/QuillConfig/demo-site.sqlite"_s)));

        QProcess second;
        start(second, {u"--demo"_s});
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
            // Escape in the log-in dialog as soon as it shows.
            start(process, {u"--server"_s, server, u"--user"_s, u"admin"_s}, {u"QUILL_TEST_LOGIN_ESCAPE"_s});
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
