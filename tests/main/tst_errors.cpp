// SPDX-License-Identifier: GPL-3.0-or-later
// The Errors window: the end of the error log, "&Clear" (the window, not the file), opening it from frmMain.
#include "Errors.h"
#include "errorlog.h"
#include "isolation.h"
#include "frmMain.h"
#include "serverlink.h"
#include "tagvalue.h"
#include "usrsession.h"
#include "windows.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class ErrorsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
    }

    void init() { ErrorLog::clear(); }

    void showsTheLogAndClearEmptiesTheWindowButKeepsTheFile()
    {
        ErrorLog::write(u"Overflow @ basGlobal.AddVar"_s);
        ErrorLog::write(u"Invalid property value  @  frmMain.DataArrived"_s);

        Errors window;
        window.show();
        QCOMPARE(window.windowTitle(), u"Error Messages"_s);
        auto *txt = window.findChild<QPlainTextEdit *>(u"txt"_s);
        auto *clear = window.findChild<QPushButton *>(u"Command1"_s);
        QVERIFY(txt && clear);
        QCOMPARE(clear->text(), u"&Clear"_s);
        const QStringList lines = txt->toPlainText().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.at(0).endsWith(u" @ Overflow @ basGlobal.AddVar"_s));
        QVERIFY(lines.at(1).endsWith(u"Invalid property value  @  frmMain.DataArrived"_s));

        QTest::mouseClick(clear, Qt::LeftButton);
        QVERIFY(txt->toPlainText().isEmpty());
        QVERIFY(!window.isVisible());

        // Clear empties the window, never the file: the log keeps its lines and goes on after them.
        ErrorLog::write(u"Later fault @ frmMain.OK_Click"_s);
        QFile file(m_scratch.logPath());
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList kept = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(kept.size(), 3);
        QCOMPARE(kept.mid(0, 2), lines);
        QVERIFY(kept.at(2).endsWith(u"Later fault @ frmMain.OK_Click"_s));
    }

    void mainWindowShowsItsOwnFaultsInTheErrorsWindow()
    {
        usrSession session;
        ServerLink link(session);
        frmMain window(link);
        registerWindows(window, link); // the program's own wiring opens the Errors window
        window.show();

        // A settings record the page cannot show (a check box holding 7) is logged, not shown.
        QString reply = u"{Ref=MAIN-PBX}"_s;
        AddVar(reply, u"Options"_s, u"{AutoDir=7}{Name=Dock}"_s);
        link.HandleCallback(reply);
        QVERIFY(ErrorLog::tail().contains(u"Invalid property value"_s));

        auto *errorLog = window.findChild<QAction *>(u"mnuErrorLog"_s);
        QVERIFY(errorLog);
        QCOMPARE(errorLog->text(), u"Error log..."_s);
        errorLog->trigger();
        auto *errors = window.findChild<Errors *>();
        QVERIFY(errors);
        QVERIFY(errors->isVisible());
        QVERIFY(errors->text().contains(u"Invalid property value"_s));
        // The rest of the record still arrived.
        QCOMPARE(window.findChild<QLineEdit *>(u"sName"_s)->text(), u"Dock"_s);

        // One window at a time.
        errorLog->trigger();
        QCOMPARE(window.findChildren<Errors *>().size(), 1);
    }

private:
    TestIsolation m_scratch;
};

QTEST_MAIN(ErrorsTest)
#include "tst_errors.moc"
