// SPDX-License-Identifier: GPL-3.0-or-later
#include "buttonrow.h"

#include "errorlog.h"
#include "translate.h"

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>

ButtonRow::ButtonRow(const QString &prefix, const QStringList &captions, QWidget *parent, const QString &label,
                     std::function<void(int)> handler)
    : QObject(parent), m_layout(new QHBoxLayout)
{
    for (int index = 0; index < captions.size(); ++index) {
        auto *button = new QPushButton(Translate(captions.at(index)), parent);
        button->setObjectName(prefix + u'_' + QString::number(index));
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this,
                [label, handler, index] { Guard(label, [&] { handler(index); }); });
        m_layout->addWidget(button);
        m_buttons.append(button);
    }
    m_layout->addStretch();
}

void ButtonRow::setEnabled(int index, bool enabled, const QString &toolTip)
{
    if (QPushButton *button = m_buttons.value(index)) {
        button->setEnabled(enabled);
        button->setToolTip(toolTip);
    }
}

void ButtonRow::bindKeys(QAbstractItemView *list, int editIndex, int removeIndex)
{
    m_list = list;
    m_editIndex = editIndex;
    m_removeIndex = removeIndex;
    list->installEventFilter(this);
}

bool ButtonRow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_list || event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    int index = -1;
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        index = m_editIndex;
    else if (key == Qt::Key_Delete)
        index = m_removeIndex;
    if (index < 0)
        return QObject::eventFilter(watched, event);
    if (QPushButton *button = m_buttons.value(index); button && button->isEnabled())
        button->click();
    return true; // the list itself does nothing with these keys
}
