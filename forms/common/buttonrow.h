// SPDX-License-Identifier: GPL-3.0-or-later
// A list's row of command buttons (a control array such as AButton(0..4)): named buttons, their
// enabling, and the keys that press them from the list.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QAbstractItemView;
class QHBoxLayout;
class QPushButton;
class QWidget;

class ButtonRow : public QObject
{
    Q_OBJECT
public:
    // One button per caption (translated), named prefix + "_" + index, in a row closed by a
    // stretch. A click runs handler(index) under the fault guard label. Enter presses the button
    // that has the focus, as Space does.
    ButtonRow(const QString &prefix, const QStringList &captions, QWidget *parent, const QString &label,
              std::function<void(int index)> handler);

    QHBoxLayout *layout() const { return m_layout; }
    QPushButton *button(int index) const { return m_buttons.value(index); }
    int count() const { return int(m_buttons.size()); }
    void setEnabled(int index, bool enabled, const QString &toolTip = {});

    // In list, Return or Enter presses the button editIndex and Delete the button removeIndex,
    // each only while it is enabled; -1 leaves a key alone.
    void bindKeys(QAbstractItemView *list, int editIndex, int removeIndex);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QHBoxLayout *m_layout;
    QList<QPushButton *> m_buttons;
    QAbstractItemView *m_list = nullptr;
    int m_editIndex = -1;
    int m_removeIndex = -1;
};
