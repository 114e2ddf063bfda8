// SPDX-License-Identifier: GPL-3.0-or-later
// Moving fields between records and check boxes, lists and option groups, mixed state included.
#include "controls.h"
#include "errorlog.h"
#include "isolation.h"
#include "tagvalue.h"
#include "utilities.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Entries as the device editor fills them: text plus the number stored with each entry.
void fill(QComboBox &combo)
{
    combo.addItem(u"5 buttons"_s, 9);
    combo.addItem(u"Five"_s, 5);
    combo.addItem(u"Answer"_s); // no number stored
    combo.addItem(u"Transfer"_s, 7);
}

void fill(QListWidget &list)
{
    const QList<std::pair<QString, QVariant>> entries = {
        {u"5 buttons"_s, 9}, {u"Five"_s, 5}, {u"Answer"_s, {}}, {u"Transfer"_s, 7}};
    for (const auto &[text, data] : entries) {
        auto *item = new QListWidgetItem(text, &list);
        if (data.isValid())
            item->setData(Qt::UserRole, data);
    }
}

} // namespace

class TestControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_scratch.enter());
    }

    void init() { ErrorLog::clear(); }

    void listSearchMatchesStoredNumbersOrText_data()
    {
        QTest::addColumn<bool>("comboBox");
        QTest::newRow("combo box") << true;
        QTest::newRow("list widget") << false;
    }
    void listSearchMatchesStoredNumbersOrText()
    {
        QFETCH(bool, comboBox);
        QComboBox combo;
        QListWidget listWidget;
        fill(combo);
        fill(listWidget);
        const QWidget *list = comboBox ? static_cast<QWidget *>(&combo) : &listWidget;

        // The text "5" is not the number 5: it matches "5 buttons" only by its beginning.
        QCOMPARE(ListSearch(list, u"5"_s, false), -1);
        QCOMPARE(ListSearch(list, u"5"_s, true), 0);
        // The number 5 matches the entry storing 5, whatever its text.
        QCOMPARE(ListSearch(list, 5, false), 1);
        QCOMPARE(ListSearch(list, 5, true), 1);
        QCOMPARE(ListSearch(list, 7.0, false), 3);
        QCOMPARE(ListSearch(list, 0, false), 2); // an entry without a number holds 0
        QCOMPARE(ListSearch(list, 42, false), -1);
        // Text matches in any case; whole text unless partial.
        QCOMPARE(ListSearch(list, u"TRANSFER"_s, false), 3);
        QCOMPARE(ListSearch(list, u"trans"_s, false), -1);
        QCOMPARE(ListSearch(list, u"trans"_s, true), 3);
        QCOMPARE(ListSearch(list, u"f"_s, true), 1); // the first match wins
        QCOMPARE(ErrorLog::tail(), u""_s);
    }

    void listSearchOnSomethingElseLogsAndFindsNothing()
    {
        QLabel label;
        QCOMPARE(ListSearch(&label, u"x"_s, false), -1);
        QCOMPARE(ListSearch(nullptr, 5, false), -1);
        const QStringList lines = ErrorLog::tail().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY(
            lines[0].endsWith(u"Object doesn't support this property or method @ basGlobal.ListSearch"_s));
        QVERIFY(lines[1].endsWith(u" @ basGlobal.ListSearch"_s));
    }

    void checkBoxCarriesTheFieldAndItsMixedState()
    {
        QCheckBox box;
        QString vars = u"{CanDial(N1)=1}"_s;

        GetOption(&box, u"1"_s);
        QCOMPARE(box.checkState(), Qt::Checked);
        GetOption(&box, u""_s);
        QCOMPARE(box.checkState(), Qt::Unchecked);
        SetOption(vars, u"CanDial"_s, &box);
        QCOMPARE(getText(vars, u"CanDial"_s), u"0"_s); // a cleared box is stored, as "0"
        GetOption(&box, u"1"_s);
        SetOption(vars, u"CanDial"_s, &box);
        QCOMPARE(getText(vars, u"CanDial"_s), u"1"_s);
        QCOMPARE(Occur(vars, u"CanDial"_s), 1);

        // Mixed: greyed, and the record keeps what it had.
        GetOption(&box, MixedValue);
        QCOMPARE(box.checkState(), Qt::PartiallyChecked);
        QString untouched = u"{Other=1}"_s;
        SetOption(untouched, u"CanDial"_s, &box);
        QCOMPARE(untouched, u"{Other=1}"_s);

        // The administrator decides for all the devices with one click.
        box.show();
        QTest::mouseClick(&box, Qt::LeftButton);
        QCOMPARE(box.checkState(), Qt::Checked);
        SetOption(untouched, u"CanDial"_s, &box);
        QCOMPARE(getText(untouched, u"CanDial"_s), u"1"_s);

        // A box loaded with a real value never offers the greyed state to clicks.
        GetOption(&box, u"1"_s);
        QTest::mouseClick(&box, Qt::LeftButton);
        QCOMPARE(box.checkState(), Qt::Unchecked);
        QTest::mouseClick(&box, Qt::LeftButton);
        QCOMPARE(box.checkState(), Qt::Checked);
        QCOMPARE(ErrorLog::tail(), u""_s);
    }

    void checkBoxRejectsValuesItCannotShow()
    {
        QCheckBox box;
        GetOption(&box, u"1"_s);
        GetOption(&box, u"7"_s);
        GetOption(&box, u"-1"_s);
        QCOMPARE(box.checkState(), Qt::Checked);
        const QStringList lines = ErrorLog::tail().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines[0].endsWith(u"Invalid property value  @  basTRConfig.GetOption"_s));
        // A field holding text reads as 0, as any numeric field does.
        GetOption(&box, u"yes"_s);
        QCOMPARE(box.checkState(), Qt::Unchecked);
    }

    void buttonListsAreSetAndReadByEntryText_data()
    {
        QTest::addColumn<bool>("comboBox");
        QTest::newRow("combo box") << true;
        QTest::newRow("list widget") << false;
    }
    void buttonListsAreSetAndReadByEntryText()
    {
        QFETCH(bool, comboBox);
        QComboBox combo;
        QListWidget listWidget;
        fill(combo);
        fill(listWidget);
        QWidget *list = comboBox ? static_cast<QWidget *>(&combo) : &listWidget;
        list->setObjectName(u"btnAction_2"_s); // any case of "BTN" makes a button list

        GetOption(list, u"transfer"_s);
        QString vars;
        SetOption(vars, u"btn2"_s, list);
        QCOMPARE(getText(vars, u"btn2"_s), u"Transfer"_s);

        // The text "5" names no entry: a button list never selects by number or beginning.
        GetOption(list, u"5"_s);
        QString none = u"{btn2=Answer}"_s;
        SetOption(none, u"btn2"_s, list);
        QCOMPARE(none, u"{btn2=Answer}"_s);

        GetOption(list, u"Five"_s);
        GetOption(list, MixedValue);
        SetOption(none, u"btn2"_s, list);
        QCOMPARE(none, u"{btn2=Answer}"_s);
        QCOMPARE(ErrorLog::tail(), u""_s);
    }

    void otherListsCarryTheSelectedIndex()
    {
        QComboBox combo;
        combo.setObjectName(u"cboMode"_s);
        fill(combo);

        GetOption(&combo, u"2"_s);
        QCOMPARE(combo.currentText(), u"Answer"_s);
        QString vars;
        SetOption(vars, u"Mode"_s, &combo);
        QCOMPARE(getText(vars, u"Mode"_s), u"2"_s);
        GetOption(&combo, u""_s);
        SetOption(vars, u"Mode"_s, &combo);
        QCOMPARE(getText(vars, u"Mode"_s), u"0"_s);

        GetOption(&combo, MixedValue);
        QCOMPARE(combo.currentIndex(), -1);
        SetOption(vars, u"Mode"_s, &combo);
        QCOMPARE(getText(vars, u"Mode"_s), u"0"_s);

        GetOption(&combo, u"1"_s);
        GetOption(&combo, u"9"_s); // past the end: logged, selection kept
        QCOMPARE(combo.currentIndex(), 1);
        QVERIFY(ErrorLog::tail().endsWith(u"Invalid property value  @  basTRConfig.GetOption\n"_s));
    }

    void optionGroupsCarryTheCheckedButtonId()
    {
        QWidget form;
        QButtonGroup group;
        for (int id = 0; id < 3; ++id)
            group.addButton(new QRadioButton(&form), id);

        GetOption(&group, u"2"_s);
        QCOMPARE(group.checkedId(), 2);
        QString vars;
        SetOption(vars, u"Ring"_s, &group);
        QCOMPARE(getText(vars, u"Ring"_s), u"2"_s);
        GetOption(&group, u"0"_s);
        SetOption(vars, u"Ring"_s, &group);
        QCOMPARE(getText(vars, u"Ring"_s), u"0"_s);

        GetOption(&group, MixedValue);
        QCOMPARE(group.checkedId(), -1);
        QVERIFY(group.exclusive());
        SetOption(vars, u"Ring"_s, &group);
        QCOMPARE(getText(vars, u"Ring"_s), u"0"_s);
    }

    void textSourcesSkipOnlyTheMixedValue()
    {
        QString vars = u"{Dept(S5)=Sales}{Ext(S3)=201}"_s;
        SetOption(vars, u"Dept"_s, MixedValue);
        QCOMPARE(getText(vars, u"Dept"_s), u"Sales"_s);
        SetOption(vars, u"Dept"_s, u"Support"_s);
        QCOMPARE(getText(vars, u"Dept"_s), u"Support"_s);
        SetOption(vars, u"Dept"_s, u""_s); // an emptied field is removed, not stored empty
        QCOMPARE(vars, u"{Ext(S3)=201}"_s);
        SetOption(vars, u"Dept"_s, u"  "_s); // two blanks are a value, not the mixed marker
        QCOMPARE(getText(vars, u"Dept"_s), u"  "_s);
    }

    void unsupportedControlsAreLoggedAndTheFormGoesOn()
    {
        QLabel label;
        QString vars = u"{A=1}"_s;
        GetOption(&label, u"1"_s);
        SetOption(vars, u"A"_s, &label);
        GetOption(static_cast<QWidget *>(nullptr), u"1"_s);
        SetOption(vars, u"A"_s, static_cast<const QWidget *>(nullptr));
        QCOMPARE(vars, u"{A=1}"_s);
        const QStringList lines = ErrorLog::tail().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 4);
        QVERIFY(
            lines[0].endsWith(u"Object doesn't support this property or method  @  basTRConfig.GetOption"_s));
        QVERIFY(
            lines[1].endsWith(u"Object doesn't support this property or method  @  basTRConfig.SetOption"_s));
        QVERIFY(lines[2].endsWith(u"  @  basTRConfig.GetOption"_s));
        QVERIFY(lines[3].endsWith(u"  @  basTRConfig.SetOption"_s));
    }

private:
    TestIsolation m_scratch;
};

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
