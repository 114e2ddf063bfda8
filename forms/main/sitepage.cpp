// SPDX-License-Identifier: GPL-3.0-or-later
// The Site page: loading and saving the PBX settings, and the controls each telephone system needs.
#include "sitepage.h"
#include "ui_sitepage.h"

#include "controls.h"
#include "errorlog.h"
#include "formlayout.h"
#include "guarded.h"
#include "tagvalue.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

const QString nortelStored = u"NORTEL CTE"_s;
const QString nortelShown = u"Nortel BCM"_s;
const QString tcpIp = u"Tcp/Ip"_s;
const QString defaultSerialSettings = u"19200,n,8,1"_s;
const QString noVoiceMail = u"(None)"_s;

// How a type reaches its telephone system.
enum class Connection {
    None,       // no connection settings on the page (the type has none, or none is selected)
    Selectable, // the administrator picks the network or a serial port
    SerialOnly, // TELRAD: the type fixes the link; the choice stored is kept as it is
    Fixed,      // NORTEL BCM: reached through the Nortel CTE beside the server; nothing to enter
};

// The containment tests are substring searches in a comma-joined list, so a type that is part of
// a listed name ("TEL") takes that entry's rule.
bool listedIn(const QString &list, const QString &upperType)
{
    return !upperType.isEmpty() && list.contains(upperType);
}

Connection connectionOf(const QString &upperType)
{
    if (upperType == u"TELRAD"_s)
        return Connection::SerialOnly;
    if (listedIn(u"SIEMENS,INTERTEL"_s, upperType) || listedIn(u"TELRAD,TOSHIBA"_s, upperType))
        return Connection::Selectable;
    if (listedIn(u"NORTEL BCM"_s, upperType))
        return Connection::Fixed;
    return Connection::None;
}

} // namespace

namespace SettingsRecord {

const QStringList &pbxTags()
{
    static const QStringList tags{
        u"AutoDir"_s,  u"Name"_s,       u"Trunk"_s,        u"LCR"_s,        u"Area"_s,
        u"Operator"_s, u"PBX"_s,        u"Comm"_s,         u"Random"_s,     u"Numbers"_s,
        u"Settings"_s, u"Ip"_s,         u"Port"_s,         u"Server"_s,     u"Username"_s,
        u"Password"_s, u"FatalAlert"_s, u"WarningAlert"_s, u"DailyAlert"_s, u"SendUpdates"_s,
        u"SendPath"_s, u"Cluster"_s,    u"VMType"_s,       u"VM"_s,         u"VMIp"_s,
    };
    return tags;
}

} // namespace SettingsRecord

SitePage::SitePage(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::SitePage>())
{
    m_ui->setupUi(this);
    // Fields a type or a voice-mail type hides keep their text: switching back loses nothing.
    m_form.option(m_ui->AutoDir, u"AutoDir"_s, u"0"_s)
        .text(m_ui->sName, u"Name"_s)
        .text(m_ui->sTrunk, u"Trunk"_s)
        .text(m_ui->sLCR, u"LCR"_s)
        .text(m_ui->sArea, u"Area"_s)
        .text(m_ui->sOperator, u"Operator"_s)
        .choice(m_ui->Comm, u"Comm"_s, {}, RecordForm::AddMissing)
        .text(m_ui->sRandom, u"Random"_s)
        .text(m_ui->sNumbers, u"Numbers"_s)
        .text(m_ui->Settings, u"Settings"_s, defaultSerialSettings)
        .text(m_ui->Ip, u"Ip"_s)
        .text(m_ui->Port, u"Port"_s)
        .text(m_ui->Server, u"Server"_s)
        .text(m_ui->Uname, u"Username"_s)
        .text(m_ui->PWord, u"Password"_s)
        .choice(m_ui->sVMType, u"VMType"_s, noVoiceMail, RecordForm::AddMissing)
        .text(m_ui->sVM, u"VM"_s)
        .text(m_ui->sVMIP, u"VMIp"_s);
    m_ui->sType->addItems(systemTypes());
    m_ui->Comm->addItems(connections());
    m_ui->sVMType->addItems(voiceMailTypes());
    m_ui->sType->setCurrentIndex(-1);
    m_ui->Comm->setCurrentIndex(-1);
    m_ui->Settings->setText(defaultSerialSettings);
    // The groups of each column have forms of their own; their fields line up in one column.
    alignFormLabels({m_ui->fraSite, m_ui->fraVoiceMail});
    alignFormLabels({m_ui->fraPBX});

    connectGuarded(m_ui->sType, &QComboBox::currentIndexChanged, this, u" @ frmMain.sType_Click"_s,
                   &SitePage::sType_Click);
    connectGuarded(m_ui->Comm, &QComboBox::currentIndexChanged, this, u" @ frmMain.Comm_Click"_s,
                   &SitePage::Comm_Click);
    connectGuarded(m_ui->sVMType, &QComboBox::currentIndexChanged, this, u" @ frmMain.sVMType_Click"_s,
                   &SitePage::sVMType_Click);
    sType_Click();
    sVMType_Click();
}

SitePage::~SitePage() = default;

const QStringList &SitePage::systemTypes()
{
    static const QStringList types{
        u"ALCATEL"_s,  u"AVAYA ECS"_s, u"ERICSSON"_s, u"INTERTEL"_s, u"MITEL"_s,   u"NEC"_s,
        nortelShown,   u"PANASONIC"_s, u"SIEMENS"_s,  u"TELRAD"_s,   u"TOSHIBA"_s, u"Demonstration mode"_s,
        u"Not used"_s,
    };
    return types;
}

const QStringList &SitePage::voiceMailTypes()
{
    static const QStringList types{noVoiceMail, u"VoxBox"_s, u"VoxPro"_s, u"External Voice Mail"_s,
                                   u"Internal Voice Mail"_s};
    return types;
}

const QStringList &SitePage::connections()
{
    static const QStringList connections = [] {
        QStringList list{tcpIp};
        for (int port = 1; port <= 8; ++port)
            list << u"Com%1:"_s.arg(port);
        return list;
    }();
    return connections;
}

void SitePage::load(const QString &options)
{
    {
        // The connection first, quietly: choosing the type applies the connection rule to it.
        const QSignalBlocker blockComm(m_ui->Comm);
        const QSignalBlocker blockType(m_ui->sType);
        const QSignalBlocker blockVoiceMail(m_ui->sVMType);
        m_form.load(options);
        if (m_ui->Settings->text().isEmpty())
            m_ui->Settings->setText(defaultSerialSettings);
        QString type = getText(options, u"PBX"_s);
        if (type.compare(nortelStored, Qt::CaseInsensitive) == 0)
            type = nortelShown;
        int index = type.isEmpty() ? -1 : ListSearch(m_ui->sType, type);
        if (index < 0 && !type.isEmpty()) {
            m_ui->sType->addItem(type); // a type this tool does not know is saved back as it was
            index = m_ui->sType->count() - 1;
        }
        m_ui->sType->setCurrentIndex(index);
    }
    sType_Click();
    sVMType_Click();
}

void SitePage::save(RecordEntries &entries) const
{
    m_form.collect(entries);
    // The type as the list shows it: a site loaded as "NORTEL CTE" is saved as "Nortel BCM".
    QString type;
    AddVar(type, u"PBX"_s, m_ui->sType->currentText());
    if (!type.isEmpty())
        entries.insert(u"pbx"_s, type);
}

QString SitePage::systemType() const
{
    return m_ui->sType->currentText();
}

void SitePage::sType_Click()
{
    QWidget *const groups[] = {m_ui->bPort,  m_ui->bIp,   m_ui->bIPPort, m_ui->bComm,
                               m_ui->pPword, m_ui->pDemo, m_ui->pAvaya,  m_ui->pAuto};
    for (QWidget *group : groups)
        group->hide();

    const QString type = systemType().toUpper();
    if (type.isEmpty())
        return; // no type chosen yet: nothing to configure
    if (listedIn(u"SIEMENS,INTERTEL"_s, type)) {
        m_ui->pPword->show();
        m_ui->bPort->show();
        m_ui->pAuto->show();
        Comm_Click();
    } else if (listedIn(u"TELRAD,TOSHIBA"_s, type)) {
        m_ui->bPort->show();
        Comm_Click();
    } else if (listedIn(u"NORTEL BCM"_s, type)) {
        // bPort stays hidden; pAuto, next in the layout, takes the place of bIp.
        m_ui->pAuto->show();
        {
            const QSignalBlocker blockComm(m_ui->Comm);
            m_ui->Comm->setCurrentIndex(ListSearch(m_ui->Comm, tcpIp));
        }
        Comm_Click();
    } else if (type == u"DEMONSTRATION MODE"_s) {
        m_ui->pDemo->show();
    } else if (type == u"AVAYA ECS"_s) {
        m_ui->pAvaya->show();
        m_ui->pPword->show();
        m_ui->pAuto->show();
    } else {
        // With pAvaya hidden, pAuto stands where pAvaya would.
        m_ui->pAuto->show();
    }
}

void SitePage::Comm_Click()
{
    m_ui->bIp->hide();
    m_ui->bIPPort->hide();
    m_ui->bComm->hide();

    switch (connectionOf(systemType().toUpper())) {
    case Connection::None:
    case Connection::Fixed:
        return;
    case Connection::SerialOnly:
        // The type fixes the connection: the choice is never changed here, so a stored "Tcp/Ip"
        // stays; a serial port chosen shows its settings.
        if (m_ui->Comm->currentIndex() >= 0 && m_ui->Comm->currentText() != tcpIp)
            m_ui->bComm->show();
        return;
    case Connection::Selectable:
        break;
    }
    if (m_ui->Comm->currentIndex() < 0)
        return; // nothing chosen yet
    if (m_ui->Comm->currentText() == tcpIp) {
        m_ui->bIp->show();
        m_ui->bIPPort->show();
    } else {
        m_ui->bComm->show();
    }
}

void SitePage::sVMType_Click()
{
    // VoxBox, VoxPro and an external voice mail are servers of their own on the network; the
    // telephone system's internal voice mail is reached through the PBX alone.
    const QString type = m_ui->sVMType->currentText();
    const bool any = !type.isEmpty() && type != noVoiceMail;
    const bool networked = any && type != u"Internal Voice Mail"_s;
    m_ui->sVM->setEnabled(any);
    m_ui->sVMIP->setEnabled(networked);
}
