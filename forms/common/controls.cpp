// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls.h"

#include "errorlog.h"
#include "tagvalue.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>

#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString getOptionLabel = u"  @  basTRConfig.GetOption"_s;
const QString setOptionLabel = u"  @  basTRConfig.SetOption"_s;
const QString listSearchLabel = u" @ basGlobal.ListSearch"_s;

// The fault texts the other clients log for the same mistakes, so that logs read alike.
[[noreturn]] void failNoObject()
{
    throw Fault(u"Object variable or With block variable not set"_s);
}
[[noreturn]] void failUnsupported()
{
    throw Fault(u"Object doesn't support this property or method"_s);
}
[[noreturn]] void failInvalidValue()
{
    throw Fault(u"Invalid property value"_s);
}

bool isNumber(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

// The entries of a list control, whatever its class.
struct ListEntries
{
    int count = 0;
    std::function<QString(int)> text;
    std::function<QVariant(int)> data;
};

ListEntries entriesOf(const QWidget *list)
{
    if (const auto *combo = qobject_cast<const QComboBox *>(list)) {
        return {combo->count(), [combo](int i) { return combo->itemText(i); },
                [combo](int i) { return combo->itemData(i, Qt::UserRole); }};
    }
    if (const auto *listWidget = qobject_cast<const QListWidget *>(list)) {
        return {listWidget->count(), [listWidget](int i) { return listWidget->item(i)->text(); },
                [listWidget](int i) { return listWidget->item(i)->data(Qt::UserRole); }};
    }
    if (!list)
        failNoObject();
    failUnsupported();
}

bool isList(const QWidget *control)
{
    return qobject_cast<const QComboBox *>(control) || qobject_cast<const QListWidget *>(control);
}

// The selected entry, -1 for none. A list widget's current row counts only while it is selected.
int selectedIndex(const QWidget *list)
{
    if (const auto *combo = qobject_cast<const QComboBox *>(list))
        return combo->currentIndex();
    const auto *listWidget = qobject_cast<const QListWidget *>(list);
    const QListWidgetItem *current = listWidget->currentItem();
    return current && current->isSelected() ? listWidget->currentRow() : -1;
}

void selectIndex(QWidget *list, int index)
{
    if (auto *combo = qobject_cast<QComboBox *>(list)) {
        combo->setCurrentIndex(index);
        return;
    }
    auto *listWidget = qobject_cast<QListWidget *>(list);
    listWidget->setCurrentRow(index);
    if (index < 0)
        listWidget->clearSelection();
}

int entryCount(const QWidget *list)
{
    return entriesOf(list).count;
}

QString entryText(const QWidget *list, int index)
{
    return entriesOf(list).text(index);
}

// The whole number a field's text stands for, as a control's value.
long long optionNumber(const QString &value)
{
    const double number = std::nearbyint(leadingNumber(value));
    if (!(std::abs(number) < 2.0e9))
        failInvalidValue();
    return static_cast<long long>(number);
}

void setList(QWidget *list, const QString &value)
{
    if (value == MixedValue) {
        selectIndex(list, -1);
        return;
    }
    if (isButtonList(list)) {
        selectIndex(list, ListSearch(list, value, false));
        return;
    }
    const long long index = optionNumber(value);
    if (index < -1 || index >= entryCount(list))
        failInvalidValue();
    selectIndex(list, int(index));
}

// A check box's value as records hold it: 0 cleared, 1 ticked, 2 greyed (Qt numbers the last
// two the other way round).
constexpr int Cleared = 0;
constexpr int Ticked = 1;
constexpr int Greyed = 2;

Qt::CheckState toCheckState(long long value)
{
    switch (value) {
    case Cleared:
        return Qt::Unchecked;
    case Ticked:
        return Qt::Checked;
    case Greyed:
        return Qt::PartiallyChecked;
    default:
        failInvalidValue();
    }
}

int checkValue(Qt::CheckState state)
{
    return state == Qt::Checked ? Ticked : state == Qt::PartiallyChecked ? Greyed : Cleared;
}

void setCheckBox(QCheckBox *box, const QString &value)
{
    const Qt::CheckState state = toCheckState(value == MixedValue ? Greyed : optionNumber(value));
    // Only a greyed box offers the greyed state to the user, so that clicking it can put the
    // field back to "leave as it is"; every other box stays a plain two-state box.
    box->setTristate(state == Qt::PartiallyChecked);
    box->setCheckState(state);
}

void uncheckAll(QButtonGroup *group)
{
    const bool exclusive = group->exclusive();
    group->setExclusive(false); // an exclusive group never lets its last button go
    const QList<QAbstractButton *> buttons = group->buttons();
    for (QAbstractButton *button : buttons)
        button->setChecked(false);
    group->setExclusive(exclusive);
}

} // namespace

bool isButtonList(const QObject *control)
{
    return control && control->objectName().startsWith(u"BTN"_s, Qt::CaseInsensitive);
}

int ListSearch(const QWidget *list, const QVariant &value, bool partial)
{
    int found = -1;
    Guard(listSearchLabel, [&] {
        const ListEntries entries = entriesOf(list);
        const bool byNumber = isNumber(value);
        const double number = value.toDouble();
        const QString text = value.toString();
        for (int i = 0; i < entries.count; ++i) {
            bool match = false;
            if (byNumber)
                match = entries.data(i).toDouble() == number; // no number stored reads as 0
            else if (partial)
                match = entries.text(i).startsWith(text, Qt::CaseInsensitive);
            else
                match = entries.text(i).compare(text, Qt::CaseInsensitive) == 0;
            if (match) {
                found = i;
                return;
            }
        }
    });
    return found;
}

void GetOption(QWidget *control, const QString &value)
{
    Guard(getOptionLabel, [&] {
        if (!control)
            failNoObject();
        if (auto *box = qobject_cast<QCheckBox *>(control))
            setCheckBox(box, value);
        else if (isList(control))
            setList(control, value);
        else
            failUnsupported();
    });
}

void GetOption(QButtonGroup *group, const QString &value)
{
    Guard(getOptionLabel, [&] {
        if (!group)
            failNoObject();
        QAbstractButton *button = value == MixedValue ? nullptr : group->button(int(optionNumber(value)));
        if (button)
            button->setChecked(true);
        else
            uncheckAll(group);
    });
}

void SetOption(QString &vars, const QString &name, const QWidget *control)
{
    Guard(setOptionLabel, [&] {
        if (!control)
            failNoObject();
        if (const auto *box = qobject_cast<const QCheckBox *>(control)) {
            const int value = checkValue(box->checkState());
            if (value != Greyed)
                AddVar(vars, name, value, true);
        } else if (isList(control)) {
            const int index = selectedIndex(control);
            if (index < 0)
                return;
            if (isButtonList(control))
                AddVar(vars, name, entryText(control, index), true);
            else
                AddVar(vars, name, index, true);
        } else {
            failUnsupported();
        }
    });
}

void SetOption(QString &vars, const QString &name, const QButtonGroup *group)
{
    Guard(setOptionLabel, [&] {
        if (!group)
            failNoObject();
        const int id = group->checkedId();
        if (id != -1)
            AddVar(vars, name, id, true);
    });
}

void SetOption(QString &vars, const QString &name, const QString &text)
{
    Guard(setOptionLabel, [&] {
        if (text != MixedValue)
            AddVar(vars, name, text);
    });
}

void SetListOption(QString &vars, const QString &name, const QString &text, const QString &loaded)
{
    if (text.isEmpty() && !loaded.isEmpty() && loaded != MixedValue)
        Guard(setOptionLabel, [&] { AddVar(vars, name, QString(), true); });
    else
        SetOption(vars, name, text);
}
