// SPDX-License-Identifier: GPL-3.0-or-later
#include "windowtexts.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTableWidget>
#include <QTextEdit>
#include <QTreeWidget>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class WindowTexts
{
public:
    explicit WindowTexts(const TextTranslation &translate) : m_translate(translate) {}

    // Writes the translation back only when it differs, so that untouched controls keep their state.
    template <typename Setter> void apply(const QString &text, Setter set) const
    {
        if (!std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isLetter(); }))
            return;
        const QString translation = m_translate(text);
        if (translation != text)
            set(translation);
    }

    void widget(QWidget *widget, bool isTheWindow) const
    {
        if (isTheWindow || widget->isWindow())
            apply(widget->windowTitle(), [&](const QString &t) { widget->setWindowTitle(t); });
        apply(widget->toolTip(), [&](const QString &t) { widget->setToolTip(t); });
        apply(widget->statusTip(), [&](const QString &t) { widget->setStatusTip(t); });
        apply(widget->whatsThis(), [&](const QString &t) { widget->setWhatsThis(t); });

        if (auto *label = qobject_cast<QLabel *>(widget))
            apply(label->text(), [&](const QString &t) { label->setText(t); });
        else if (auto *button = qobject_cast<QAbstractButton *>(widget))
            buttonText(button);
        else if (auto *group = qobject_cast<QGroupBox *>(widget))
            apply(group->title(), [&](const QString &t) { group->setTitle(t); });
        else if (auto *edit = qobject_cast<QLineEdit *>(widget))
            apply(edit->placeholderText(), [&](const QString &t) { edit->setPlaceholderText(t); });
        else if (auto *plain = qobject_cast<QPlainTextEdit *>(widget))
            apply(plain->placeholderText(), [&](const QString &t) { plain->setPlaceholderText(t); });
        else if (auto *rich = qobject_cast<QTextEdit *>(widget))
            apply(rich->placeholderText(), [&](const QString &t) { rich->setPlaceholderText(t); });
        else if (auto *combo = qobject_cast<QComboBox *>(widget))
            comboTexts(combo);
        else if (auto *tabs = qobject_cast<QTabBar *>(widget))
            tabTexts(tabs);
        else if (auto *menu = qobject_cast<QMenu *>(widget))
            apply(menu->title(), [&](const QString &t) { menu->setTitle(t); });
        else if (auto *tree = qobject_cast<QTreeWidget *>(widget))
            treeHeadings(tree);
        else if (auto *table = qobject_cast<QTableWidget *>(widget))
            tableHeadings(table);
    }

    void action(QAction *action) const
    {
        if (action->menu())
            return; // a menu's own action: its menu's title
        // An action without a tip of its own shows its text as the tip; that follows the text.
        const QString ownTip =
            action->toolTip() == shownAsTip(action->text()) ? QString() : action->toolTip();
        apply(action->text(), [&](const QString &t) { action->setText(t); });
        apply(ownTip, [&](const QString &t) { action->setToolTip(t); });
        apply(action->statusTip(), [&](const QString &t) { action->setStatusTip(t); });
        apply(action->whatsThis(), [&](const QString &t) { action->setWhatsThis(t); });
    }

private:
    // QAction's tip when none was set: the text without its accelerator marks and closing "...".
    static QString shownAsTip(QString text)
    {
        text.remove(u"..."_s);
        text.remove(u'&');
        return text.trimmed();
    }

    void buttonText(QAbstractButton *button) const
    {
        if (auto *box = qobject_cast<QDialogButtonBox *>(button->parentWidget())) {
            if (box->standardButton(button) != QDialogButtonBox::NoButton)
                return;
        }
        apply(button->text(), [&](const QString &t) { button->setText(t); });
    }

    void comboTexts(QComboBox *combo) const
    {
        apply(combo->placeholderText(), [&](const QString &t) { combo->setPlaceholderText(t); });
        if (!combo->property("translateItems").toBool())
            return;
        for (int index = 0; index < combo->count(); ++index)
            apply(combo->itemText(index), [&](const QString &t) { combo->setItemText(index, t); });
    }

    void tabTexts(QTabBar *tabs) const
    {
        for (int index = 0; index < tabs->count(); ++index) {
            apply(tabs->tabText(index), [&](const QString &t) { tabs->setTabText(index, t); });
            apply(tabs->tabToolTip(index), [&](const QString &t) { tabs->setTabToolTip(index, t); });
        }
    }

    void treeHeadings(QTreeWidget *tree) const
    {
        QTreeWidgetItem *heading = tree->headerItem();
        for (int column = 0; heading && column < heading->columnCount(); ++column)
            apply(heading->text(column), [&](const QString &t) { heading->setText(column, t); });
    }

    void tableHeadings(QTableWidget *table) const
    {
        for (int column = 0; column < table->columnCount(); ++column) {
            if (QTableWidgetItem *heading = table->horizontalHeaderItem(column))
                apply(heading->text(), [&](const QString &t) { heading->setText(t); });
        }
        for (int row = 0; row < table->rowCount(); ++row) {
            if (QTableWidgetItem *heading = table->verticalHeaderItem(row))
                apply(heading->text(), [&](const QString &t) { heading->setText(t); });
        }
    }

    const TextTranslation &m_translate;
};

} // namespace

void translateWindowTexts(QObject *window, const TextTranslation &translate)
{
    const WindowTexts texts(translate);
    QList<QObject *> objects{window};
    objects += window->findChildren<QObject *>();
    for (QObject *object : std::as_const(objects)) {
        if (auto *widget = qobject_cast<QWidget *>(object))
            texts.widget(widget, object == window);
        else if (auto *action = qobject_cast<QAction *>(object))
            texts.action(action);
    }
}
