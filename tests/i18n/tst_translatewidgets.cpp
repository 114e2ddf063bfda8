// SPDX-License-Identifier: GPL-3.0-or-later
// Windows, grids, tabs, lists and message boxes shown through the translation layer.
#include "errorlog.h"
#include "isolation.h"
#include "pluginhost.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {
// A translator whose window translation fails, as a broken plug-in would.
class FailingWindowTranslator : public QObject, public ITranslator
{
    Q_OBJECT
    Q_INTERFACES(ITranslator)

public:
    bool TranslateLoad(const QString &) override { return true; }
    QString Translate(const QString &, const QString &text, const QString &, const QString &) override
    {
        return text;
    }
    void TranslateWindow(QObject *) override { throw std::runtime_error("Window not translatable"); }
};

struct SampleWindow
{
    QWidget window;
    QLabel *label = new QLabel(u"Name"_s, &window);
    QPushButton *button = new QPushButton(u"Buttons"_s, &window);
    SampleWindow() { window.setWindowTitle(u"Device Properties"_s); }
};

QStringList tabTexts(const QTabBar *bar)
{
    QStringList texts;
    for (int index = 0; index < bar->count(); ++index)
        texts.append(bar->tabText(index));
    return texts;
}

QStringList headings(const QAbstractItemModel *model)
{
    QStringList texts;
    for (int column = 0; column < model->columnCount(); ++column)
        texts.append(model->headerData(column, Qt::Horizontal).toString());
    return texts;
}
} // namespace

class TestTranslateWidgets : public QObject
{
    Q_OBJECT

private:
    TestIsolation m_scratch;
    QString m_log;

    static void loadTestTranslator()
    {
        qputenv("QUILL_PLUGIN_PATH", QUILL_TEST_PLUGIN_DIR);
        PluginHost::forgetScan();
        QVERIFY(TranslateLoad(u"QSConfig"_s));
    }

    // Runs the same checks once in English and once through the translator plug-in.
    static void withAndWithoutTranslator()
    {
        QTest::addColumn<bool>("translated");
        QTest::newRow("English") << false;
        QTest::newRow("translator") << true;
    }

    static void prepare(bool translated)
    {
        setTranslator(nullptr);
        if (translated)
            loadTestTranslator();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
        m_log = m_scratch.logPath();
    }

    void cleanup()
    {
        setTranslator(nullptr);
        setMsgBoxAnswer({});
        setApplicationTitle(QString());
    }

    // A window's texts, grid and list headings and tab captions: one pass of each helper.
    void windowsHeadingsAndTabsAreTranslatedOnlyByATranslator_data() { withAndWithoutTranslator(); }
    void windowsHeadingsAndTabsAreTranslatedOnlyByATranslator()
    {
        QFETCH(bool, translated);
        prepare(translated);
        const auto expect = [translated](const QStringList &english, const QStringList &german) {
            return translated ? german : english;
        };

        SampleWindow sample;
        TranslateWindow(&sample.window);
        QCOMPARE((QStringList{sample.window.windowTitle(), sample.label->text(), sample.button->text()}),
                 expect({u"Device Properties"_s, u"Name"_s, u"Buttons"_s},
                        {u"Geraeteeigenschaften"_s, u"Bezeichnung"_s, u"Tasten"_s}));
        TranslateWindow(nullptr);

        // Grids: the headings column by column, never a cell; columns without a heading keep
        // showing their number.
        QTableWidget grid(2, 3);
        grid.setHorizontalHeaderLabels({u"Name"_s, u"Extension"_s, u"Speed (s)"_s});
        grid.setItem(0, 0, new QTableWidgetItem(u"Name"_s));
        TranslateGrid(&grid);
        QCOMPARE(headings(grid.model()), expect({u"Name"_s, u"Extension"_s, u"Speed (s)"_s},
                                                {u"Bezeichnung"_s, u"Nebenstelle"_s, u"Speed (s)"_s}));
        QCOMPARE(grid.item(0, 0)->text(), u"Name"_s);
        QTableWidget unlabelled(1, 2);
        TranslateGrid(&unlabelled);
        QVERIFY(!unlabelled.horizontalHeaderItem(0));
        QCOMPARE(headings(unlabelled.model()), QStringList({u"1"_s, u"2"_s}));
        TranslateGrid(nullptr);

        // Tab captions from first to last, on a tab widget or a bare tab bar.
        const QStringList tabsEnglish{u"&General"_s, u"Buttons"_s, u"Statistics"_s};
        const QStringList tabsShown = expect(tabsEnglish, {u"&Allgemein"_s, u"Tasten"_s, u"Statistics"_s});
        QTabWidget tabs;
        QTabBar bar;
        for (const QString &caption : tabsEnglish) {
            tabs.addTab(new QWidget, caption);
            bar.addTab(caption);
        }
        TranslateTabs(&tabs);
        TranslateTabs(&bar);
        QCOMPARE(tabTexts(tabs.tabBar()), tabsShown);
        QCOMPARE(tabTexts(&bar), tabsShown);
        TranslateTabs(static_cast<QTabBar *>(nullptr));

        // List headings, of a tree widget or of a view's model; a view without a model is passed over.
        const QStringList listEnglish{u"Name"_s, u"Extension"_s, u"Notes"_s};
        const QStringList listShown = expect(listEnglish, {u"Bezeichnung"_s, u"Nebenstelle"_s, u"Notes"_s});
        QTreeWidget list;
        list.setHeaderLabels(listEnglish);
        TranslateList(&list);
        QCOMPARE(list.headerItem()->text(0), listShown.at(0));
        QCOMPARE(headings(list.model()), listShown);
        QStandardItemModel model(0, 3);
        model.setHorizontalHeaderLabels(listEnglish);
        QTreeView view;
        view.setModel(&model);
        TranslateList(&view);
        QCOMPARE(headings(&model), listShown);
        QTreeView empty;
        TranslateList(&empty);
        TranslateList(static_cast<QTreeView *>(nullptr));
    }

    void aFailingWindowTranslationIsLoggedAndTheWindowKeepsItsTexts()
    {
        QFile::remove(m_log);
        FailingWindowTranslator failing;
        setTranslator(&failing);
        SampleWindow sample;
        TranslateWindow(&sample.window);
        QCOMPARE(sample.label->text(), u"Name"_s);
        QFile log(m_log);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("Window not translatable  @  TranslateWindow\n"));
    }

    void messageBoxesShowTheTranslatedPromptUnderTheApplicationsTitle_data() { withAndWithoutTranslator(); }
    void messageBoxesShowTheTranslatedPromptUnderTheApplicationsTitle()
    {
        QFETCH(bool, translated);
        prepare(translated);
        QString shownTitle;
        QString shownText;
        QMessageBox::StandardButtons shownButtons;
        setMsgBoxAnswer([&](const QString &title, const QString &text, QMessageBox::StandardButtons buttons) {
            shownTitle = title;
            shownText = text;
            shownButtons = buttons;
            return QMessageBox::No;
        });

        QApplication::setApplicationDisplayName(u"QuillServer"_s);
        const auto pressed = TranslateMsgBox(u"Delete <1> from <2>?"_s, QMessageBox::Yes | QMessageBox::No,
                                             u"201"_s, u"Sales"_s);
        QCOMPARE(pressed, QMessageBox::No);
        QCOMPARE(shownTitle, u"QuillServer"_s);
        QCOMPARE(shownText, translated ? u"201 aus Sales loeschen?"_s : u"Delete 201 from Sales?"_s);
        QCOMPARE(shownButtons, QMessageBox::Yes | QMessageBox::No);

        // Start-up's product name is the title from then on; a title of the caller's own is kept.
        setApplicationTitle(u"Halyard"_s);
        TranslateMsgBox(u"Saved."_s);
        QCOMPARE(shownTitle, u"Halyard"_s);
        QCOMPARE(shownButtons, QMessageBox::Ok);
        TranslateMsgBox(u"Saved."_s, QMessageBox::Ok, {}, {}, u"Halyard Configuration"_s);
        QCOMPARE(shownTitle, u"Halyard Configuration"_s);
    }

    void aRealMessageBoxReturnsTheButtonClicked()
    {
        QString seenTitle;
        QTimer answer;
        answer.setInterval(10);
        QObject::connect(&answer, &QTimer::timeout, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            answer.stop();
            seenTitle = box->windowTitle() + u'|' + box->text();
            QTest::mouseClick(box->button(QMessageBox::Retry), Qt::LeftButton);
        });
        answer.start();
        setApplicationTitle(u"QuillServer"_s);
        const auto pressed = TranslateMsgBox(u"Could not reach <1>."_s,
                                             QMessageBox::Retry | QMessageBox::Cancel, u"server1"_s);
        QCOMPARE(pressed, QMessageBox::Retry);
        QCOMPARE(seenTitle, u"QuillServer|Could not reach server1."_s);
    }
};

QTEST_MAIN(TestTranslateWidgets)
#include "tst_translatewidgets.moc"
