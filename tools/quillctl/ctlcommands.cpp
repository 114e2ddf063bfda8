// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlcommands.h"

#include "tagvalue.h"
#include "usrsession.h"

#include <QSaveFile>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace CtlOutput {

void data(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

void message(const QString &text)
{
    const QByteArray bytes = "quillctl: " + text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stderr);
}

void progress(const QString &what, qint64 done, qint64 total)
{
    if (!isatty(STDERR_FILENO))
        return;
    const QByteArray line = "\rquillctl: " + what.toUtf8() + ' ' + QByteArray::number(done) + '/' +
                            QByteArray::number(total) + (done >= total ? "\n" : "");
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
}

} // namespace CtlOutput

namespace {

// A finding as "line N: what": the sheet's texts begin with their line already.
QString lineText(qsizetype line, const QString &finding)
{
    const QString own = u"Line %1: "_s.arg(line);
    const QString what = finding.startsWith(own) ? finding.mid(own.size()) : finding;
    return u"line %1: %2\n"_s.arg(line).arg(what);
}

} // namespace

// ---------------------------------------------------------------------------------------------

ExportCommand::ExportCommand(const QStringList &fields, const QString &outFile)
    : m_fields(fields), m_outFile(outFile)
{
}

void ExportCommand::run(usrSession &session)
{
    m_channel = std::make_unique<SessionChannel>(session);
    m_reader = std::make_unique<DeviceReader>(*m_channel);
    connect(m_reader.get(), &DeviceReader::progress, this,
            [](int done, int total) { CtlOutput::progress(u"reading devices"_s, done, total); });
    connect(m_reader.get(), &DeviceReader::finished, this, &ExportCommand::finished);
    m_reader->start(m_fields);
}

void ExportCommand::finished(const DeviceReader::Result &result)
{
    if (!result.ok()) {
        CtlOutput::message(result.error);
        emit done(ExitFailed);
        return;
    }
    const QString sheet = DeviceSheet::write(m_fields, result.devices);
    if (m_outFile.isEmpty()) {
        CtlOutput::data(sheet);
        emit done(ExitOk);
        return;
    }
    // Written whole or not at all: an earlier export at that path survives a failed one.
    QSaveFile file(m_outFile);
    if (!file.open(QIODevice::WriteOnly) || file.write(sheet.toUtf8()) < 0 || !file.commit()) {
        CtlOutput::message(u"cannot write %1: %2"_s.arg(m_outFile, file.errorString()));
        emit done(ExitIncomplete);
        return;
    }
    CtlOutput::message(u"%1 devices written to %2"_s.arg(result.devices.rows.size()).arg(m_outFile));
    emit done(ExitOk);
}

// ---------------------------------------------------------------------------------------------

ImportCommand::ImportCommand(const QString &file, Options options) : m_file(file), m_options(options) {}

int ImportCommand::prepare()
{
    m_sheet = DeviceSheet::read(m_file);
    if (!m_sheet.ok()) {
        CtlOutput::message(m_sheet.failure);
        CtlOutput::message(u"nothing was sent"_s);
        return ExitIncomplete;
    }
    return ExitOk;
}

void ImportCommand::run(usrSession &session)
{
    m_channel = std::make_unique<SessionChannel>(session);
    m_reader = std::make_unique<DeviceReader>(*m_channel);
    connect(m_reader.get(), &DeviceReader::progress, this,
            [](int done, int total) { CtlOutput::progress(u"reading devices"_s, done, total); });
    connect(m_reader.get(), &DeviceReader::finished, this, &ImportCommand::devicesRead);
    m_reader->start(DevicePlan::fieldsToRead(m_sheet));
}

void ImportCommand::devicesRead(const DeviceReader::Result &result)
{
    if (!result.ok()) {
        CtlOutput::message(result.error);
        emit done(ExitFailed);
        return;
    }
    const DevicePlan::Plan plan = DevicePlan::make(m_sheet, result.devices);
    printPlan(plan);
    m_rejected = plan.count(DevicePlan::State::Rejected);
    const int planned = m_rejected > 0 ? ExitIncomplete : ExitOk;
    if (m_options.dryRun) {
        emit done(planned);
        return;
    }
    if (m_rejected > 0 && !m_options.partial) {
        CtlOutput::message(
            u"nothing was written: correct the rejected rows, or import with --partial to write "
            "the others"_s);
        emit done(ExitIncomplete);
        return;
    }
    const QList<DeviceSender::Item> items = DeviceSender::itemsOf(plan);
    if (items.isEmpty()) {
        emit done(planned);
        return;
    }
    m_sender = std::make_unique<DeviceSender>(*m_channel);
    connect(m_sender.get(), &DeviceSender::progress, this,
            [](qsizetype done, qsizetype total) { CtlOutput::progress(u"writing devices"_s, done, total); });
    connect(m_sender.get(), &DeviceSender::finished, this, &ImportCommand::sent);
    m_sender->start(items);
}

void ImportCommand::printPlan(const DevicePlan::Plan &plan) const
{
    QString out = plan.summary() + u'\n';
    const bool showChanges = m_options.dryRun || m_options.verbose;
    for (const DevicePlan::Entry &entry : plan.entries) {
        // A rejected row's reasons say why; a row that is sent may carry warnings (a value cut).
        for (const QString &reason : entry.reasons)
            out += lineText(entry.line, reason);
        if (!showChanges)
            continue;
        const QString device = u"line %1: Ext %2: "_s.arg(entry.line).arg(entry.ext);
        if (entry.state == DevicePlan::State::New)
            out += device + DevicePlan::stateWord(entry.state) + u'\n';
        for (const DevicePlan::Change &change : entry.changes)
            out += device + DevicePlan::changeText(change) + u'\n';
    }
    CtlOutput::data(out);
}

void ImportCommand::sent(const DeviceSender::Result &result)
{
    CtlOutput::data(result.report() + u'\n');
    if (result.outcome != DeviceSender::Result::Done) {
        CtlOutput::message(u"the import did not finish"_s);
        emit done(ExitIncomplete);
        return;
    }
    if (m_rejected > 0) {
        CtlOutput::message(u"the %1 rejected rows were not written"_s.arg(m_rejected));
        emit done(ExitIncomplete);
        return;
    }
    emit done(ExitOk);
}

// ---------------------------------------------------------------------------------------------

namespace {
const QString syncRef = u"QUILLCTL-SYNC"_s;
}

SendCommand::SendCommand(const QString &command) : m_command(command)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        CtlOutput::message(u"the server did not answer within %1 s"_s.arg(ReplyTimeoutMs / 1000));
        emit done(ExitFailed);
    });
}

void SendCommand::run(usrSession &session)
{
    connect(
        &session, &usrSession::SessionEvent, this,
        [this](const QString &, const QString &kind, const QString &data) { messageArrived(kind, data); });
    const QString ref = getText(m_command, u"Ref"_s);
    m_printReply = !ref.isEmpty();
    session.SendCommand(m_command);
    if (m_printReply) {
        m_awaitedRef = ref.toUpper();
    } else {
        // A write has no reply: the echo of a keep-alive sent after it shows the server handled it.
        QString ping = u"{Cmd=Ping}{Handler=Branch}"_s;
        AddVar(ping, u"Ref"_s, syncRef);
        session.SendCommand(ping);
        m_awaitedRef = syncRef;
    }
    m_timer.start(ReplyTimeoutMs);
}

void SendCommand::messageArrived(const QString &kind, const QString &frame)
{
    if (kind != u"MESSAGE"_s || !m_timer.isActive() || getText(frame, u"Ref"_s).toUpper() != m_awaitedRef)
        return;
    m_timer.stop();
    if (m_printReply)
        CtlOutput::data(frame + u'\n');
    emit done(ExitOk);
}
