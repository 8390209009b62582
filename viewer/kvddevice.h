#ifndef KVDDEVICE_H
#define KVDDEVICE_H

#include <QPainter>
#include <QRect>

#include <climits>
#include <cmath>

// Device-unit helpers shared by the chart pass and the calendar axis.
namespace KVDDevice {

// Converts a device coordinate or length to int, saturating instead of overflowing: a
// huge zoom must give a far-away cell or point, never undefined arithmetic.
inline int toInt(double v)
{
    if (std::isnan(v))
        return 0;
    if (v >= double(INT_MAX))
        return INT_MAX;
    if (v <= double(INT_MIN))
        return INT_MIN;
    return int(v);
}

// Outlines the w x h units whose top left unit is (x, y), the outline lying on the
// outermost units: neighbouring cells and the plot frame share their border lines with
// what is drawn next to them on that understanding.
inline void outline(QPainter* p, int x, int y, int w, int h)
{
    if (w == 0 || h == 0)
        return;
    const QRect r = QRect(x, y, w, h).normalized();
    p->drawRect(r.x(), r.y(), r.width() - 1, r.height() - 1);
}

} // namespace KVDDevice

#endif
