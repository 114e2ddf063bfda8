// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmExport.h"
#include "ui_frmExport.h"

#include "devicesheet.h"
#include "errorlog.h"
#include "serverlink.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {
frmExport::FileChooser fileChooser;
constexpr int TagRole = Qt::UserRole + 1;
} // namespace

frmExport::frmExport(ServerLink &link, const QStringList &listedIds, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmExport>()), m_channel(link.session()),
      m_reader(m_channel), m_listed(listedIds.cbegin(), listedIds.cend())
{
    m_ui->setupUi(this);
    // The captions of the form first: the texts with a count, set below, are translated as they are made.
    TranslateWindow(this);
    m_ui->Listed->setText(
        Translate({}, u"Only the <1> devices listed on the page"_s, QString::number(m_listed.size())));
    for (const DeviceSheet::Column &column : DeviceSheet::columns()) {
        const bool secret = DeviceSheet::isSecret(column.tag);
        auto *item = new QListWidgetItem(
            secret ? Translate({}, u"<1> (holds passwords)"_s, column.tag) : column.tag, m_ui->Fields);
        item->setData(TagRole, column.tag);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(DeviceSheet::defaultExportFields().contains(column.tag) ? Qt::Checked
                                                                                    : Qt::Unchecked);
    }
    // The fields in two columns, each as wide as the widest field with its box, all in sight.
    const QFontMetrics metrics = m_ui->Fields->fontMetrics();
    int widest = 0;
    for (int row = 0; row < m_ui->Fields->count(); ++row)
        widest = std::max(widest, metrics.horizontalAdvance(m_ui->Fields->item(row)->text()));
    const QSize cell(widest + 3 * metrics.height(), metrics.height() + 6);
    m_ui->Fields->setGridSize(cell);
    const int frame = 2 * m_ui->Fields->frameWidth() + cell.height() / 2;
    m_ui->Fields->setMinimumSize(2 * cell.width() + frame,
                                 (m_ui->Fields->count() + 1) / 2 * cell.height() + frame);
    m_ui->Fields->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The listed devices, unless the page's filter hides every device.
    m_ui->Listed->setEnabled(!m_listed.isEmpty());
    (m_listed.isEmpty() ? m_ui->AllDevices : m_ui->Listed)->setChecked(true);
    m_ui->Progress->hide();

    connect(m_ui->Fields, &QListWidget::itemChanged, this, &frmExport::updateControls);
    for (const auto &[button, state] :
         {std::pair{m_ui->TickAll, Qt::Checked}, std::pair{m_ui->TickNone, Qt::Unchecked}}) {
        connect(button, &QPushButton::clicked, this, [this, state = state] {
            for (int row = 0; row < m_ui->Fields->count(); ++row)
                m_ui->Fields->item(row)->setCheckState(state);
        });
    }
    connect(m_ui->OK, &QPushButton::clicked, this,
            [this] { Guard(u" @ frmExport.OK_Click"_s, [this] { OK_Click(); }); });
    connect(m_ui->Cancel, &QPushButton::clicked, this,
            [this] { Guard(u" @ frmExport.Cancel_Click"_s, [this] { Cancel_Click(); }); });
    connect(&m_reader, &DeviceReader::progress, this, [this](int done, int total) {
        m_ui->Progress->setRange(0, total);
        m_ui->Progress->setValue(done);
    });
    connect(&m_reader, &DeviceReader::finished, this, [this](const DeviceReader::Result &result) {
        Guard(u" @ frmExport.readFinished"_s, [&] { readFinished(result); });
    });
    updateControls();
}

frmExport::~frmExport() = default;

void frmExport::setFileChooser(FileChooser chooser)
{
    fileChooser = std::move(chooser);
}

QStringList frmExport::chosenFields() const
{
    QStringList fields;
    for (int row = 0; row < m_ui->Fields->count(); ++row) {
        const QListWidgetItem *item = m_ui->Fields->item(row);
        if (item->checkState() == Qt::Checked)
            fields.append(item->data(TagRole).toString());
    }
    return fields;
}

QString frmExport::chooseFile()
{
    if (fileChooser)
        return fileChooser();
    return QFileDialog::getSaveFileName(this, Translate(u"Export Devices"_s),
                                        QDir::home().filePath(u"devices.csv"_s),
                                        Translate(u"CSV files (*.csv)"_s));
}

void frmExport::OK_Click()
{
    const QStringList fields = chosenFields();
    if (fields.isEmpty() || isReading())
        return;
    QString path = chooseFile();
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += u".csv"_s;
    // The file is opened before the read, so that a folder that cannot be written is said at once
    // and not after every device has been read; it replaces the old file only once it is complete.
    auto file = std::make_unique<QSaveFile>(path);
    if (!file->open(QIODevice::WriteOnly)) {
        m_ui->Status->setText(Translate({}, u"The file \"<1>\" cannot be written: <2>"_s,
                                        QDir::toNativeSeparators(path), file->errorString()));
        return;
    }
    m_file = std::move(file);
    m_ui->Status->setText(Translate(u"Reading the devices from the server..."_s));
    setReading(true);
    m_reader.start(fields);
}

void frmExport::readFinished(const DeviceReader::Result &result)
{
    std::unique_ptr<QSaveFile> file = std::move(m_file);
    setReading(false);
    if (!file)
        return;
    const QString path = QDir::toNativeSeparators(file->fileName());
    if (result.cancelled) {
        m_ui->Status->setText(Translate(u"Cancelled: no file was written."_s));
        return;
    }
    if (!result.ok()) {
        m_ui->Status->setText(result.error + u'\n' + Translate(u"No file was written."_s));
        return;
    }
    DeviceSheet::Table devices = result.devices;
    if (m_ui->Listed->isChecked()) {
        const qsizetype idAt = devices.indexOf(u"Id");
        devices.rows.removeIf([&](const QStringList &row) { return !m_listed.contains(row.value(idAt)); });
    }
    // UTF-8 with a byte-order mark: without it spreadsheet programs read a CSV in the system's
    // legacy code page and garble every name beyond ASCII; with it they open the file as UTF-8.
    // The import (Csv::readFile) skips the mark.
    QByteArray bytes("\xEF\xBB\xBF");
    bytes += DeviceSheet::write(chosenFields(), devices).toUtf8();
    if (file->write(bytes) != bytes.size() || !file->commit()) {
        m_ui->Status->setText(
            Translate({}, u"The file \"<1>\" cannot be written: <2>"_s, path, file->errorString()));
        return;
    }
    m_ui->Status->setText(
        Translate({}, u"<1> written to \"<2>\"."_s, TranslatePlural(devices.rows.size(), u"device"_s), path));
    m_ui->Cancel->setText(Translate(u"Close"_s));
}

void frmExport::Cancel_Click()
{
    if (isReading())
        m_reader.cancel();
    else
        QDialog::reject();
}

void frmExport::reject()
{
    Cancel_Click();
}

void frmExport::closeEvent(QCloseEvent *event)
{
    // Closing during the read stops it: nothing is written, and nothing is lost.
    if (isReading())
        m_reader.cancel();
    QDialog::closeEvent(event);
}

void frmExport::setReading(bool reading)
{
    m_ui->Progress->setVisible(reading);
    m_ui->Progress->setRange(0, 0);
    updateControls();
}

void frmExport::updateControls()
{
    const bool reading = isReading();
    const QStringList fields = chosenFields();
    m_ui->OK->setEnabled(!reading && !fields.isEmpty());
    m_ui->Fields->setEnabled(!reading);
    m_ui->TickAll->setEnabled(!reading);
    m_ui->TickNone->setEnabled(!reading);
    m_ui->DevicesGroup->setEnabled(!reading);
    m_ui->PasswordNote->setVisible(std::any_of(
        fields.cbegin(), fields.cend(), [](const QString &tag) { return DeviceSheet::isSecret(tag); }));
}
