#ifndef KVDCURVERUN_H
#define KVDCURVERUN_H

#include <QPoint>
#include <QPolygon>
#include <QTransform>

class KVDCurve;
class QPainter;
class QPen;

// A curve on a device for one pass of the chart: where each point lands in whole device
// units, and the index range of the points near the plot. Points are mapped when asked
// for, through the curve's summary where a whole run of them can be judged at once, so
// a pass costs what the picture needs rather than what the file holds.
//
// The run: first is the last point left of x = 0 within `limit` units (0 when there is
// none), last the last point other than the first of the curve right of x = 0 within the
// limit (n when there is none, n - 1 in the legend's pass). Neither needs the points in
// date order.
class KVDCurveRun
{
public:
    // Maps curve's points through t, a scaling and translation as the chart sets up.
    // The curve must outlive the run and stay unchanged while it is used.
    KVDCurveRun(const KVDCurve& curve, const QTransform& t, int limit, bool legendPass);

    int n = 0;
    int first = 0;
    int last = 0;

    // Device coordinates of point i, as a painter mapping every point through t would
    // give them: rounded to the nearest unit, saturated where an int cannot hold them;
    // a transformation that is not finite puts every point at (INT_MIN, INT_MIN).
    int x(int i) const;
    int y(int i) const;
    QPoint at(int i) const { return QPoint(x(i), y(i)); }

    // Points from, from + 1, ... from + count - 1 in device units to stroke as one
    // polyline. With perColumn, each run of consecutive points in one device column
    // (same x) is cut to at most nine of its points, in file order: its first and last,
    // its lowest and highest, and the few next to its ends that decide how a stroke
    // enters and leaves it; the segments between columns stay as they are. A one-unit
    // opaque solid pen without antialiasing then strokes exactly the pixels of every
    // point.
    QPolygon polyline(int from, int count, bool perColumn) const;

    // Whether p strokes pen exactly as above: an image or pixmap of one pixel per device
    // unit, no antialiasing, no transformation beyond whole-unit moves, an opaque solid
    // pen no wider than a unit, and a composition that paints over. Printers, vector
    // files and wider pens draw every point instead.
    static bool columnsExact(const QPainter* p, const QPen& pen);

private:
    // Points begin..end-1, all in device column x, with the smallest and largest height
    // among them and a point at each.
    struct Column
    {
        bool open = false;
        int x = 0;
        int begin = 0;
        int end = 0;
        int top = 0;
        int topY = 0;
        int bottom = 0;
        int bottomY = 0;
    };
    void reduceColumn(const Column& column, QPolygon& out) const;
    // One coordinate through the kept mapping: the shared rounding of mapX and mapY.
    int map(qint32 v, int translate, double scale, double offset) const;
    int mapX(qint32 x) const;
    int mapY(qint32 y) const;

    const KVDCurve& m_curve;
    double m_sx = 0;
    double m_sy = 0;
    double m_dx = 0;
    double m_dy = 0;
    bool m_finite = true;
    // A transformation that only translates moves points by its offsets rounded once,
    // as a painter's mapping of a polygon does.
    bool m_translateOnly = false;
    int m_tx = 0;
    int m_ty = 0;
};

#endif
