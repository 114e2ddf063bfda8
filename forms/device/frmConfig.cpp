// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmConfig.h"
#include "ui_frmConfig.h"

#include "buttonspage.h"
#include "campaignspage.h"
#include "configparts.h"
#include "controls.h"
#include "devicerecord.h"
#include "errorlog.h"
#include "eventspage.h"
#include "guarded.h"
#include "tagvalue.h"
#include "tipfilter.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>

#include <algorithm>

using namespace Qt::StringLiterals;
using ConfigParts::Page;

namespace {
// A group of the row written on its own: see buildRow.
template <typename Group> QString written(const Group &group)
{
    QString part;
    group.save(part);
    return part;
}
} // namespace

frmConfig::frmConfig(ServerLink &link, QWidget *parent)
    : QDialog(parent), m_link(link), m_ui(std::make_unique<Ui::frmConfig>())
{
    m_ui->setupUi(this);
    m_ui->Lid->hide();
    Guard(u" @ frmConfig.Form_Load"_s, [&] { Form_Load(); });

    m_link.setReceiver(u"EXTS"_s, this);
    connectGuarded(m_ui->Lid, &QLineEdit::textChanged, this, u" @ frmConfig.Lid_Change"_s,
                   &frmConfig::Lid_Change);
    connectGuarded(m_ui->Typ, &QComboBox::currentIndexChanged, this, u" @ frmConfig.Typ_Click"_s,
                   &frmConfig::Typ_Click);
    connectGuarded(m_ui->Ext, &QLineEdit::textChanged, this, u" @ frmConfig.Ext_Change"_s,
                   &frmConfig::Ext_Change);
    connectGuarded(m_ui->Tabs, &QTabWidget::currentChanged, this, u" @ frmConfig.Tabs_Click"_s,
                   &frmConfig::Tabs_Click);
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, u" @ frmConfig.OK_Click"_s, &frmConfig::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, u" @ frmConfig.Cancel_Click"_s,
                   &frmConfig::Cancel_Click);
}

frmConfig::~frmConfig()
{
    m_link.setReceiver(u"EXTS"_s, nullptr);
}

void frmConfig::Form_Load()
{
    TranslateWindow(this);
    TranslateTabs(m_ui->Tabs);
    m_ui->Tip->setText(u" "_s);
    m_ui->Tip->setMinimumHeight(m_ui->Tip->fontMetrics().lineSpacing() * 3 + 8);

    {
        const QSignalBlocker quiet(m_ui->Typ);
        for (const QString &word : DeviceRecord::kindWords())
            m_ui->Typ->addItem(Translate(word));
    }
    // The department sits above the extension panel and lines up with its labels.
    const QList<QLabel *> labels{m_ui->lblDept, m_ui->lblDDI, m_ui->lblPwd, m_ui->lblAssistant,
                                 m_ui->lblMobile};
    int labelWidth = 0;
    for (QLabel *label : labels)
        labelWidth = std::max(labelWidth, label->sizeHint().width());
    for (QLabel *label : labels)
        label->setMinimumWidth(labelWidth);

    m_flags = ConfigParts::createFlagBoxes(m_ui->picPanel_1->layout(), m_ui->picPanel_2->layout(),
                                           m_ui->trunkPanel->layout());

    const QList<DeviceRecord::FlagBox> &boxes = DeviceRecord::flagBoxes();
    m_extensionFields.text(m_ui->Dept, u"Dept"_s)
        .text(m_ui->DDI, u"DDI"_s)
        .text(m_ui->pwd, u"Password"_s)
        .text(m_ui->Assistant, u"Assistant"_s)
        .text(m_ui->Mobile, u"Mobile"_s);
    m_trunkFields.text(m_ui->Dept, u"Dept"_s)
        .option(m_flags.at(20), boxes.at(20).tag)
        .option(m_flags.at(23), boxes.at(23).tag);
    // Box 0 and box 20 both edit DontMonitor: the trunk's box is written with the trunk panel.
    for (int index = 0; index < DeviceRecord::flagBoxCount; ++index) {
        if (index != 20 && index != 23)
            m_flagFields.option(m_flags.at(index), boxes.at(index).tag);
    }
    m_absenceFields.option(m_ui->UseAbsence, u"UseAbsence"_s).text(m_ui->AbsenceText, u"AbsenceText"_s);
    m_notesFields.text(m_ui->Notes, u"Notes"_s);

    const auto editor = [this](const QString &request) { return editAction(request); };
    m_buttons = new ButtonsPage(m_ui->Tip, editor);
    m_ui->picPanel_4->layout()->addWidget(m_buttons);
    m_events = new EventsPage(m_ui->Tip, editor);
    m_ui->picPanel_5->layout()->addWidget(m_events);
    m_addressBooks = new AddressBooksPage;
    m_ui->picPanel_3->layout()->addWidget(m_addressBooks);
    m_campaigns = new CampaignsPage;
    m_ui->picPanel_6->layout()->addWidget(m_campaigns);

    m_tips = new TipFilter(
        m_ui->Tip, ConfigParts::controlTips(), [this](const ControlTip &tip) { return tipText(tip); }, this);
    m_tips->watch(this);

    m_ui->Typ->setCurrentIndex(0);
    showPagesForKind();
    updateTitle();
}

void frmConfig::setAddressBooks(const QList<SystemBook> &books)
{
    m_addressBooks->setSystemBooks(books);
}

void frmConfig::setCampaignNames(const QStringList &names)
{
    m_campaigns->setCampaignNames(names);
}

void frmConfig::setWindows(const PropertyWindows *windows)
{
    m_addressBooks->setWindows(windows);
    m_campaigns->setWindows(windows);
}

QString frmConfig::idList() const
{
    return m_ui->Lid->text().trimmed();
}

bool frmConfig::isNew() const
{
    return idList() == u"-1"_s;
}

qsizetype frmConfig::selectionCount() const
{
    return idList().split(u',').size();
}

int frmConfig::kindIndex() const
{
    return m_ui->Typ->currentIndex();
}

QString frmConfig::tipText(const ControlTip &tip) const
{
    if (tip.control == u"Ext"_s)
        return ConfigParts::extTip(DeviceRecord::kindWords().value(kindIndex())); // the English word
    if (tip.control == u"Nam"_s)
        return ConfigParts::namTip(kindIndex());
    return Translate(tip.key, tip.text);
}

void frmConfig::Lid_Change()
{
    if (!idList().isEmpty())
        m_link.GetData(u"EXT"_s, idList());
}

void frmConfig::DataArrived(const QString &SubRef, const QString &Message)
{
    if (SubRef == u"ADDCAMPAIGN"_s) {
        Guard(u" @ frmConfig.DataArrived"_s, [&] { m_campaigns->addChoice(getText(Message, u"Choice"_s)); });
        return;
    }
    if (SubRef != u"EXT"_s)
        return;
    Guard(u" @ frmConfig.DataArrived"_s, [&] {
        const bool several = selectionCount() > 1;
        // A new device's read brings no fields back: it starts from the defaults.
        const QString row = isNew() ? DeviceRecord::defaults() : Message;
        m_ui->TopPanel->setEnabled(!several);
        m_ui->Ext->setText(isNew() ? QString() : getText(row, u"Ext"_s));
        m_ui->Ext->setCursorPosition(0);

        m_loadedType = getText(row, u"Type"_s);
        int index = DeviceRecord::kindIndex(m_loadedType);
        if (isNew() && index < 0)
            index = 0; // a new device is an extension until another kind is chosen
        {
            const QSignalBlocker quiet(m_ui->Typ);
            m_ui->Typ->setCurrentIndex(index);
        }
        m_ui->Nam->setText(isNew() ? QString() : getText(row, u"Name"_s));
        m_ui->Nam->setCursorPosition(0);
        m_extensionFields.load(row);
        m_trunkFields.load(row);
        m_flagFields.load(row);
        m_addressBooks->load(row);
        m_buttons->load(row);
        m_events->load(row);
        m_campaigns->load(row);
        m_absenceFields.load(row);
        m_notesFields.load(row);
        showPagesForKind();
        updateTitle();
    });
}

void frmConfig::Typ_Click()
{
    showPagesForKind();
    updateTitle();
}

void frmConfig::Ext_Change()
{
    updateTitle();
}

void frmConfig::Tabs_Click(int page)
{
    m_ui->Tip->setText(ConfigParts::pageTip(page));
}

void frmConfig::showPagesForKind()
{
    // Several devices of different kinds have none chosen: they are shown as extensions.
    const int index = kindIndex();
    m_ui->deptPanel->setVisible(extensionPanelShown() || trunkPanelShown());
    m_ui->extPanel->setVisible(extensionPanelShown());
    m_ui->absencePanel->setVisible(extensionPanelShown());
    m_ui->trunkPanel->setVisible(trunkPanelShown());
    for (int page = Page::Features; page <= Page::Events; ++page)
        m_ui->Tabs->setTabVisible(page, index < 2);
    m_ui->Tabs->setTabVisible(Page::Campaigns, index == 1);
}

void frmConfig::updateTitle()
{
    if (selectionCount() > 1) {
        setWindowTitle(ConfigParts::severalTitle(m_loadedType, selectionCount()));
        return;
    }
    const QString kind =
        kindIndex() < 0 ? Translate(DeviceRecord::mixedKindWord()) : m_ui->Typ->currentText();
    setWindowTitle(ConfigParts::singleTitle(kind, m_ui->Ext->text()));
}

QString frmConfig::buildRow() const
{
    // Each group is written on its own and appended, so that a tag nested in one group (a private
    // address book's record, a plug-in's settings) is never taken for a later group's field.
    QString row;
    // No kind chosen (several devices of different kinds) leaves each device's own.
    SetOption(row, u"Type"_s, DeviceRecord::kinds().value(kindIndex()));
    if (extensionPanelShown())
        row += written(m_extensionFields);
    if (trunkPanelShown())
        row += written(m_trunkFields);
    if (m_ui->Tabs->isTabVisible(Page::Features))
        row += written(m_flagFields);
    if (m_ui->Tabs->isTabVisible(Page::AddressBooks))
        row += written(*m_addressBooks);
    if (m_ui->Tabs->isTabVisible(Page::Buttons))
        row += written(*m_buttons);
    if (m_ui->Tabs->isTabVisible(Page::Events))
        row += written(*m_events);
    if (m_ui->Tabs->isTabVisible(Page::Campaigns))
        row += written(*m_campaigns);
    if (extensionPanelShown())
        row += written(m_absenceFields);
    row += written(m_notesFields);
    return row;
}

void frmConfig::OK_Click()
{
    m_ui->Nam->setText(DeviceRecord::cutName(m_ui->Nam->text()));
    m_ui->Dept->setText(DeviceRecord::cutDepartment(m_ui->Dept->text()));
    m_ui->DDI->setText(DeviceRecord::cutDdi(m_ui->DDI->text()));

    // Several devices keep their own numbers: the number box is out of reach and never sent.
    const bool several = selectionCount() > 1;
    QList<DeviceRecord::PlannedDevice> plan;
    if (several) {
        plan.append({QString(), QString(m_ui->Nam->text()).remove(u'#')});
    } else {
        m_ui->Ext->setText(DeviceRecord::cutNumber(m_ui->Ext->text()));
        plan = DeviceRecord::sendingPlan(m_ui->Ext->text(), m_ui->Nam->text(), isNew());
    }
    if (plan.isEmpty()) {
        TranslateMsgBox(u"No extension number was entered.  The extension number is a mandatory value."_s);
        return;
    }

    const QStringList commands = DeviceRecord::storeCommands(buildRow(), idList(), plan);
    sendAll(commands);

    if (isNew()) {
        // The window stays for the next device; closing it now makes the directory ask again.
        m_outcome = WindowResult::savedNew();
        if (m_stopSending) {
            QDialog::reject(); // cancelled part-way through a range
            return;
        }
        m_ui->Tabs->setCurrentIndex(Page::General);
        m_ui->Ext->clear();
        m_ui->Ext->setFocus();
        return;
    }
    // One device is shown in place from what it stored; several make the directory ask for its
    // list again. The directory reads the kind, department and name by tag, so it gets them on
    // their own: in the row a private address book's Name comes before the device's.
    QString shown;
    SetOption(shown, u"Type"_s, DeviceRecord::kinds().value(kindIndex()));
    if (extensionPanelShown() || trunkPanelShown())
        SetOption(shown, u"Dept"_s, m_ui->Dept->text());
    SetOption(shown, u"Name"_s, plan.constLast().name);
    m_outcome = WindowResult::savedExisting(idList(), {}, shown);
    accept();
}

void frmConfig::sendAll(const QStringList &commands)
{
    // A range may be a hundred devices: the window keeps painting between them and takes Cancel,
    // which stops after the device being sent; no other input reaches the row meanwhile.
    m_ui->OK->setEnabled(false);
    const bool topEnabled = m_ui->TopPanel->isEnabled();
    m_ui->TopPanel->setEnabled(false);
    m_ui->Tabs->setEnabled(false);
    m_sending = true;
    m_stopSending = false;
    for (qsizetype index = 0; index < commands.size() && !m_stopSending; ++index) {
        if (commands.size() > 1)
            m_ui->Tip->setText(Translate({}, u"Saving <1> of <2>..."_s, QString::number(index + 1),
                                         QString::number(commands.size())));
        m_link.SendCommand(commands.at(index));
        if (index + 1 < commands.size())
            QCoreApplication::processEvents();
    }
    m_sending = false;
    if (commands.size() > 1)
        m_ui->Tip->setText(u" "_s);
    m_ui->Tabs->setEnabled(true);
    m_ui->TopPanel->setEnabled(topEnabled);
    m_ui->OK->setEnabled(true);
}

ButtonResult frmConfig::editAction(const QString &request)
{
    frmButton editor(m_scripts, m_plugins, this);
    return editor.Edit(request, u"Edit"_s);
}

void frmConfig::Cancel_Click()
{
    // After new devices were saved the outcome says so, and the directory asks for its list again.
    reject();
}

void frmConfig::reject()
{
    if (m_sending) {
        m_stopSending = true;
        return;
    }
    QDialog::reject();
}
