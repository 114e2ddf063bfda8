// SPDX-License-Identifier: GPL-3.0-or-later
#include "csvbookdialog.h"
#include "ui_csvbookdialog.h"

#include "csvpreviewmodel.h"
#include "tagvalue.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QSignalBlocker>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

struct SeparatorChoice
{
    QChar character;
    QString word; // as the settings hold it
};

const std::array<SeparatorChoice, 3> separators{{
    {u',', u"Comma"_s},
    {u';', u"Semicolon"_s},
    {u'\t', u"Tab"_s},
}};

QChar separatorOf(const QString &word)
{
    for (const SeparatorChoice &choice : separators)
        if (choice.word.compare(word, Qt::CaseInsensitive) == 0)
            return choice.character;
    return {};
}

// Column titles that name a role outright, then words that give it away inside a longer title.
struct ColumnRole
{
    QStringList titles;
    QStringList words;
};

const ColumnRole nameRole{{u"name"_s, u"full name"_s, u"contact"_s, u"contact name"_s, u"display name"_s},
                          {u"name"_s}};
const ColumnRole companyRole{{u"company"_s, u"organisation"_s, u"organization"_s, u"business"_s},
                             {u"company"_s, u"organisation"_s, u"organization"_s}};
const ColumnRole numberRole{{u"number"_s, u"phone"_s, u"telephone"_s, u"tel"_s, u"tel."_s, u"phone number"_s,
                             u"telephone number"_s, u"mobile"_s},
                            {u"phone"_s, u"number"_s, u"mobile"_s}};

// The first column not yet taken whose title fits the role; -1 when none does.
qsizetype proposeColumn(const QStringList &titles, const ColumnRole &role, bool byWord,
                        QList<qsizetype> &taken)
{
    for (qsizetype i = 0; i < titles.size(); ++i) {
        if (taken.contains(i))
            continue;
        const QString title = titles[i].simplified().toCaseFolded();
        const bool fits = byWord ? std::any_of(role.words.begin(), role.words.end(),
                                               [&title](const QString &word) { return title.contains(word); })
                                 : role.titles.contains(title);
        if (fits) {
            taken.append(i);
            return i;
        }
    }
    return -1;
}

} // namespace

CsvBookDialog::CsvBookDialog(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::CsvBookDialog>()), m_preview(new CsvPreviewModel(this))
{
    m_ui->setupUi(this);
    m_ui->tblPreview->setModel(m_preview);
    m_ui->tblPreview->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    // Columns as wide as their first rows, though none wider than forty letters; the last one
    // reaches the table's edge.
    m_ui->tblPreview->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_ui->tblPreview->horizontalHeader()->setMaximumSectionSize(fontMetrics().averageCharWidth() * 40);
    m_ui->cboSeparator->addItem(tr("Commas (,)"), separators[0].word);
    m_ui->cboSeparator->addItem(tr("Semicolons (;)"), separators[1].word);
    m_ui->cboSeparator->addItem(tr("Tabs"), separators[2].word);
    m_ui->lblError->hide();
    clearFile();

    connect(m_ui->txtFile, &QLineEdit::textChanged, this, &CsvBookDialog::fileEdited);
    connect(m_ui->txtFile, &QLineEdit::editingFinished, this, &CsvBookDialog::fileEntered);
    connect(m_ui->cmdBrowse, &QPushButton::clicked, this, &CsvBookDialog::browse);
    connect(m_ui->cboSeparator, &QComboBox::activated, this, &CsvBookDialog::separatorChosen);
    for (QComboBox *box : {m_ui->cboName, m_ui->cboCompany, m_ui->cboNumber})
        connect(box, &QComboBox::currentIndexChanged, this, &CsvBookDialog::updateOk);
    connect(m_ui->OK, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_ui->Cancel, &QPushButton::clicked, this, &QDialog::reject);
}

CsvBookDialog::~CsvBookDialog() = default;

void CsvBookDialog::loadVars(const QString &vars)
{
    const QString file = getText(vars, u"File"_s);
    if (file.isEmpty())
        return;
    {
        const QSignalBlocker blocker(m_ui->txtFile);
        m_ui->txtFile->setText(file);
    }
    showFile(file, separatorOf(getText(vars, u"Separator"_s)));
    if (!m_readable)
        return;
    selectColumn(m_ui->cboName, getText(vars, u"NameColumn"_s));
    selectColumn(m_ui->cboCompany, getText(vars, u"CompanyColumn"_s));
    selectColumn(m_ui->cboNumber, getText(vars, u"NumberColumn"_s));
}

QString CsvBookDialog::vars(QString vars) const
{
    if (!m_readable)
        return vars;
    const QString file = QDir::toNativeSeparators(QFileInfo(m_shownPath).absoluteFilePath());
    AddVar(vars, u"Caption"_s, file);
    AddVar(vars, u"File"_s, file);
    AddVar(vars, u"Separator"_s, m_ui->cboSeparator->currentData());
    AddVar(vars, u"NameColumn"_s, m_ui->cboName->currentData());
    AddVar(vars, u"CompanyColumn"_s, m_ui->cboCompany->currentData());
    AddVar(vars, u"NumberColumn"_s, m_ui->cboNumber->currentData());
    return vars;
}

// While a path is typed, a file is shown as soon as it names one; that a path names nothing is
// said only once the typing is done.
void CsvBookDialog::fileEdited(const QString &text)
{
    const QString path = text.trimmed();
    if (QFileInfo(path).isFile())
        showFile(path);
    else
        clearFile();
}

void CsvBookDialog::fileEntered()
{
    const QString path = m_ui->txtFile->text().trimmed();
    if (!path.isEmpty() && path != m_shownPath)
        showFile(path);
}

void CsvBookDialog::browse()
{
    const QString current = m_ui->txtFile->text().trimmed();
    const QString chosen = QFileDialog::getOpenFileName(
        this, tr("Choose a CSV File"), current.isEmpty() ? QString() : QFileInfo(current).absolutePath(),
        tr("CSV files (*.csv *.txt);;All files (*)"));
    if (!chosen.isEmpty())
        m_ui->txtFile->setText(QDir::toNativeSeparators(chosen));
}

void CsvBookDialog::separatorChosen()
{
    if (!m_shownPath.isEmpty())
        showFile(m_shownPath, separatorOf(m_ui->cboSeparator->currentData().toString()));
}

void CsvBookDialog::showFile(const QString &path, QChar separator)
{
    Csv::ReadOptions options;
    options.maxRecords = PreviewRows + 1;
    options.maxFileSize = MaxFileSize;
    options.separator = separator;
    const Csv::Table table = Csv::readFile(path, options);
    m_shownPath = path;
    m_readable = table.ok() && !table.records.isEmpty();
    if (!m_readable) {
        m_failure = failureText(table, path);
        m_preview->clear();
        fillColumns({});
        updateOk();
        return;
    }
    m_failure.clear();
    for (int i = 0; i < m_ui->cboSeparator->count(); ++i)
        if (separatorOf(m_ui->cboSeparator->itemData(i).toString()) == table.separator)
            m_ui->cboSeparator->setCurrentIndex(i);

    QStringList titles;
    const QStringList &header = table.records.first();
    for (qsizetype i = 0; i < header.size(); ++i) {
        const QString title = header[i].trimmed();
        titles.append(title.isEmpty() ? tr("Column %1").arg(i + 1) : title);
    }
    fillColumns(titles);
    m_preview->setRecords(titles, table.records.mid(1));
    updateOk();
}

void CsvBookDialog::clearFile()
{
    m_shownPath.clear();
    m_failure.clear();
    m_readable = false;
    m_preview->clear();
    fillColumns({});
    updateOk();
}

// Offers the titles in each column box, each box proposing the column its title suggests: exact
// titles first ("Phone"), then words inside longer ones ("Business phone"), company before name
// so that "Company name" is not taken for the contact's name.
void CsvBookDialog::fillColumns(const QStringList &titles)
{
    const std::array<std::pair<QComboBox *, const ColumnRole *>, 3> boxes{
        {{m_ui->cboNumber, &numberRole}, {m_ui->cboCompany, &companyRole}, {m_ui->cboName, &nameRole}}};
    std::array<qsizetype, 3> proposed{-1, -1, -1};
    QList<qsizetype> taken;
    for (const bool byWord : {false, true})
        for (size_t i = 0; i < boxes.size(); ++i)
            if (proposed[i] < 0)
                proposed[i] = proposeColumn(titles, *boxes[i].second, byWord, taken);

    for (size_t i = 0; i < boxes.size(); ++i) {
        QComboBox *box = boxes[i].first;
        const QSignalBlocker blocker(box);
        box->clear();
        box->addItem(tr("(None)"), QString());
        for (const QString &title : titles)
            box->addItem(title, title);
        box->setCurrentIndex(int(proposed[i] + 1));
        box->setEnabled(!titles.isEmpty());
    }
    m_ui->cboSeparator->setEnabled(!titles.isEmpty());
}

void CsvBookDialog::selectColumn(QComboBox *box, const QString &title)
{
    const int index = title.isEmpty() ? 0 : box->findData(title);
    box->setCurrentIndex(qMax(index, 0));
}

void CsvBookDialog::updateOk()
{
    const bool numberChosen = m_ui->cboNumber->currentIndex() > 0;
    m_ui->OK->setEnabled(m_readable && numberChosen);
    QString message = m_failure;
    if (m_readable && !numberChosen)
        message = tr("Choose the column that holds the telephone numbers.");
    m_ui->lblError->setText(message);
    m_ui->lblError->setVisible(!message.isEmpty());
}

QString CsvBookDialog::failureText(const Csv::Table &table, const QString &path) const
{
    const QString name = QFileInfo(path).fileName().isEmpty() ? path : QFileInfo(path).fileName();
    switch (table.failure) {
    case Csv::Failure::Missing:
        return tr("The file %1 does not exist.").arg(name);
    case Csv::Failure::Empty:
        return tr("The file %1 is empty.").arg(name);
    case Csv::Failure::NotText:
        return tr("The file %1 is not a text file in UTF-8.").arg(name);
    case Csv::Failure::TooLarge: {
        constexpr double megabyte = 1024.0 * 1024.0;
        return tr("The file %1 is too large (%2 MB). A CSV address book can be at most %3 MB.")
            .arg(name, QLocale().toString(double(table.fileSize) / megabyte, 'f', 1),
                 QLocale().toString(double(MaxFileSize) / megabyte, 'f', 0));
    }
    case Csv::Failure::Unreadable:
        return tr("The file %1 could not be read.").arg(name);
    case Csv::Failure::None:
        break;
    }
    // Read, but its first line goes on past everything a preview reads.
    return tr("The first line of %1 is too long to hold column titles.").arg(name);
}
