// SPDX-License-Identifier: GPL-3.0-or-later
// The configuration tool's entry point: one running copy, translation, product name, the session.
#include "connectingdialog.h"
#include "embeddedserver.h"
#include "errorlog.h"
#include "logindialog.h"
#include "pluginhost.h"
#include "serverlink.h"
#include "startup.h"
#include "translate.h"
#include "translatewidgets.h"
#include "usrsession.h"

#include <QApplication>
#include <QFileInfo>
#include <QLocale>
#include <QLockFile>

#include "frmMain.h"
#include "screenshots.h"
#include "windows.h"

using namespace Qt::StringLiterals;

namespace {

// The arguments after the program's name as one command line, quoted so that it splits back the
// same way.
QString commandLine(const QStringList &arguments)
{
    QStringList words;
    for (const QString &argument : arguments.mid(1)) {
        const bool plain = !argument.isEmpty() && !argument.contains(u' ') && !argument.contains(u'"');
        words << (plain ? argument : u'"' + QString(argument).replace(u"\""_s, u"\"\"\""_s) + u'"');
    }
    return words.join(u' ');
}

// With --demo, or with no server named on the command line or in the settings, the session talks
// to the reference server run inside the tool, logging in with one-time tokens.
bool useEmbeddedServerWhenNeeded(usrSession &session, EmbeddedServer &embedded)
{
    if (!SessionOptions::parse(session.command).demo && usrSession::serverConfigured(session.command))
        return true;
    QString error;
    if (!embedded.start(&error)) {
        ErrorLog::write(error + u" @ basQSConfig.Main"_s);
        TranslateMsgBox(u"The demonstration server could not be started: <1>"_s, QMessageBox::Ok, error);
        return false;
    }
    SessionCredentials credentials;
    credentials.server = embedded.url();
    session.setCredentials(credentials);
    session.setTokenSource([&embedded] { return embedded.createToken(); });
    return true;
}

// The value after a flag of the program's own ("--screenshot DIR" or "--screenshot=DIR").
QString optionValue(const QStringList &arguments, const QString &flag)
{
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == flag && i + 1 < arguments.size())
            return arguments[i + 1];
        if (arguments[i].startsWith(flag + u'='))
            return arguments[i].mid(flag.size() + 1);
    }
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(u"Tamsel Telecom Ltd"_s);
    QCoreApplication::setApplicationName(u"QuillConfig"_s);
    // Dialogs shown before the main window (the log-in) must not end the program when they close.
    app.setQuitOnLastWindowClosed(false);

    QLockFile lock(Startup::lockFilePath());
    if (!Startup::acquireSingleInstance(lock))
        return 0; // another copy is running: end silently
    PluginHost::registerShippedPlugins(); // the shipped address books join the installed plug-ins

    // Log lines carry the name the program was started under (hlconfig for Halyard), from the first.
    const QString executable = QString::fromLocal8Bit(argv[0]);
    ErrorLog::setApplicationName(QFileInfo(executable).completeBaseName());

    // "--lang de" or "--lang en" chooses the language of the texts; without it, the user's own.
    const QString language = optionValue(QCoreApplication::arguments(), u"--lang"_s);
    if (!language.isEmpty())
        QLocale::setDefault(QLocale(language));
    TranslateLoad(u"QSConfig"_s);
    const QString product = Startup::productName(executable);
    setApplicationTitle(Startup::applicationTitle(product));

    EmbeddedServer embedded; // declared first so that it stops after the session has closed
    usrSession session;
    ServerLink link(session);
    // The main window takes the session's events: READY loads its lists and shows it, LOGOUT
    // unloads it, and unloading closes the session and ends the program with every other window.
    frmMain window(link);
    window.setProductName(product); // its title: the translation of "<1> configuration"
    window.setEndsProgram(true);
    registerWindows(window, link); // the property windows and the Errors window its lists open
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &session, [&session] { session.CloseSession(); });

    session.command = commandLine(QCoreApplication::arguments());
    session.setCredentialsPrompt(promptForCredentials);
    session.setKeepTryingQuestion(askKeepTrying);
    // "Connecting to <server>..." until the first READY; a failed first connection asks what to do.
    ConnectingDialog connecting(session);
    session.setFirstConnectFailure(
        [&connecting](const QString &reason) { return connecting.askAfterFailure(reason); });
    if (!useEmbeddedServerWhenNeeded(session, embedded))
        return 1;

    // --screenshot DIR: a picture of every page once the lists have arrived, then the program ends.
    const QString screenshotDir = optionValue(QCoreApplication::arguments(), u"--screenshot"_s);
    if (!screenshotDir.isEmpty())
        savePageScreenshotsWhenLoaded(window, screenshotDir, [](const QStringList &) { QCoreApplication::quit(); });

    Guard(u" @ basQSConfig.Main"_s, [&] {
        session.StartSession(Startup::applicationTitle(product), QString(), QString(), QString());
    });
    QCoreApplication::processEvents(); // let pending window events run once; the window shows on READY
    // A LOGOUT in there (the log-in cancelled) has unloaded the main window already, and its quit()
    // does nothing before the main loop runs: end here, or the program would stay on with no window.
    if (session.state() == usrSession::State::Closed)
        return 0;
    return app.exec();
}
