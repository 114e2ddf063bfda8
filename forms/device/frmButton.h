// SPDX-License-Identifier: GPL-3.0-or-later
// frmButton: the action behind one programmable button or one event of a device. The device window
// opens it for one grid row and writes what it answers back into that row; it never talks to the
// server.
#pragma once

#include "pluginhost.h"

#include <QDialog>
#include <QList>
#include <QString>

#include <memory>
#include <utility>

namespace Ui {
class frmButton;
}
class QComboBox;
class TipFilter;

// How the editor closed, for the grid row it was opened for.
struct ButtonResult
{
    enum Outcome {
        Cancelled, // the row stays as it is
        Stored,    // the row takes action (and shows display)
        Cleared,   // an event left without an action: the row is emptied
    };
    Outcome outcome = Cancelled;
    int index = -1;  // the grid row, from the request's Index
    QString action;  // the whole action string
    QString display; // the action's Display, for the Definition column (empty for an event)
};

class frmButton : public QDialog
{
    Q_OBJECT
public:
    using PluginList = QList<std::pair<QString, QString>>; // (type code, display name)

    // scripts: the script catalogue as the main window keeps it (ListCount, List1..n, each with
    // Name, Params and Display); plugins: the installed plug-ins, each offering "<name> action".
    explicit frmButton(const QString &scripts, const PluginList &plugins = PluginHost::installedPlugins(),
                       QWidget *parent = nullptr);
    ~frmButton() override;

    // Loads "{Cmd=Button}{Index=<row>}" or "{Cmd=Script}{Index=<row>}" followed by the row's action,
    // shows the dialog modally and returns how it closed. Mode is "Edit".
    ButtonResult Edit(const QString &Request, const QString &Mode);
    // Fills the dialog from a request without showing it (Edit does this first).
    void loadRequest(const QString &request);
    ButtonResult outcome() const { return m_outcome; }

    // The built-in kinds a button offers after "(None)", in list order.
    static const QStringList &builtInKinds();

    // A kind was chosen: its panel is shown, the others hidden.
    void btnType_Click();
    // A script was chosen: one row per parameter of it.
    void btnScript_Click();
    // Hands the action's Config to the plug-in behind the chosen kind and keeps what it returns.
    void Configure_Click();
    // Builds the action string and closes.
    void OK_Click();
    // Closes; the row is not changed.
    void Cancel_Click();

private:
    void Form_Load();
    bool isEvent() const;
    QString kind() const; // the chosen kind's Type value
    bool isPluginKind() const;
    void clearParameters();
    void addParameters(QString &action) const;

    std::unique_ptr<Ui::frmButton> m_ui;
    TipFilter *m_tips = nullptr;
    QString m_scripts;
    PluginList m_plugins;
    QString m_request;
    QString m_action; // the row's action as loaded
    ButtonResult m_outcome;
};
