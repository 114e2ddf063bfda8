// SPDX-License-Identifier: GPL-3.0-or-later
// frmMain: the administrator's main configuration window. It shows the whole site on eight pages,
// fills them from the server's MAIN- replies, keeps the session alive and writes the two system
// records back on OK. Closing it closes the session.
#pragma once

#include "serverlink.h"

#include <QMainWindow>
#include <QPointer>
#include <QSet>

#include <memory>

namespace Ui {
class frmMain;
}
class DirectoryPage;
class FeaturesPage;
class NetworkPage;
class PropertyWindows;
class QTimer;
class RecordList;
class SessionEvents;
class SitePage;
class StatusLine;
class TipFilter;
enum class RecordKind;

class frmMain : public QMainWindow, public IDataReceiver
{
    Q_OBJECT
public:
    enum Page { Directory, Site, AddressBooks, Campaigns, Features, Routing, Network, Scripts, PageCount };
    static constexpr int PingInterval = 30 * 1000; // milliseconds between keep-alive commands

    explicit frmMain(ServerLink &link, QWidget *parent = nullptr);
    ~frmMain() override;

    // The server's product name ("QuillServer" or "Halyard"): the window title and the tips name it.
    void setProductName(const QString &productName);
    QString productName() const { return m_productName; }
    // When set, closing the window ends the program (the program's own main window); tests leave it
    // off so that they can close windows and go on.
    void setEndsProgram(bool ends) { m_endsProgram = ends; }

    // Where the property windows register themselves for the lists to open them.
    PropertyWindows &propertyWindows() const { return *m_windows; }

    // The MAIN- replies, with the reference less its "MAIN-" prefix.
    void DataArrived(const QString &SubRef, const QString &Message) override;
    // The session's events: READY loads and shows the window, LOGOUT closes it, messages go on to
    // the reply dispatcher.
    void Sess_SessionEvent(const QString &unused, const QString &kind, const QString &data);
    // A page was selected: its help text goes into the tip area.
    void Tabs_Click(int index);
    // Writes System/PBX and System/FEATURES (each only once the server's copy has been shown, so that
    // an early click cannot blank the site), stores the address books' order, then closes.
    void OK_Click();
    // Closes without sending anything.
    void Cancel_Click();
    // Sends the keep-alive command.
    void PingTimer_Timer();
    // Opens the Errors window on the end of the error log (registered as ErrorsWindow).
    void showErrors();
    static constexpr QLatin1StringView ErrorsWindow{"Errors"};

    // The two write commands OK sends, as they stand now.
    QString pbxCommand() const;
    QString featuresCommand() const;

    // True once each of the seven MAIN- replies has arrived since the last load began.
    bool isLoaded() const;

    SitePage *sitePage() const { return m_site; }
    NetworkPage *networkPage() const { return m_network; }
    FeaturesPage *featuresPage() const { return m_features; }
    DirectoryPage *directoryPage() const { return m_directory; }
    RecordList *recordList(RecordKind kind) const;

signals:
    // Every list of the initial load (or of a reload after READY) has arrived.
    void loaded();
    // The window was closed and its session with it.
    void unloaded();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Load();
    void Form_Unload();
    void buildPages();
    void watchTips();
    void loadStarted();
    void markArrived(const QString &subRef);

    ServerLink &m_link;
    std::unique_ptr<Ui::frmMain> m_ui;
    PropertyWindows *m_windows;
    SessionEvents *m_events;
    StatusLine *m_status = nullptr;
    TipFilter *m_tips = nullptr;
    QTimer *m_pingTimer;

    DirectoryPage *m_directory = nullptr;
    SitePage *m_site = nullptr;
    RecordList *m_addressBooks = nullptr;
    RecordList *m_campaigns = nullptr;
    FeaturesPage *m_features = nullptr;
    RecordList *m_routing = nullptr;
    NetworkPage *m_network = nullptr;
    RecordList *m_scripts = nullptr;

    QString m_productName;
    QString m_pbxOptions;     // the PBX record as the server last sent it
    QString m_featureOptions; // the FEATURES record as the server last sent it
    bool m_pbxLoaded = false;
    bool m_featuresLoaded = false;
    QSet<QString> m_arrived; // MAIN- replies since the last load began
    bool m_endsProgram = false;
    bool m_unloaded = false;
};
