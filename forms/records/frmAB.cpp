// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmAB.h"
#include "ui_frmAB.h"

#include "guarded.h"
#include "pluginsession.h"
#include "tagvalue.h"
#include "tipfilter.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QButtonGroup>
#include <QHeaderView>
#include <QLoggingCategory>
#include <QMouseEvent>

#include <cmath>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcAddressBook, "quill.forms.addressbook", QtInfoMsg)

namespace {

const QList<ControlTip> bookTips{
    {u"aAdd"_s, u"QS123"_s, u"Check this to allow new entries to be added to this address book."_s},
    {u"aAlpha"_s, u"QS124"_s,
     u"Choose whether or not to show the alphabetical index in the Address Book window of QuillPhone."_s},
    {u"aName"_s, u"QS125"_s, u"Enter a name to display when the address book is used."_s},
    {u"aNote"_s, u"QS126"_s, u"Enter any administrative notes."_s},
    {u"Build"_s, u"QS127"_s, u"Click to force a refresh of this Address Book's cache."_s},
    {u"Cancel"_s, u"QS128"_s, u"Click to undo any changes and close this window."_s},
    {u"Config"_s, u"QS129"_s, u"Click to configure the details of this Address Book."_s},
    {u"OK"_s, u"QS130"_s, u"Click to save changes and close this window."_s},
    {u"plgName"_s, u"QS131"_s, u"Select the type of Address Book to use."_s},
    {u"cHour"_s, u"QS135"_s,
     u"The address book's data will be refreshed every time this number of hours elapses."_s},
    {u"uLive_0"_s, u"QS136"_s,
     u"Check this to use a live connection. Live Address Books are slower but will reflect immediate changes."_s},
    {u"uLive_1"_s, u"QS137"_s,
     u"Check this to use a cached connection. Cached Address Books are faster but do not reflect immediate changes."_s},
    {u"cTime"_s, u"QS138"_s, u"The address book's data will be refreshed every day at this time."_s},
    {u"DiscFrom"_s, u"QS139"_s,
     u"Enter the time to disconnect from this Addres Bok from. This allows the Address Book (database) to be backed up."_s},
    {u"DiscTo"_s, u"QS140"_s,
     u"Enter the time to reconnect to this Addres Bok from. This disconnection allows the Address Book (database) to be backed up."_s},
};

// The help text of each tab, shown when it is chosen.
const ControlTip tabTips[] = {
    {u"Tabs"_s, u"QS132"_s, u"Set up general information about the address book."_s},
    {u"Tabs"_s, u"QS133"_s, u"Enter update information for the address book."_s},
    {u"Tabs"_s, u"QS134"_s, u"Show statistical analysis of searches made in this Address Book."_s},
};

enum Tab { General, Update, Statistics };

// The last element of a data source's path: after the last backslash, or slash for a source on
// this machine; the whole text when there is neither.
QString lastPathElement(const QString &source)
{
    const qsizetype cut = std::max(source.lastIndexOf(u'\\'), source.lastIndexOf(u'/'));
    return source.mid(cut + 1);
}

} // namespace

frmAB::frmAB(ServerLink &link, const PluginList &plugins, QWidget *parent)
    : QDialog(parent), m_link(link), m_ui(std::make_unique<Ui::frmAB>()), m_plugins(plugins)
{
    m_ui->setupUi(this);
    m_ui->Tid->hide();

    auto *cache = new QButtonGroup(this);
    cache->addButton(m_ui->Cache_1, 1);
    cache->addButton(m_ui->Cache_2, 2);
    m_options.option(m_ui->aAlpha, u"Alpha"_s, u"0"_s, RecordForm::KeepEmpty)
        .option(m_ui->uLive_0, u"UseLive"_s, u"1"_s)
        .text(m_ui->DiscFrom, u"DisconnectFrom"_s)
        .text(m_ui->DiscTo, u"DisconnectTo"_s)
        .text(m_ui->cTime, u"ImportTime"_s)
        .text(m_ui->cHour, u"ImportHour"_s);
    m_moreOptions.text(m_ui->aNote, u"ABNotes"_s).option(cache, u"Cache"_s, u"1"_s);

    Guard(u" @ frmAB.Form_Load"_s, [&] { Form_Load(); });

    m_link.setReceiver(u"AB"_s, this);
    connectGuarded(m_ui->Tid, &QLineEdit::textChanged, this, u" @ frmAB.Tid_Change"_s, &frmAB::Tid_Change);
    connectGuarded(m_ui->uLive_0, &QCheckBox::clicked, this, u"  @  frmAB.uLive_Click"_s,
                   [this] { uLive_Click(0); });
    connectGuarded(m_ui->uLive_1, &QCheckBox::clicked, this, u"  @  frmAB.uLive_Click"_s,
                   [this] { uLive_Click(1); });
    connectGuarded(m_ui->Config, &QPushButton::clicked, this, u" @ frmAB.Config_Click"_s,
                   &frmAB::Config_Click);
    connectGuarded(m_ui->Build, &QPushButton::clicked, this, u" @ frmAB.Build_Click"_s, &frmAB::Build_Click);
    connectGuarded(m_ui->Tabs, &QTabWidget::currentChanged, this, u" @ frmAB.Tabs_Click"_s,
                   &frmAB::Tabs_Click);
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, u" @ frmAB.OK_Click"_s, &frmAB::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, u" @ frmAB.Cancel_Click"_s,
                   &frmAB::Cancel_Click);
}

frmAB::~frmAB()
{
    m_link.setReceiver(u"AB"_s, nullptr);
}

void frmAB::Form_Load()
{
    TranslateWindow(this);
    TranslateTabs(m_ui->Tabs);
    TranslateGrid(m_ui->sLast);
    // A click on the words beside a live/cached box counts as a click on the box.
    m_ui->Label7->installEventFilter(this);
    m_ui->Label8->installEventFilter(this);
    m_ui->Tip->setText(u" "_s);
    m_ui->Tip->setMinimumHeight(m_ui->Tip->fontMetrics().lineSpacing() * 3 + 8);

    for (const auto &[code, name] : m_plugins)
        m_ui->plgName->addItem(name, code);
    for (const QString &entry : {u"(None)"_s, u"Use contact name"_s, u"Use company name"_s})
        m_ui->aAlpha->addItem(Translate(entry));

    QHeaderView *header = m_ui->sLast->horizontalHeader();
    header->setSectionResizeMode(0, QHeaderView::Stretch);
    header->setSectionResizeMode(1, QHeaderView::Stretch);
    header->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    for (int row = 0; row < m_ui->sLast->rowCount(); ++row) {
        for (int column = 0; column < m_ui->sLast->columnCount(); ++column)
            m_ui->sLast->setItem(row, column, new QTableWidgetItem);
        m_ui->sLast->item(row, 2)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }

    m_tips = new TipFilter(m_ui->Tip, bookTips, {}, this);
    m_tips->watch(this);

    // A new book starts live, with no index and a daily refresh, as a record without settings loads.
    m_ui->aSource->setTextFormat(Qt::PlainText);
    m_options.load({});
    m_moreOptions.load({});
    m_ui->uLive_1->setChecked(!m_ui->uLive_0->isChecked());
    applyLiveRule();
    m_ui->Tabs->setCurrentIndex(General);
}

bool frmAB::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
        if (watched == m_ui->Label7 && m_ui->uLive_0->isEnabled())
            m_ui->uLive_0->click();
        else if (watched == m_ui->Label8 && m_ui->uLive_1->isEnabled())
            m_ui->uLive_1->click();
    }
    return QDialog::eventFilter(watched, event);
}

QString frmAB::id() const
{
    return m_ui->Tid->text();
}

int frmAB::idNumber() const
{
    return int(leadingNumber(id()));
}

QString frmAB::displayName(const QString &code) const
{
    for (const auto &[pluginCode, name] : m_plugins) {
        if (pluginCode.compare(code, Qt::CaseInsensitive) == 0)
            return name;
    }
    return code;
}

QString frmAB::typeCode() const
{
    // Each entry carries its code: a type whose plug-in is not installed here is listed by its code.
    return m_ui->plgName->currentData().toString();
}

void frmAB::Tid_Change()
{
    if (id().isEmpty())
        return;
    const int number = idNumber();
    m_ui->Build->setEnabled(number >= 0);
    if (number >= 0)
        m_link.GetData(u"AB"_s, id());
    else
        m_ui->plgName->setCurrentIndex(m_ui->plgName->count() > 0 ? 0 : -1);
    if (number == -2) {
        setWindowTitle(Translate(u"Private Address Book"_s));
        DataArrived(u"AB"_s, id().mid(3));
    } else {
        setWindowTitle(Translate(u"Public Address Book"_s));
    }
    // A private book has no update settings and no statistics.
    m_ui->Tabs->setTabEnabled(Update, number != -2);
    m_ui->Tabs->setTabEnabled(Statistics, number != -2);
}

void frmAB::DataArrived(const QString &, const QString &Message)
{
    Guard(u"  @  frmAB.DataArrived"_s, [&] {
        // A book without a type (a new private one) keeps the type chosen for it.
        const QString code = getText(Message, u"Type"_s);
        int entry =
            code.isEmpty() ? m_ui->plgName->currentIndex() : m_ui->plgName->findText(displayName(code));
        if (entry < 0 && !code.isEmpty()) {
            // Not installed on this machine: shown by its code and written back unchanged.
            m_ui->plgName->addItem(code, code);
            entry = m_ui->plgName->count() - 1;
            m_ui->Tip->setText(Translate(
                {},
                u"Could not configure '<1>'. Please ensure the '<2>' plugin is installed on this machine."_s,
                getText(Message, u"Name"_s), code));
            qCInfo(lcAddressBook) << "the plug-in of type" << code << "is not installed";
        }
        m_ui->plgName->setCurrentIndex(entry);

        const QString options = getText(Message, u"Options"_s);
        m_ui->aSource->setText(getText(options, u"Caption"_s));
        m_ui->aName->setText(getText(Message, u"Name"_s));
        m_ui->aName->setCursorPosition(0);
        m_plugVars = getText(options, u"PlugVars"_s);
        m_options.load(options);
        m_moreOptions.load(options);
        m_ui->uLive_1->setChecked(!m_ui->uLive_0->isChecked());

        const QString statistics = getText(Message, u"Statistics"_s);
        m_ui->sHitRate->setText(getText(statistics, u"HitRate"_s, u"0"_s) + u'%');
        QList<double> speeds;
        for (int row = 0; row < m_ui->sLast->rowCount(); ++row) {
            const QString search = getText(statistics, u"Find"_s + QString::number(row + 1));
            const QString speed = getText(search, u"Speed"_s);
            m_ui->sLast->item(row, 0)->setText(getText(search, u"Search"_s));
            m_ui->sLast->item(row, 1)->setText(getText(search, u"Result"_s));
            m_ui->sLast->item(row, 2)->setText(speed);
            if (!speed.isEmpty())
                speeds.append(leadingNumber(speed));
        }
        m_ui->sAveSpeed->setText(QLocale().toString(averageSpeed(speeds), 'g', 12));
        applyLiveRule();
    });
}

double frmAB::averageSpeed(const QList<double> &speeds)
{
    if (speeds.isEmpty())
        return 0;
    double total = 0;
    for (const double speed : speeds)
        total += speed;
    // Truncated, not rounded; the small allowance keeps 0.29 from reading as 0.289999...
    return std::floor(total / double(speeds.size()) * 1000 + 1e-9) / 1000;
}

void frmAB::uLive_Click(int index)
{
    QCheckBox *clicked = index == 0 ? m_ui->uLive_0 : m_ui->uLive_1;
    QCheckBox *other = index == 0 ? m_ui->uLive_1 : m_ui->uLive_0;
    other->setChecked(!clicked->isChecked());
    applyLiveRule();
}

void frmAB::applyLiveRule()
{
    const bool live = m_ui->uLive_0->isChecked();
    m_ui->uFrame_0->setEnabled(live);
    m_ui->uFrame_1->setEnabled(m_ui->uLive_1->isChecked());
    // Searches are counted only while the book is used live.
    m_ui->Tabs->setTabEnabled(Statistics, live && !isPrivate());
}

void frmAB::Config_Click()
{
    // One session object for the window's life, made again only when another type is chosen.
    if (!PluginSession::configure(m_plugin, typeCode(), m_ui->aName->text(), u"Data"_s, m_plugVars, this,
                                  u" @ frmAB.Config_Click"_s))
        return;
    m_ui->aSource->setText(getText(m_plugVars, u"Caption"_s));
    if (m_ui->aName->text().trimmed().isEmpty())
        m_ui->aName->setText(lastPathElement(m_ui->aSource->text()));
}

void frmAB::Build_Click()
{
    // The server finds the book by the name typed, which may not be saved yet.
    m_link.SendCommand(u"{Cmd=ABRebuild}{Ab="_s + m_ui->aName->text() + u'}');
}

void frmAB::Tabs_Click(int tab)
{
    if (tab >= 0 && tab < int(std::size(tabTips)))
        m_ui->Tip->setText(Translate(tabTips[tab].key, tabTips[tab].text));
}

QString frmAB::cleanName(const QString &name)
{
    QString clean = name.left(NameLength);
    if (clean.contains(u'(')) {
        clean.replace(u'(', u'[');
        clean.replace(u')', u']');
    }
    clean.remove(u'-');
    clean.remove(u'!');
    return clean;
}

QString frmAB::buildRecord()
{
    m_ui->aName->setText(cleanName(m_ui->aName->text()));
    for (QLineEdit *hour : {m_ui->DiscFrom, m_ui->DiscTo, m_ui->cTime, m_ui->cHour})
        hour->setText(hour->text().trimmed());

    QString options;
    m_options.save(options);
    AddVar(options, u"PlugVars"_s, m_plugVars);
    AddVar(options, u"Caption"_s, m_ui->aSource->text());
    m_moreOptions.save(options);

    QString record;
    AddVar(record, u"Type"_s, typeCode());
    AddVar(record, u"Name"_s, m_ui->aName->text());
    AddVar(record, u"Options"_s, options, true);
    return record;
}

void frmAB::OK_Click()
{
    const QString record = buildRecord();
    if (isPrivate()) {
        // The device window keeps the book: nothing goes to the server from here.
        QString handBack = u"{Index="_s + getText(id().mid(3), u"Index"_s) + u'}';
        AddVar(handBack, u"Fields"_s, record);
        m_outcome = WindowResult::savedExisting(u"-2"_s, {}, handBack);
        accept();
        return;
    }
    QString command = u"{Cmd=SetFields}{Table=AB}"_s;
    AddVar(command, u"Fields"_s, record);
    AddVar(command, u"Id"_s, id());
    m_link.SendCommand(command);
    m_outcome =
        idNumber() < 0
            ? WindowResult::savedNew()
            : WindowResult::savedExisting(id().section(u',', 0, 0),
                                          {m_ui->aName->text(), m_ui->plgName->currentText()}, record);
    accept();
}

void frmAB::Cancel_Click()
{
    m_outcome = WindowResult::cancelled();
    reject();
}
