// SPDX-License-Identifier: GPL-3.0-or-later
// The quillconfig program itself: on its embedded demo server it logs in, and a second copy
// started meanwhile ends at once, silently.
#include <QDir>
#include <QFileInfo>
#include <QProcess>
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
};

QTEST_GUILESS_MAIN(QuillConfigTest)
#include "tst_quillconfig.moc"
