#include "kvdevent.h"

KVDEvent::KVDEvent(const QDate& date, const QString& text, bool visible)
    : date(date), text(text), visible(visible)
{
}
