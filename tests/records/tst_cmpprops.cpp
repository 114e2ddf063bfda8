// SPDX-License-Identifier: GPL-3.0-or-later
// The choice/result window, driven as the campaign window opens it: what it shows for a node, what
// it writes back into the campaign's trees, its panels and its page preview.
#include "campaigntrees.h"
#include "findchild.h"
#include "frmCmpProps.h"
#include "isolation.h"
#include "modalwindow.h"

#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTreeWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

// The campaign window's two trees: the root with the choices A (2) and B (3), and one result.
struct Campaign
{
    QTreeWidget menuWidget;
    QTreeWidget resultWidget;
    ChoiceTree menus{&menuWidget, ChoiceTree::Menus};
    ChoiceTree results{&resultWidget, ChoiceTree::Results};
    Campaign()
    {
        menus.addNode(1, u"A"_s, u"{Caption(S1)=A}"_s);
        menus.addNode(1, u"B"_s, u"{Caption(S1)=B}"_s);
        results.addNode(-1, u"Called"_s, u"{Caption(S6)=Called}"_s);
    }
};

const QStringList tables{u"Contacts"_s, u"Called"_s, u"DoNotCall"_s};

// Opens the window on descriptor and runs act on it while it is shown; a window that act leaves
// open (a failed check) is closed. False when the window never showed.
bool runWindow(frmCmpProps &window, const QString &descriptor, const std::function<void(QWidget *)> &act)
{
    bool shown = false;
    answerModalWindow([&](QWidget *modal) {
        shown = true;
        act(modal);
        if (modal->isVisible())
            static_cast<QDialog *>(modal)->reject();
    });
    window.DataArrived(descriptor);
    return shown;
}

void choose(QWidget *window, const QString &list, const QString &entry)
{
    auto *combo = child<QComboBox>(window, list);
    combo->setCurrentIndex(combo->findText(entry));
}

void typeInto(QWidget *window, const QString &box, const QString &text)
{
    auto *edit = child<QLineEdit>(window, box);
    edit->selectAll();
    QTest::keyClicks(edit, text);
}

void press(QWidget *window, const QString &button)
{
    QTest::mouseClick(child<QPushButton>(window, button), Qt::LeftButton);
}

QStringList entries(const QComboBox *combo)
{
    QStringList texts;
    for (int n = 0; n < combo->count(); ++n)
        texts << combo->itemText(n);
    return texts;
}

bool panelShown(QWidget *window, const QString &panel)
{
    return !child(window, panel)->isHidden();
}

} // namespace

class CmpPropsTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void newNodesAreAddedOnlyByOk_data()
    {
        QTest::addColumn<QString>("descriptor");
        QTest::addColumn<QString>("placeholder");
        QTest::addColumn<QStringList>("kinds");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("menusAfter");   // the Scripts value
        QTest::addColumn<QString>("resultsAfter"); // the Results value
        const QString menus = u"{Root.1(S15)={Caption(S1)=A}}{Root.2(S15)={Caption(S1)=B}}"_s;
        const QString results = u"{Result1(S20)={Caption(S6)=Called}}"_s;
        const QString greeting = u"(S22)={Caption(S8)=Greeting}}"_s;
        const QStringList menu{u"Menu"_s};
        const QStringList resultKinds{u"Move"_s, u"Postpone"_s, u"Remove"_s};

        QTest::newRow("choice under the root") << u"{Type=Choice}{Item=-1}"_s << u"<New Choice>"_s << menu
                                               << true << menus + u"{Root.3"_s + greeting << results;
        QTest::newRow("choice under a choice")
            << u"{Type=Choice}{Item=-2}"_s << u"<New Choice>"_s << menu << true
            << u"{Root.1(S15)={Caption(S1)=A}}{Root.1.1"_s + greeting + u"{Root.2(S15)={Caption(S1)=B}}"_s
            << results;
        QTest::newRow("result") << u"{Type=Result}{Item=-1}"_s << u"<New Result>"_s << resultKinds << true
                                << menus << results + u"{Result2"_s + greeting;
        QTest::newRow("choice cancelled")
            << u"{Type=choice}{Item=-2}"_s << u"<New choice>"_s << menu << false << menus << results;
        QTest::newRow("result cancelled")
            << u"{Type=Result}{Item=-1}"_s << u"<New Result>"_s << resultKinds << false << menus << results;
    }
    void newNodesAreAddedOnlyByOk()
    {
        QFETCH(QString, descriptor);
        QFETCH(QString, placeholder);
        QFETCH(QStringList, kinds);
        QFETCH(bool, ok);
        QFETCH(QString, menusAfter);
        QFETCH(QString, resultsAfter);
        Campaign campaign;
        frmCmpProps window(campaign.menus, campaign.results, tables);
        const bool shown = runWindow(window, descriptor, [&](QWidget *modal) {
            auto *name = child<QLineEdit>(modal, u"cName"_s);
            QCOMPARE(name->text(), placeholder);
            QVERIFY(!name->isReadOnly());
            QCOMPARE(modal->focusWidget(), name);
            QCOMPARE(entries(child<QComboBox>(modal, u"cType"_s)), kinds);
            QCOMPARE(child<QComboBox>(modal, u"cType"_s)->currentIndex(), -1);
            QVERIFY(panelShown(modal, u"pMenu"_s));
            QVERIFY(!panelShown(modal, u"picTable"_s) && !panelShown(modal, u"picDelay"_s));
            QTest::keyClicks(name, u"Greeting"_s); // replaces the placeholder, which starts selected
            press(modal, ok ? u"OK"_s : u"Cancel"_s);
        });
        QVERIFY(shown);
        QCOMPARE(window.result(), int(ok ? QDialog::Accepted : QDialog::Rejected));
        QCOMPARE(campaign.menus.EnumNodes(), menusAfter);
        QCOMPARE(campaign.results.resultsText(), resultsAfter);
        if (descriptor == u"{Type=Choice}{Item=-2}"_s)
            QVERIFY(campaign.menus.item(2)->isExpanded());
    }

    // An existing choice shows its node's text and properties; OK writes the known properties in
    // their order, dropping a colour the list does not offer and entries the window does not know.
    void editingAChoiceRewritesItsProperties()
    {
        Campaign campaign;
        const QString stored = u"{File(S8)=page.htm}{Color(S6)=Purple}{Extra(S1)=1}{Tag(S3)=t-a}"
                               u"{Caption(S9)=Old title}{Type(S4)=menu}"_s;
        QVERIFY(campaign.menus.setNode(2, u"A"_s, stored));
        frmCmpProps window(campaign.menus, campaign.results, tables);

        QVERIFY(runWindow(window, u"{Type=Choice}{Item=2}"_s, [&](QWidget *modal) {
            QCOMPARE(child<QLineEdit>(modal, u"cName"_s)->text(), u"A"_s);
            QCOMPARE(child<QComboBox>(modal, u"cType"_s)->currentText(), u"Menu"_s);
            QCOMPARE(child<QComboBox>(modal, u"cColor"_s)->currentIndex(), -1);
            QCOMPARE(child<QLineEdit>(modal, u"cTag"_s)->text(), u"t-a"_s);
            QCOMPARE(child<QLineEdit>(modal, u"cFile"_s)->text(), u"page.htm"_s);
            typeInto(modal, u"cName"_s, u"Ask again"_s);
            press(modal, u"OK"_s);
        }));
        QCOMPARE(campaign.menus.tagOf(2),
                 u"{Caption(S9)=Ask again}{Type(S4)=Menu}{Tag(S3)=t-a}{File(S8)=page.htm}"_s);
        QCOMPARE(campaign.menus.item(2)->text(0), u"Ask again"_s);
        QCOMPARE(campaign.menus.item(3)->text(0), u"B"_s);
    }

    // Postpone shows only the delay panel, Move only the table panel; what a hidden panel holds is
    // still saved. A result saved with no kind shows neither panel again.
    void resultPanelsFollowTheKind()
    {
        Campaign campaign;
        frmCmpProps window(campaign.menus, campaign.results, tables);
        QVERIFY(
            runWindow(window, u"{Type=Result}{Item=-1}"_s, [&](QWidget *modal) { press(modal, u"OK"_s); }));
        QCOMPARE(campaign.results.tagOf(2), u"{Caption(S12)=<New Result>}"_s);
        QVERIFY(runWindow(window, u"{Type=Result}{Item=2}"_s, [&](QWidget *modal) {
            QCOMPARE(child<QComboBox>(modal, u"cType"_s)->currentIndex(), -1);
            QVERIFY(!panelShown(modal, u"picTable"_s) && !panelShown(modal, u"picDelay"_s));

            typeInto(modal, u"cName"_s, u"No answer"_s);
            choose(modal, u"cType"_s, u"Postpone"_s);
            QVERIFY(panelShown(modal, u"picDelay"_s) && !panelShown(modal, u"picTable"_s));
            typeInto(modal, u"Delay"_s, u"3"_s);
            choose(modal, u"lstDelay"_s, u"Hours"_s);
            choose(modal, u"cType"_s, u"Move"_s);
            QVERIFY(panelShown(modal, u"picTable"_s) && !panelShown(modal, u"picDelay"_s));
            choose(modal, u"cTable"_s, u"Called"_s);
            choose(modal, u"cColor"_s, u"Green"_s);
            press(modal, u"OK"_s);
        }));
        const QString saved = u"{Caption(S9)=No answer}{Type(S4)=Move}{MoveTable(S6)=Called}{Delay(S1)=3}"
                              u"{DelayType(S5)=Hours}{Color(S5)=Green}"_s;
        QCOMPARE(campaign.results.tagOf(2), saved);
        QCOMPARE(campaign.results.item(2)->text(0), u"No answer"_s);

        QVERIFY(runWindow(window, u"{Type=Result}{Item=2}"_s, [&](QWidget *modal) {
            QVERIFY(panelShown(modal, u"picTable"_s) && !panelShown(modal, u"picDelay"_s));
            QCOMPARE(child<QComboBox>(modal, u"cTable"_s)->currentText(), u"Called"_s);
            QCOMPARE(child<QComboBox>(modal, u"lstDelay"_s)->currentText(), u"Hours"_s);
            choose(modal, u"cType"_s, u"Remove"_s);
            QVERIFY(!panelShown(modal, u"picTable"_s) && !panelShown(modal, u"picDelay"_s));
            press(modal, u"Cancel"_s);
        }));
        QCOMPARE(campaign.results.tagOf(2), saved);
    }

    // The initial script keeps its caption and kind: only its page can be set. The same window then
    // opens an ordinary choice with everything editable again.
    void theInitialScriptSetsOnlyItsPage()
    {
        Campaign campaign;
        frmCmpProps window(campaign.menus, campaign.results, tables);
        QVERIFY(runWindow(window, u"{Type=Choice}{Item=1}"_s, [&](QWidget *modal) {
            auto *name = child<QLineEdit>(modal, u"cName"_s);
            QCOMPARE(name->text(), u"Initial script"_s);
            QVERIFY(name->isReadOnly());
            QVERIFY(!panelShown(modal, u"pMenu"_s));
            QCOMPARE(modal->focusWidget(), child(modal, u"cFile"_s));
            QTest::keyClicks(child(modal, u"cFile"_s), u"intro.htm"_s);
            press(modal, u"OK"_s);
        }));
        QCOMPARE(campaign.menus.tagOf(1), u"{Caption(S14)=Initial script}{File(S9)=intro.htm}"_s);
        QVERIFY(campaign.menus.EnumNodes().startsWith(u"{Root(S49)={Caption(S14)=Initial script}"_s));

        QVERIFY(runWindow(window, u"{Type=Choice}{Item=3}"_s, [&](QWidget *modal) {
            auto *name = child<QLineEdit>(modal, u"cName"_s);
            QCOMPARE(name->text(), u"B"_s);
            QVERIFY(!name->isReadOnly());
            QVERIFY(panelShown(modal, u"pMenu"_s));
            QCOMPARE(child<QLineEdit>(modal, u"cFile"_s)->text(), QString());
            press(modal, u"Cancel"_s);
        }));
    }

    void previewShowsThePage_data()
    {
        QTest::addColumn<QByteArray>("page"); // null: no file is written
        QTest::addColumn<QString>("path");    // empty: the written file
        QTest::addColumn<QString>("shown");

        QTest::newRow("UTF-8 page")
            << QByteArray("<html><body><p>Welcome, caller \xe2\x80\x93 hello</p></body></html>") << QString()
            << u"Welcome, caller \u2013 hello"_s;
        QTest::newRow("page in its own charset")
            << QByteArray("<html><head><meta charset=\"iso-8859-1\"></head><body>Caf\xe9</body></html>")
            << QString() << u"Caf\u00e9"_s;
        QTest::newRow("missing file") << QByteArray() << u"/nonexistent/page.htm"_s << QString();
        QTest::newRow("blank page") << QByteArray() << u"about:blank"_s << QString();
        QTest::newRow("too big") << QByteArray("big") << QString() << u"The page is too big to preview."_s;
    }
    void previewShowsThePage()
    {
        QFETCH(QByteArray, page);
        QFETCH(QString, path);
        QFETCH(QString, shown);
        if (path.isEmpty()) {
            path = m_scratch.filePath(u"page.htm"_s);
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
            file.write(page);
            if (page == "big")
                QVERIFY(file.resize(frmCmpProps::MaxPreviewBytes + 1));
        }
        QStringList asked;
        QString answer;
        frmCmpProps::setFileQuestion(
            [&](QWidget *, const QString &title, const QString &filter, const QString &suffix) {
                asked = QStringList{title, filter, suffix};
                return answer;
            });
        Campaign campaign;
        frmCmpProps window(campaign.menus, campaign.results, tables);
        QVERIFY(runWindow(window, u"{Type=Choice}{Item=2}"_s, [&](QWidget *modal) {
            auto *preview = child<QTextBrowser>(modal, u"cPreview"_s);
            answer = path;
            press(modal, u"bFile"_s);
            QCOMPARE(asked, (QStringList{u"Select HTML file"_s, u"HTML files (*.htm *.html)"_s, u"htm"_s}));
            QCOMPARE(child<QLineEdit>(modal, u"cFile"_s)->text(), path);
            QCOMPARE(preview->toPlainText().trimmed(), shown);

            answer.clear(); // the dialog cancelled: the page stays
            press(modal, u"bFile"_s);
            QCOMPARE(child<QLineEdit>(modal, u"cFile"_s)->text(), path);
            child<QLineEdit>(modal, u"cFile"_s)->clear();
            QCOMPARE(preview->toPlainText(), QString());
            press(modal, u"Cancel"_s);
        }));
        frmCmpProps::setFileQuestion({});
    }
};

QTEST_MAIN(CmpPropsTest)
#include "tst_cmpprops.moc"
