#include "kvdcurverun.h"
#include "kvdcurve.h"
#include "kvdcurvesummary.h"
#include "kvddevice.h"

#include <QPaintDevice>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <climits>
#include <cmath>

using KVDDevice::toInt;
using Node = KVDCurveSummary::Node;

namespace {

// Within this distance of the origin a coordinate is rounded as a painter rounds it;
// beyond it, rounded and saturated so that no arithmetic overflows.
constexpr double Bound = double(INT_MAX) / 2;

} // namespace

KVDCurveRun::KVDCurveRun(const KVDCurve& curve, const QTransform& t, int limit, bool legendPass)
    : m_curve(curve), m_sx(t.m11()), m_sy(t.m22()), m_dx(t.dx()), m_dy(t.dy())
{
    m_finite =
        std::isfinite(m_sx) && std::isfinite(m_sy) && std::isfinite(m_dx) && std::isfinite(m_dy);
    m_translateOnly = m_finite && t.type() <= QTransform::TxTranslate;
    if (m_translateOnly) {
        m_tx = qRound(m_dx);
        m_ty = qRound(m_dy);
    }

    n = curve.pointCount();
    first = 0;
    last = legendPass ? n - 1 : n;
    const quint32 shift = curve.pendingShift();
    // The last index from `from` on whose x lies strictly between low and high. x grows
    // or shrinks with the stored x throughout, so a run's ends bound all of its points.
    auto lastWithin = [&](int from, int low, int high) {
        return curve.summary().lastIndex(
            from, n,
            [&](const Node& node) {
                qint32 a = 0;
                qint32 b = 0;
                if (!KVDCurveSummary::shiftedX(node, shift, &a, &b))
                    return KVDCurveSummary::Holds::Some;
                const int xa = mapX(a);
                const int xb = mapX(b);
                const int lo = std::min(xa, xb);
                const int hi = std::max(xa, xb);
                if (hi <= low || lo >= high)
                    return KVDCurveSummary::Holds::None;
                if (lo > low && hi < high)
                    return KVDCurveSummary::Holds::All;
                return KVDCurveSummary::Holds::Some;
            },
            [&](int i) {
                const int v = x(i);
                return v > low && v < high;
            });
    };
    const int left = lastWithin(0, -limit, 0);
    if (left >= 0)
        first = left;
    const int right = lastWithin(1, 0, limit);
    if (right >= 0)
        last = right;
}

int KVDCurveRun::map(qint32 v, int translate, double scale, double offset) const
{
    if (!m_finite)
        return INT_MIN;
    if (m_translateOnly)
        return int(std::clamp<qint64>(qint64(v) + translate, INT_MIN, INT_MAX));
    const double d = scale * v + offset;
    return std::abs(d) < Bound ? qRound(d) : toInt(std::round(d));
}

int KVDCurveRun::mapX(qint32 x) const
{
    return map(x, m_tx, m_sx, m_dx);
}

int KVDCurveRun::mapY(qint32 y) const
{
    return map(y, m_ty, m_sy, m_dy);
}

int KVDCurveRun::x(int i) const
{
    return mapX(m_curve.pointAt(i).x());
}

int KVDCurveRun::y(int i) const
{
    return mapY(m_curve.pointAt(i).y());
}

QPolygon KVDCurveRun::polyline(int from, int count, bool perColumn) const
{
    QPolygon out;
    if (count <= 0)
        return out;
    if (!perColumn) {
        out.resize(count);
        for (int k = 0; k < count; ++k)
            out[k] = at(from + k);
        return out;
    }

    // Columns are gathered in one pass: a run of points wholly in one column is taken from
    // its summary, other points one by one. Each finished column then keeps the points
    // the stroke needs (see reduceColumn).
    const quint32 shift = m_curve.pendingShift();
    Column column;
    auto add = [&](int begin, int end, int x, int a, int ya, int b, int yb) {
        if (!column.open || column.x != x) {
            if (column.open)
                reduceColumn(column, out);
            column = Column{true, x, begin, end, a, ya, a, ya};
        }
        for (const auto& [index, height] : {std::pair{a, ya}, std::pair{b, yb}}) {
            if (height < column.topY) {
                column.topY = height;
                column.top = index;
            }
            if (height > column.bottomY) {
                column.bottomY = height;
                column.bottom = index;
            }
        }
        column.end = end;
    };
    m_curve.summary().walk(
        from, from + count,
        [&](const Node& node, int begin, int end) {
            qint32 a = 0;
            qint32 b = 0;
            if (!KVDCurveSummary::shiftedX(node, shift, &a, &b))
                return KVDCurveSummary::Visit::Descend;
            const int x = mapX(a);
            if (mapX(b) != x)
                return KVDCurveSummary::Visit::Descend;
            add(begin, end, x, node.lowAt, mapY(node.minY), node.highAt, mapY(node.maxY));
            return KVDCurveSummary::Visit::Skip;
        },
        [&](int i) {
            const QPoint p = at(i);
            add(i, i + 1, p.x(), i, p.y(), i, p.y());
            return true;
        });
    if (column.open)
        reduceColumn(column, out);
    return out;
}

// Why these points. An aliased one-unit stroke lays each segment's pixels by rules that
// depend on the segment before it: which way it ran, and its last pixel. Within a column
// every segment is vertical, and such segments together lay every pixel between the
// column's top and bottom heights, the bottom one only where the line turns back up from
// it (or the stroke arrived going down and leaves going up from it at the column's
// start). So a column keeps:
// - its first two points and the first point at another height, so that the segment
//   from the previous column and the one after it are the same, and so is the stroke's
//   first segment, which alone gets a cap even when it has no length;
// - a point at its top height, and a point at its bottom height that lies between the
//   column's first and last run of equal heights when there is one, so that the same
//   pixels are laid between them and the bottom one exactly when it was before;
// - the last point of each of its last three runs of equal heights, and the point before
//   its last, so that the stroke leaves the column in the same direction from the same
//   pixel as before, and its last segment (capped, even without length) is the same.
void KVDCurveRun::reduceColumn(const Column& column, QPolygon& out) const
{
    const int f = column.begin;
    const int w = column.end - 1;
    if (column.end - column.begin <= 9) {
        for (int i = f; i <= w; ++i)
            out.append(at(i));
        return;
    }
    const KVDCurveSummary& summary = m_curve.summary();
    // The heights of a run's points lie between those of its lowest and highest stored y.
    auto heights = [&](const Node& node) {
        const int a = mapY(node.minY);
        const int b = mapY(node.maxY);
        return std::pair{std::min(a, b), std::max(a, b)};
    };
    // Whether a block's points all, some or none differ from height.
    auto otherThan = [&](int height) {
        return [&heights, height](const Node& node) {
            const auto [low, high] = heights(node);
            if (low == height && high == height)
                return KVDCurveSummary::Holds::None;
            return height < low || height > high ? KVDCurveSummary::Holds::All
                                                 : KVDCurveSummary::Holds::Some;
        };
    };
    // Most searches end next to where they start: a few points are looked at one by one
    // before the summary is asked.
    constexpr int Near = 8;
    auto firstOther = [&](int from, int to, int height) {
        for (int i = from; i < std::min(to, from + Near); ++i)
            if (y(i) != height)
                return i;
        return summary.firstIndex(from + Near, to, otherThan(height),
                                  [&](int i) { return y(i) != height; });
    };
    auto lastOther = [&](int from, int to, int height) {
        for (int i = to - 1; i >= std::max(from, to - Near); --i)
            if (y(i) != height)
                return i;
        return summary.lastIndex(from, to - Near, otherThan(height),
                                 [&](int i) { return y(i) != height; });
    };

    const int g = firstOther(f + 1, column.end, y(f));
    if (g < 0) {
        out << at(f) << at(w);
        return;
    }
    const int v = lastOther(f, w, y(w));
    const int u = lastOther(f, v, y(v));
    // The bottom point found while gathering serves when it lies between the first and
    // the last run; otherwise the first other one there, if any.
    int bottom = column.bottom;
    if (bottom < g || bottom > v)
        bottom = summary.firstIndex(
            g, v + 1,
            [&](const Node& node) {
                const auto [low, high] = heights(node);
                if (column.bottomY < low || column.bottomY > high)
                    return KVDCurveSummary::Holds::None;
                return low == high ? KVDCurveSummary::Holds::All : KVDCurveSummary::Holds::Some;
            },
            [&](int i) { return y(i) == column.bottomY; });
    int kept[] = {f, f + 1, g, column.top, bottom, u, v, w - 1, w};
    std::sort(std::begin(kept), std::end(kept));
    for (int k = 0; k < 9; ++k)
        if (kept[k] >= 0 && (k == 0 || kept[k] != kept[k - 1]))
            out.append(at(kept[k]));
}

bool KVDCurveRun::columnsExact(const QPainter* p, const QPen& pen)
{
    const QPaintDevice* device = p->device();
    if (!device ||
        (device->devType() != QInternal::Image && device->devType() != QInternal::Pixmap))
        return false;
    const QTransform t = p->combinedTransform();
    const bool wholeUnits = t.type() <= QTransform::TxTranslate && t.dx() == std::round(t.dx()) &&
                            t.dy() == std::round(t.dy());
    const bool over = p->compositionMode() == QPainter::CompositionMode_SourceOver ||
                      p->compositionMode() == QPainter::CompositionMode_Source;
    return device->devicePixelRatio() == 1.0 && !p->testRenderHint(QPainter::Antialiasing) &&
           wholeUnits && over && p->opacity() == 1.0 && pen.style() == Qt::SolidLine &&
           pen.brush().style() == Qt::SolidPattern && pen.color().alpha() == 255 &&
           pen.widthF() <= 1.0;
}
