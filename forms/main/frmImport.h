// SPDX-License-Identifier: GPL-3.0-or-later
// The Import window of the directory: a CSV file of devices is checked, planned against the
// devices the server holds and shown row by row; only Import sends, and the end says which lines
// reached the server.
#pragma once

#include "deviceplan.h"
#include "devicetransfer.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class frmImport;
}
class ImportPlanFilter;
class ImportPlanModel;
class ServerLink;

class frmImport : public QDialog
{
    Q_OBJECT
public:
    // The file to read, or empty when the user chose none.
    using FileChooser = std::function<QString()>;
    enum class Step { NoPlan, Reading, Planned, Sending, Sent };
    Q_ENUM(Step)

    explicit frmImport(ServerLink &link, QWidget *parent = nullptr);
    ~frmImport() override;

    // Test seam: the file is asked of chooser instead of an Open dialog; an empty function restores it.
    static void setFileChooser(FileChooser chooser);

    // Asks for a file and opens it.
    void Browse_Click();
    // Reads and checks the file, then the server's devices, and shows the plan. Nothing is sent.
    void openFile(const QString &path);
    // Sends the plan's new and changed devices.
    void Send_Click();
    // Stops the read or the sending; otherwise closes the window.
    void Cancel_Click();

    Step step() const { return m_step; }
    const DevicePlan::Plan &plan() const { return m_plan; }

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    void readFinished(const DeviceReader::Result &result);
    void sendFinished(const DeviceSender::Result &result);
    void showFindings();
    void setStep(Step step);
    void updateControls();

    ServerLink &m_link;
    std::unique_ptr<Ui::frmImport> m_ui;
    SessionChannel m_channel;
    DeviceReader m_reader;
    DeviceSender m_sender;
    ImportPlanModel *m_model;
    ImportPlanFilter *m_filter;
    DeviceSheet::Sheet m_sheet;
    DevicePlan::Plan m_plan;
    Step m_step = Step::NoPlan;
};
