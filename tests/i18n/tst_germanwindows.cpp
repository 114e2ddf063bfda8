// SPDX-License-Identifier: GPL-3.0-or-later
// The tool in German against the reference server with the demo site: every window's title,
// captions, tips, help texts, placeholders, tabs, headings and list entries, and the questions it
// asks, are German, and the translator meets no text it has no translation for.
#include "Errors.h"
#include "connectingdialog.h"
#include "directorypage.h"
#include "frmAB.h"
#include "frmButton.h"
#include "frmCampaign.h"
#include "frmCmpProps.h"
#include "frmCombo.h"
#include "frmConfig.h"
#include "frmExport.h"
#include "frmImport.h"
#include "frmRouting.h"
#include "frmScript.h"
#include "germancatalogue.h"
#include "logindialog.h"
#include "maintool.h"
#include "modalwindow.h"
#include "msgboxanswers.h"
#include "recordlist.h"
#include "serverfixture.h"
#include "windows.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

namespace {

// Lists that show the values they store, as stored: telephone-system and voice-mail types, the
// connections, the kinds of button actions, the names of scripts, address books and address-book
// plug-ins, a campaign database's tables and columns, and a campaign choice's or result's kind,
// colour, destination table and delay unit. Their first entry "(None)" is a caption where it is one.
const QStringList storedValueLists{u"sType"_s,     u"Comm"_s,   u"sVMType"_s, u"btnType"_s,
                                   u"btnScript"_s, u"rAB"_s,    u"plgName"_s, u"oTable"_s,
                                   u"oId"_s,       u"oTel"_s,   u"oName"_s,   u"oNotes"_s,
                                   u"cType"_s,     u"cColor"_s, u"cTable"_s,  u"lstDelay"_s};
const QStringList firstEntryCaption{u"btnType"_s, u"btnScript"_s};

// Finds English among the texts a window shows: an English text of the catalogue whose German
// differs, or a text with English words in it (a sentence that never passed the translator).
class EnglishFinder
{
public:
    EnglishFinder()
    {
        const QString folder = QStringLiteral(QUILL_TS_DIR);
        for (const CatalogueMessage &message : readCatalogueFile(folder + u"/quill_de.ts"_s) +
                                                   readCatalogueFile(folder + u"/plugins_de.ts"_s)) {
            const QString english = message.context == u"QSConfigKeys"_s
                                        ? (message.comment.isEmpty() ? message.extraComment : message.comment)
                                        : message.source;
            const QStringList texts = english.split(u" / "_s); // a key that stands for two texts
            if (message.translation != english)
                m_english.unite(QSet<QString>(texts.cbegin(), texts.cend()));
        }
    }
    bool catalogueRead() const { return m_english.size() > 300; }
    QStringList found() const { return m_found; }

    void check(const QString &where, const QString &text)
    {
        static const QSet<QString> englishWords{u"the"_s,    u"and"_s,   u"this"_s,   u"to"_s,    u"of"_s,
                                                u"for"_s,    u"with"_s,  u"your"_s,   u"you"_s,   u"is"_s,
                                                u"are"_s,    u"has"_s,   u"been"_s,   u"enter"_s, u"click"_s,
                                                u"select"_s, u"check"_s, u"please"_s, u"from"_s,  u"which"_s};
        static const QRegularExpression nonLetters(u"[^\\p{L}]+"_s);
        bool english = m_english.contains(text);
        for (const QString &word : text.toLower().split(nonLetters, Qt::SkipEmptyParts))
            english = english || englishWords.contains(word);
        if (english && !m_found.contains(where + u": "_s + text))
            m_found << where + u": "_s + text;
    }

    // Everything window and its controls show, shown or hidden; then each control's help text in
    // the window's tip area, and each page's as its tab is chosen.
    void window(QWidget *window, const QString &where)
    {
        check(where, window->windowTitle());
        QList<QWidget *> widgets{window};
        widgets += window->findChildren<QWidget *>();
        for (QWidget *widget : std::as_const(widgets))
            controlTexts(widget, where + u'/' + widget->objectName());
        for (QAction *action : window->findChildren<QAction *>()) {
            check(where, action->text());
            check(where, action->toolTip());
        }
        auto *tip = window->findChild<QLabel *>(u"Tip"_s);
        if (!tip)
            return;
        for (QTabWidget *tabs : window->findChildren<QTabWidget *>()) {
            for (int index = 0; index < tabs->count(); ++index) {
                tabs->setCurrentIndex(index);
                check(where + u" tip of page "_s + QString::number(index), tip->text());
            }
        }
        for (QWidget *widget : std::as_const(widgets)) {
            const QString before = tip->text();
            QFocusEvent focus(QEvent::FocusIn);
            QCoreApplication::sendEvent(widget, &focus);
            if (tip->text() != before)
                check(where + u" tip of "_s + widget->objectName(), tip->text());
        }
    }

private:
    void controlTexts(QWidget *widget, const QString &where)
    {
        check(where, widget->toolTip());
        if (auto *label = qobject_cast<QLabel *>(widget))
            check(where, label->text());
        else if (auto *button = qobject_cast<QAbstractButton *>(widget))
            check(where, button->text());
        else if (auto *group = qobject_cast<QGroupBox *>(widget))
            check(where, group->title());
        else if (auto *edit = qobject_cast<QLineEdit *>(widget))
            check(where, edit->placeholderText());
        else if (auto *plain = qobject_cast<QPlainTextEdit *>(widget))
            check(where, plain->placeholderText());
        else if (auto *menu = qobject_cast<QMenu *>(widget))
            check(where, menu->title());
        else if (auto *tabs = qobject_cast<QTabBar *>(widget)) {
            for (int index = 0; index < tabs->count(); ++index)
                check(where, tabs->tabText(index));
        } else if (auto *combo = qobject_cast<QComboBox *>(widget)) {
            const bool stored = storedValueLists.contains(combo->objectName());
            const int captions = !stored                                           ? combo->count()
                                 : firstEntryCaption.contains(combo->objectName()) ? 1
                                                                                   : 0;
            for (int index = 0; index < std::min(captions, combo->count()); ++index)
                check(where, combo->itemText(index));
        } else if (auto *view = qobject_cast<QAbstractItemView *>(widget); view && view->model()) {
            for (int column = 0; column < view->model()->columnCount(); ++column)
                check(where, view->model()->headerData(column, Qt::Horizontal).toString());
        }
    }

    QSet<QString> m_english;
    QStringList m_found;
};

} // namespace

class TestGermanWindows : public QObject
{
    Q_OBJECT
    std::unique_ptr<ServerFixture> m_fixture;
    std::unique_ptr<MainTool> m_tool;
    std::unique_ptr<TranslatorMisses> m_misses;

    ServerLink &link() const { return m_tool->link; }
    QString scriptCatalogue() const { return m_tool->window.recordList(RecordKind::Scripts)->reply(); }
    // Every English text shown, and every text the translator met without a translation.
    void verifyGerman(const EnglishFinder &finder) const
    {
        const QStringList misses = m_misses->texts();
        QVERIFY2(finder.found().isEmpty() && misses.isEmpty(),
                 qPrintable(u"shown in English:\n"_s + finder.found().join(u'\n') +
                            u"\nwithout a translation:\n"_s + misses.join(u'\n')));
    }

private slots:
    void initTestCase()
    {
        m_fixture = std::make_unique<ServerFixture>();
        m_misses = std::make_unique<TranslatorMisses>();
        QVERIFY(loadGermanTranslator());
        setApplicationTitle(Startup::applicationTitle(u"QuillServer"_s)); // as start-up sets it
        QString error;
        QVERIFY2(m_fixture->start(&error), qPrintable(error));
        m_tool = std::make_unique<MainTool>(m_fixture->relay.url());
        registerWindows(m_tool->window, m_tool->link);
        QVERIFY(m_tool->waitLoaded());
    }
    void cleanupTestCase()
    {
        m_tool.reset();
        m_fixture.reset();
        setTranslator(nullptr);
    }

    void everyWindowShowsGerman()
    {
        EnglishFinder finder;
        QVERIFY(finder.catalogueRead());
        finder.window(&m_tool->window, u"frmMain"_s);

        // The device window as the directory opens it: a new device of each kind, and three
        // extensions at once once their row has arrived.
        const PropertyWindows &windows = m_tool->window.propertyWindows();
        bool shown = false;
        answerModalWindow([&](QWidget *device) {
            shown = QTest::qWaitFor([&] { return device->findChild<QCheckBox *>(u"chk_2"_s)->isChecked(); },
                                    20000);
            auto *kind = device->findChild<QComboBox *>(u"Typ"_s);
            for (int index = 0; shown && index < kind->count(); ++index) {
                kind->setCurrentIndex(index);
                finder.window(device, u"frmConfig "_s + QString::number(index));
            }
            device->findChild<QPushButton *>(u"Cancel"_s)->click();
        });
        windows.open(u"Exts"_s, u"-1"_s, &m_tool->window);
        QVERIFY(shown);
        QStringList extensions;
        for (const QString &row : readList(m_fixture->fetch(u"MAIN-EXTS"_s))) {
            if (getText(row, u"Type"_s) == u"EXT"_s && extensions.size() < 3)
                extensions << getText(row, u"Id"_s);
        }
        answerModalWindow([&](QWidget *device) {
            shown = QTest::qWaitFor(
                [&] { return device->windowTitle() == u"Eigenschaften: Nebenstelle (3 Einträge)"_s; }, 20000);
            finder.window(device, u"frmConfig several"_s);
            device->findChild<QPushButton *>(u"Cancel"_s)->click();
        });
        windows.open(u"Exts"_s, extensions.join(u','), &m_tool->window);
        QVERIFY(shown);

        // The action editor for a button and for an event.
        frmButton action(scriptCatalogue(), {{u"CSV"_s, u"CSV file"_s}});
        action.loadRequest(u"{Cmd=Button}{Index=2}{Type(S10)=Speed Dial}{Number(S3)=201}"_s);
        finder.window(&action, u"frmButton button"_s);
        action.loadRequest(u"{Cmd=Script}{Index=1}"_s);
        finder.window(&action, u"frmButton event"_s);

        // The address-book window on the demo site's first book, and the dialogs of the shipped
        // address-book plug-ins for a book, a button and a user.
        frmAB book(link(), {{u"CSV"_s, u"CSV file"_s}, {u"Folder"_s, u"Contacts folder"_s}});
        book.findChild<QLineEdit *>(u"Tid"_s)->setText(
            ServerFixture::replyIds(m_fixture->fetch(u"MAIN-AB"_s)).value(0));
        QVERIFY(QTest::qWaitFor([&] { return !book.findChild<QLineEdit *>(u"aName"_s)->text().isEmpty(); },
                                20000));
        finder.window(&book, u"frmAB"_s);
        const std::pair<QString, QString> pluginDialogs[]{{u"plgCSV.Session"_s, u"Data"_s},
                                                          {u"plgCSV.Session"_s, u"Action"_s},
                                                          {u"plgFolder.Session"_s, u"Data"_s},
                                                          {u"plgFolder.Session"_s, u"User"_s}};
        for (const auto &[className, level] : pluginDialogs) {
            auto *plugin = qobject_cast<IPluginSession *>(CreateObject(className));
            QVERIFY2(plugin, qPrintable(className));
            answerModalWindow([&, where = QString(className + u' ' + level)](QWidget *dialog) {
                finder.window(dialog, where);
                dialog->close();
            });
            plugin->Configure(level, QString(), &book);
        }

        frmScript script(link());
        finder.window(&script, u"frmScript"_s);
        frmRouting routing(link(), {u"Customers"_s}, 1);
        finder.window(&routing, u"frmRouting"_s);
        frmCombo choice(link());
        finder.window(&choice, u"frmCombo"_s);
        Errors errors;
        finder.window(&errors, u"Errors"_s);

        // The log-in dialog with the server's reason, and the connecting window after a failure.
        LoginDialog login;
        login.setReason(u"Unknown user or wrong password"_s);
        finder.window(&login, u"LoginDialog"_s);
        usrSession idle;
        ConnectingDialog connecting(idle);
        QTimer::singleShot(0, &connecting, [&] {
            finder.window(&connecting, u"ConnectingDialog"_s);
            connecting.findChild<QPushButton *>(u"Quit"_s)->click();
        });
        connecting.askAfterFailure(u"The server did not answer in time."_s);

        verifyGerman(finder);
    }

    // The campaign window on a demo campaign, page by page, with its database question; and the
    // choice/result window it opens for a new choice and a new result, with its file question and
    // a page too big to preview. Kinds, colours and delay units are stored as shown: they stay
    // English.
    void campaignWindowsShowGerman()
    {
        EnglishFinder finder;
        QVERIFY(finder.catalogueRead());
        frmCampaign campaign(link());
        const QString id = ServerFixture::replyIds(m_fixture->fetch(u"MAIN-CAMPAIGNS"_s)).value(0);
        QVERIFY(!id.isEmpty());
        campaign.findChild<QLineEdit *>(u"Tid"_s)->setText(id);
        QVERIFY(QTest::qWaitFor([&] { return campaign.isLoaded() && !campaign.isListing(); }, 20000));
        // The demo campaign's database is not on this machine: the message around the reader's own
        // reason is German (the reason itself comes from the reader untranslated). The last page's
        // help text then takes its place, so that every page's is seen below.
        const QString source = campaign.findChild<QLineEdit *>(u"oSource"_s)->text();
        const QLabel *tip = campaign.findChild<QLabel *>(u"Tip"_s);
        const QString failed = u"Die Datenbank "_s + source + u" kann nicht gelesen werden: "_s;
        QVERIFY2(QTest::qWaitFor([&] { return tip->text().startsWith(failed); }, 20000),
                 qPrintable(tip->text()));
        campaign.findChild<QTabWidget *>(u"Tabs"_s)->setCurrentIndex(2);
        finder.window(&campaign, u"frmCampaign"_s);
        auto *menus = campaign.findChild<QTreeWidget *>(u"Menus"_s);
        QVERIFY(menus->topLevelItemCount() > 0);
        finder.check(u"frmCampaign/Menus root"_s, menus->topLevelItem(0)->text(0));

        QStringList questions;
        answerModalWindow([&](QWidget *dialog) {
            questions << dialog->windowTitle();
            if (auto *files = qobject_cast<QFileDialog *>(dialog))
                questions << files->nameFilters();
            dialog->close();
        });
        QTest::mouseClick(campaign.findChild<QPushButton *>(u"OSel"_s), Qt::LeftButton);
        QCOMPARE(questions, (QStringList{u"Datenbank auswählen (.mdb)"_s, u"Datenbankdateien (*.mdb)"_s}));

        QTemporaryFile bigPage(QDir::tempPath() + u"/bigpage-XXXXXX.htm"_s);
        QVERIFY(bigPage.open() && bigPage.resize(frmCmpProps::MaxPreviewBytes + 1));
        questions.clear();
        frmCmpProps::setFileQuestion(
            [&](QWidget *, const QString &title, const QString &filter, const QString &) {
                questions << title << filter.section(u" ("_s, 0, 0);
                return QString();
            });
        menus->setCurrentItem(menus->topLevelItem(0));
        const std::pair<QString, QStringList> openers[]{{u"BMenu_0"_s, {frmCmpProps::choiceKind()}},
                                                        {u"BResults_0"_s, frmCmpProps::resultKinds()}};
        for (const auto &[button, kinds] : openers) {
            QString fault = u"not opened"_s;
            answerModalWindow([&, button = button, kinds = kinds](QWidget *props) {
                fault.clear();
                const QString where = u"frmCmpProps "_s + button;
                finder.window(props, where);
                finder.check(where + u"/cName"_s, props->findChild<QLineEdit *>(u"cName"_s)->text());
                const auto entries = [props](const QString &name) {
                    QStringList texts;
                    auto *list = props->findChild<QComboBox *>(name);
                    for (int index = 0; index < list->count(); ++index)
                        texts << list->itemText(index);
                    return texts;
                };
                if (entries(u"cType"_s) != kinds || entries(u"cColor"_s) != frmCmpProps::colorNames() ||
                    entries(u"lstDelay"_s) != QStringList{u"Minutes"_s, u"Hours"_s, u"Days"_s})
                    fault = u"stored values changed: "_s +
                            (entries(u"cType"_s) + entries(u"cColor"_s) + entries(u"lstDelay"_s)).join(u',');
                props->findChild<QPushButton *>(u"bFile"_s)->click();
                props->findChild<QLineEdit *>(u"cFile"_s)->setText(bigPage.fileName());
                const QString preview = props->findChild<QTextBrowser *>(u"cPreview"_s)->toPlainText();
                if (preview.isEmpty())
                    fault += u" no note instead of the page"_s;
                finder.check(where + u"/cPreview"_s, preview);
                props->findChild<QPushButton *>(u"Cancel"_s)->click();
            });
            QTest::mouseClick(campaign.findChild<QPushButton *>(button), Qt::LeftButton);
            QVERIFY2(fault.isEmpty(), qPrintable(button + u": "_s + fault));
        }
        frmCmpProps::setFileQuestion({});
        QCOMPARE(questions.size(), 4);
        for (const QString &question : std::as_const(questions))
            finder.check(u"frmCmpProps file question"_s, question);
        verifyGerman(finder);
    }

    // The questions of the lists and windows, answered No so that nothing changes.
    void questionsAreGerman()
    {
        QStringList asked;
        answerMessageBoxes(QMessageBox::No, asked);
        const auto removeFirst = [](QAbstractItemView *list, QPushButton *remove) {
            list->setCurrentIndex(list->model()->index(0, 0));
            list->selectionModel()->select(list->currentIndex(),
                                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            remove->click();
        };
        DirectoryPage *directory = m_tool->window.directoryPage();
        removeFirst(directory->findChild<QAbstractItemView *>(u"List"_s), directory->button(2));
        for (RecordKind kind :
             {RecordKind::AddressBooks, RecordKind::Campaigns, RecordKind::Routing, RecordKind::Scripts}) {
            RecordList *list = m_tool->window.recordList(kind);
            removeFirst(list->findChild<QAbstractItemView *>(), list->button(RecordList::RemoveButton));
        }
        frmConfig device(link());
        device.findChild<QLineEdit *>(u"Lid"_s)->setText(u"-1"_s);
        QVERIFY(
            QTest::qWaitFor([&] { return device.findChild<QCheckBox *>(u"chk_2"_s)->isChecked(); }, 20000));
        device.findChild<QPushButton *>(u"OK"_s)->click();
        askKeepTrying(QString());
        askKeepTrying(u"The server did not answer in time."_s);
        setMsgBoxAnswer({});

        QCOMPARE(asked.size(), 8);
        EnglishFinder finder;
        for (const QString &question : asked.first(7))
            finder.check(u"question"_s, question);
        verifyGerman(finder);
        QVERIFY(asked.contains(u"Möchten Sie den ausgewählten Eintrag (Kampagne) wirklich entfernen?"_s));
        QCOMPARE(asked.constLast(),
                 u"Der Server antwortet nicht (Der Server hat nicht rechtzeitig geantwortet.). "
                 u"Weiter versuchen, eine Verbindung herzustellen?"_s);
    }

    // The directory's Import window with a plan of new, changed, rejected and cut rows, before and
    // after sending, and its Export window before and after writing a file: captions, filter,
    // headings, states, changes, findings, summary and report.
    void bulkWindowsShowGerman()
    {
        EnglishFinder finder;
        QVERIFY(finder.catalogueRead());
        QTemporaryDir files;
        const QString sheet = files.filePath(u"geraete.csv"_s);
        {
            QFile file(sheet);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("Ext,Name,Type,Dept\r\n200,Ute Quill,,Reception\r\n9401,Neu Eins,EXT,Verkauf\r\n"
                       "9402,Neu Zwei,PHONE,\r\n9403,Neu Drei,AGENT,Lager,Nord\r\n"
                       "9404,Neuer Arbeitsplatz im Lager Nord,EXT,Lager\r\n");
        }
        frmImport::setFileChooser([&] { return sheet; });
        DirectoryPage *directory = m_tool->window.directoryPage();
        directory->findChild<QPushButton *>(u"Import"_s)->click();
        auto *import = m_tool->window.findChild<frmImport *>();
        QVERIFY(import);
        QVERIFY(QTest::qWaitFor([&] { return import->step() == frmImport::Step::Planned; }, 20000));
        const auto previewTexts = [&](const QString &where) {
            const QAbstractItemModel *preview = import->findChild<QTableView *>(u"Preview"_s)->model();
            QVERIFY(preview->rowCount() == 5);
            for (int row = 0; row < preview->rowCount(); ++row) {
                finder.check(where, preview->index(row, 2).data().toString());
                finder.check(where, preview->index(row, 3).data().toString());
            }
            finder.check(where, import->findChild<QPlainTextEdit *>(u"Findings"_s)->toPlainText());
        };
        finder.window(import, u"frmImport"_s);
        previewTexts(u"frmImport/Preview"_s);
        import->findChild<QCheckBox *>(u"Partial"_s)->click();
        import->findChild<QPushButton *>(u"Send"_s)->click();
        QVERIFY(QTest::qWaitFor([&] { return import->step() == frmImport::Step::Sent; }, 20000));
        finder.window(import, u"frmImport sent"_s);
        QCOMPARE(import->findChild<QLabel *>(u"Status"_s)->text(), u"Alle 3 Zeilen wurden geschrieben."_s);
        import->close();
        frmImport::setFileChooser({});

        const QString exported = files.filePath(u"export.csv"_s);
        frmExport::setFileChooser([&] { return exported; });
        directory->findChild<QPushButton *>(u"Export"_s)->click();
        auto *exportWindow = m_tool->window.findChild<frmExport *>();
        QVERIFY(exportWindow);
        // The fields are named as the file's title row names them; the passwords' entry says what
        // it holds, and ticking it shows the note about them.
        auto *fields = exportWindow->findChild<QListWidget *>(u"Fields"_s);
        for (int row = 0; row < fields->count(); ++row) {
            if (fields->item(row)->text().startsWith(u"Password "_s)) {
                fields->item(row)->setCheckState(Qt::Checked);
                finder.check(u"frmExport/Fields"_s, fields->item(row)->text());
            }
        }
        QVERIFY(!exportWindow->findChild<QLabel *>(u"PasswordNote"_s)->isHidden());
        finder.window(exportWindow, u"frmExport"_s);
        exportWindow->findChild<QRadioButton *>(u"AllDevices"_s)->click();
        exportWindow->findChild<QPushButton *>(u"OK"_s)->click();
        auto *status = exportWindow->findChild<QLabel *>(u"Status"_s);
        QVERIFY(QTest::qWaitFor([&] { return status->text().endsWith(u"geschrieben."_s); }, 20000));
        // The file's name aside: a temporary folder's name may hold any letters.
        finder.check(u"frmExport/Status"_s, QString(status->text()).remove(exported));
        finder.check(u"frmExport/Cancel"_s, exportWindow->findChild<QPushButton *>(u"Cancel"_s)->text());
        exportWindow->close();
        frmExport::setFileChooser({});
        verifyGerman(finder);
    }
};

QTEST_MAIN(TestGermanWindows)
#include "tst_germanwindows.moc"
