// SPDX-License-Identifier: GPL-3.0-or-later
// The main window's help texts: one per page and one per control, shown in the tip area.
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
// "<1>" stands for the server's product name (or, for AutoDir, the telephone-system type).
struct ControlTip
{
    QString control; // objectName of the control
    QString key;
    QString text;
};

namespace Tips {
// The pages in tab order, as their tabs are captioned (untranslated).
const QStringList &PageNames();
// The translated help text of page (0 = Directory .. 7 = Scripts); empty past the last page.
QString PageTip(int page, const QString &productName);
// Every control's help text, in key order.
const QList<ControlTip> &ControlTips();
// The translated help text of one control.
QString ControlTipText(const ControlTip &tip, const QString &productName, const QString &systemType);
} // namespace Tips

// Puts a control's help text into the tip area when the control gets the focus or is clicked.
class TipFilter : public QObject
{
    Q_OBJECT
public:
    using TextOf = std::function<QString(const ControlTip &tip)>;
    TipFilter(QLabel *tipArea, TextOf textOf, QObject *parent = nullptr);

    // Watches every control of the tips table found under root (a list's viewport too, where
    // its clicks land). Returns the names that were not found.
    QStringList watch(QWidget *root);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchOne(QObject *object, const ControlTip &tip);

    QPointer<QLabel> m_tipArea;
    TextOf m_textOf;
    QHash<QObject *, ControlTip> m_tips;
};
