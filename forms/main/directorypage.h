// SPDX-License-Identifier: GPL-3.0-or-later
// The Directory page of the main window: the device list List with its quick filter, the
// DButton commands (add, edit, remove), and Export and Import of devices as CSV files.
#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>

class ButtonRow;
class DirectoryModel;
class DirectoryProxyModel;
class PropertyWindows;
class QLineEdit;
class QPushButton;
class QTreeView;
class ServerLink;
class frmExport;
class frmImport;

class DirectoryPage : public QWidget
{
    Q_OBJECT
public:
    // Editing more devices than this at once asks first.
    static constexpr int EditWarningCount = 150;

    DirectoryPage(ServerLink &link, PropertyWindows &windows, QWidget *parent = nullptr);

    // The MAIN-EXTS reply: the list is cleared and refilled from it.
    void fill(const QString &message);
    void clear();
    // The ids of the selected devices, in the order the list shows them.
    QStringList selectedIds() const;
    // A device saved by its window: its number, name, type and department change in place.
    bool updateDevice(const QString &id, const QString &record);

    // 0 add, 1 edit, 2 remove.
    void DButton_Click(int index);
    // Open the Export and Import windows (one of each; a second click brings it to the front).
    void Export_Click();
    void Import_Click();
    // The ids of the devices the list shows now (after the quick filter), in its order.
    QStringList listedIds() const;

    QTreeView *list() const { return m_list; }
    QLineEdit *filterEdit() const { return m_filter; }
    QPushButton *button(int index) const;
    DirectoryModel *model() const { return m_model; }
    DirectoryProxyModel *proxy() const { return m_proxy; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void openDevices(const QString &idText);
    void editDevices();
    void removeDevices();
    void updateButtons();
    QList<int> selectedSourceRows() const;

    ServerLink &m_link;
    PropertyWindows &m_windows;
    DirectoryModel *m_model;
    DirectoryProxyModel *m_proxy;
    QLineEdit *m_filter;
    QTreeView *m_list;
    ButtonRow *m_buttons = nullptr;
    QPointer<frmExport> m_export;
    QPointer<frmImport> m_import;
};
