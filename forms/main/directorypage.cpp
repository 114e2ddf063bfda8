// SPDX-License-Identifier: GPL-3.0-or-later
#include "directorypage.h"

#include "buttonrow.h"
#include "directorymodel.h"
#include "errorlog.h"
#include "frmExport.h"
#include "frmImport.h"
#include "guarded.h"
#include "propertywindows.h"
#include "serverlink.h"
#include "tagvalue.h"
#include "translate.h"
#include "translatewidgets.h"
#include "utilities.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
const QString devicesTable = u"Exts"_s;
const QString clickLabel = u" @ frmMain.DButton_Click"_s;
enum Button { AddButton, EditButton, RemoveButton };
} // namespace

DirectoryPage::DirectoryPage(ServerLink &link, PropertyWindows &windows, QWidget *parent)
    : QWidget(parent), m_link(link), m_windows(windows), m_model(new DirectoryModel(this)),
      m_proxy(new DirectoryProxyModel(m_model, this)), m_filter(new QLineEdit(this)),
      m_list(new QTreeView(this))
{
    m_filter->setObjectName(u"DirFilter"_s);
    m_filter->setPlaceholderText(Translate(u"Find a number, name or department"_s));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::textChanged, m_proxy, &DirectoryProxyModel::setQuickFilter);

    m_list->setObjectName(u"List"_s);
    m_list->setModel(m_proxy);
    m_list->setRootIsDecorated(false);
    m_list->setItemsExpandable(false);
    m_list->setUniformRowHeights(true); // one row height for all: a list of 100 000 stays quick
    m_list->setAllColumnsShowFocus(true);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(DirectoryModel::ExtColumn, Qt::AscendingOrder);
    m_list->header()->setSectionsMovable(false);
    m_list->header()->resizeSection(DirectoryModel::ExtColumn, 90);
    m_list->header()->resizeSection(DirectoryModel::NameColumn, 200);
    m_list->header()->resizeSection(DirectoryModel::TypeColumn, 100);
    connectGuarded(m_list, &QTreeView::doubleClicked, this, u" @ frmMain.List_DblClick"_s,
                   [this](const QModelIndex &index) {
                       if (index.isValid())
                           editDevices();
                   });
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &DirectoryPage::updateButtons);
    connect(m_proxy, &QAbstractItemModel::modelReset, this, &DirectoryPage::updateButtons);
    connect(m_proxy, &QAbstractItemModel::rowsRemoved, this, &DirectoryPage::updateButtons);
    connect(&m_windows, &PropertyWindows::openersChanged, this, &DirectoryPage::updateButtons);

    m_buttons = new ButtonRow(u"DButton"_s, {u"&Add..."_s, u"&Edit..."_s, u"&Remove"_s}, this, clickLabel,
                              [this](int index) { DButton_Click(index); });
    m_buttons->bindKeys(m_list, EditButton, RemoveButton);
    // Export and Import join the row before its closing stretch.
    const std::pair<QString, void (DirectoryPage::*)()> transfers[]{
        {u"Export"_s, &DirectoryPage::Export_Click}, {u"Import"_s, &DirectoryPage::Import_Click}};
    for (const auto &[name, handler] : transfers) {
        auto *button = new QPushButton(Translate(name + u"..."_s), this);
        button->setObjectName(name);
        button->setAutoDefault(true);
        connectGuarded(button, &QPushButton::clicked, this, u" @ frmMain."_s + name + u"_Click"_s, handler);
        m_buttons->layout()->insertWidget(m_buttons->layout()->count() - 1, button);
    }

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_filter);
    layout->addWidget(m_list, 1);
    layout->addLayout(m_buttons->layout());
    updateButtons();
}

QPushButton *DirectoryPage::button(int index) const
{
    return m_buttons->button(index);
}

void DirectoryPage::fill(const QString &message)
{
    m_model->fill(message);
}

void DirectoryPage::clear()
{
    m_model->clear();
}

bool DirectoryPage::updateDevice(const QString &id, const QString &record)
{
    return m_model->updateEntry(id, record);
}

QList<int> DirectoryPage::selectedSourceRows() const
{
    QModelIndexList selected = m_list->selectionModel()->selectedRows(DirectoryModel::ExtColumn);
    std::sort(selected.begin(), selected.end(),
              [](const QModelIndex &a, const QModelIndex &b) { return a.row() < b.row(); });
    QList<int> rows;
    rows.reserve(selected.size());
    for (const QModelIndex &index : std::as_const(selected))
        rows.append(m_proxy->mapToSource(index).row());
    return rows;
}

QStringList DirectoryPage::selectedIds() const
{
    QStringList ids;
    for (int row : selectedSourceRows())
        ids.append(tagValueText(GetId(m_model->entry(row).key())));
    return ids;
}

void DirectoryPage::DButton_Click(int index)
{
    switch (index) {
    case AddButton:
        openDevices(u"-1"_s);
        break;
    case EditButton:
        editDevices();
        break;
    case RemoveButton:
        removeDevices();
        break;
    default:
        break;
    }
}

QStringList DirectoryPage::listedIds() const
{
    QStringList ids;
    ids.reserve(m_proxy->rowCount());
    for (int row = 0; row < m_proxy->rowCount(); ++row)
        ids.append(m_model->entry(m_proxy->mapToSource(m_proxy->index(row, 0)).row()).id);
    return ids;
}

void DirectoryPage::Export_Click()
{
    // The listed devices are taken now: the page may be filtered otherwise while the window is open.
    if (!m_export) {
        m_export = new frmExport(m_link, listedIds(), window());
        m_export->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_export->show();
    m_export->raise();
    m_export->activateWindow();
}

void DirectoryPage::Import_Click()
{
    if (m_import) {
        m_import->show();
        m_import->raise();
        m_import->activateWindow();
        return;
    }
    m_import = new frmImport(m_link, window());
    m_import->setAttribute(Qt::WA_DeleteOnClose);
    m_import->show();
    m_import->Browse_Click();
}

void DirectoryPage::openDevices(const QString &idText)
{
    if (!m_windows.canOpen(devicesTable))
        return;
    m_windows.openFromList(
        devicesTable, idText, window(),
        [this](const WindowResult &result) {
            // Several devices saved at once may each have changed: the whole list is asked again.
            return !result.record.isEmpty() && !result.id.contains(u',') && updateDevice(result.id, result.record);
        },
        [this] { m_link.GetData(u"MAIN-EXTS"_s); });
}

void DirectoryPage::editDevices()
{
    const QStringList ids = selectedIds();
    if (ids.isEmpty() || !m_windows.canOpen(devicesTable))
        return;
    if (ids.size() > EditWarningCount) {
        const auto answer =
            TranslateMsgBox(u"It is recommended that you do not edit more than <1> extensions at "
                            u"a time.  Are you sure you wish to continue?"_s,
                            QMessageBox::Yes | QMessageBox::No, QString::number(EditWarningCount));
        if (answer != QMessageBox::Yes)
            return;
    }
    openDevices(ids.join(u','));
}

void DirectoryPage::removeDevices()
{
    // The devices are taken before the question: a list reply that arrives while it is open
    // refills the list, and its rows are other devices then.
    QStringList rowIds;
    for (int row : selectedSourceRows())
        rowIds.append(m_model->entry(row).id);
    if (rowIds.isEmpty())
        return;
    if (TranslateMsgBox(u"Are you sure you want to remove the selected users?"_s,
                        QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return;
    QStringList ids;
    ids.reserve(rowIds.size());
    for (const QString &id : std::as_const(rowIds))
        ids.append(tagValueText(GetId(u'~' + id)));
    QString command = u"{Cmd=Delete}{Table=Exts}"_s;
    AddVar(command, u"Id"_s, ids.join(u','));
    m_link.SendCommand(command);
    // The rows go at once, so nothing can be edited or removed twice while the server works; the
    // fresh list that follows shows what the server really holds (a refused removal comes back).
    const QSet<QString> removed(rowIds.cbegin(), rowIds.cend());
    QList<int> rows;
    const QList<DirectoryEntry> &entries = m_model->entries();
    for (qsizetype row = 0; row < entries.size(); ++row) {
        if (removed.contains(entries[row].id))
            rows.append(int(row));
    }
    m_model->removeEntries(rows);
    m_link.GetData(u"MAIN-EXTS"_s);
}

void DirectoryPage::updateButtons()
{
    const bool windowThere = m_windows.canOpen(devicesTable);
    const bool anySelected = m_list->selectionModel()->hasSelection();
    const QString tip = windowThere ? QString() : PropertyWindows::unavailableTip();
    m_buttons->setEnabled(AddButton, windowThere, tip);
    m_buttons->setEnabled(EditButton, windowThere && anySelected, tip);
    m_buttons->setEnabled(RemoveButton, anySelected);
}

bool DirectoryPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_filter && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape && !m_filter->text().isEmpty()) {
        m_filter->clear();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
