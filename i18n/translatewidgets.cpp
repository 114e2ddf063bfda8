// SPDX-License-Identifier: GPL-3.0-or-later
#include "translatewidgets.h"

#include "errorlog.h"
#include "pluginhost.h"
#include "translate.h"

#include <QApplication>
#include <QHeaderView>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

MsgBoxAnswer scriptedAnswer;

QMessageBox::Icon iconFor(QMessageBox::StandardButtons buttons)
{
    return buttons & (QMessageBox::Yes | QMessageBox::No) ? QMessageBox::Question : QMessageBox::Information;
}

QMessageBox::StandardButton showMessageBox(const QString &title, const QString &text,
                                           QMessageBox::StandardButtons buttons)
{
    QMessageBox box(iconFor(buttons), title, text, buttons, QApplication::activeWindow());
    box.exec();
    return box.standardButton(box.clickedButton());
}

// Headings are only written back when the translation differs, so that a model which shows a
// default heading (a column number) does not gain a heading of its own.
void translateHeadings(QAbstractItemModel *model, Qt::Orientation orientation)
{
    const int count = orientation == Qt::Horizontal ? model->columnCount() : model->rowCount();
    for (int section = 0; section < count; ++section) {
        const QString text = model->headerData(section, orientation).toString();
        const QString translated = Translate(text);
        if (translated != text && !translated.isEmpty())
            model->setHeaderData(section, orientation, translated);
    }
}

} // namespace

QMessageBox::StandardButton TranslateMsgBox(const QString &prompt, QMessageBox::StandardButtons buttons,
                                            const QString &p1, const QString &p2, const QString &title)
{
    QMessageBox::StandardButton pressed = QMessageBox::NoButton;
    Guard(u"  @  TranslateMsgBox"_s, [&] {
        const QString text = Translate(QString(), prompt, p1, p2);
        const QString shownTitle = title.isEmpty() ? applicationTitle() : title;
        pressed = scriptedAnswer ? scriptedAnswer(shownTitle, text, buttons) : showMessageBox(shownTitle, text, buttons);
    });
    return pressed;
}

void setMsgBoxAnswer(MsgBoxAnswer answer)
{
    scriptedAnswer = std::move(answer);
}

void TranslateWindow(QWidget *window)
{
    Guard(u"  @  TranslateWindow"_s, [&] {
        auto *active = qobject_cast<ITranslator *>(translator());
        if (active && window)
            active->TranslateWindow(window);
    });
}

void TranslateGrid(QTableWidget *grid)
{
    Guard(u" @ TranslateGrid"_s, [&] {
        if (!grid)
            return;
        for (int column = 0; column < grid->columnCount(); ++column) {
            // Only headings that were given: a missing one shows the column number.
            if (QTableWidgetItem *heading = grid->horizontalHeaderItem(column))
                heading->setText(Translate(heading->text()));
        }
    });
}

void TranslateTabs(QTabWidget *tabs)
{
    Guard(u" @ TranslateTabs"_s, [&] {
        if (!tabs)
            return;
        for (int index = 0; index < tabs->count(); ++index)
            tabs->setTabText(index, Translate(tabs->tabText(index)));
    });
}

void TranslateTabs(QTabBar *tabs)
{
    Guard(u" @ TranslateTabs"_s, [&] {
        if (!tabs)
            return;
        for (int index = 0; index < tabs->count(); ++index)
            tabs->setTabText(index, Translate(tabs->tabText(index)));
    });
}

void TranslateList(QTreeView *list)
{
    if (list)
        TranslateList(list->header());
}

void TranslateList(QHeaderView *header)
{
    Guard(u" @ TranslateList"_s, [&] {
        if (header && header->model())
            translateHeadings(header->model(), header->orientation());
    });
}
