// SPDX-License-Identifier: GPL-3.0-or-later
// The main configuration window: pages, replies, keep-alive, saving and closing.
#include "frmMain.h"
#include "ui_frmMain.h"

#include "directorypage.h"
#include "errorlog.h"
#include "featurespage.h"
#include "networkpage.h"
#include "pluginhost.h"
#include "propertywindows.h"
#include "recordlist.h"
#include "sitepage.h"
#include "startup.h"
#include "statusline.h"
#include "tagvalue.h"
#include "tips.h"
#include "translate.h"
#include "translatewidgets.h"
#include "usrsession.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLoggingCategory>
#include <QTimer>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcMain, "quill.forms.main")

namespace {

// The MAIN- replies of one load, by their sub-reference.
const QStringList loadReplies{u"EXTS"_s,     u"PBX"_s,     u"AB"_s,     u"CAMPAIGNS"_s,
                              u"FEATURES"_s, u"SCRIPTS"_s, u"ROUTING"_s};

void placeOnPage(QWidget *panel, QWidget *page)
{
    panel->layout()->addWidget(page);
}

// A write command of a settings block: the literal, then the block as the field "Options" inside
// "Fields".
QString systemWrite(const QString &block, const QString &options)
{
    QString fields;
    AddVar(fields, u"Options"_s, options);
    QString command = u"{Cmd=SetFields}{Table=System}{Id="_s + block + u"}"_s;
    AddVar(command, u"Fields"_s, fields);
    return command;
}

} // namespace

frmMain::frmMain(ServerLink &link, QWidget *parent)
    : QMainWindow(parent), m_link(link), m_ui(std::make_unique<Ui::frmMain>()),
      m_windows(new PropertyWindows(this)), m_events(new SessionEvents(link, this)),
      m_pingTimer(new QTimer(this)), m_productName(u"QuillServer"_s)
{
    m_ui->setupUi(this);
    buildPages();
    Guard(u" @ frmMain.Form_Load"_s, [this] { Form_Load(); });

    m_link.setReceiver(u"MAIN"_s, this);
    // Address books are listed in their priority order, which the list's move buttons change.
    m_link.setAddressBookSort(u"Order"_s);
    m_link.setAddressBookNames([window = QPointer<frmMain>(this)] {
        return window && window->m_addressBooks ? window->m_addressBooks->names() : QStringList();
    });

    connect(&m_link.session(), &usrSession::SessionEvent, this, &frmMain::Sess_SessionEvent);
    connect(m_events, &SessionEvents::loadStarted, this, &frmMain::loadStarted);
    connect(m_events, &SessionEvents::logout, this, &QWidget::close);

    m_pingTimer->setObjectName(u"PingTimer"_s);
    m_pingTimer->setInterval(PingInterval);
    connect(m_pingTimer, &QTimer::timeout, this, &frmMain::PingTimer_Timer);

    connect(m_ui->Tabs, &QTabWidget::currentChanged, this, &frmMain::Tabs_Click);
    connect(m_ui->OK, &QPushButton::clicked, this, &frmMain::OK_Click);
    connect(m_ui->Cancel, &QPushButton::clicked, this, &frmMain::Cancel_Click);
    connect(m_ui->mnuErrorLog, &QAction::triggered, this, &frmMain::showErrors);
}

frmMain::~frmMain()
{
    m_link.setReceiver(u"MAIN"_s, nullptr);
}

void frmMain::buildPages()
{
    m_directory = new DirectoryPage(m_link, *m_windows, m_ui->picPanel_0);
    m_site = new SitePage(m_ui->picPanel_1);
    m_addressBooks = new RecordList(RecordKind::AddressBooks, m_link, *m_windows, m_ui->picPanel_2);
    m_campaigns = new RecordList(RecordKind::Campaigns, m_link, *m_windows, m_ui->picPanel_3);
    m_features = new FeaturesPage(m_ui->picPanel_4);
    m_routing = new RecordList(RecordKind::Routing, m_link, *m_windows, m_ui->picPanel_5);
    m_network = new NetworkPage(m_ui->picPanel_6);
    m_scripts = new RecordList(RecordKind::Scripts, m_link, *m_windows, m_ui->picPanel_7);

    placeOnPage(m_ui->picPanel_0, m_directory);
    placeOnPage(m_ui->picPanel_1, m_site);
    placeOnPage(m_ui->picPanel_2, m_addressBooks);
    placeOnPage(m_ui->picPanel_3, m_campaigns);
    placeOnPage(m_ui->picPanel_4, m_features);
    placeOnPage(m_ui->picPanel_5, m_routing);
    placeOnPage(m_ui->picPanel_6, m_network);
    placeOnPage(m_ui->picPanel_7, m_scripts);
}

void frmMain::Form_Load()
{
    setWindowTitle(Translate(u"Configuration"_s));
    TranslateTabs(m_ui->Tabs);
    TranslateWindow(this);

    // Address books show the display name of the plug-in that serves them.
    QHash<QString, QString> pluginNames;
    for (const auto &[code, name] : PluginHost::installedPlugins())
        pluginNames.insert(code.toUpper(), name);
    m_addressBooks->setSecondColumnText(
        [pluginNames](const QString &code) { return pluginNames.value(code.toUpper(), code); });

    m_status = new StatusLine(m_ui->statusBar, m_link.session(), this);
    // Room for three lines of help text, so that the window does not jump between tips.
    m_ui->Tip->setMinimumHeight(m_ui->Tip->fontMetrics().lineSpacing() * 3 + 12);
    m_ui->Tabs->setCurrentIndex(Directory);
    Tabs_Click(Directory);
    // Room for the directory's columns and the site's two columns of settings.
    resize(sizeHint().expandedTo(QSize(840, 600)));
    watchTips();
}

void frmMain::watchTips()
{
    m_tips = new TipFilter(
        m_ui->Tip, Tips::controlTips(),
        [this](const ControlTip &tip) {
            return Tips::controlTipText(tip, m_productName, m_site->systemType());
        },
        this);
    const QStringList missing = m_tips->watch(this);
    if (!missing.isEmpty())
        qCWarning(lcMain) << "controls without a window to show their tips in:" << missing;
}

void frmMain::setProductName(const QString &productName)
{
    m_productName = productName;
    setWindowTitle(Startup::windowTitle(productName));
    Tabs_Click(m_ui->Tabs->currentIndex());
}

RecordList *frmMain::recordList(RecordKind kind) const
{
    switch (kind) {
    case RecordKind::AddressBooks:
        return m_addressBooks;
    case RecordKind::Campaigns:
        return m_campaigns;
    case RecordKind::Routing:
        return m_routing;
    case RecordKind::Scripts:
        return m_scripts;
    }
    return nullptr;
}

void frmMain::Sess_SessionEvent(const QString &unused, const QString &kind, const QString &data)
{
    Guard(u" @ frmMain.Sess_SessionEvent: "_s, [&] { m_events->Sess_SessionEvent(unused, kind, data); });
}

void frmMain::loadStarted()
{
    m_arrived.clear();
    m_pingTimer->start();
    show();
}

void frmMain::DataArrived(const QString &SubRef, const QString &Message)
{
    Guard(u"  @  frmMain.DataArrived"_s, [&] {
        const QString subRef = SubRef.toUpper();
        if (subRef == u"EXTS"_s) {
            m_directory->fill(Message);
        } else if (subRef == u"PBX"_s) {
            m_pbxOptions = getText(Message, u"Options"_s);
            m_site->load(m_pbxOptions);
            m_network->load(m_pbxOptions);
            m_pbxLoaded = true;
        } else if (subRef == u"AB"_s) {
            m_addressBooks->fill(Message);
        } else if (subRef == u"CAMPAIGNS"_s) {
            m_campaigns->fill(Message);
        } else if (subRef == u"ROUTING"_s) {
            m_routing->fill(Message);
        } else if (subRef == u"SCRIPTS"_s) {
            m_scripts->fill(Message);
        } else if (subRef == u"FEATURES"_s) {
            m_featureOptions = getText(Message, u"Options"_s);
            m_features->load(m_featureOptions);
            m_featuresLoaded = true;
        } else {
            return;
        }
        markArrived(subRef);
    });
}

void frmMain::markArrived(const QString &subRef)
{
    const bool wasLoaded = isLoaded();
    m_arrived.insert(subRef);
    if (!wasLoaded && isLoaded())
        emit loaded();
}

bool frmMain::isLoaded() const
{
    for (const QString &reply : loadReplies) {
        if (!m_arrived.contains(reply))
            return false;
    }
    return true;
}

void frmMain::Tabs_Click(int index)
{
    Guard(u" @ frmMain.Tabs_Click"_s, [&] {
        // The tab widget shows the selected panel alone; the tip follows the page.
        m_ui->Tip->setText(Tips::pageTip(index, m_productName));
    });
}

QString frmMain::pbxCommand() const
{
    RecordEntries entries;
    m_site->save(entries);
    m_network->save(entries);
    // Tags the tool does not show stay in the record, after the ones it writes, exactly as stored.
    return systemWrite(u"PBX"_s, RecordForm::assemble(SettingsRecord::pbxTags(), entries, m_pbxOptions));
}

QString frmMain::featuresCommand() const
{
    return systemWrite(u"FEATURES"_s, m_features->record());
}

void frmMain::OK_Click()
{
    Guard(u" @ frmMain.OK_Click"_s, [this] {
        if (m_pbxLoaded)
            m_link.SendCommand(pbxCommand());
        if (m_featuresLoaded)
            m_link.SendCommand(featuresCommand());
        m_addressBooks->saveOrder();
    });
    close();
}

void frmMain::Cancel_Click()
{
    Guard(u" @ frmMain.Cancel_Click"_s, [this] { close(); });
}

void frmMain::PingTimer_Timer()
{
    Guard(u" @ frmMain.PingTimer_Timer"_s, [this] { m_link.SendCommand(u"{Cmd=Ping}{Handler=Branch}"_s); });
}

void frmMain::showErrors()
{
    Guard(u" @ frmMain.showErrors"_s, [this] { m_windows->open(ErrorsWindow, {}, this); });
}

void frmMain::closeEvent(QCloseEvent *event)
{
    Guard(u" @ frmMain.Form_Unload"_s, [this] { Form_Unload(); });
    event->accept();
}

void frmMain::Form_Unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    m_pingTimer->stop();
    m_link.session().CloseSession();
    emit unloaded();
    if (m_endsProgram)
        QApplication::quit();
}
