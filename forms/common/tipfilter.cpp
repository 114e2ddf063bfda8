// SPDX-License-Identifier: GPL-3.0-or-later
#include "tipfilter.h"

#include "translate.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QLabel>
#include <QWidget>

TipFilter::TipFilter(QLabel *tipArea, QList<ControlTip> tips, TextOf textOf, QObject *parent)
    : QObject(parent), m_tipArea(tipArea), m_table(std::move(tips)), m_textOf(std::move(textOf))
{
}

QStringList TipFilter::watch(QWidget *root)
{
    QStringList missing;
    for (const ControlTip &tip : std::as_const(m_table)) {
        auto *control = root->findChild<QWidget *>(tip.control);
        if (!control && root->objectName() == tip.control)
            control = root;
        if (!control) {
            missing << tip.control;
            continue;
        }
        watchOne(control, tip);
        // A list's clicks land on its viewport, not on the list itself.
        if (auto *scrollArea = qobject_cast<QAbstractScrollArea *>(control))
            watchOne(scrollArea->viewport(), tip);
    }
    return missing;
}

QString TipFilter::textOf(const ControlTip &tip) const
{
    return m_textOf ? m_textOf(tip) : Translate(tip.key, tip.text);
}

void TipFilter::watchOne(QObject *object, const ControlTip &tip)
{
    if (m_tips.contains(object))
        return;
    m_tips.insert(object, tip);
    object->installEventFilter(this);
    connect(object, &QObject::destroyed, this, [this, object] { m_tips.remove(object); });
}

bool TipFilter::eventFilter(QObject *watched, QEvent *event)
{
    const auto type = event->type();
    if (type == QEvent::FocusIn || type == QEvent::MouseButtonPress) {
        const auto found = m_tips.constFind(watched);
        if (found != m_tips.constEnd() && m_tipArea)
            m_tipArea->setText(textOf(found.value()));
    }
    return QObject::eventFilter(watched, event);
}
