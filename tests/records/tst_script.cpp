// SPDX-License-Identifier: GPL-3.0-or-later
// The script window against quillserverd: the read it sends, what OK stores byte for byte, Cancel,
// replies that arrive late, opening it from the main window's script list, and the editor's keys.
#include "frmMain.h"
#include "frmScript.h"
#include "maintool.h"
#include "recordlist.h"
#include "scriptedit.h"
#include "serverfixture.h"
#include "windows.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
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
    QString command = u"{Cmd=SetFields}{Table=Scripts}"_s;
    AddVar(command, u"Fields"_s, record({{u"Name"_s, name}, {u"Params"_s, params}, {u"Script"_s, script}}));
    AddVar(command, u"Id"_s, id);
    return command;
}

template <typename T> T *child(const QWidget *window, const QString &name)
{
    T *found = window->findChild<T *>(name);
    if (!found)
        qWarning("no %s", qPrintable(name));
    return found;
}

// Runs answer on the modal window once the list has opened it (exec() does not return until then).
void answerWindow(std::function<void(QWidget *window)> answer, int triesLeft = 500)
{
    QTimer::singleShot(10, [answer, triesLeft] {
        if (QWidget *window = QApplication::activeModalWidget())
            answer(window);
        else if (triesLeft > 0)
            answerWindow(answer, triesLeft - 1);
    });
}

} // namespace

class ScriptWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void okStoresTheBoxesAsTheyStand();
    void cancelAndEscSendNothing();
    void aReplyAfterTypingOverwritesTheBoxes();
    void theScriptListOpensTheWindowAndReadsItsListAgain();
    void enterKeepsIndentationAndNeverPressesOk();
    void findBarFindsWrapsAndCloses();

private:
    QString createScript(const QString &name, const QString &script);
    QStringList sentSince(qsizetype mark);
    void open(frmScript &window, const QString &id);

    std::unique_ptr<ServerFixture> m_fixture;
};

void ScriptWindowTest::initTestCase()
{
    m_fixture = std::make_unique<ServerFixture>();
    QString error;
    QVERIFY2(m_fixture->start(&error), qPrintable(error));
}

// Stores a script with the fixture's own session and returns its id.
QString ScriptWindowTest::createScript(const QString &name, const QString &script)
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

// What the fixture's session sent since mark, once the server has answered a list read sent after it
// (that read left out).
QStringList ScriptWindowTest::sentSince(qsizetype mark)
{
    m_fixture->fetch(u"MAIN-SCRIPTS"_s);
    QStringList sent = m_fixture->relay.commands().mid(mark);
    if (!sent.isEmpty())
        sent.removeLast();
    return sent;
}

void ScriptWindowTest::open(frmScript &window, const QString &id)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    child<QLineEdit>(&window, u"Tid"_s)->setText(id);
}

void ScriptWindowTest::okStoresTheBoxesAsTheyStand()
{
    const QString stored = u"Sub Main()\n    Report\nEnd Sub"_s;
    struct Case
    {
        QString name; // the stored script's name; empty for a new one
        QString typedName, typedParams, typedScript;
        WindowResult::Outcome outcome;
    };
    const Case cases[] = {
        {u"Nightly Report"_s, u"Nightly Summary"_s, u"Day=Fri"_s, u"Sub Main()\n\tSummary\nEnd Sub"_s,
         WindowResult::SavedExisting},
        {u"Weekly Report"_s, {}, {}, {}, WindowResult::SavedExisting},
        {{}, u"Dial Out"_s, {}, u"Dial 100"_s, WindowResult::SavedNew},
    };
    for (const Case &c : cases) {
        const QString id = c.name.isEmpty() ? u"-1"_s : createScript(c.name, stored);
        QVERIFY(!id.isEmpty());
        frmScript window(m_fixture->link);
        auto *name = child<QLineEdit>(&window, u"sName"_s);
        auto *params = child<QLineEdit>(&window, u"sParams"_s);
        auto *script = child<ScriptEdit>(&window, u"sScript"_s);
        const qsizetype mark = m_fixture->relay.commands().size();
        open(window, id);
        if (c.name.isEmpty()) {
            QCOMPARE(sentSince(mark), QStringList());
            QVERIFY(name->text().isEmpty() && script->toPlainText().isEmpty());
        } else {
            QTRY_COMPARE(name->text(), c.name);
            QCOMPARE(sentSince(mark), QStringList{scriptRead(id)});
            QCOMPARE(script->toPlainText(), stored);
            QCOMPARE(params->text(), QString()); // the read does not ask for the parameters
        }

        name->setText(c.typedName);
        params->setText(c.typedParams);
        script->setPlainText(c.typedScript);
        const qsizetype beforeOk = m_fixture->relay.commands().size();
        QTest::mouseClick(child<QPushButton>(&window, u"OK"_s), Qt::LeftButton);
        QVERIFY(!window.isVisible());
        QCOMPARE(window.result(), int(QDialog::Accepted));
        const QStringList sent = sentSince(beforeOk);
        QCOMPARE(sent, QStringList{scriptWrite(id, c.typedName, c.typedParams, c.typedScript)});
        QCOMPARE(window.outcome().outcome, c.outcome);
        QCOMPARE(window.outcome().columns, QStringList()); // the list reads itself again

        const QString list = m_fixture->lastReply(u"SCRIPTS"_s);
        if (c.typedName.isEmpty()) {
            // Nothing but the id: the server keeps what it had.
            QCOMPARE(sent.first(), u"{Cmd=SetFields}{Table=Scripts}{Id(S%1)=%2}"_s.arg(id.size()).arg(id));
            QCOMPARE(ServerFixture::fieldOf(list, id, u"Name"_s), c.name);
        } else if (id == u"-1"_s) {
            QVERIFY(sent.first().endsWith(u"{Id(S2)=-1}"_s));
        }
        QCOMPARE(window.outcome().id, c.outcome == WindowResult::SavedExisting ? id : QString());
    }
    // Every save reached the server: the new and the renamed scripts are listed by their names.
    const QString list = m_fixture->fetch(u"MAIN-SCRIPTS"_s);
    QStringList names;
    for (const QString &id : ServerFixture::replyIds(list))
        names << ServerFixture::fieldOf(list, id, u"Name"_s);
    QVERIFY(names.contains(u"Nightly Summary"_s));
    QVERIFY(names.contains(u"Dial Out"_s));
    QVERIFY(!names.contains(u"Nightly Report"_s));
}

void ScriptWindowTest::cancelAndEscSendNothing()
{
    const QString id = createScript(u"Cancelled Edit"_s, u"Beep"_s);
    const std::function<void(frmScript &)> closers[] = {
        [](frmScript &window) {
            QTest::mouseClick(child<QPushButton>(&window, u"Cancel"_s), Qt::LeftButton);
        },
        [](frmScript &window) { QTest::keyClick(child<QLineEdit>(&window, u"sName"_s), Qt::Key_Escape); },
    };
    for (const auto &close : closers) {
        frmScript window(m_fixture->link);
        const qsizetype mark = m_fixture->relay.commands().size();
        open(window, id);
        auto *name = child<QLineEdit>(&window, u"sName"_s);
        QTRY_COMPARE(name->text(), u"Cancelled Edit"_s);
        name->setText(u"Not stored"_s);
        close(window);
        QVERIFY(!window.isVisible());
        QCOMPARE(window.outcome().outcome, WindowResult::Cancelled);
        QCOMPARE(sentSince(mark), QStringList{scriptRead(id)});
    }
}

void ScriptWindowTest::aReplyAfterTypingOverwritesTheBoxes()
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

void ScriptWindowTest::theScriptListOpensTheWindowAndReadsItsListAgain()
{
    MainTool tool(m_fixture->relay.url());
    QVERIFY(QTest::qWaitFor([&] { return tool.window.isLoaded(); }, 20000));
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
    answerWindow([](QWidget *window) {
        QCOMPARE(child<QLineEdit>(window, u"Tid"_s)->text(), u"-1"_s);
        child<QLineEdit>(window, u"sName"_s)->setText(u"From The List"_s);
        QTest::mouseClick(child<QPushButton>(window, u"OK"_s), Qt::LeftButton);
    });
    QTest::mouseClick(scripts->button(RecordList::AddButton), Qt::LeftButton);
    QTRY_VERIFY(scripts->names().contains(u"From The List"_s));
    QVERIFY(savedThenReread(mark, scriptWrite(u"-1"_s, u"From The List"_s, {}, {})));

    // Edit: the selected script opens on its id; the new name shows once the list is read again.
    const QList<QTreeWidgetItem *> found = scripts->list()->findItems(u"From The List"_s, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    scripts->list()->setCurrentItem(found.first());
    const QString id = scripts->selectedId();
    mark = relay.commands().size();
    answerWindow([id](QWidget *window) {
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

    // A double-click opens it too; Cancel sends nothing and the list does not read itself again.
    tool.window.findChild<QTabWidget *>(u"Tabs"_s)->setCurrentIndex(frmMain::Scripts);
    QVERIFY(QTest::qWaitForWindowExposed(&tool.window));
    QTreeWidget *tree = scripts->list();
    const QPoint entry = tree->visualItemRect(tree->currentItem()).center();
    mark = relay.commands().size();
    bool answered = false;
    answerWindow([&answered](QWidget *window) {
        QTRY_COMPARE(child<QLineEdit>(window, u"sName"_s)->text(), u"Renamed In The List"_s);
        QTest::mouseClick(child<QPushButton>(window, u"Cancel"_s), Qt::LeftButton);
        answered = true;
    });
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, entry);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, entry);
    QTRY_VERIFY(answered);
    tool.link.GetData(u"MAIN-SCRIPTS"_s); // a frame of our own, which arrives after anything sent before
    QTRY_COMPARE(relay.commands().mid(mark), (QStringList{scriptRead(id), ListRead}));
}

void ScriptWindowTest::enterKeepsIndentationAndNeverPressesOk()
{
    struct Case
    {
        QStringList lines; // typed with Enter after each but the last
        QString expected;
    };
    const Case cases[] = {
        {{u"Sub Main()"_s, u"    If Ready Then"_s, u"Go"_s}, u"Sub Main()\n    If Ready Then\n    Go"_s},
        {{u"\tA"_s, u"B"_s, u""_s}, u"\tA\n\tB\n\t"_s},
        {{u"  x"_s, u""_s}, u"  x\n  "_s},
    };
    frmScript window(m_fixture->link);
    const qsizetype mark = m_fixture->relay.commands().size();
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto *script = child<ScriptEdit>(&window, u"sScript"_s);
    for (const Case &c : cases) {
        script->clear();
        script->setFocus();
        for (qsizetype line = 0; line < c.lines.size(); ++line) {
            if (line > 0)
                QTest::keyClick(script, Qt::Key_Return);
            QTest::keyClicks(script, c.lines[line]);
        }
        QCOMPARE(script->toPlainText(), c.expected);
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

void ScriptWindowTest::findBarFindsWrapsAndCloses()
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

QTEST_MAIN(ScriptWindowTest)
#include "tst_script.moc"
