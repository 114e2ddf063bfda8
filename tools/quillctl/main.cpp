// SPDX-License-Identifier: GPL-3.0-or-later
// quillctl: device exports and imports, and single commands, against a QuillServer from the command
// line or a script, over the same session and bulk work as the configuration tool. The password
// comes from QUILL_PASSWORD or is typed on the terminal, never from the command line.
#include "ctlcommands.h"

#include "startup.h"
#include "tagvalue.h"
#include "usrsession.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <cstdio>
#include <iostream>
#include <string>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const char usage[] =
    "usage: quillctl --server URL --user NAME [--ca FILE] COMMAND\n"
    "commands:\n"
    "  export devices [--fields A,B,...] [-o FILE]\n"
    "        write the server's devices as CSV (UTF-8) to FILE or standard output\n"
    "  import devices FILE [--dry-run] [--partial] [-v]\n"
    "        check FILE against the server's devices, print what it would change, and write it;\n"
    "        --dry-run writes nothing, --partial writes the good rows when others are rejected,\n"
    "        -v lists each change\n"
    "  send 'COMMAND'\n"
    "        send one tagged-value command; print the reply that carries its Ref\n"
    "URL is ws://host:port or wss://host:port (no scheme: ws://); --ca trusts a PEM certificate.\n"
    "The password is read from QUILL_PASSWORD, or asked for when standard input is a terminal.\n"
    "Exit status: 0 done, 1 rows rejected or not all written or the file unusable,\n"
    "2 bad usage, no connection or log-in refused.\n";

struct Invocation
{
    SessionCredentials credentials;
    QString caFile;
    std::unique_ptr<CtlCommand> command;
};

int usageError(const QString &why)
{
    CtlOutput::message(why);
    std::fputs(usage, stderr);
    return ExitFailed;
}

// The field names of --fields as the sheet's column tags; unknown names go to unknown.
QStringList exportFields(const QString &list, QStringList &unknown)
{
    QStringList fields;
    for (const QString &name : list.split(u',', Qt::SkipEmptyParts)) {
        const DeviceSheet::Column *column = DeviceSheet::column(name);
        if (!column)
            unknown.append(name.trimmed());
        else if (!fields.contains(column->tag))
            fields.append(column->tag);
    }
    return fields;
}

// Fills invocation from the arguments; returns -1 to go on, or the exit status.
int parseArguments(const QStringList &arguments, Invocation &invocation)
{
    for (const QString &argument : arguments.mid(1))
        if (argument == u"--password"_s || argument.startsWith(u"--password="_s))
            return usageError(u"the password is never taken from the command line: set QUILL_PASSWORD, or "
                              "type it when asked"_s);

    QCommandLineParser parser;
    const QCommandLineOption help({u"h"_s, u"help"_s}, {});
    const QCommandLineOption server(u"server"_s, {}, u"URL"_s);
    const QCommandLineOption user(u"user"_s, {}, u"NAME"_s);
    const QCommandLineOption ca(u"ca"_s, {}, u"FILE"_s);
    const QCommandLineOption fields(u"fields"_s, {}, u"LIST"_s);
    const QCommandLineOption output({u"o"_s, u"output"_s}, {}, u"FILE"_s);
    const QCommandLineOption dryRun(u"dry-run"_s, {});
    const QCommandLineOption partial(u"partial"_s, {});
    const QCommandLineOption verbose({u"v"_s, u"verbose"_s}, {});
    parser.addOptions({help, server, user, ca, fields, output, dryRun, partial, verbose});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.isSet(help)) {
        std::fputs(usage, stdout);
        return ExitOk;
    }

    const QStringList words = parser.positionalArguments();
    const QString command = words.value(0);
    const auto onlyWith = [&](const QString &name, const QList<QCommandLineOption> &options) -> QString {
        for (const QCommandLineOption &option : options)
            if (command != name && parser.isSet(option))
                return u"--%1 goes with %2 only"_s.arg(option.names().constLast(), name);
        return {};
    };
    for (const QString &wrong :
         {onlyWith(u"export"_s, {fields, output}), onlyWith(u"import"_s, {dryRun, partial, verbose})})
        if (!wrong.isEmpty())
            return usageError(wrong);

    if (command == u"export"_s && words.size() == 2 && words.at(1) == u"devices"_s) {
        QStringList chosen = DeviceSheet::defaultExportFields();
        if (parser.isSet(fields)) {
            QStringList unknown;
            chosen = exportFields(parser.value(fields), unknown);
            if (!unknown.isEmpty())
                return usageError(u"not a device field: %1"_s.arg(unknown.join(u", "_s)));
            if (chosen.isEmpty())
                return usageError(u"--fields names no field"_s);
        }
        invocation.command = std::make_unique<ExportCommand>(chosen, parser.value(output));
    } else if (command == u"import"_s && words.size() == 3 && words.at(1) == u"devices"_s) {
        invocation.command = std::make_unique<ImportCommand>(
            words.at(2),
            ImportCommand::Options{parser.isSet(dryRun), parser.isSet(partial), parser.isSet(verbose)});
    } else if (command == u"send"_s && words.size() == 2 && !words.at(1).trimmed().isEmpty()) {
        invocation.command = std::make_unique<SendCommand>(words.at(1));
    } else {
        return usageError(command.isEmpty() ? u"no command given"_s
                                            : u"unknown command: %1"_s.arg(words.join(u' ')));
    }

    if (!parser.isSet(server) || !parser.isSet(user) || parser.value(user).isEmpty())
        return usageError(u"--server and --user are needed"_s);
    // The session's own reading of --server, so that a server without a scheme is ws:// here too.
    const QString serverText = parser.value(server).trimmed();
    static const QRegularExpression space(u"\\s"_s);
    const QUrl url =
        serverText.contains(space) ? QUrl() : SessionOptions::parse(u"--server="_s + serverText).server;
    if (!url.isValid() || url.host().isEmpty() || (url.scheme() != u"ws"_s && url.scheme() != u"wss"_s))
        return usageError(u"not a server address: %1 (ws://host:port or wss://host:port)"_s.arg(serverText));
    invocation.credentials.server = url;
    invocation.credentials.user = parser.value(user);
    invocation.caFile = parser.value(ca);
    return -1;
}

// QUILL_PASSWORD, or the password typed on the terminal without echo; empty when there is neither.
QString password(const SessionCredentials &credentials)
{
    const QString fromEnvironment = qEnvironmentVariable("QUILL_PASSWORD");
    if (!fromEnvironment.isEmpty() || !isatty(STDIN_FILENO))
        return fromEnvironment;
    const QByteArray prompt = "Password for " + credentials.user.toUtf8() + " at " +
                              credentials.server.toDisplayString().toUtf8() + ": ";
    std::fwrite(prompt.constData(), 1, size_t(prompt.size()), stderr);
    termios shown{};
    const bool quiet = tcgetattr(STDIN_FILENO, &shown) == 0;
    if (quiet) {
        termios hidden = shown;
        hidden.c_lflag &= ~tcflag_t(ECHO);
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    }
    std::string line;
    std::getline(std::cin, line);
    if (quiet)
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown);
    std::fputs("\n", stderr);
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return QString::fromLocal8Bit(line);
}

// Runs one command on a session: connects and logs in once, without asking anything and without
// retrying, runs the command on the first READY, and ends the program when the command is done or
// the connection goes.
class Runner : public QObject
{
public:
    Runner(CtlCommand &command, const SessionCredentials &credentials) : m_command(command)
    {
        m_session.setCredentials(credentials);
        m_session.setLogInTimeout(20000);
        m_session.setFirstConnectFailure([this](const QString &) {
            m_unreachable = true;
            return usrSession::ConnectChoice::Quit;
        });
        connect(&m_session, &usrSession::SessionEvent, this, &Runner::sessionEvent);
        connect(&m_session, &usrSession::stateChanged, this, &Runner::stateChanged);
        connect(&m_command, &CtlCommand::done, this, &Runner::finish);
    }

    bool trust(const QString &caFile)
    {
        QString error;
        if (m_session.setCaCertificateFile(caFile, &error))
            return true;
        CtlOutput::message(u"--ca %1: %2"_s.arg(caFile, error));
        return false;
    }

    void start() { m_session.StartSession(Startup::applicationTitle(u"QuillServer"_s) + u" (quillctl)"_s); }

private:
    void sessionEvent(const QString &, const QString &kind, const QString &data)
    {
        if (kind == u"READY"_s && !m_ready) {
            m_ready = true;
            m_command.run(m_session);
        } else if (kind == u"LOGOUT"_s && !m_ready) {
            const QString server = m_session.server().toDisplayString();
            const QString reason = getText(data, u"Reason"_s);
            CtlOutput::message(m_unreachable ? u"cannot connect to %1: %2"_s.arg(server, reason)
                                             : u"log-in to %1 refused: %2"_s.arg(server, reason));
            finish(ExitFailed);
        } else if (kind == u"LOGOUT"_s && !m_finished) {
            m_lostReason = getText(data, u"Reason"_s);
        }
    }

    void stateChanged(usrSession::State state)
    {
        if (!m_ready || (state != usrSession::State::Reconnecting && state != usrSession::State::Closed))
            return;
        // The command hears of the loss first and may report what it got done; whatever it does,
        // the program ends rather than wait for a reconnect.
        QTimer::singleShot(0, this, [this] {
            if (m_finished)
                return;
            CtlOutput::message(m_lostReason.isEmpty()
                                   ? u"the connection to the server was lost"_s
                                   : u"the server ended the session: %1"_s.arg(m_lostReason));
            finish(ExitFailed);
        });
    }

    void finish(int status)
    {
        if (m_finished)
            return;
        m_finished = true;
        m_session.CloseSession();
        QCoreApplication::exit(status);
    }

    CtlCommand &m_command;
    usrSession m_session;
    bool m_ready = false;
    bool m_unreachable = false;
    bool m_finished = false;
    QString m_lostReason;
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(u"quillctl"_s);
    qSetMessagePattern(u"quillctl: %{if-category}%{category}: %{endif}%{message}"_s);
    // The tool says itself what became of the session and the bulk work; QT_LOGGING_RULES still
    // switches their details on.
    QLoggingCategory::setFilterRules(u"quill.link.session.warning=false\nquill.bulk.warning=false"_s);

    Invocation invocation;
    if (const int status = parseArguments(QCoreApplication::arguments(), invocation); status >= 0)
        return status;
    if (const int status = invocation.command->prepare(); status != ExitOk)
        return status;
    invocation.credentials.password = password(invocation.credentials);
    if (invocation.credentials.password.isEmpty()) {
        CtlOutput::message(u"no password: set QUILL_PASSWORD, or run quillctl on a terminal to type it"_s);
        return ExitFailed;
    }

    Runner runner(*invocation.command, invocation.credentials);
    if (!invocation.caFile.isEmpty() && !runner.trust(invocation.caFile))
        return ExitFailed;
    runner.start();
    return app.exec();
}
