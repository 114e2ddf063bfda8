// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmImport.h"
#include "ui_frmImport.h"

#include "errorlog.h"
#include "importplanmodel.h"
#include "serverlink.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>

using namespace Qt::StringLiterals;
using DevicePlan::State;

namespace {
frmImport::FileChooser fileChooser;
} // namespace

frmImport::frmImport(ServerLink &link, QWidget *parent)
    : QDialog(parent), m_link(link), m_ui(std::make_unique<Ui::frmImport>()), m_channel(link.session()),
      m_reader(m_channel), m_sender(m_channel), m_model(new ImportPlanModel(this)),
      m_filter(new ImportPlanFilter(this))
{
    m_ui->setupUi(this);
    // The captions of the form first: the texts set below are translated as they are made.
    TranslateWindow(this);
    const std::pair<QString, int> shown[]{{u"All rows"_s, -1},
                                          {u"New devices"_s, int(State::New)},
                                          {u"Changed devices"_s, int(State::Changed)},
                                          {u"Rejected rows"_s, int(State::Rejected)}};
    for (const auto &[text, state] : shown)
        m_ui->Filter->addItem(Translate(text), state);
    m_filter->setSourceModel(m_model);
    m_ui->Preview->setModel(m_filter);
    QHeaderView *header = m_ui->Preview->horizontalHeader();
    header->resizeSection(ImportPlanModel::LineColumn, 50);
    header->resizeSection(ImportPlanModel::ExtColumn, 90);
    header->resizeSection(ImportPlanModel::StateColumn, 100);
    m_ui->Preview->verticalHeader()->setDefaultSectionSize(m_ui->Preview->fontMetrics().height() + 6);

    connect(m_ui->Filter, &QComboBox::currentIndexChanged, this,
            [this] { m_filter->setState(m_ui->Filter->currentData().toInt()); });
    connect(m_ui->Partial, &QCheckBox::toggled, this, &frmImport::updateControls);
    connect(m_ui->Browse, &QPushButton::clicked, this,
            [this] { Guard(u" @ frmImport.Browse_Click"_s, [this] { Browse_Click(); }); });
    connect(m_ui->Send, &QPushButton::clicked, this,
            [this] { Guard(u" @ frmImport.Send_Click"_s, [this] { Send_Click(); }); });
    connect(m_ui->Cancel, &QPushButton::clicked, this,
            [this] { Guard(u" @ frmImport.Cancel_Click"_s, [this] { Cancel_Click(); }); });
    connect(&m_reader, &DeviceReader::progress, this, [this](int done, int total) {
        m_ui->Progress->setRange(0, total);
        m_ui->Progress->setValue(done);
    });
    connect(&m_reader, &DeviceReader::finished, this, [this](const DeviceReader::Result &result) {
        Guard(u" @ frmImport.readFinished"_s, [&] { readFinished(result); });
    });
    connect(&m_sender, &DeviceSender::progress, this, [this](qsizetype confirmed, qsizetype total) {
        m_ui->Progress->setRange(0, int(total));
        m_ui->Progress->setValue(int(confirmed));
    });
    connect(&m_sender, &DeviceSender::finished, this, [this](const DeviceSender::Result &result) {
        Guard(u" @ frmImport.sendFinished"_s, [&] { sendFinished(result); });
    });
    m_ui->Status->setText(Translate(u"Choose a CSV file of devices: its first row names the fields."_s));
    showFindings();
    setStep(Step::NoPlan);
}

frmImport::~frmImport() = default;

void frmImport::setFileChooser(FileChooser chooser)
{
    fileChooser = std::move(chooser);
}

void frmImport::Browse_Click()
{
    if (m_step == Step::Reading || m_step == Step::Sending)
        return;
    const QString path = fileChooser
                             ? fileChooser()
                             : QFileDialog::getOpenFileName(this, Translate(u"Import Devices"_s), QString(),
                                                            Translate(u"CSV files (*.csv)"_s) + u";;"_s +
                                                                Translate(u"All files (*)"_s));
    if (!path.isEmpty())
        openFile(path);
}

void frmImport::openFile(const QString &path)
{
    if (m_step == Step::Reading || m_step == Step::Sending)
        return;
    m_plan = {};
    m_model->clear();
    m_ui->Summary->clear();
    m_ui->Partial->setChecked(false);
    m_ui->FileName->setText(QDir::toNativeSeparators(path));
    m_sheet = DeviceSheet::read(path);
    showFindings();
    if (!m_sheet.ok()) {
        // A file that cannot be used at all: its reason, and nothing more is done.
        m_ui->Status->setText(m_sheet.failure);
        setStep(Step::NoPlan);
        return;
    }
    m_ui->Status->setText(Translate(u"Reading the devices from the server..."_s));
    setStep(Step::Reading);
    m_reader.start(DevicePlan::fieldsToRead(m_sheet));
}

void frmImport::readFinished(const DeviceReader::Result &result)
{
    if (m_step != Step::Reading)
        return;
    if (!result.ok()) {
        m_ui->Status->setText((result.cancelled ? Translate(u"Cancelled."_s) : result.error) + u'\n' +
                              Translate(u"Nothing was sent."_s));
        setStep(Step::NoPlan);
        return;
    }
    m_plan = DevicePlan::make(m_sheet, result.devices);
    m_model->setPlan(m_plan, m_sheet);
    m_ui->Summary->setText(m_plan.summary());
    const qsizetype sending = m_plan.sending();
    if (sending == 0)
        m_ui->Status->setText(Translate(u"Nothing to import: every row is unchanged or rejected."_s));
    else if (m_plan.count(State::Rejected) > 0)
        m_ui->Status->setText(
            Translate(u"Nothing is sent before you press Import. Rejected rows are never "
                      u"sent; tick the box above to import the other rows without them."_s));
    else
        m_ui->Status->setText(Translate(u"Nothing is sent before you press Import."_s));
    setStep(Step::Planned);
}

void frmImport::Send_Click()
{
    if (m_step != Step::Planned || !m_ui->Send->isEnabled())
        return;
    const QList<DeviceSender::Item> items = DeviceSender::itemsOf(m_plan);
    m_ui->Status->setText(Translate({}, u"Sending: <1>..."_s, TranslatePlural(items.size(), u"row"_s)));
    setStep(Step::Sending);
    m_ui->Progress->setRange(0, int(items.size()));
    m_sender.start(items);
}

void frmImport::sendFinished(const DeviceSender::Result &result)
{
    if (m_step != Step::Sending)
        return;
    m_ui->Status->setText(result.report());
    setStep(Step::Sent);
    // The directory shows what the server holds now, whatever part of the import reached it.
    m_link.GetData(u"MAIN-EXTS"_s);
}

void frmImport::Cancel_Click()
{
    switch (m_step) {
    case Step::Reading:
        m_reader.cancel();
        break;
    case Step::Sending:
        // What is in flight is still confirmed; the report then says what was written.
        m_ui->Status->setText(
            Translate(u"Cancelling: waiting for the server to confirm the rows already sent..."_s));
        m_ui->Cancel->setEnabled(false);
        m_sender.cancel();
        break;
    default:
        QDialog::reject();
        break;
    }
}

void frmImport::reject()
{
    Cancel_Click();
}

void frmImport::closeEvent(QCloseEvent *event)
{
    if (m_step == Step::Sending) {
        // The window stays until the report says which rows reached the server.
        event->ignore();
        Cancel_Click();
        return;
    }
    if (m_step == Step::Reading)
        m_reader.cancel();
    QDialog::closeEvent(event);
}

void frmImport::showFindings()
{
    QStringList lines;
    for (const DeviceSheet::Finding &finding : m_sheet.findings)
        lines.append(finding.severity == DeviceSheet::Finding::Warning
                         ? Translate({}, u"Warning: <1>"_s, finding.text)
                         : Translate({}, u"Error: <1>"_s, finding.text));
    m_ui->Findings->setPlainText(lines.join(u'\n'));
    m_ui->Findings->setVisible(!lines.isEmpty());
    m_ui->FindingsLabel->setVisible(!lines.isEmpty());
}

void frmImport::setStep(Step step)
{
    m_step = step;
    const bool busy = step == Step::Reading || step == Step::Sending;
    m_ui->Progress->setVisible(busy);
    if (step == Step::Reading)
        m_ui->Progress->setRange(0, 0);
    m_ui->Cancel->setEnabled(true);
    m_ui->Cancel->setText(step == Step::Sent ? Translate(u"Close"_s) : Translate(u"Cancel"_s));
    updateControls();
}

void frmImport::updateControls()
{
    const bool planned = m_step == Step::Planned;
    const qsizetype rejected = m_plan.count(State::Rejected);
    m_ui->Browse->setEnabled(m_step != Step::Reading && m_step != Step::Sending);
    m_ui->Partial->setVisible(rejected > 0);
    m_ui->Partial->setEnabled(planned);
    m_ui->Send->setEnabled(planned && m_plan.sending() > 0 &&
                           (rejected == 0 || m_ui->Partial->isChecked()));
}
