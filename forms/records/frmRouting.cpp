// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmRouting.h"
#include "ui_frmRouting.h"

#include "errorlog.h"
#include "guarded.h"
#include "tagvalue.h"
#include "tipfilter.h"
#include "translate.h"
#include "translatewidgets.h"

using namespace Qt::StringLiterals;

namespace {

// rDate and rTime share one key: a translation of it replaces both texts alike.
const QList<ControlTip> routingTips{
    {u"rAB"_s, u"QS064"_s, u"Select the Address Book to check callers against."_s},
    {u"rCalled"_s, u"QS065"_s,
     u"Enter any criteria to match for called numbers.  Wildcards (*) and Commas (,) are valid."_s},
    {u"rCaller"_s, u"QS066"_s,
     u"Enter any criteria to match for callers.  Wildcards (*) and Commas (,) are valid."_s},
    {u"rDestination"_s, u"QS067"_s, u"Enter the destination address to route calls to.  This entry is mandatory."_s},
    {u"rExt"_s, u"QS068"_s,
     u"Enter any criteria to match for ringing extensions.  Wildcards (*) and Commas (,) are valid."_s},
    {u"rName"_s, u"QS069"_s, u"Enter the name of this Routing Condition."_s},
    {u"Cancel"_s, u"QS070"_s, u"Click to undo any changes and close this window."_s},
    {u"OK"_s, u"QS071"_s, u"Click to save changes and close this window."_s},
    {u"rDay"_s, u"QS143"_s, u"Enter the weekday(s) during which this Route will operate."_s},
    {u"rDate"_s, u"QS144"_s,
     u"Enter the Date(s) during which this Route will operate.  Multiple dates can be separated by commas."_s},
    {u"rTime"_s, u"QS144"_s,
     u"Enter the times during which this Route will operate. This can be a list, ie 09:00-11:30, 14:00-17:00"_s},
};

} // namespace

frmRouting::frmRouting(ServerLink &link, const QStringList &addressBooks, int conditionCount, QWidget *parent)
    : QDialog(parent), m_link(link), m_ui(std::make_unique<Ui::frmRouting>()), m_conditionCount(conditionCount)
{
    m_ui->setupUi(this);
    m_ui->Tid->hide();
    // Day is a number and always written: -1 when no rule is chosen, 0 for any day.
    m_criteria.text(m_ui->rCaller, u"Caller"_s)
        .text(m_ui->rCalled, u"Called"_s)
        .text(m_ui->rExt, u"Ext"_s)
        .choice(m_ui->rAB, u"AB"_s)
        .option(m_ui->rDay, u"Day"_s, u"-1"_s, RecordForm::KeepEmpty)
        .text(m_ui->rDate, u"Date"_s)
        .text(m_ui->rTime, u"Time"_s)
        .text(m_ui->rDestination, u"Destination"_s);
    Guard(u" @ frmRouting.Load"_s, [&] { Form_Load(addressBooks); });

    m_link.setReceiver(u"ROUTING"_s, this);
    connectGuarded(m_ui->Tid, &QLineEdit::textChanged, this, u" @ frmRouting.Tid_Change"_s, &frmRouting::Tid_Change);
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, u" @ frmRouting.OK_Click"_s, &frmRouting::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, u" @ frmRouting.Cancel_Click"_s,
                   &frmRouting::Cancel_Click);
}

frmRouting::~frmRouting()
{
    m_link.setReceiver(u"ROUTING"_s, nullptr);
}

const QStringList &frmRouting::dayNames()
{
    static const QStringList names{u"Monday"_s, u"Tuesday"_s,  u"Wednesday"_s,     u"Thursday"_s,     u"Friday"_s,
                                   u"Saturday"_s, u"Sunday"_s, u"Weekdays only"_s, u"Weekends only"_s};
    return names;
}

void frmRouting::Form_Load(const QStringList &addressBooks)
{
    TranslateWindow(this);
    m_ui->Tip->setText(u" "_s);
    m_ui->Tip->setMinimumHeight(m_ui->Tip->fontMetrics().lineSpacing() * 3 + 8);

    m_ui->rAB->clear();
    m_ui->rAB->addItem(QString());
    m_ui->rAB->addItems(addressBooks);
    m_ui->rDay->clear();
    m_ui->rDay->addItem(QString()); // any day
    for (const QString &day : dayNames())
        m_ui->rDay->addItem(Translate(day));
    // A new condition starts with no rule chosen.
    m_ui->rAB->setCurrentIndex(-1);
    m_ui->rDay->setCurrentIndex(-1);
    m_ui->rName->setMaxLength(NameLength);

    m_tips = new TipFilter(m_ui->Tip, routingTips, {}, this);
    m_tips->watch(this);
}

QString frmRouting::id() const
{
    return m_ui->Tid->text();
}

bool frmRouting::isNew() const
{
    return leadingNumber(id()) == -1;
}

void frmRouting::Tid_Change()
{
    if (!id().isEmpty() && !isNew())
        m_link.GetData(u"ROUTING"_s, id());
}

void frmRouting::DataArrived(const QString &, const QString &Message)
{
    Guard(u"  @  frmRouting.DataArrived"_s, [&] {
        m_options = getText(Message, u"Options"_s);
        m_ui->rName->setText(getText(Message, u"Name"_s));
        m_ui->rName->setCursorPosition(0);
        m_criteria.load(m_options);
    });
}

void frmRouting::OK_Click()
{
    m_ui->rName->setText(m_ui->rName->text().left(NameLength));
    // The order kept in the loaded criteria wins; the record's own Order is never read, so a
    // condition saved here without one goes after those listed, new or edited.
    QVariant order = GetVar(m_options, u"Order"_s);
    if (tagValueText(order).isEmpty())
        order = m_conditionCount + 1;
    m_options = m_criteria.record();

    QString record;
    AddVar(record, u"Order"_s, order);
    AddVar(record, u"Name"_s, m_ui->rName->text());
    AddVar(record, u"Options"_s, m_options, true);
    QString command = u"{Cmd=SetFields}{Table=Routing}"_s;
    AddVar(command, u"Fields"_s, record);
    AddVar(command, u"Id"_s, id());
    m_link.SendCommand(command);

    m_outcome = isNew() ? WindowResult::savedNew()
                        : WindowResult::savedExisting(id().section(u',', 0, 0),
                                                      {m_ui->rName->text(), m_ui->rDestination->text()}, record);
    accept();
}

void frmRouting::Cancel_Click()
{
    m_outcome = WindowResult::cancelled();
    reject();
}
