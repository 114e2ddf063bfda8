// SPDX-License-Identifier: GPL-3.0-or-later
// quillserverd: the reference QuillServer as a program. Logs to stderr; SIGTERM/SIGINT stop it.
#include "quillserver.h"
#include "serverlog.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTextStream>

#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int signalPipe[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalPipe[1], &byte, 1);
}

// Turns SIGTERM and SIGINT into a clean quit of the event loop (a signal handler may only write
// to a pipe; the loop reads it).
void quitOnSignals(QCoreApplication &app)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPipe) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [&app] {
        char byte = 0;
        [[maybe_unused]] const auto read = ::read(signalPipe[0], &byte, 1);
        qCInfo(lcServer) << "stopping";
        app.quit();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
}

// One line from stdin, without echo when stdin is a terminal.
QString readPassword()
{
    const bool terminal = ::isatty(STDIN_FILENO);
    termios saved = {};
    if (terminal) {
        std::fputs("Password: ", stderr);
        ::tcgetattr(STDIN_FILENO, &saved);
        termios quiet = saved;
        quiet.c_lflag &= ~tcflag_t(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &quiet);
    }
    QTextStream in(stdin);
    const QString line = in.readLine();
    if (terminal) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, &saved);
        std::fputs("\n", stderr);
    }
    return line;
}

bool parseListen(const QString &text, QHostAddress *address, quint16 *port)
{
    const qsizetype colon = text.lastIndexOf(u':');
    if (colon < 0)
        return false;
    QString host = text.left(colon);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    bool ok = false;
    const uint number = text.mid(colon + 1).toUInt(&ok);
    if (!ok || number > 65535)
        return false;
    *port = quint16(number);
    if (host.isEmpty() || host == u"*"_s) {
        *address = QHostAddress::Any;
        return true;
    }
    if (host.compare(u"localhost"_s, Qt::CaseInsensitive) == 0) {
        *address = QHostAddress::LocalHost;
        return true;
    }
    return address->setAddress(host);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(u"Tamsel Telecom Ltd"_s);
    QCoreApplication::setApplicationName(u"QuillServer"_s);
    qSetMessagePattern(
        u"%{time yyyy-MM-ddThh:mm:ss.zzz} %{if-category}%{category} %{endif}%{type}: %{message}"_s);
    // The server's own lines are always shown, whatever the system's logging rules say.
    QLoggingCategory::setFilterRules(u"quill.server.*.info=true"_s);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"The reference QuillServer: the site's tables over WebSocket sessions."_s);
    parser.addHelpOption();
    const QCommandLineOption listenOption(
        u"listen"_s, u"Address and port to accept sessions on (port 0: any free port)."_s, u"ADDRESS:PORT"_s,
        u"127.0.0.1:7420"_s);
    const QCommandLineOption dbOption(u"db"_s, u"The SQLite database file."_s, u"FILE"_s,
                                      QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
                                          u"/quillserver.sqlite"_s);
    const QCommandLineOption certOption(u"tls-cert"_s, u"PEM certificate: serve wss:// instead of ws://."_s,
                                        u"FILE"_s);
    const QCommandLineOption keyOption(u"tls-key"_s, u"PEM private key of the certificate."_s, u"FILE"_s);
    const QCommandLineOption addUserOption(
        u"add-user"_s,
        u"Create the admin account NAME (or set its password); the password is read from stdin. Then exit."_s,
        u"NAME"_s);
    const QCommandLineOption seedOption(u"seed-demo"_s, u"Load the demo site into an empty database."_s);
    const QCommandLineOption backOffOption(
        u"login-backoff"_s,
        u"After %1 failed log-ins in a row from one address, further log-ins from it are refused for "
        "MS milliseconds, twice as long after each further failure, up to 300 times MS; a good log-in "
        "or 900 times MS without a failure starts afresh (default 1000; short values are for tests)."_s.arg(
            LogInLimits().failuresBeforeBackOff),
        u"MS"_s, u"1000"_s);
    parser.addOptions(
        {listenOption, dbOption, certOption, keyOption, addUserOption, seedOption, backOffOption});
    parser.process(app);

    QuillServer server;
    QString error;
    if (!server.open(parser.value(dbOption), &error))
        return 1;

    if (parser.isSet(addUserOption)) {
        const QString password = readPassword();
        if (password.isEmpty()) {
            qCCritical(lcServer) << "no password given; the account was not stored";
            return 2;
        }
        return server.addUser(parser.value(addUserOption), password) ? 0 : 1;
    }
    if (parser.isSet(seedOption))
        server.seedDemo();

    if (parser.isSet(certOption) != parser.isSet(keyOption)) {
        qCCritical(lcServer) << "--tls-cert and --tls-key go together";
        return 2;
    }
    if (parser.isSet(certOption) && !server.setTls(parser.value(certOption), parser.value(keyOption), &error))
        return 1;

    bool backOffOk = false;
    const int backOffMs = parser.value(backOffOption).toInt(&backOffOk);
    if (!backOffOk || backOffMs < 1 || backOffMs > 3600 * 1000) {
        qCCritical(lcServer).noquote()
            << "--login-backoff wants milliseconds from 1 to 3600000, not" << parser.value(backOffOption);
        return 2;
    }
    server.setLogInLimits(LogInLimits::withFirstBackOff(std::chrono::milliseconds(backOffMs)));

    QHostAddress address;
    quint16 port = 0;
    if (!parseListen(parser.value(listenOption), &address, &port)) {
        qCCritical(lcServer).noquote() << "--listen wants ADDRESS:PORT, not" << parser.value(listenOption);
        return 2;
    }
    if (!server.listen(address, port, &error))
        return 1;

    quitOnSignals(app);
    const int status = app.exec();
    server.close();
    return status;
}
