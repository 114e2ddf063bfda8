// SPDX-License-Identifier: GPL-3.0-or-later
// The Export window of the directory: the device fields to write, the devices (those listed on the
// page or all), and a CSV file that a spreadsheet opens and the Import window reads back.
#pragma once

#include "devicetransfer.h"

#include <QDialog>
#include <QSet>

#include <functional>
#include <memory>

namespace Ui {
class frmExport;
}
class QSaveFile;
class ServerLink;

class frmExport : public QDialog
{
    Q_OBJECT
public:
    // The file to write, or empty when the user chose none.
    using FileChooser = std::function<QString()>;

    // listedIds: the devices the directory lists now (after its quick filter).
    frmExport(ServerLink &link, const QStringList &listedIds, QWidget *parent = nullptr);
    ~frmExport() override;

    // Test seam: the file is asked of chooser instead of a Save dialog; an empty function restores it.
    static void setFileChooser(FileChooser chooser);

    // The ticked fields, in the list's order.
    QStringList chosenFields() const;
    bool isReading() const { return m_file != nullptr; }

    // Asks for the file, then reads the devices and writes them.
    void OK_Click();
    // Stops a read; otherwise closes the window.
    void Cancel_Click();

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    QString chooseFile();
    void readFinished(const DeviceReader::Result &result);
    void setReading(bool reading);
    void updateControls();

    std::unique_ptr<Ui::frmExport> m_ui;
    SessionChannel m_channel;
    DeviceReader m_reader;
    QSet<QString> m_listed;
    std::unique_ptr<QSaveFile> m_file; // open while the devices are read
};
