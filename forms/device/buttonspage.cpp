// SPDX-License-Identifier: GPL-3.0-or-later
#include "buttonspage.h"

#include "controls.h"
#include "guarded.h"
#include "tagvalue.h"
#include "tipfilter.h"
#include "translate.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr int countChoices = 3;

// The Display of a button's action. Text that is no tagged-value string at all is shown as it is.
QString buttonCaption(const QString &action)
{
    if (action == MixedValue)
        return action;
    const QString display = getText(action, u"Display"_s);
    if (display.isEmpty() && !action.startsWith(u'{'))
        return action;
    return display;
}
} // namespace

ButtonsPage::ButtonsPage(QLabel *tipArea, ActionGrid::Editor editor, QWidget *parent)
    : QWidget(parent), m_style(new QComboBox(this)),
      m_grid(new ActionGrid(u"btnGrid"_s, u"Button"_s, u"Button"_s, buttonCaption, std::move(editor), this)),
      m_actions(actionCount)
{
    m_style->setObjectName(u"btnStyle"_s);
    m_style->addItem(Translate(u"No buttons"_s));
    m_style->addItem(Translate({}, u"<1> buttons"_s, u"4"_s));
    m_style->addItem(Translate({}, u"<1> buttons"_s, u"8"_s));
    auto *label = new QLabel(Translate(u"&Buttons shown:"_s), this);
    label->setBuddy(m_style);

    auto *count = new QFormLayout;
    count->addRow(label, m_style);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(count);
    layout->addWidget(m_grid);

    m_tips = new TipFilter(tipArea,
                           {{u"btnStyle"_s, u"QS075"_s, u"Select the number of buttons to display."_s},
                            {u"bProps"_s, u"QS073"_s, u"Click to assign an action or script to a button."_s}},
                           {}, this);
    m_tips->watch(this);

    m_style->setCurrentIndex(-1);
    fillGrid();
    connectGuarded(m_style, &QComboBox::currentIndexChanged, this, u" @ frmConfig.btnStyle_Click"_s,
                   &ButtonsPage::btnStyle_Click);
}

QString ButtonsPage::countText(int index)
{
    return QString::number(index * 4) + u" buttons"_s;
}

int ButtonsPage::countIndex(const QString &value)
{
    qsizetype used = 0;
    const double number = leadingNumber(value, &used);
    if (used == 0 || value == MixedValue)
        return -1;
    for (int index = 0; index < countChoices; ++index) {
        if (number == index * 4)
            return index;
    }
    return -1;
}

void ButtonsPage::load(const QString &row)
{
    m_loadedCount = getText(row, u"Buttons"_s);
    for (int index = 0; index < actionCount; ++index)
        m_actions[index] = getText(row, u"btn"_s + QString::number(index));
    {
        const QSignalBlocker quiet(m_style);
        m_style->setCurrentIndex(countIndex(m_loadedCount));
    }
    fillGrid();
}

void ButtonsPage::save(QString &row) const
{
    const int index = m_style->currentIndex();
    SetOption(row, u"Buttons"_s, index < 0 ? m_loadedCount : countText(index));
    for (int button = 0; button < m_grid->rowCount(); ++button)
        SetOption(row, u"btn"_s + QString::number(button), m_grid->action(button));
}

void ButtonsPage::btnStyle_Click()
{
    for (int button = 0; button < m_grid->rowCount(); ++button)
        m_actions[button] = m_grid->action(button);
    fillGrid();
}

int ButtonsPage::shownRows() const
{
    const int index = m_style->currentIndex();
    return index < 0 ? actionCount : index * 4 + 1;
}

void ButtonsPage::fillGrid()
{
    const int rows = shownRows();
    m_grid->setRowCount(rows);
    m_grid->setRowNames(0, u"btnContact"_s, Translate(u"Preview"_s));
    for (int button = 1; button < rows; ++button)
        m_grid->setRowNames(button, u"btn"_s + QString::number(button),
                            Translate({}, u"Button <1>"_s, QString::number(button)));
    for (int button = 0; button < rows; ++button)
        m_grid->setAction(button, m_actions.at(button));
}
