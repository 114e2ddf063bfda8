// SPDX-License-Identifier: GPL-3.0-or-later
// Help texts: each control shows its translated tip in its window's tip area while it has the focus.
#pragma once

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>

class QLabel;
class QWidget;

// One control's help text as the translator knows it: key "QS0xx" and the English text, where
// "<1>" stands for what the window fills in (the server's product name, say).
struct ControlTip
{
    QString control; // objectName of the control
    QString key;
    QString text;
};

// Puts a control's help text into the tip area when the control gets the focus or is clicked.
class TipFilter : public QObject
{
    Q_OBJECT
public:
    using TextOf = std::function<QString(const ControlTip &tip)>;
    // Without textOf a tip is translated as it stands (key, text, no placeholder).
    TipFilter(QLabel *tipArea, QList<ControlTip> tips, TextOf textOf = {}, QObject *parent = nullptr);

    // Watches every control of the table found under root (a list's viewport too, where its
    // clicks land). Returns the names that were not found.
    QStringList watch(QWidget *root);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchOne(QObject *object, const ControlTip &tip);
    QString textOf(const ControlTip &tip) const;

    QPointer<QLabel> m_tipArea;
    QList<ControlTip> m_table;
    TextOf m_textOf;
    QHash<QObject *, ControlTip> m_tips;
};
