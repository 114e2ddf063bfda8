// SPDX-License-Identifier: GPL-3.0-or-later
#include "formlayout.h"

#include <QFormLayout>
#include <QWidget>

#include <algorithm>

void alignFormLabels(const QList<QWidget *> &containers)
{
    QList<QWidget *> labels;
    int width = 0;
    for (QWidget *container : containers) {
        for (QFormLayout *form : container->findChildren<QFormLayout *>()) {
            for (int row = 0; row < form->rowCount(); ++row) {
                QLayoutItem *item = form->itemAt(row, QFormLayout::LabelRole);
                if (item && item->widget()) {
                    labels << item->widget();
                    width = std::max(width, item->widget()->sizeHint().width());
                }
            }
        }
    }
    for (QWidget *label : labels)
        label->setMinimumWidth(width);
}
