// SPDX-License-Identifier: GPL-3.0-or-later
#include "eventspage.h"

#include "controls.h"
#include "tagvalue.h"
#include "tipfilter.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
// An event's script, or the kind of a plug-in action; text that is no tagged-value string as it is.
QString eventCaption(const QString &action)
{
    if (action == MixedValue || !action.startsWith(u'{'))
        return action;
    const QString script = getText(action, u"Script"_s);
    return script.isEmpty() ? getText(action, u"Type"_s) : script;
}
} // namespace

EventsPage::EventsPage(QLabel *tipArea, ActionGrid::Editor editor, QWidget *parent)
    : QWidget(parent),
      m_grid(new ActionGrid(u"evtGrid"_s, u"Event"_s, u"Script"_s, eventCaption, std::move(editor), this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_grid);
    const QStringList &names = eventNames();
    m_grid->setRowCount(int(names.size()));
    for (int row = 0; row < names.size(); ++row)
        m_grid->setRowNames(row, eventTag(names.at(row)), names.at(row));

    m_tips = new TipFilter(tipArea, {{u"bProps"_s, u"QS074"_s, u"Click to assign a script to an event."_s}},
                           {}, this);
    m_tips->watch(this);
}

const QStringList &EventsPage::eventNames()
{
    static const QStringList names{u"Startup"_s,      u"New Call"_s,    u"Answer Call"_s,
                                   u"Call State"_s,   u"Delete Call"_s, u"Hookstate Change"_s,
                                   u"Value Change"_s, u"Shutdown"_s};
    return names;
}

QString EventsPage::eventTag(const QString &name)
{
    return QString(name).remove(u' ');
}

void EventsPage::load(const QString &row)
{
    m_loaded = getText(row, u"Events"_s);
    const QStringList &names = eventNames();
    for (int event = 0; event < names.size(); ++event)
        m_grid->setAction(event,
                          m_loaded == MixedValue ? MixedValue : getText(m_loaded, eventTag(names.at(event))));
}

void EventsPage::save(QString &row) const
{
    QString events = m_loaded;
    const QStringList &names = eventNames();
    for (int event = 0; event < names.size(); ++event) {
        const QString action = m_grid->action(event);
        if (action != MixedValue)
            AddVar(events, eventTag(names.at(event)), action);
    }
    SetOption(row, u"Events"_s, events);
}
