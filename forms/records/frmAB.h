// SPDX-License-Identifier: GPL-3.0-or-later
// frmAB: the property window of one address book. A public book is read when its hidden Tid is set
// to its id (a negative number for a new one) and stored with one SetFields command; a private book
// of a device arrives whole in Tid ("-2:" + its record) and goes back to the device window instead.
#pragma once

#include "pluginsession.h"
#include "propertywindows.h"
#include "recordform.h"
#include "serverlink.h"

#include <QDialog>
#include <QList>

#include <memory>
#include <utility>

namespace Ui {
class frmAB;
}
class TipFilter;

class frmAB : public QDialog, public IDataReceiver
{
    Q_OBJECT
public:
    using PluginList = QList<std::pair<QString, QString>>; // (type code, display name), in list order

    // The name is cut to this many characters when saved.
    static constexpr int NameLength = 20;

    // plugins: the installed address-book plug-ins, offered in plgName in this order.
    explicit frmAB(ServerLink &link, const PluginList &plugins, QWidget *parent = nullptr);
    ~frmAB() override;

    // How the window closed. A private book closes as saved with record holding the hand-back for
    // the device window: "{Index=<n>}" and the book's record under Fields.
    WindowResult outcome() const { return m_outcome; }

    // Tid was set: reads a public book (none for a new one) or loads the private book it carries.
    void Tid_Change();
    // The AB-AB reply, or the private book's record: fills every control.
    void DataArrived(const QString &SubRef, const QString &Message) override;
    // The live and cached boxes are one choice: clicking one sets the other to its opposite.
    void uLive_Click(int index);
    // Runs the plug-in's own dialog for the book's data source.
    void Config_Click();
    // Asks the server to refresh the book's cache now, by the name typed.
    void Build_Click();
    void Tabs_Click(int tab);
    void OK_Click();
    void Cancel_Click();

    // What OK makes of a typed name: the first 20 characters; "(" and ")" become "[" and "]" when
    // it holds a "("; every "-" and "!" removed.
    static QString cleanName(const QString &name);
    // The mean of the speeds shown, truncated to three decimals ("0.333" for 0.3334 and 0.3335).
    static double averageSpeed(const QList<double> &speeds);

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void Form_Load();
    void applyLiveRule();
    QString id() const;
    int idNumber() const;
    bool isPrivate() const { return idNumber() == -2; }
    QString displayName(const QString &code) const;
    QString typeCode() const;
    QString buildRecord();

    ServerLink &m_link;
    std::unique_ptr<Ui::frmAB> m_ui;
    PluginList m_plugins;
    RecordForm m_options;     // Alpha .. ImportHour, in the order they are written
    RecordForm m_moreOptions; // ABNotes and Cache, written after the plug-in's settings
    TipFilter *m_tips = nullptr;
    QString m_plugVars;             // what the plug-in's dialog gave, kept until OK
    PluginSession::Keeper m_plugin; // the plug-in's session object, once created
    WindowResult m_outcome;
};
