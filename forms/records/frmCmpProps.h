// SPDX-License-Identifier: GPL-3.0-or-later
// frmCmpProps: the properties of one choice of a campaign's menu tree or one of its results. It
// never talks to the server: it reads the node from the campaign window's tree and, on OK, writes
// the node back (adding it first when it is new). The campaign reaches the server only with the
// campaign window's own OK.
#pragma once

#include "recordform.h"

#include <QDialog>
#include <QStringList>

#include <functional>
#include <memory>

namespace Ui {
class frmCmpProps;
}
class ChoiceTree;

class frmCmpProps : public QDialog
{
    Q_OBJECT
public:
    // The preview reads at most this much of a page; a bigger file shows a note instead.
    static constexpr qint64 MaxPreviewBytes = 4 * 1024 * 1024;

    // menus and results: the campaign window's trees; tables: the entries of its table list, in
    // its order (the destinations a result may move a contact to).
    frmCmpProps(ChoiceTree &menus, ChoiceTree &results, const QStringList &tables, QWidget *parent = nullptr);
    ~frmCmpProps() override;

    // Loads the node a descriptor names ("{Type=Choice}{Item=4}"; a negative Item asks for a new
    // choice under that node, or for a new result) and shows the window modally.
    void DataArrived(const QString &descriptor);
    // Writes the node (adding it first when it is new) and closes.
    void OK_Click();
    // Closes; the tree stays as it was.
    void Cancel_Click();
    // The kind chosen: the table panel for "Move", the delay panel for "Postpone".
    void cType_Click();
    // The preview follows the page's path.
    void cFile_Change();
    // Chooses the page with a file dialog.
    void bFile_Click();

    // The entries the lists offer; they are also the values stored.
    static const QStringList &colorNames();
    static const QStringList &resultKinds();
    static QString choiceKind(); // "Menu"

    // Answers the file dialog instead of showing it (tests): given the window, the dialog's title,
    // its filter and default suffix, it returns the chosen path, or empty text for none. An empty
    // function restores the real dialog.
    using FileQuestion = std::function<QString(QWidget *parent, const QString &title, const QString &filter,
                                               const QString &defaultSuffix)>;
    static void setFileQuestion(FileQuestion question);

private:
    void Form_Load(const QStringList &tables);
    void load(const QString &descriptor);
    void writeNode();
    ChoiceTree &tree() const;
    QString askForFile(const QString &title, const QString &filter, const QString &defaultSuffix);

    std::unique_ptr<Ui::frmCmpProps> m_ui;
    ChoiceTree &m_menus;
    ChoiceTree &m_results;
    RecordForm m_fields; // the properties, in the order they are written
    bool m_choice = true;
    int m_item = 0; // the node's index; below 1 for a node not yet added
};
