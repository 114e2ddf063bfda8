// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmCampaign.h"
#include "ui_frmCampaign.h"

#include "campaigntrees.h"
#include "errorlog.h"
#include "frmCmpProps.h"
#include "guarded.h"
#include "tagvalue.h"
#include "tipfilter.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QFileDialog>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

const QList<ControlTip> campaignTips{
    {u"oCampaign"_s, u"QS051"_s, u"Enter a name to display when the campaign is used."_s},
    {u"Menus"_s, u"QS052"_s, u"Select a script to modify."_s},
    {u"Results"_s, u"QS053"_s, u"Select a result to modify."_s},
    {u"Cancel"_s, u"QS054"_s, u"Click to undo any changes and close this window."_s},
    {u"OK"_s, u"QS055"_s, u"Click to save changes and close this window."_s},
    {u"OSel"_s, u"QS056"_s, u"Open ODBC selection window."_s},
    {u"oSource"_s, u"QS057"_s, u"Enter the path/filename of the campaign."_s},
    {u"oTable"_s, u"QS058"_s, u"Choose which table from the database to use as an campaign."_s},
};

// The help text of each tab when it is chosen: general, Contact Details fields, scripts.
const ControlTip tabTips[] = {
    {u"Tabs"_s, u"QS059"_s, u"Set up general information about the campaign."_s},
    {u"Tabs"_s, u"QS063"_s, u"Set up the fields shown in the Contact Details window."_s},
    {u"Tabs"_s, u"QS060"_s, u"Configure the scripts for the campaign."_s},
};

enum Button { AddButton, PropertiesButton, RemoveButton };

// Selects the entry of combo with text, adding it when the list does not offer it (a database that
// cannot be read here still gives back what was stored); an empty text selects nothing.
void selectOrAdd(QComboBox *combo, const QString &text)
{
    if (text.isEmpty()) {
        combo->setCurrentIndex(-1);
        return;
    }
    int entry = combo->findText(text, Qt::MatchFixedString);
    if (entry < 0) {
        combo->addItem(text);
        entry = combo->count() - 1;
    }
    combo->setCurrentIndex(entry);
}

} // namespace

std::function<QString(QWidget *parent)> &frmCampaign::chooseDatabaseFile()
{
    static std::function<QString(QWidget *)> choose = [](QWidget *parent) {
        QFileDialog dialog(parent, Translate(u"Select Database (.mdb)"_s));
        dialog.setNameFilter(Translate(u"Database files (*.mdb)"_s));
        dialog.setDefaultSuffix(u"mdb"_s);
        dialog.setFileMode(QFileDialog::ExistingFile);
        return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
    };
    return choose;
}

frmCampaign::frmCampaign(ServerLink &link, QWidget *parent)
    : QDialog(parent), m_link(link), m_ui(std::make_unique<Ui::frmCampaign>())
{
    m_ui->setupUi(this);
    m_ui->Tid->hide();
    m_menus = new ChoiceTree(m_ui->Menus, ChoiceTree::Menus, this);
    m_results = new ChoiceTree(m_ui->Results, ChoiceTree::Results, this);
    m_source.text(m_ui->oSource, u"Database"_s)
        .choice(m_ui->oTable, u"ODBCTable"_s, {}, RecordForm::AddMissing)
        .choice(m_ui->oId, u"fldId"_s, {}, RecordForm::AddMissing)
        .choice(m_ui->oTel, u"fldTel"_s, {}, RecordForm::AddMissing)
        .choice(m_ui->oName, u"fldName"_s, {}, RecordForm::AddMissing)
        .choice(m_ui->oNotes, u"fldNotes"_s, {}, RecordForm::AddMissing)
        .text(m_ui->oSecs, u"NoAnswer"_s);
    Guard(u" @ frmCampaign.Form_Load"_s, [&] { Form_Load(); });

    m_link.setReceiver(u"CAMPAIGN"_s, this);
    connectGuarded(m_ui->Tid, &QLineEdit::textChanged, this, u" @ frmCampaign.Tid_Change"_s,
                   &frmCampaign::Tid_Change);
    // Typing a path lists it once the typing is done; the file dialog's choice at once.
    connectGuarded(m_ui->oSource, &QLineEdit::editingFinished, this, u" @ frmCampaign.oSource_Change"_s,
                   &frmCampaign::oSource_Change);
    connectGuarded(m_ui->oTable, &QComboBox::activated, this, u" @ frmCampaign.oTable_Click"_s,
                   &frmCampaign::oTable_Click);
    connectGuarded(m_ui->OSel, &QPushButton::clicked, this, u" @ frmCampaign.OSel_Click"_s,
                   &frmCampaign::OSel_Click);
    for (int index = 0; index < 3; ++index) {
        connectGuarded(findChild<QPushButton *>(u"BMenu_"_s + QString::number(index)), &QPushButton::clicked,
                       this, u" @ frmCampaign.BMenu_Click"_s, [this, index] { BMenu_Click(index); });
        connectGuarded(findChild<QPushButton *>(u"BResults_"_s + QString::number(index)),
                       &QPushButton::clicked, this, u" @ frmCampaign.BResults_Click"_s,
                       [this, index] { BResults_Click(index); });
    }
    connectGuarded(m_ui->Menus, &QTreeWidget::itemSelectionChanged, this, u" @ frmCampaign.Menus_Click"_s,
                   &frmCampaign::updateButtons);
    connectGuarded(m_ui->Results, &QTreeWidget::itemSelectionChanged, this, u" @ frmCampaign.Results_Click"_s,
                   &frmCampaign::updateButtons);
    connectGuarded(m_ui->Menus, &QTreeWidget::itemDoubleClicked, this, u" @ frmCampaign.Menus_DblClick"_s,
                   [this] {
                       if (m_ui->BMenu_1->isEnabled())
                           BMenu_Click(PropertiesButton);
                   });
    connectGuarded(m_ui->Results, &QTreeWidget::itemDoubleClicked, this, u" @ frmCampaign.Results_DblClick"_s,
                   [this] {
                       if (m_ui->BResults_1->isEnabled())
                           BResults_Click(PropertiesButton);
                   });
    connectGuarded(m_ui->Tabs, &QTabWidget::currentChanged, this, u" @ frmCampaign.Tabs_Click"_s,
                   [this](int tab) {
                       if (tab >= 0 && tab < int(std::size(tabTips)))
                           m_ui->Tip->setText(Translate(tabTips[tab].key, tabTips[tab].text));
                   });
    connect(&m_tablesJob, &QFutureWatcher<ContactsDatabase::Sources>::finished, this,
            [this] { Guard(u" @ frmCampaign.oSource_Change"_s, [&] { tablesListed(); }); });
    connect(&m_columnsJob, &QFutureWatcher<ContactsDatabase::Columns>::finished, this,
            [this] { Guard(u" @ frmCampaign.oTable_Click"_s, [&] { columnsListed(); }); });
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, u" @ frmCampaign.OK_Click"_s,
                   &frmCampaign::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, u" @ frmCampaign.Cancel_Click"_s,
                   &frmCampaign::Cancel_Click);
}

frmCampaign::~frmCampaign()
{
    m_link.setReceiver(u"CAMPAIGN"_s, nullptr);
    // A listing still running finishes on its own; nothing waits for its result any more.
    m_tablesJob.disconnect(this);
    m_columnsJob.disconnect(this);
    m_tablesJob.waitForFinished();
    m_columnsJob.waitForFinished();
}

void frmCampaign::Form_Load()
{
    TranslateWindow(this);
    TranslateTabs(m_ui->Tabs);
    m_ui->Tip->setText(u" "_s);
    m_ui->Tip->setMinimumHeight(m_ui->Tip->fontMetrics().lineSpacing() * 2 + 8);
    m_tips = new TipFilter(m_ui->Tip, campaignTips, {}, this);
    m_tips->watch(this);
    m_ui->Tabs->setCurrentIndex(0);
    updateButtons();
}

QString frmCampaign::id() const
{
    return m_ui->Tid->text();
}

bool frmCampaign::isCopy() const
{
    return id().startsWith(u'*');
}

bool frmCampaign::isNew() const
{
    return isCopy() || leadingNumber(id()) < 0;
}

bool frmCampaign::isListing() const
{
    return m_tablesJob.isRunning() || m_columnsJob.isRunning();
}

void frmCampaign::Tid_Change()
{
    // A new campaign asks too (with -1): whatever the reply holds is loaded as usual.
    if (!id().isEmpty())
        m_link.GetData(u"CAMPAIGN"_s, isCopy() ? id().mid(1) : id());
}

void frmCampaign::DataArrived(const QString &, const QString &Message)
{
    Guard(u"  @  frmCampaign.DataArrived"_s, [&] {
        const QString options = getText(Message, u"Options"_s);
        // The notes column is not read back: the listing's proposal stands for it. Until the
        // listing has the names, the stored table and columns are shown as they are.
        QString shown = options;
        AddVar(shown, u"fldNotes"_s, QString());
        m_source.load(shown);
        m_ui->oCampaign->setText(getText(Message, u"Name"_s));
        oSource_Change();

        m_menus->BuildMenu(getText(options, u"Scripts"_s));
        m_results->buildResults(getText(options, u"Results"_s));
        if (isCopy()) {
            m_ui->oCampaign->setText(Translate(u"<New campaign>"_s));
            m_ui->oCampaign->setFocus();
            m_ui->oCampaign->selectAll();
        }
        updateButtons();
    });
    m_loaded = true;
}

void frmCampaign::OSel_Click()
{
    const QString path = chooseDatabaseFile()(this);
    if (path.isEmpty())
        return;
    m_ui->oSource->setText(QDir::toNativeSeparators(path));
    oSource_Change();
}

void frmCampaign::oSource_Change()
{
    m_sourceOpened = false;
    const QString path = m_ui->oSource->text().trimmed();
    if (path.isEmpty())
        return;
    m_ui->Tip->setText(Translate({}, u"Reading <1>..."_s, path));
    m_tablesJob.setFuture(ContactsDatabase::readSourcesAsync(path));
}

void frmCampaign::tablesListed()
{
    const ContactsDatabase::Sources listing = m_tablesJob.result();
    const QString chosen = m_ui->oTable->currentText();
    m_ui->oTable->clear();
    if (!listing.ok()) {
        ErrorLog::write(listing.error + u" @ frmCampaign.oSource_Change"_s);
        m_ui->Tip->setText(
            Translate({}, u"The database <1> cannot be read: <2>"_s, m_ui->oSource->text(), listing.error));
        selectOrAdd(m_ui->oTable, chosen);
        return;
    }
    m_sourceOpened = true;
    m_ui->Tip->setText(u" "_s);
    m_ui->oTable->addItems(listing.tables + listing.queries);
    selectOrAdd(m_ui->oTable, chosen);
    if (!chosen.isEmpty())
        listColumns(chosen, false);
}

void frmCampaign::oTable_Click()
{
    if (!m_sourceOpened)
        return;
    // The table's name is the campaign's until the administrator gives it another.
    m_ui->oCampaign->setText(m_ui->oTable->currentText());
    listColumns(m_ui->oTable->currentText(), true);
}

void frmCampaign::listColumns(const QString &table, bool propose)
{
    m_proposeColumns = propose;
    const QString path = m_ui->oSource->text().trimmed();
    m_columnsJob.setFuture(ContactsDatabase::readColumnsAsync(path, table));
}

void frmCampaign::columnsListed()
{
    const ContactsDatabase::Columns listing = m_columnsJob.result();
    const QList<QComboBox *> lists{m_ui->oId, m_ui->oTel, m_ui->oName, m_ui->oNotes};
    QStringList chosen;
    for (QComboBox *list : lists)
        chosen << list->currentText();
    if (!listing.ok()) {
        ErrorLog::write(listing.error + u" @ frmCampaign.oTable_Click"_s);
        m_ui->Tip->setText(Translate({}, u"The columns of <1> cannot be read: <2>"_s,
                                     m_ui->oTable->currentText(), listing.error));
        return;
    }
    const ContactsDatabase::Proposals proposals = ContactsDatabase::proposeColumns(listing.names);
    const QStringList proposed{proposals.id, proposals.telephone, proposals.name, proposals.notes};
    for (int field = 0; field < lists.size(); ++field) {
        lists[field]->clear();
        lists[field]->addItems(listing.names);
        // A chosen table proposes every field; a loaded one keeps what was stored, but for the
        // notes, which always take the proposal.
        const bool takeProposal = m_proposeColumns || field == 3 || chosen.at(field).isEmpty();
        selectOrAdd(lists[field], takeProposal ? proposed.at(field) : chosen.at(field));
    }
}

void frmCampaign::updateButtons()
{
    m_ui->BMenu_0->setEnabled(m_menus->canEdit()); // a choice is added under the selected node
    m_ui->BMenu_1->setEnabled(m_menus->canEdit());
    m_ui->BMenu_2->setEnabled(m_menus->canRemove());
    m_ui->BResults_1->setEnabled(m_results->canEdit());
    m_ui->BResults_2->setEnabled(m_results->canRemove());
}

void frmCampaign::openProperties(const QString &descriptor)
{
    QStringList tables;
    for (int entry = 0; entry < m_ui->oTable->count(); ++entry)
        tables << m_ui->oTable->itemText(entry);
    frmCmpProps window(*m_menus, *m_results, tables, this);
    window.DataArrived(descriptor);
    updateButtons();
}

void frmCampaign::BMenu_Click(int index)
{
    const QString item = QString::number(m_menus->selectedIndex());
    if (index == AddButton)
        openProperties(u"{Type=Choice}{Item=-"_s + item + u'}');
    else if (index == PropertiesButton)
        openProperties(u"{Type=Choice}{Item="_s + item + u'}');
    else if (m_menus->canRemove())
        m_menus->remove(m_menus->selectedIndex());
    updateButtons();
}

void frmCampaign::BResults_Click(int index)
{
    if (index == AddButton)
        openProperties(u"{Type=Result}{Item=-1}"_s);
    else if (index == PropertiesButton)
        openProperties(u"{Type=Result}{Item="_s + QString::number(m_results->selectedIndex()) + u'}');
    else if (m_results->canRemove())
        m_results->remove(m_results->selectedIndex());
    updateButtons();
}

void frmCampaign::OK_Click()
{
    m_ui->oCampaign->setText(m_ui->oCampaign->text().left(NameLength));
    QString options;
    AddVar(options, u"Results"_s, m_results->resultsText(), true);
    m_source.save(options);
    AddVar(options, u"Scripts"_s, m_menus->EnumNodes(), true);

    QString record;
    AddVar(record, u"Name"_s, m_ui->oCampaign->text());
    AddVar(record, u"Options"_s, options, true);
    QString command = u"{Cmd=SetFields}{Table=Campaigns}"_s;
    AddVar(command, u"Fields"_s, record);
    AddVar(command, u"Id"_s, isCopy() ? u"-1"_s : id());
    m_link.SendCommand(command);
    m_outcome =
        isNew() ? WindowResult::savedNew()
                : WindowResult::savedExisting(id().section(u',', 0, 0), {m_ui->oCampaign->text()}, record);
    accept();
}

void frmCampaign::Cancel_Click()
{
    m_outcome = WindowResult::cancelled();
    reject();
}
