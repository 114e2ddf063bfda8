// SPDX-License-Identifier: GPL-3.0-or-later
// quillctl's commands. Each runs on a logged-in session and ends with done(exit status); data goes
// to standard output, messages to standard error.
#pragma once

#include "deviceplan.h"
#include "devicesheet.h"
#include "devicetransfer.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

class usrSession;

// The program's exit statuses.
enum ExitStatus : int {
    ExitOk = 0,
    // Rows rejected, a file that cannot be used, or a write that did not finish.
    ExitIncomplete = 1,
    // Bad usage, no connection, log-in refused.
    ExitFailed = 2,
};

namespace CtlOutput {
// Writes text to standard output as UTF-8.
void data(const QString &text);
// Writes "quillctl: message" as a line to standard error.
void message(const QString &text);
// On a terminal only: "quillctl: what done/total" over the last such line; done == total ends it.
void progress(const QString &what, qint64 done, qint64 total);
} // namespace CtlOutput

class CtlCommand : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    // What can be checked before connecting (a file to import); ExitOk to go on.
    virtual int prepare() { return ExitOk; }
    virtual void run(usrSession &session) = 0;

signals:
    void done(int status);
};

// export devices [--fields A,B] [-o FILE]: the server's devices as a device sheet.
class ExportCommand : public CtlCommand
{
    Q_OBJECT
public:
    ExportCommand(const QStringList &fields, const QString &outFile);
    void run(usrSession &session) override;

private:
    void finished(const DeviceReader::Result &result);

    QStringList m_fields;
    QString m_outFile;
    std::unique_ptr<SessionChannel> m_channel;
    std::unique_ptr<DeviceReader> m_reader;
};

// import devices FILE [--dry-run] [--partial] [-v]: plans the sheet against the server's devices,
// prints the plan and writes it.
class ImportCommand : public CtlCommand
{
    Q_OBJECT
public:
    struct Options
    {
        bool dryRun = false;
        bool partial = false;
        bool verbose = false;
    };
    ImportCommand(const QString &file, Options options);
    int prepare() override;
    void run(usrSession &session) override;

private:
    void devicesRead(const DeviceReader::Result &result);
    void printPlan(const DevicePlan::Plan &plan) const;
    void sent(const DeviceSender::Result &result);

    QString m_file;
    Options m_options;
    DeviceSheet::Sheet m_sheet;
    qsizetype m_rejected = 0;
    std::unique_ptr<SessionChannel> m_channel;
    std::unique_ptr<DeviceReader> m_reader;
    std::unique_ptr<DeviceSender> m_sender;
};

// send COMMAND: one raw command; prints the reply that carries its Ref, or waits for the server to
// have handled a command without one.
class SendCommand : public CtlCommand
{
    Q_OBJECT
public:
    explicit SendCommand(const QString &command);
    void run(usrSession &session) override;

    static constexpr int ReplyTimeoutMs = 60000;

private:
    void messageArrived(const QString &kind, const QString &frame);

    QString m_command;
    QString m_awaitedRef; // upper-case
    bool m_printReply = false;
    QTimer m_timer;
};
