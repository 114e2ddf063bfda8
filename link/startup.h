// SPDX-License-Identifier: GPL-3.0-or-later
// Start-up and session events: single running copy, product name, the initial load on READY.
#pragma once

#include <QObject>
#include <QString>

class QLockFile;
class ServerLink;
class usrSession;

namespace Startup {
// "Halyard" when the executable's name (no path, no extension) is HLCONFIG in any case.
QString productName(const QString &executablePath);
// "<product> Configuration": the application title given to the session.
QString applicationTitle(const QString &productName);
// The main window's title: the translation of "<1> configuration".
QString windowTitle(const QString &productName);
// Takes the lock of the single running copy; false only when another copy holds it.
bool acquireSingleInstance(QLockFile &lock);
// In the user's own runtime folder: copies run by other users of the machine do not count.
QString lockFilePath();
// The seven requests of the initial load, in order.
QStringList initialLoadKeys();
} // namespace Startup

// Handles the session's events the way the main window needs them: READY (in any case) sets the
// device sort to "Type", sends the seven MAIN- requests and asks for the window to be shown; LOGOUT
// asks for the program to end; LOGIN does nothing; anything else goes to HandleCallback.
class SessionEvents : public QObject
{
    Q_OBJECT
public:
    SessionEvents(ServerLink &link, QObject *parent = nullptr);
    void Sess_SessionEvent(const QString &unused, const QString &kind, const QString &data);

signals:
    void loadStarted(); // after the seven requests were sent: show the main window
    void logout();      // unload the main window, which ends the program

private:
    ServerLink &m_link;
};
