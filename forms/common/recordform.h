// SPDX-License-Identifier: GPL-3.0-or-later
// One way for a window or page to load a record into its controls and save it back: a table of
// control -> tag, read and written in table order.
#pragma once

#include <QFlags>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

class QButtonGroup;
class QComboBox;
class QTableWidgetItem;
class QWidget;

// Each written field as its whole entry ("{Name(S4)=Main}"), by tag in lower case: what several
// pages hand over when one record is assembled from all of them.
using RecordEntries = QHash<QString, QString>;

class RecordForm
{
public:
    enum Flag {
        NoFlags = 0,
        // Written even when empty: a text as "{Tag(S0)=}", a list with nothing chosen as -1.
        KeepEmpty = 1,
        // A drop-down list given a text it does not offer adds it as an entry, so that saving
        // gives back what was stored.
        AddMissing = 2,
    };
    Q_DECLARE_FLAGS(Flags, Flag)

    // A text box (QLineEdit, QPlainTextEdit or QTextEdit): the field's text.
    RecordForm &text(QWidget *box, const QString &tag, const QString &defaultValue = {}, Flags flags = NoFlags);
    // A check box, a list chosen by position (QComboBox, QListWidget) or a "BTN" list, as
    // GetOption and SetOption move them.
    RecordForm &option(QWidget *control, const QString &tag, const QString &defaultValue = {},
                       Flags flags = NoFlags);
    RecordForm &option(QButtonGroup *group, const QString &tag, const QString &defaultValue = {},
                       Flags flags = NoFlags);
    // A drop-down list chosen by its entries' text (any case): loading selects the entry, none when
    // the list has no such entry; saving writes the chosen entry's text.
    RecordForm &choice(QComboBox *combo, const QString &tag, const QString &defaultValue = {},
                       Flags flags = NoFlags);

    // A grid cell (a QTableWidget's item): its text, trimmed of the blanks typing leaves around a code.
    RecordForm &cell(QTableWidgetItem *item, const QString &tag, Flags flags = NoFlags);

    // Sets every control from record; a tag the record lacks gives the field's default. The mixed
    // marker " " shows as a text of one blank, a greyed check box or a list with nothing chosen.
    void load(const QString &record);
    // Writes every field into record in table order with AddVar: a field still mixed is not
    // written, an empty one only with KeepEmpty.
    void save(QString &record) const;
    QString record() const;
    // The written fields as entries, for a record assembled from several forms.
    void collect(RecordEntries &entries) const;

    // A record of the entries in order, followed by every top-level entry of original whose tag is
    // not in order, written back exactly as it stood (so a value the tool does not show keeps its
    // text and type).
    static QString assemble(const QStringList &order, const RecordEntries &entries, const QString &original);

private:
    enum class Kind { Text, Option, Group, Choice, Cell };
    struct Field
    {
        Kind kind;
        QWidget *control = nullptr;
        QButtonGroup *group = nullptr;
        QTableWidgetItem *item = nullptr;
        QString tag;
        QString defaultValue;
        Flags flags;
        bool loadedMixed = false; // a list left with nothing chosen is still mixed, not "none"
        bool lineBreaksCrLf = false; // a text of several lines goes back with the line breaks it came with
    };
    void writeField(QString &record, const Field &field) const;

    QList<Field> m_fields;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(RecordForm::Flags)
