// SPDX-License-Identifier: GPL-3.0-or-later
#include "recordform.h"

#include "controls.h"
#include "tagentries.h"
#include "tagvalue.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidgetItem>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {

void setText(QWidget *box, const QString &text)
{
    if (auto *line = qobject_cast<QLineEdit *>(box)) {
        line->setText(text);
        line->setCursorPosition(0); // a long value shows from its beginning
    } else if (auto *plain = qobject_cast<QPlainTextEdit *>(box)) {
        plain->setPlainText(text);
    } else if (auto *rich = qobject_cast<QTextEdit *>(box)) {
        rich->setPlainText(text);
    }
}

QString textOf(const QWidget *box)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(box))
        return line->text();
    if (const auto *plain = qobject_cast<const QPlainTextEdit *>(box))
        return plain->toPlainText();
    if (const auto *rich = qobject_cast<const QTextEdit *>(box))
        return rich->toPlainText();
    return {};
}

// Appends to record every top-level entry of original whose tag is not among known (any case),
// exactly as it stood there.
void appendOtherEntries(QString &record, const QString &original, const QStringList &known)
{
    const QList<TagEntry> entries = splitEntries(original);
    for (const TagEntry &entry : entries) {
        if (!known.contains(entry.name, Qt::CaseInsensitive))
            record += entryText(entry);
    }
}

} // namespace

RecordForm &RecordForm::text(QWidget *box, const QString &tag, const QString &defaultValue, Flags flags)
{
    m_fields.append({Kind::Text, box, nullptr, nullptr, tag, defaultValue, flags});
    return *this;
}

RecordForm &RecordForm::cell(QTableWidgetItem *item, const QString &tag, Flags flags)
{
    m_fields.append({Kind::Cell, nullptr, nullptr, item, tag, {}, flags});
    return *this;
}

RecordForm &RecordForm::option(QWidget *control, const QString &tag, const QString &defaultValue, Flags flags)
{
    m_fields.append({Kind::Option, control, nullptr, nullptr, tag, defaultValue, flags});
    return *this;
}

RecordForm &RecordForm::option(QButtonGroup *group, const QString &tag, const QString &defaultValue, Flags flags)
{
    m_fields.append({Kind::Group, nullptr, group, nullptr, tag, defaultValue, flags});
    return *this;
}

RecordForm &RecordForm::choice(QComboBox *combo, const QString &tag, const QString &defaultValue, Flags flags)
{
    m_fields.append({Kind::Choice, combo, nullptr, nullptr, tag, defaultValue, flags});
    return *this;
}

void RecordForm::load(const QString &record)
{
    for (Field &field : m_fields) {
        const QString value = getText(record, field.tag, field.defaultValue);
        field.loadedMixed = value == MixedValue;
        field.lineBreaksCrLf = value.contains(u"\r\n"_s);
        switch (field.kind) {
        case Kind::Text:
            setText(field.control, value);
            break;
        case Kind::Cell:
            field.item->setText(value);
            break;
        case Kind::Option:
            GetOption(field.control, value);
            break;
        case Kind::Group:
            GetOption(field.group, value);
            break;
        case Kind::Choice: {
            auto *combo = static_cast<QComboBox *>(field.control);
            int index = value == MixedValue ? -1 : ListSearch(combo, value);
            if (index < 0 && !value.isEmpty() && value != MixedValue && field.flags.testFlag(AddMissing)) {
                combo->addItem(value);
                index = combo->count() - 1;
            }
            combo->setCurrentIndex(index);
            break;
        }
        }
    }
}

void RecordForm::writeField(QString &record, const Field &field) const
{
    // A list loaded mixed and still without a choice is left out, even one that is otherwise always
    // written; a text shows its mixed state itself.
    const bool keepEmpty = field.flags.testFlag(KeepEmpty) && (field.kind == Kind::Text || field.kind == Kind::Cell || !field.loadedMixed);
    switch (field.kind) {
    case Kind::Text: {
        // A text box of several lines keeps only "\n"; a script stored with "\r\n" keeps them.
        QString text = textOf(field.control);
        if (field.lineBreaksCrLf)
            text.replace(u'\n', u"\r\n"_s);
        if (text != MixedValue)
            AddVar(record, field.tag, text, keepEmpty);
        break;
    }
    case Kind::Cell:
        AddVar(record, field.tag, field.item->text().trimmed(), keepEmpty);
        break;
    case Kind::Option: {
        const qsizetype before = record.size();
        SetOption(record, field.tag, field.control);
        if (keepEmpty && record.size() == before)
            AddVar(record, field.tag, -1, true); // nothing chosen
        break;
    }
    case Kind::Group: {
        const qsizetype before = record.size();
        SetOption(record, field.tag, field.group);
        if (keepEmpty && record.size() == before)
            AddVar(record, field.tag, -1, true);
        break;
    }
    case Kind::Choice: {
        const auto *combo = static_cast<const QComboBox *>(field.control);
        if (combo->currentIndex() >= 0)
            AddVar(record, field.tag, combo->currentText(), keepEmpty);
        else if (keepEmpty)
            AddVar(record, field.tag, QString(), true);
        break;
    }
    }
}

void RecordForm::save(QString &record) const
{
    for (const Field &field : m_fields)
        writeField(record, field);
}

QString RecordForm::record() const
{
    QString result;
    save(result);
    return result;
}

void RecordForm::collect(RecordEntries &entries) const
{
    for (const Field &field : m_fields) {
        QString entry;
        writeField(entry, field);
        if (!entry.isEmpty())
            entries.insert(field.tag.toLower(), entry);
    }
}

QString RecordForm::assemble(const QStringList &order, const RecordEntries &entries, const QString &original)
{
    QString record;
    for (const QString &tag : order)
        record += entries.value(tag.toLower());
    appendOtherEntries(record, original, order);
    return record;
}
