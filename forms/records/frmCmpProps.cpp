// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmCmpProps.h"
#include "ui_frmCmpProps.h"

#include "campaigntrees.h"
#include "errorlog.h"
#include "formlayout.h"
#include "guarded.h"
#include "tagvalue.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QSignalBlocker>
#include <QStringDecoder>
#include <QTextBrowser>
#include <QTreeWidgetItem>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const QString dataArrivedLabel = u"  @  frmCmpProps.DataArrived"_s;
const QString okLabel = u"  @  frmCmpProps.OK_Click"_s;
const QString cancelLabel = u"  @  frmCmpProps.Cancel_Click"_s;
const QString bFileLabel = u"  @  frmCmpProps.bFile_Click"_s;
const QString cFileLabel = u"  @  frmCmpProps.cFile_Change"_s;
const QString cTypeLabel = u"  @  frmCmpProps.cType_Click"_s;
const QString formLoadLabel = u"  @  frmCmpProps.Form_Load"_s;

frmCmpProps::FileQuestion fileQuestion;

// Shows the page at path: a local file, by path or as a file URL. Nothing is shown for an empty
// path, "about:blank", a page that is not there or anything but a plain file (a device or a pipe
// would never end); a file too big to read at once gets a note instead.
void showPage(QTextBrowser *view, const QString &path)
{
    view->clear();
    const QString given = path.trimmed();
    if (given.isEmpty() || given.compare(u"about:blank"_s, Qt::CaseInsensitive) == 0)
        return;
    const QUrl url(given);
    const QFileInfo info(url.isLocalFile() ? url.toLocalFile() : given);
    if (!info.isFile())
        return;
    if (info.size() > frmCmpProps::MaxPreviewBytes) {
        view->setPlainText(Translate(u"The page is too big to preview."_s));
        return;
    }
    QFile file(info.absoluteFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray page = file.read(frmCmpProps::MaxPreviewBytes);
    // The page's own charset, UTF-8 when it names none; one this build cannot decode is read as
    // Latin-1, which shows at least its ASCII text.
    QStringDecoder decoder = QStringDecoder::decoderForHtml(page);
    const QString html = decoder.isValid() ? decoder.decode(page) : QString::fromLatin1(page);
    // Pictures and style sheets beside the page are found from its folder.
    view->document()->setBaseUrl(QUrl::fromLocalFile(info.absoluteFilePath()));
    view->setHtml(html);
}

} // namespace

frmCmpProps::frmCmpProps(ChoiceTree &menus, ChoiceTree &results, const QStringList &tables, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmCmpProps>()), m_menus(menus), m_results(results)
{
    m_ui->setupUi(this);
    m_fields.text(m_ui->cName, u"Caption"_s)
        .choice(m_ui->cType, u"Type"_s)
        .choice(m_ui->cTable, u"MoveTable"_s)
        .text(m_ui->Delay, u"Delay"_s)
        .choice(m_ui->lstDelay, u"DelayType"_s)
        .choice(m_ui->cColor, u"Color"_s)
        .text(m_ui->cTag, u"Tag"_s)
        .text(m_ui->cFile, u"File"_s);
    Guard(formLoadLabel, [&] { Form_Load(tables); });

    connectGuarded(m_ui->cType, &QComboBox::currentIndexChanged, this, cTypeLabel, &frmCmpProps::cType_Click);
    connectGuarded(m_ui->cFile, &QLineEdit::textChanged, this, cFileLabel, &frmCmpProps::cFile_Change);
    connectGuarded(m_ui->bFile, &QPushButton::clicked, this, bFileLabel, &frmCmpProps::bFile_Click);
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, okLabel, &frmCmpProps::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, cancelLabel, &frmCmpProps::Cancel_Click);
}

frmCmpProps::~frmCmpProps() = default;

const QStringList &frmCmpProps::colorNames()
{
    static const QStringList names{u"Blue"_s, u"Green"_s, u"Red"_s, u"Yellow"_s};
    return names;
}

const QStringList &frmCmpProps::resultKinds()
{
    static const QStringList kinds{u"Move"_s, u"Postpone"_s, u"Remove"_s};
    return kinds;
}

QString frmCmpProps::choiceKind()
{
    return u"Menu"_s;
}

void frmCmpProps::setFileQuestion(FileQuestion question)
{
    fileQuestion = std::move(question);
}

void frmCmpProps::Form_Load(const QStringList &tables)
{
    TranslateWindow(this);
    m_ui->cColor->clear();
    m_ui->cColor->addItems(colorNames());
    m_ui->cTable->clear();
    m_ui->cTable->addItems(tables);
    for (QComboBox *list : {m_ui->cColor, m_ui->cTable, m_ui->lstDelay})
        list->setCurrentIndex(-1);
    alignFormLabels({this});
}

ChoiceTree &frmCmpProps::tree() const
{
    return m_choice ? m_menus : m_results;
}

void frmCmpProps::DataArrived(const QString &descriptor)
{
    bool loaded = false;
    Guard(dataArrivedLabel, [&] {
        load(descriptor);
        loaded = true;
    });
    if (loaded)
        exec();
}

void frmCmpProps::load(const QString &descriptor)
{
    const QString type = getText(descriptor, u"Type"_s);
    m_choice = type.toUpper() == u"CHOICE"_s;
    m_item = int(leadingNumber(getText(descriptor, u"Item"_s)));
    {
        // The panels and the preview follow the loaded values once, below.
        const QSignalBlocker typeQuiet(m_ui->cType);
        const QSignalBlocker fileQuiet(m_ui->cFile);
        m_ui->cType->clear();
        m_ui->cType->addItems(m_choice ? QStringList{choiceKind()} : resultKinds());
        if (m_item < 1) {
            m_fields.load(QString());
            m_ui->cName->setText(Translate(u"<New "_s + type + u'>'));
        } else {
            const QTreeWidgetItem *node = tree().item(m_item);
            if (!node)
                throw Fault(u"There is no node "_s + QString::number(m_item));
            m_fields.load(tree().tagOf(m_item));
            m_ui->cName->setText(node->text(0));
        }
    }
    m_ui->cName->setCursorPosition(0);
    Guard(cTypeLabel, [&] { cType_Click(); });
    Guard(cFileLabel, [&] { cFile_Change(); });

    // Only the page of the initial script can be set: its caption and kind are fixed.
    const bool root = m_choice && m_item == 1;
    m_ui->cName->setReadOnly(root);
    m_ui->pMenu->setVisible(!root);
    if (root) {
        m_ui->cFile->setFocus();
    } else {
        m_ui->cName->setFocus();
        if (m_item < 1)
            m_ui->cName->selectAll(); // typing replaces the placeholder caption
    }
}

void frmCmpProps::cType_Click()
{
    const QString kind = m_ui->cType->currentText().toUpper();
    m_ui->picDelay->setVisible(kind == u"POSTPONE"_s);
    m_ui->picTable->setVisible(kind == u"MOVE"_s);
}

void frmCmpProps::cFile_Change()
{
    showPage(m_ui->cPreview, m_ui->cFile->text());
}

void frmCmpProps::bFile_Click()
{
    const QString title = Translate(u"Select HTML file"_s);
    const QString filter = Translate(u"HTML files"_s) + u" (*.htm *.html)"_s;
    const QString suffix = u"htm"_s;
    const QString chosen =
        fileQuestion ? fileQuestion(this, title, filter, suffix) : askForFile(title, filter, suffix);
    if (!chosen.isEmpty())
        m_ui->cFile->setText(chosen);
}

QString frmCmpProps::askForFile(const QString &title, const QString &filter, const QString &defaultSuffix)
{
    const QFileInfo current(m_ui->cFile->text().trimmed());
    QFileDialog dialog(this, title, current.exists() ? current.absolutePath() : QString(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(defaultSuffix);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

void frmCmpProps::OK_Click()
{
    // The window closes even when the node could not be written: the fault is in the log.
    Guard(okLabel, [&] { writeNode(); });
    accept();
}

void frmCmpProps::writeNode()
{
    ChoiceTree &nodes = tree();
    const QString caption = m_ui->cName->text();
    if (m_item < 0) {
        // A choice goes under the node -Item; a result at the end of the list.
        const int added = nodes.addNode(m_choice ? -m_item : 0, caption, QString());
        if (added == 0)
            throw Fault(u"There is no node "_s + QString::number(-m_item));
        m_item = added;
    }
    if (!nodes.setNode(m_item, caption, m_fields.record()))
        throw Fault(u"There is no node "_s + QString::number(m_item));
}

void frmCmpProps::Cancel_Click()
{
    reject();
}
