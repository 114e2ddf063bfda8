// SPDX-License-Identifier: GPL-3.0-or-later
#include "actiongrid.h"

#include "guarded.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int ActionRole = Qt::UserRole; // the row's whole action string, on its Definition cell

QTableWidgetItem *fixedItem(const QString &text = {})
{
    auto *item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}
} // namespace

ActionGrid::ActionGrid(const QString &gridName, const QString &nameHeading, const QString &command,
                       Caption caption, Editor editor, QWidget *parent)
    : QWidget(parent), m_grid(new QTableWidget(0, 3, this)),
      m_edit(new QPushButton(Translate(u"&Edit..."_s), this)), m_command(command),
      m_caption(std::move(caption)), m_editor(std::move(editor))
{
    m_grid->setObjectName(gridName);
    m_grid->setHorizontalHeaderLabels({u"Id"_s, nameHeading, u"Definition"_s});
    TranslateGrid(m_grid);
    m_grid->verticalHeader()->hide();
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 8);
    m_grid->horizontalHeader()->setSectionResizeMode(IdColumn, QHeaderView::ResizeToContents);
    m_grid->horizontalHeader()->setSectionResizeMode(NameColumn, QHeaderView::ResizeToContents);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setAlternatingRowColors(true);
    m_grid->installEventFilter(this);
    m_edit->setObjectName(u"bProps"_s);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_edit);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_grid);
    layout->addLayout(buttons);

    connectGuarded(m_edit, &QPushButton::clicked, this, u" @ frmConfig.bProps_Click"_s,
                   &ActionGrid::bProps_Click);
    connectGuarded(m_grid, &QTableWidget::cellDoubleClicked, this, u" @ frmConfig.Grid_DblClick"_s,
                   [this](int row) { editRow(row); });
}

int ActionGrid::rowCount() const
{
    return m_grid->rowCount();
}

void ActionGrid::setRowCount(int rows)
{
    const int before = m_grid->rowCount();
    m_grid->setRowCount(rows);
    // Tall enough for the most rows it has had, so that a count chosen later needs no scrolling.
    const int height = m_grid->horizontalHeader()->sizeHint().height() +
                       rows * m_grid->verticalHeader()->defaultSectionSize() + 2 * m_grid->frameWidth();
    m_grid->setMinimumHeight(std::max(m_grid->minimumHeight(), height));
    for (int row = before; row < rows; ++row) {
        m_grid->setItem(row, IdColumn, fixedItem());
        m_grid->setItem(row, NameColumn, fixedItem());
        m_grid->setItem(row, DefinitionColumn, fixedItem());
    }
}

void ActionGrid::setRowNames(int row, const QString &id, const QString &name)
{
    m_grid->item(row, IdColumn)->setText(id);
    m_grid->item(row, NameColumn)->setText(name);
}

QString ActionGrid::action(int row) const
{
    const QTableWidgetItem *item = m_grid->item(row, DefinitionColumn);
    return item ? item->data(ActionRole).toString() : QString();
}

void ActionGrid::setAction(int row, const QString &action)
{
    QTableWidgetItem *item = m_grid->item(row, DefinitionColumn);
    if (!item)
        return;
    item->setData(ActionRole, action);
    item->setText(m_caption(action));
}

void ActionGrid::editRow(int row)
{
    if (row < 0 || row >= rowCount() || !m_editor)
        return;
    const QString request =
        u"{Cmd="_s + m_command + u"}{Index="_s + QString::number(row + 1) + u'}' + action(row);
    const ButtonResult result = m_editor(request);
    const int answered = result.index - 1;
    if (answered < 0 || answered >= rowCount())
        return;
    if (result.outcome == ButtonResult::Stored)
        setAction(answered, result.action);
    else if (result.outcome == ButtonResult::Cleared)
        setAction(answered, QString());
}

void ActionGrid::bProps_Click()
{
    editRow(m_grid->currentRow());
}

bool ActionGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_grid && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Guard(u" @ frmConfig.bProps_Click"_s, [&] { bProps_Click(); });
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
