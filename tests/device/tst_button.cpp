// SPDX-License-Identifier: GPL-3.0-or-later
// The button and event action editor: the kinds it offers, the panel each kind shows, a loaded
// action, a script's parameter rows, the action string OK hands back, and plug-in actions set up
// through a real plug-in.
#include "frmButton.h"
#include "isolation.h"
#include "modalwindow.h"
#include "tagvalue.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
// A tagged-value string of names and values in turn, written with AddVar.
QString entry(const QStringList &namesAndValues)
{
    QString vars;
    for (qsizetype i = 0; i + 1 < namesAndValues.size(); i += 2)
        AddVar(vars, namesAndValues[i], namesAndValues[i + 1]);
    return vars;
}

// Two scripts as the main window keeps them; only the second has parameters.
const QString scripts = entry(
    {u"ListCount"_s, u"2"_s, u"List1"_s, entry({u"Name"_s, u"Greeting"_s, u"Display"_s, u"Greet"_s}),
     u"List2"_s,
     entry({u"Name"_s, u"Queue Call"_s, u"Params"_s, u"Queue=1,Mode=Fast"_s, u"Display"_s, u"Queue"_s})});
// "SAMPLE" repeats the first plug-in's name and is offered once.
const frmButton::PluginList plugins{{u"SampleAction"_s, u"Sample"_s},
                                    {u"Sample"_s, u"Sample book"_s},
                                    {u"Again"_s, u"SAMPLE"_s},
                                    {u"Missing"_s, u"Missing"_s}};

template <typename T = QLineEdit> T *control(QWidget &dialog, const QString &name)
{
    return dialog.findChild<T *>(name);
}

QStringList entries(QComboBox *list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->itemText(i);
    return texts;
}

void choose(QWidget &dialog, const QString &list, const QString &text)
{
    QComboBox *combo = control<QComboBox>(dialog, list);
    QVERIFY(combo->findText(text) >= 0);
    combo->setCurrentIndex(combo->findText(text));
}
} // namespace

class ButtonTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }

    void buttonsAndEventsOfferTheirKinds()
    {
        frmButton dialog(scripts, plugins);
        dialog.loadRequest(u"{Cmd=Button}{Index=2}"_s);
        QCOMPARE(dialog.windowTitle(), u"Edit Button"_s);
        const QStringList pluginKinds = u"Sample action|Sample book action|Missing action"_s.split(u'|');
        const QStringList builtIn =
            u"Answer|Answer/Hangup|Conference|Deflect Call|Dial Clipboard|Extension|Hangup|"
            u"Hold/Unhold|Reconnect|Set Callback|Set Result|Show Address Book|Show Call History|"
            u"Show Contact|Show Extensions|Show Phone|Show Todo|Speed Dial|Transfer"_s.split(u'|');
        QCOMPARE(entries(control<QComboBox>(dialog, u"btnType"_s)),
                 QStringList{u"(None)"_s} + builtIn + pluginKinds + QStringList{u"(Script)"_s});
        QCOMPARE(entries(control<QComboBox>(dialog, u"btnScript"_s)),
                 (QStringList{u"(None)"_s, u"Greeting"_s, u"Queue Call"_s}));
        QVERIFY(!control(dialog, u"btnDisplay"_s)->isHidden());

        dialog.loadRequest(u"{Cmd=Script}{Index=0}"_s);
        QCOMPARE(dialog.windowTitle(), u"Edit Event"_s);
        QCOMPARE(entries(control<QComboBox>(dialog, u"btnType"_s)),
                 QStringList{u"(None)"_s} + pluginKinds + QStringList{u"(Script)"_s});
        QVERIFY(control(dialog, u"btnDisplay"_s)->isHidden());
    }

    void eachKindShowsOnlyItsPanel_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("panel");
        QTest::newRow("deflect call") << u"Speed Dial"_s << u"Deflect Call"_s << u"extPanel"_s;
        QTest::newRow("extension") << u"Set Result"_s << u"Extension"_s << u"extPanel"_s;
        QTest::newRow("speed dial") << u"Extension"_s << u"Speed Dial"_s << u"numberPanel"_s;
        QTest::newRow("set result") << u"(Script)"_s << u"Set Result"_s << u"resultPanel"_s;
        QTest::newRow("script") << u"Sample action"_s << u"(Script)"_s << u"scriptPanel"_s;
        QTest::newRow("plug-in action") << u"Extension"_s << u"Missing action"_s << u"pluginPanel"_s;
        QTest::newRow("plain kind") << u"Sample action"_s << u"Hangup"_s << QString();
    }
    void eachKindShowsOnlyItsPanel()
    {
        QFETCH(QString, from);
        QFETCH(QString, kind);
        QFETCH(QString, panel);
        frmButton dialog(scripts, plugins);
        dialog.loadRequest(u"{Cmd=Button}{Index=1}"_s + entry({u"Type"_s, from}));
        choose(dialog, u"btnType"_s, kind);
        for (const QString &name :
             {u"extPanel"_s, u"resultPanel"_s, u"numberPanel"_s, u"scriptPanel"_s, u"pluginPanel"_s})
            QVERIFY2(control<QWidget>(dialog, name)->isHidden() == (name != panel), qPrintable(name));
    }

    void scriptRowsHoldTheActionsValuesOrTheDefaults_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QString>("caption");
        QTest::newRow("no values") << u"{Cmd=Button}{Index=1}{Type=(Script)}{Script=queue call}"_s
                                   << QStringList{u"Queue:=1"_s, u"Mode:=Fast"_s} << u"Queue"_s;
        QTest::newRow("values and caption")
            << u"{Cmd=Button}{Index=1}{Type=(Script)}{Script=Queue Call}{Display=Q7}{Mode=Slow}{Queue=7}"_s
            << QStringList{u"Queue:=7"_s, u"Mode:=Slow"_s} << u"Q7"_s;
        QTest::newRow("event") << u"{Cmd=Script}{Index=4}{Type=(Script)}{Script=Queue Call}{Queue(S0)=}"_s
                               << QStringList{u"Queue:="_s, u"Mode:=Fast"_s} << u"Queue"_s;
    }
    void scriptRowsHoldTheActionsValuesOrTheDefaults()
    {
        QFETCH(QString, request);
        QFETCH(QStringList, rows);
        QFETCH(QString, caption);
        frmButton dialog(scripts, plugins);
        dialog.loadRequest(request);
        QStringList shown;
        for (int row = 0; QLineEdit *box = control(dialog, u"btnParam_"_s + QString::number(row)); ++row)
            shown << dialog.findChild<QLabel *>(u"lblParam_"_s + QString::number(row))->text() + u'=' +
                         box->text();
        QCOMPARE(shown, rows);
        QCOMPARE(control(dialog, u"btnDisplay"_s)->text(), caption);

        choose(dialog, u"btnScript"_s, u"Greeting"_s);
        QVERIFY(!control(dialog, u"btnParam_0"_s));
    }

    void okHandsBackTheActionString_data()
    {
        QTest::addColumn<QString>("request");
        QTest::addColumn<QStringList>("choices"); // kind, then script
        QTest::addColumn<QStringList>("typed");
        QTest::addColumn<QString>("action");
        const QString button = u"{Cmd=Button}{Index=4}"_s;
        QTest::newRow("speed dial") << button << QStringList{u"Speed Dial"_s}
                                    << QStringList{u"btnDisplay=Boss"_s, u"btnNumber=01234"_s}
                                    << entry({u"Type"_s, u"Speed Dial"_s, u"Display"_s, u"Boss"_s,
                                              u"Number"_s, u"01234"_s});
        QTest::newRow("deflect call")
            << button << QStringList{u"Deflect Call"_s}
            << QStringList{u"btnExt=201"_s, u"btnDisplay=To 201"_s}
            << entry({u"Type"_s, u"Deflect Call"_s, u"Display"_s, u"To 201"_s, u"BtnExt"_s, u"201"_s});
        QTest::newRow("set result, loaded")
            << button + entry({u"Type"_s, u"set result"_s, u"Results"_s, u"Sale"_s, u"Number"_s, u"0123"_s,
                               u"Types"_s, u"In"_s, u"BtnExt"_s, u"201"_s, u"Display"_s, u"Wrap"_s})
            << QStringList() << QStringList()
            << entry({u"Type"_s, u"Set Result"_s, u"Display"_s, u"Wrap"_s, u"BtnExt"_s, u"201"_s, u"Number"_s,
                      u"0123"_s, u"Types"_s, u"In"_s, u"Results"_s, u"Sale"_s});
        QTest::newRow("script") << button << QStringList{u"(Script)"_s, u"Queue Call"_s}
                                << QStringList{u"btnParam_1=Slow"_s}
                                << entry({u"Type"_s, u"(Script)"_s, u"Script"_s, u"Queue Call"_s,
                                          u"Display"_s, u"Queue"_s, u"Queue"_s, u"1"_s, u"Mode"_s,
                                          u"Slow"_s});
        QTest::newRow("plug-in action")
            << button + entry({u"Type"_s, u"Sample action"_s, u"Config"_s, u"{Mode=1}"_s}) << QStringList()
            << QStringList()
            << entry({u"Type"_s, u"Sample action"_s, u"Display"_s, u"Sample action"_s, u"Config"_s,
                      u"{Mode=1}"_s});
        QTest::newRow("button without action")
            << button + u"{Type(S6)=(None)}"_s << QStringList() << QStringList() << u"{Type(S6)=(None)}"_s;
        QTest::newRow("event script")
            << u"{Cmd=Script}{Index=4}{Display=Old}"_s << QStringList{u"(Script)"_s, u"Queue Call"_s}
            << QStringList{u"btnParam_0=3"_s}
            << entry({u"Type"_s, u"(Script)"_s, u"Script"_s, u"Queue Call"_s, u"Queue"_s, u"3"_s, u"Mode"_s,
                      u"Fast"_s});
    }
    void okHandsBackTheActionString()
    {
        QFETCH(QString, request);
        QFETCH(QStringList, choices);
        QFETCH(QStringList, typed);
        QFETCH(QString, action);
        frmButton dialog(scripts, plugins);
        dialog.loadRequest(request);
        if (!choices.isEmpty())
            choose(dialog, u"btnType"_s, choices.takeFirst());
        if (!choices.isEmpty())
            choose(dialog, u"btnScript"_s, choices.takeFirst());
        for (const QString &field : typed)
            control(dialog, field.section(u'=', 0, 0))->setText(field.section(u'=', 1));
        QTest::mouseClick(control<QPushButton>(dialog, u"OK"_s), Qt::LeftButton);
        QCOMPARE(dialog.outcome().outcome, ButtonResult::Stored);
        QCOMPARE(dialog.outcome().index, 4);
        QCOMPARE(dialog.outcome().action, action);
        QCOMPARE(dialog.outcome().display,
                 request.startsWith(u"{Cmd=Button}"_s) ? getText(action, u"Display"_s) : QString());
    }

    void editAnswersHowTheRowChanges()
    {
        // An event left without a kind is cleared; Cancel leaves the row, whatever was chosen.
        const QList<std::tuple<QString, QString, ButtonResult::Outcome>> cases{
            {u"{Cmd=Script}{Index=5}{Type=(Script)}{Script=Greeting}"_s, u"OK"_s, ButtonResult::Cleared},
            {u"{Cmd=Button}{Index=5}{Type=Hangup}"_s, u"Cancel"_s, ButtonResult::Cancelled}};
        for (const auto &[request, pressed, outcome] : cases) {
            frmButton dialog(scripts, plugins);
            answerModalWindow([button = pressed](QWidget *window) {
                choose(*window, u"btnType"_s, u"(None)"_s);
                QTest::mouseClick(control<QPushButton>(*window, button), Qt::LeftButton);
            });
            const ButtonResult result = dialog.Edit(request, u"Edit"_s);
            QCOMPARE(result.outcome, outcome);
            QCOMPARE(result.index, 5);
            QVERIFY(result.action.isEmpty());
        }
    }

    void pluginActionsAreConfiguredByTheirPlugin()
    {
        qputenv("QUILL_PLUGIN_PATH", QUILL_TEST_PLUGIN_DIR);
        PluginHost::forgetScan();
        frmButton dialog(scripts, plugins);
        dialog.loadRequest(u"{Cmd=Button}{Index=1}"_s +
                           entry({u"Type"_s, u"Sample action"_s, u"Config"_s, u"{Mode=1}"_s}));
        dialog.show();
        QLineEdit *config = control(dialog, u"btnConfig"_s);
        QPushButton *configure = control<QPushButton>(dialog, u"Configure"_s);
        QTest::mouseClick(configure, Qt::LeftButton);
        const QString configured = u"{Mode=1}{Level=Action}{Owner=frmButton}"_s;
        QCOMPARE(config->text(), configured);

        // A plug-in without settings for actions, and one that is not installed, change nothing.
        for (const QString &kind : {u"Sample book action"_s, u"Missing action"_s}) {
            choose(dialog, u"btnType"_s, kind);
            QTest::mouseClick(configure, Qt::LeftButton);
            QCOMPARE(config->text(), configured);
            QVERIFY(dialog.isVisible());
        }
        QCOMPARE(dialog.outcome().outcome, ButtonResult::Cancelled);
        QVERIFY(!QFile::exists(m_scratch.logPath()));
    }
};

QTEST_MAIN(ButtonTest)
#include "tst_button.moc"
