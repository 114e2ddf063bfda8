// SPDX-License-Identifier: GPL-3.0-or-later
// The script window against quillserverd: the read it sends, what OK stores byte for byte, Cancel,
// replies that arrive late, opening it from the main window's script list, and the editor's keys.
#include "findchild.h"
#include "frmMain.h"
#include "frmScript.h"
#include "maintool.h"
#include "modalwindow.h"
#include "recordlist.h"
#include "scriptedit.h"
#include "serverfixture.h"
#include "windows.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <memory>

namespace {

const QString ListRead =
    u"{Cmd=GetList}{Table=Scripts}{Ref=MAIN-SCRIPTS}{Fields=ScriptId,Id,Name,Options}{Sort=Name}"_s;

QString scriptRead(const QString &id)
{
    return u"{Cmd=GetFields}{Table=Scripts}{Id="_s + id +
           u"}{Fields=ScriptId,Id,Name,Options,Script}{Ref=SCRIPTS-SCRIPT}"_s;
}

// The write OK sends, built the way the server reads it.
QString scriptWrite(const QString &id, const QString &name, const QString &params, const QString &script)
{
    return setFieldsCommand(u"Scripts"_s, record({{u"Name"_s, name}, {u"Params"_s, params}, {u"Script"_s, script}}), id);
}

// How the window is left.
enum class Close { Ok, Cancel, Escape };

} // namespace

class ScriptWindowTest : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;

    // Stores a script with the fixture's own session and returns its id.
    QString createScript(const QString &name, const QString &script)
    {
        m_fixture->create(u"Scripts"_s,
                          record({{u"Name"_s, name}, {u"Params"_s, u"Day=Mon"_s}, {u"Script"_s, script}}));
        const QString reply = m_fixture->fetch(u"MAIN-SCRIPTS"_s);
        for (const QString &id : ServerFixture::replyIds(reply)) {
            if (ServerFixture::fieldOf(reply, id, u"Name"_s) == name)
                return id;
        }
        return {};
    }

    // What the fixture's session sent since mark, once the server has answered a list read sent
    // after it (that read left out).
    QStringList sentSince(qsizetype mark)
    {
        m_fixture->fetch(u"MAIN-SCRIPTS"_s);
        QStringList sent = m_fixture->relay.commands().mid(mark);
        if (!sent.isEmpty())
            sent.removeLast();
        return sent;
    }

    void open(frmScript &window, const QString &id)
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        child<QLineEdit>(&window, u"Tid"_s)->setText(id);
    }

private slots:
    void initTestCase()
    {
        m_fixture = std::make_unique<ServerFixture>();
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
    }

    void okStoresTheBoxesAsTheyStandCancelAndEscSendNothing_data()
    {
        QTest::addColumn<QString>("stored"); // the stored script's name; empty for a new one
        QTest::addColumn<QStringList>("typed"); // name, parameters, script
        QTest::addColumn<Close>("how");
        QTest::addColumn<WindowResult::Outcome>("outcome");
        QTest::newRow("OK after editing")
            << u"Nightly Report"_s
            << QStringList{u"Nightly Summary"_s, u"Day=Fri"_s, u"Sub Main()\n\tSummary\nEnd Sub"_s} << Close::Ok
            << WindowResult::SavedExisting;
        QTest::newRow("OK after clearing the three boxes")
            << u"Weekly Report"_s << QStringList{{}, {}, {}} << Close::Ok << WindowResult::SavedExisting;
        QTest::newRow("OK on a new script")
            << QString() << QStringList{u"Dial Out"_s, {}, u"Dial 100"_s} << Close::Ok
            << WindowResult::SavedNew;
        QTest::newRow("Cancel") << u"Cancelled Edit"_s << QStringList{u"Not stored"_s, {}, {}}
                                << Close::Cancel << WindowResult::Cancelled;
        QTest::newRow("Esc") << u"Escaped Edit"_s << QStringList{u"Not stored"_s, {}, {}} << Close::Escape
                             << WindowResult::Cancelled;
    }

    void okStoresTheBoxesAsTheyStandCancelAndEscSendNothing()
    {
        QFETCH(QString, stored);
        QFETCH(QStringList, typed);
        QFETCH(Close, how);
        QFETCH(WindowResult::Outcome, outcome);
        const QString storedScript = u"Sub Main()\n    Report\nEnd Sub"_s;
        const QString id = stored.isEmpty() ? u"-1"_s : createScript(stored, storedScript);
        QVERIFY(!id.isEmpty());
        frmScript window(m_fixture->link);
        auto *name = child<QLineEdit>(&window, u"sName"_s);
        auto *params = child<QLineEdit>(&window, u"sParams"_s);
        auto *script = child<ScriptEdit>(&window, u"sScript"_s);
        const qsizetype mark = m_fixture->relay.commands().size();
        open(window, id);
        if (stored.isEmpty()) {
            QCOMPARE(sentSince(mark), QStringList()); // a new script reads nothing
            QVERIFY(name->text().isEmpty() && script->toPlainText().isEmpty());
        } else {
            QTRY_COMPARE(name->text(), stored);
            QCOMPARE(sentSince(mark), QStringList{scriptRead(id)});
            QCOMPARE(script->toPlainText(), storedScript);
            QCOMPARE(params->text(), QString()); // the read does not ask for the parameters
        }

        name->setText(typed[0]);
        params->setText(typed[1]);
        script->setPlainText(typed[2]);
        const qsizetype beforeClosing = m_fixture->relay.commands().size();
        if (how == Close::Escape)
            QTest::keyClick(name, Qt::Key_Escape);
        else
            QTest::mouseClick(child<QPushButton>(&window, how == Close::Ok ? u"OK"_s : u"Cancel"_s),
                              Qt::LeftButton);
        QVERIFY(!window.isVisible());
        QCOMPARE(window.outcome().outcome, outcome);
        const QStringList sent = sentSince(beforeClosing);
        if (how != Close::Ok) {
            QCOMPARE(sent, QStringList());
            return;
        }
        QCOMPARE(window.result(), int(QDialog::Accepted));
        QCOMPARE(sent, QStringList{scriptWrite(id, typed[0], typed[1], typed[2])});
        QCOMPARE(window.outcome().columns, QStringList()); // the list reads itself again
        QCOMPARE(window.outcome().id, outcome == WindowResult::SavedExisting ? id : QString());
        if (typed[0].isEmpty()) {
            // Nothing but the id: the server keeps what it had.
            QCOMPARE(sent.first(), u"{Cmd=SetFields}{Table=Scripts}{Id(S%1)=%2}"_s.arg(id.size()).arg(id));
            QCOMPARE(ServerFixture::fieldOf(m_fixture->lastReply(u"SCRIPTS"_s), id, u"Name"_s), stored);
        } else if (id == u"-1"_s) {
            QVERIFY(sent.first().endsWith(u"{Id(S2)=-1}"_s));
        }
    }

    void aReplyAfterTypingOverwritesTheBoxes()
    {
        const QString id = createScript(u"Late Reply"_s, u"Sub Late()\nEnd Sub"_s);
        frmScript window(m_fixture->link);
        open(window, id);
        auto *name = child<QLineEdit>(&window, u"sName"_s);
        auto *params = child<QLineEdit>(&window, u"sParams"_s);
        auto *script = child<ScriptEdit>(&window, u"sScript"_s);
        QTRY_COMPARE(name->text(), u"Late Reply"_s);
        QTest::keyClick(name, Qt::Key_End);
        QTest::keyClicks(name, u" typed"_s);
        QTest::keyClicks(params, u"Typed=1"_s);
        QTest::keyClicks(script, u"Typed"_s);
        QCOMPARE(name->text(), u"Late Reply typed"_s);

        // The same record again: what the server holds wins, and the parameters it does not send go.
        m_fixture->link.GetData(u"SCRIPT"_s, id);
        QTRY_COMPARE(name->text(), u"Late Reply"_s);
        QCOMPARE(params->text(), QString());
        QCOMPARE(script->toPlainText(), u"Sub Late()\nEnd Sub"_s);
    }

    // Add and Edit open the window from the script list, which reads itself again after a save.
    // (Double-click and Cancel go the same way for every list: the routing window's test has them.)
    void theScriptListOpensTheWindowAndReadsItsListAgain()
    {
        MainTool tool(m_fixture->relay.url());
        QVERIFY(tool.waitLoaded());
        registerWindows(tool.window, tool.link);
        RecordList *scripts = tool.window.recordList(RecordKind::Scripts);
        const RecordingRelay &relay = m_fixture->relay;
        // The save and the list read that follows it, as the server received them.
        const auto savedThenReread = [&](qsizetype mark, const QString &write) {
            const QStringList sent = relay.commands().mid(mark);
            const qsizetype at = sent.indexOf(write);
            return at >= 0 && sent.value(at + 1) == ListRead;
        };

        // Add: a new script, then the whole list again, now with the new name.
        qsizetype mark = relay.commands().size();
        answerModalWindow([](QWidget *window) {
            QCOMPARE(child<QLineEdit>(window, u"Tid"_s)->text(), u"-1"_s);
            child<QLineEdit>(window, u"sName"_s)->setText(u"From The List"_s);
            QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        });
        QTest::mouseClick(scripts->button(RecordList::AddButton), Qt::LeftButton);
        QTRY_VERIFY(scripts->names().contains(u"From The List"_s));
        QVERIFY(savedThenReread(mark, scriptWrite(u"-1"_s, u"From The List"_s, {}, {})));

        // Edit: the selected script opens on its id; the new name shows once the list is read again.
        const QList<QTreeWidgetItem *> found =
            scripts->list()->findItems(u"From The List"_s, Qt::MatchExactly);
        QCOMPARE(found.size(), 1);
        scripts->list()->setCurrentItem(found.first());
        const QString id = scripts->selectedId();
        mark = relay.commands().size();
        answerModalWindow([id](QWidget *window) {
            QCOMPARE(child<QLineEdit>(window, u"Tid"_s)->text(), id);
            auto *name = child<QLineEdit>(window, u"sName"_s);
            QTRY_COMPARE(name->text(), u"From The List"_s);
            name->setText(u"Renamed In The List"_s);
            QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
        });
        QTest::mouseClick(scripts->button(RecordList::EditButton), Qt::LeftButton);
        QTRY_VERIFY(scripts->names().contains(u"Renamed In The List"_s));
        QVERIFY(!scripts->names().contains(u"From The List"_s));
        QCOMPARE(relay.commands().value(mark), scriptRead(id));
        QVERIFY(savedThenReread(mark, scriptWrite(id, u"Renamed In The List"_s, {}, {})));
    }

    void enterKeepsIndentationAndNeverPressesOk()
    {
        // The lines typed, with Enter after each but the last, and the text they make.
        const QList<QPair<QStringList, QString>> cases{
            {{u"Sub Main()"_s, u"    If Ready Then"_s, u"Go"_s}, u"Sub Main()\n    If Ready Then\n    Go"_s},
            {{u"\tA"_s, u"B"_s, u""_s}, u"\tA\n\tB\n\t"_s},
            {{u"  x"_s, u""_s}, u"  x\n  "_s},
        };
        frmScript window(m_fixture->link);
        const qsizetype mark = m_fixture->relay.commands().size();
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *script = child<ScriptEdit>(&window, u"sScript"_s);
        for (const auto &[lines, expected] : cases) {
            script->clear();
            script->setFocus();
            for (qsizetype line = 0; line < lines.size(); ++line) {
                if (line > 0)
                    QTest::keyClick(script, Qt::Key_Return);
                QTest::keyClicks(script, lines[line]);
            }
            QCOMPARE(script->toPlainText(), expected);
            QVERIFY(window.isVisible());
        }
        // Ctrl+Tab leaves the box (Tab types a tab) for the next control, the OK button.
        const QString before = script->toPlainText();
        QTest::keyClick(script, Qt::Key_Tab, Qt::ControlModifier);
        QTRY_COMPARE(QApplication::focusWidget(), child<QPushButton>(&window, u"OK"_s));
        QCOMPARE(script->toPlainText(), before);
        QVERIFY(window.isVisible());
        QCOMPARE(sentSince(mark), QStringList());
    }

    void findBarFindsWrapsAndCloses()
    {
        frmScript window(m_fixture->link);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *script = child<ScriptEdit>(&window, u"sScript"_s);
        script->setPlainText(u"Alpha\nbeta\nalpha\n"_s);
        script->setFocus();
        QLineEdit *find = script->findBar();
        QVERIFY(!find->isVisible());

        QTest::keyClick(script, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(find->isVisible());
        QTRY_COMPARE(QApplication::focusWidget(), find);
        // Found as it is typed, in any case; the match grows where it is rather than moving on.
        for (const QChar letter : u"alpha"_s) {
            QTest::keyClicks(find, letter);
            QCOMPARE(script->textCursor().selectionStart(), 0);
        }
        QCOMPARE(script->textCursor().selectedText(), u"Alpha"_s);
        const QColor found = find->palette().color(QPalette::Base);

        struct Step
        {
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
            int selectionStart;
        };
        const Step steps[] = {{Qt::Key_Return, {}, 11},
                              {Qt::Key_Return, {}, 0},             // round past the end
                              {Qt::Key_F3, Qt::ShiftModifier, 11}, // round past the start
                              {Qt::Key_F3, Qt::ShiftModifier, 0},
                              {Qt::Key_F3, {}, 11}};
        for (const Step &step : steps) {
            QTest::keyClick(find, step.key, step.modifiers);
            QCOMPARE(script->textCursor().selectionStart(), step.selectionStart);
        }
        QVERIFY(window.isVisible()); // Enter in the find bar is not OK

        QTest::keyClicks(find, u"zz"_s);
        QCOMPARE(script->textCursor().selectionStart(), 11);
        QVERIFY(find->palette().color(QPalette::Base) != found);

        // Esc closes only the find bar and gives the text the focus back; the next Esc is Cancel.
        QTest::keyClick(find, Qt::Key_Escape);
        QVERIFY(!find->isVisible());
        QVERIFY(window.isVisible());
        QTRY_COMPARE(QApplication::focusWidget(), script);
        QTest::keyClick(script, Qt::Key_Escape);
        QVERIFY(!window.isVisible());
        QCOMPARE(window.outcome().outcome, WindowResult::Cancelled);
    }
};

QTEST_MAIN(ScriptWindowTest)
#include "tst_script.moc"
