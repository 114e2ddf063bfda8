// SPDX-License-Identifier: GPL-3.0-or-later
// The Site page: loading and saving the PBX settings, and the controls each telephone system needs.
#include "sitepage.h"
#include "ui_sitepage.h"

#include "controls.h"
#include "errorlog.h"
#include "tagvalue.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
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
    SerialOnly, // TELRAD: always a serial link; only the port is chosen
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

// Selects the entry whose text is text in any case; a value the list does not offer is added, so
// that saving gives back what was stored. Empty text selects nothing.
void selectText(QComboBox *combo, const QString &text)
{
    if (text.isEmpty()) {
        combo->setCurrentIndex(-1);
        return;
    }
    int index = ListSearch(combo, text);
    if (index < 0) {
        combo->addItem(text);
        index = combo->count() - 1;
    }
    combo->setCurrentIndex(index);
}

} // namespace

namespace SettingsRecord {

const QStringList &PbxTags()
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

QString Build(const QStringList &tags, const RecordValues &values, const QString &original)
{
    QString record;
    for (const QString &tag : tags)
        AddVar(record, tag, values.value(tag));
    AppendOtherTags(record, original, tags);
    return record;
}

void AppendOtherTags(QString &record, const QString &original, const QStringList &known)
{
    for (int index = 1;; ++index) {
        QString name;
        const QVariant value = GetVar(original, index, &name);
        if (name.isEmpty())
            break;
        if (!known.contains(name, Qt::CaseInsensitive))
            AddVar(record, name, value);
    }
}

} // namespace SettingsRecord

SitePage::SitePage(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::SitePage>())
{
    m_ui->setupUi(this);
    m_textFields = {{m_ui->sName, u"Name"_s},      {m_ui->sTrunk, u"Trunk"_s},       {m_ui->sLCR, u"LCR"_s},
                    {m_ui->sArea, u"Area"_s},      {m_ui->sOperator, u"Operator"_s}, {m_ui->sRandom, u"Random"_s},
                    {m_ui->sNumbers, u"Numbers"_s}, {m_ui->Settings, u"Settings"_s},  {m_ui->Ip, u"Ip"_s},
                    {m_ui->Port, u"Port"_s},       {m_ui->Server, u"Server"_s},      {m_ui->Uname, u"Username"_s},
                    {m_ui->PWord, u"Password"_s},  {m_ui->sVM, u"VM"_s},             {m_ui->sVMIP, u"VMIp"_s}};
    m_ui->sType->addItems(SystemTypes());
    m_ui->Comm->addItems(Connections());
    m_ui->sVMType->addItems(VoiceMailTypes());
    m_ui->sType->setCurrentIndex(-1);
    m_ui->Comm->setCurrentIndex(-1);
    m_ui->Settings->setText(defaultSerialSettings);
    // The groups of each column have forms of their own; their fields line up in one column.
    AlignFormLabels({m_ui->fraSite, m_ui->fraVoiceMail});
    AlignFormLabels({m_ui->fraPBX});

    connect(m_ui->sType, &QComboBox::currentIndexChanged, this,
            [this] { Guard(u" @ frmMain.sType_Click"_s, [this] { sType_Click(); }); });
    connect(m_ui->Comm, &QComboBox::currentIndexChanged, this,
            [this] { Guard(u" @ frmMain.Comm_Click"_s, [this] { Comm_Click(); }); });
    connect(m_ui->sVMType, &QComboBox::currentIndexChanged, this,
            [this] { Guard(u" @ frmMain.sVMType_Click"_s, [this] { sVMType_Click(); }); });
    sType_Click();
    sVMType_Click();
}

SitePage::~SitePage() = default;

const QStringList &SitePage::SystemTypes()
{
    static const QStringList types{
        u"ALCATEL"_s,  u"AVAYA ECS"_s, u"ERICSSON"_s, u"INTERTEL"_s, u"MITEL"_s,   u"NEC"_s,
        nortelShown,   u"PANASONIC"_s, u"SIEMENS"_s,  u"TELRAD"_s,   u"TOSHIBA"_s, u"Demonstration mode"_s,
        u"Not used"_s,
    };
    return types;
}

const QStringList &SitePage::VoiceMailTypes()
{
    static const QStringList types{noVoiceMail, u"VoxBox"_s, u"VoxPro"_s, u"External Voice Mail"_s,
                                   u"Internal Voice Mail"_s};
    return types;
}

const QStringList &SitePage::Connections()
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
    GetOption(m_ui->AutoDir, GetText(options, u"AutoDir"_s, u"0"_s));
    for (const auto &[edit, tag] : m_textFields)
        edit->setText(GetText(options, tag));
    if (m_ui->Settings->text().isEmpty())
        m_ui->Settings->setText(defaultSerialSettings);

    // The connection first: choosing the type applies the connection rule to it.
    {
        const QSignalBlocker blockComm(m_ui->Comm);
        selectText(m_ui->Comm, GetText(options, u"Comm"_s));
    }
    m_storedType = GetText(options, u"PBX"_s);
    {
        const QSignalBlocker blockType(m_ui->sType);
        const bool nortel = m_storedType.compare(nortelStored, Qt::CaseInsensitive) == 0;
        selectText(m_ui->sType, nortel ? nortelShown : m_storedType);
    }
    m_shownType = m_ui->sType->currentText();
    {
        const QSignalBlocker blockVoiceMail(m_ui->sVMType);
        selectText(m_ui->sVMType, GetText(options, u"VMType"_s, noVoiceMail));
    }
    sType_Click();
    sVMType_Click();
    // Long values show from their beginning.
    for (QLineEdit *edit : findChildren<QLineEdit *>())
        edit->setCursorPosition(0);
}

void SitePage::save(RecordValues &values) const
{
    values.insert(u"AutoDir"_s, m_ui->AutoDir->isChecked() ? 1 : 0);
    // Fields a type or a voice-mail type hides keep their text: switching back loses nothing.
    for (const auto &[edit, tag] : m_textFields)
        values.insert(tag, edit->text());
    // A type left as loaded goes back as it was stored: a site whose server runs a "NORTEL CTE"
    // link keeps that name, though the list calls the system "Nortel BCM". A type chosen from the
    // list is written as the list names it.
    const QString type = m_ui->sType->currentText();
    values.insert(u"PBX"_s, type == m_shownType ? m_storedType : type);
    values.insert(u"Comm"_s, m_ui->Comm->currentText());
    values.insert(u"VMType"_s, m_ui->sVMType->currentText());
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
            selectText(m_ui->Comm, tcpIp);
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
        if (m_ui->Comm->currentText() == tcpIp || m_ui->Comm->currentIndex() < 0) {
            const QSignalBlocker blockComm(m_ui->Comm);
            selectText(m_ui->Comm, Connections().at(1));
        }
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

void AlignFormLabels(const QList<QWidget *> &containers)
{
    QList<QWidget *> labels;
    int width = 0;
    for (QWidget *container : containers) {
        for (QFormLayout *form : container->findChildren<QFormLayout *>()) {
            for (int row = 0; row < form->rowCount(); ++row) {
                QLayoutItem *item = form->itemAt(row, QFormLayout::LabelRole);
                if (item && item->widget()) {
                    labels << item->widget();
                    width = std::max(width, item->widget()->sizeHint().width());
                }
            }
        }
    }
    for (QWidget *label : labels)
        label->setMinimumWidth(width);
}
