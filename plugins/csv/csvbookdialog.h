// SPDX-License-Identifier: GPL-3.0-or-later
// The data settings of a CSV address book: the file, the character between its columns and the
// columns that hold each contact's name, company and number, beside a preview of the first rows.
#pragma once

#include "csv.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CsvBookDialog;
}
class CsvPreviewModel;
class QComboBox;

class CsvBookDialog : public QDialog
{
    Q_OBJECT

public:
    // A CSV file an address book is made from is read whole by the server; bigger ones are refused.
    static constexpr qint64 MaxFileSize = Csv::DefaultMaxFileSize;
    // Data rows shown under the column titles.
    static constexpr int PreviewRows = 10;

    explicit CsvBookDialog(QWidget *parent = nullptr);
    ~CsvBookDialog() override;

    // Shows the settings a book was saved with (its File, Separator and columns).
    void loadVars(const QString &vars);
    // vars with the chosen settings written into it: Caption and File (the file's full path),
    // Separator ("Comma", "Semicolon" or "Tab") and NameColumn, CompanyColumn and NumberColumn (the
    // chosen columns' titles; a column not chosen is left out).
    QString vars(QString vars) const;

private:
    void fileEdited(const QString &text);
    void fileEntered();
    void browse();
    void separatorChosen();
    void showFile(const QString &path, QChar separator = {});
    void clearFile();
    void fillColumns(const QStringList &titles);
    void selectColumn(QComboBox *box, const QString &title);
    void updateOk();
    QString failureText(const Csv::Table &table, const QString &path) const;

    std::unique_ptr<Ui::CsvBookDialog> m_ui;
    CsvPreviewModel *m_preview = nullptr;
    QString m_shownPath; // the file shown, or whose failure is shown
    QString m_failure;
    bool m_readable = false;
};
