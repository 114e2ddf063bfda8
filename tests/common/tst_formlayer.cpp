// SPDX-License-Identifier: GPL-3.0-or-later
// The form layer every window builds on: one control -> tag table loads and saves a record (mixed
// fields stay out), a window's result updates its list, button rows answer keys, and a faulting
// handler is logged under its label while the window goes on.
#include "buttonrow.h"
#include "errorlog.h"
#include "guarded.h"
#include "isolation.h"
#include "propertywindows.h"
#include "recordform.h"
#include "tagvalue.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class FormLayerTest : public QObject
{
    Q_OBJECT
    TestIsolation m_scratch;

    // The controls of a small window and its table: a text, a number list always written, a
    // choice by text, a check box and a text box of several lines.
    struct Window
    {
        QLineEdit name;
        QComboBox day;
        QComboBox book;
        QCheckBox dial;
        QPlainTextEdit notes;
        RecordForm form;
        Window()
        {
            day.addItems({QString(), u"Mon"_s, u"Tue"_s});
            book.addItems({QString(), u"Customers"_s, u"Suppliers"_s});
            form.text(&name, u"Name"_s)
                .option(&day, u"Day"_s, u"-1"_s, RecordForm::KeepEmpty)
                .choice(&book, u"AB"_s)
                .option(&dial, u"CanDial"_s, u"0"_s)
                .text(&notes, u"Notes"_s, {}, RecordForm::KeepEmpty);
        }
    };

private slots:
    void initTestCase() { QVERIFY(m_scratch.enter()); }
    void init() { ErrorLog::clear(); }

    void aRecordGoesBackAsTheControlsShowIt_data()
    {
        QTest::addColumn<QString>("loaded");
        QTest::addColumn<QString>("saved");
        QTest::newRow("every field") << u"{AB=suppliers}{Name=Desk}{Day=2}{CanDial=1}{Notes=a\nb}"_s
                                     << u"{Name(S4)=Desk}{Day(N1)=2}{AB(S9)=Suppliers}{CanDial(N1)=1}{Notes(S3)=a\nb}"_s;
        QTest::newRow("nothing: defaults, and the fields always written")
            << QString() << u"{Day(N2)=-1}{CanDial(N1)=0}{Notes(S0)=}"_s;
        QTest::newRow("line breaks as stored") << u"{Notes=a\r\nb\r\n}"_s
                                              << u"{Day(N2)=-1}{CanDial(N1)=0}{Notes(S6)=a\r\nb\r\n}"_s;
        QTest::newRow("a book that is gone") << u"{AB=Retired}{Day=0}"_s
                                             << u"{Day(N1)=0}{CanDial(N1)=0}{Notes(S0)=}"_s;
        // Several records at once that disagree: every mixed field stays out of the save.
        QTest::newRow("mixed") << u"{Name= }{Day= }{AB= }{CanDial= }{Notes= }"_s << QString();
    }
    void aRecordGoesBackAsTheControlsShowIt()
    {
        QFETCH(QString, loaded);
        QFETCH(QString, saved);
        Window window;
        window.form.load(loaded);
        QCOMPARE(window.form.record(), saved);
        QCOMPARE(ErrorLog::tail(), QString());
    }

    // A record assembled from several pages: the pages' fields in the given order, then every tag
    // the pages do not show, written back exactly as stored.
    void otherTagsGoBackByteForByte()
    {
        Window first;
        first.form.load({});
        first.name.setText(u"Harbour"_s);
        RecordEntries entries;
        first.form.collect(entries);
        const QString original = u"{Licence(S3)=ABC}{Name=Old}{Port(N3)=007}{Seen(D19)=2026-01-02T03:04:05}{Flag=on}"_s;
        QCOMPARE(RecordForm::assemble({u"CanDial"_s, u"Name"_s, u"Day"_s}, entries, original),
                 u"{CanDial(N1)=0}{Name(S7)=Harbour}{Day(N2)=-1}{Licence(S3)=ABC}{Port(N3)=007}"
                 u"{Seen(D19)=2026-01-02T03:04:05}{Flag=on}"_s);
    }

    void aWindowsResultUpdatesItsList()
    {
        PropertyWindows windows;
        WindowResult next;
        windows.setOpener(u"Routing"_s, [&](const QString &, QWidget *) { return next; });
        int reloads = 0;
        QStringList shown;
        const auto open = [&](bool entryThere) {
            windows.openFromList(
                u"routing"_s, u"4"_s, nullptr,
                [&](const WindowResult &result) {
                    if (entryThere)
                        shown = result.columns;
                    return entryThere;
                },
                [&] { ++reloads; });
        };
        next = WindowResult::cancelled();
        open(true);
        QCOMPARE(reloads, 0);
        next = WindowResult::savedNew();
        open(true);
        QCOMPARE(reloads, 1);
        next = WindowResult::savedExisting(u"4"_s, {u"Night"_s, u"5000"_s});
        open(true);
        QCOMPARE(reloads, 1);
        QCOMPARE(shown, (QStringList{u"Night"_s, u"5000"_s}));
        open(false); // the entry went meanwhile: the list asks again
        QCOMPARE(reloads, 2);
        QCOMPARE(windows.open(u"Scripts"_s, u"-1"_s, nullptr).outcome, WindowResult::Cancelled);
    }

    void buttonRowsAnswerKeysAndGuardTheirHandlers()
    {
        QWidget page;
        QListWidget list(&page);
        QStringList pressed;
        ButtonRow row(u"SButton"_s, {u"&Add..."_s, u"&Edit..."_s, u"&Remove"_s}, &page, u" @ frmMain.SButton_Click"_s,
                      [&](int index) {
                          pressed << QString::number(index);
                          if (index == 0)
                              throw Fault(u"Overflow"_s);
                      });
        row.bindKeys(&list, 1, 2);
        QCOMPARE(row.button(2)->objectName(), u"SButton_2"_s);
        QTest::keyClick(&list, Qt::Key_Return);
        QTest::keyClick(&list, Qt::Key_Delete);
        row.setEnabled(2, false);
        QTest::keyClick(&list, Qt::Key_Delete); // a disabled button is not pressed by its key
        QTest::mouseClick(row.button(0), Qt::LeftButton);
        QCOMPARE(pressed, (QStringList{u"1"_s, u"2"_s, u"0"_s}));
        QVERIFY(ErrorLog::tail().trimmed().endsWith(u"Overflow @ frmMain.SButton_Click"_s));

        // A guarded handler takes as many of the signal's arguments as it wants.
        QLineEdit edit;
        QString seen;
        connectGuarded(&edit, &QLineEdit::textChanged, &edit, u" @ frmScript.Tid_Change"_s, [&](const QString &text) {
            seen = text;
            throw Fault(u"Type mismatch"_s);
        });
        edit.setText(u"7"_s);
        QCOMPARE(seen, u"7"_s);
        QVERIFY(ErrorLog::tail().trimmed().endsWith(u"Type mismatch @ frmScript.Tid_Change"_s));
    }
};

QTEST_MAIN(FormLayerTest)
#include "tst_formlayer.moc"
