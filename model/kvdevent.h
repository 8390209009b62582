#ifndef KVDEVENT_H
#define KVDEVENT_H

#include <QColor>
#include <QDate>
#include <QString>

// A dated label pinned to a day of the calendar axis; at most one per day.
class KVDEvent
{
public:
    KVDEvent(const QDate& date, const QString& text, bool visible);

    QDate date;
    QString text;
    bool visible = true;
    QColor color;          // invalid until a colour is chosen
    bool hasColor = false; // the view file stores color only when set, black otherwise
};

#endif
