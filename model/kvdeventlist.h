#ifndef KVDEVENTLIST_H
#define KVDEVENTLIST_H

#include <QDate>
#include <QList>

class KVDEvent;
class QString;

// The viewer's events and its events-hidden flag, with the operations behind the
// viewer's CreateEvents, IsNearTag and EventHide: the viewer keeps one of these and
// forwards to it, then repaints where the operation changed something.
// The list owns its events (deleted by clear() and the destructor) and is kept in
// creation or configuration order, never sorted; at most one event per day.
class KVDEventList
{
public:
    KVDEventList() = default;
    ~KVDEventList();
    KVDEventList(const KVDEventList&) = delete;
    KVDEventList& operator=(const KVDEventList&) = delete;

    // The events themselves, for the configuration reader and writer and for painting;
    // whatever is appended here is owned by this list.
    QList<KVDEvent*>& items() { return m_events; }
    const QList<KVDEvent*>& items() const { return m_events; }
    void clear();

    // Appends a visible event without colour on day; false, after a warning, when that
    // day already has an event.
    bool add(const QDate& day, const QString& text);
    // True when an event lies exactly on day: there is deliberately no tolerance.
    bool IsNearTag(const QDate& day) const;
    // The first event of the list dated on day, or null.
    KVDEvent* on(const QDate& day) const;
    // Hides all events, or shows them again, in turn. Showing also makes every event
    // visible, including those hidden one by one: callers rely on this to bring back
    // every label at once.
    void EventHide();
    bool eventsHidden() const { return m_hidden; }

private:
    QList<KVDEvent*> m_events;
    bool m_hidden = false;
};

#endif
