#include "kvdeventlist.h"
#include "kvdevent.h"
#include "kvdshell.h"

#include <QCoreApplication>

KVDEventList::~KVDEventList()
{
    clear();
}

void KVDEventList::clear()
{
    qDeleteAll(m_events);
    m_events.clear();
}

bool KVDEventList::add(const QDate& day, const QString& text)
{
    if (on(day)) {
        KVDShell::warningBox(
            QCoreApplication::translate("QAKVD", "An Event already exists for this date\n"));
        return false;
    }
    auto* event = new KVDEvent(day, text, true);
    event->hasColor = false;
    m_events.append(event);
    return true;
}

bool KVDEventList::IsNearTag(const QDate& day) const
{
    return on(day) != nullptr;
}

KVDEvent* KVDEventList::on(const QDate& day) const
{
    for (KVDEvent* event : m_events)
        if (event->date == day)
            return event;
    return nullptr;
}

void KVDEventList::EventHide()
{
    if (m_hidden) {
        m_hidden = false;
        for (KVDEvent* event : std::as_const(m_events))
            event->visible = true;
    } else {
        m_hidden = true;
    }
}
