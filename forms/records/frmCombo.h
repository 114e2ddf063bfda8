// SPDX-License-Identifier: GPL-3.0-or-later
// frmCombo: picks one entry of a list. Driven by a "{Cmd=SelectOne}{Ref=...}{Choices=a~b~c}" request,
// it answers "{Ref=...}{Choice=...}" through the reply dispatcher, as if the server had sent it.
#pragma once

#include <QDialog>
#include <QStringList>

#include <memory>

namespace Ui {
class frmCombo;
}
class ServerLink;

class frmCombo : public QDialog
{
    Q_OBJECT
public:
    explicit frmCombo(ServerLink &link, QWidget *parent = nullptr);
    ~frmCombo() override;

    // Loads the dialog from a SelectOne request and shows it modally; any other request does nothing.
    void DataArrived(const QString &Request);
    // Hands the selected entry to the dispatcher and closes.
    void OK_Click();
    // Closes; the requester is not told.
    void Cancel_Click();
    // Clicking in the list: OK only while an entry is selected.
    void List_Click();

    // The choices of a request's Choices text: split at each "~" until nothing is left, so a
    // trailing "~" adds no entry and "~~" adds an empty one.
    static QStringList splitChoices(const QString &choices);

private:
    ServerLink &m_link;
    std::unique_ptr<Ui::frmCombo> m_ui;
    QString m_request;
};
