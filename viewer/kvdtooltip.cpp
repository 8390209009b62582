#include "kvdtooltip.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdcurvesummary.h"
#include "kvdshell.h"
#include "studiointerface.h"

#include <QHelpEvent>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

constexpr double LeftMargin = 55;
constexpr double RightMargin = 250;
constexpr double TopMargin = 50;
constexpr double BottomMargin = 100;
constexpr double Far = 1000;
constexpr double Near = 15;

struct Mapped
{
    double x;
    double y;
};

// Squared distance of (px, py) from the line through a and b; answers false for a
// segment of zero length.
bool distance(const Mapped& a, const Mapped& b, double px, double py, double* d)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    if (length == 0)
        return false;
    const double cross = (px - a.x) * dy - (py - a.y) * dx;
    *d = cross * cross / length;
    return true;
}

} // namespace

KVDToolTip::KVDToolTip(QWidget* paper, QList<KVDCurve*>* curves, KVDConfig* config, QObject*)
    : QObject(paper), m_paper(paper), m_config(config), m_curves(curves)
{
    paper->installEventFilter(this);
}

KVDToolTip::Tip KVDToolTip::tipAt(const QPoint& p) const
{
    using Visit = KVDCurveSummary::Visit;
    Tip tip;
    const double mx = p.x();
    const double my = p.y();
    for (const KVDCurve* curve : *m_curves) {
        if (!curve->hasPoints())
            continue;
        const bool flat = curve->displayMax == curve->minValue || curve->fixedScale;
        if (flat && curve->displayMax == 0) {
            tip.quiet = true;
            return tip;
        }
        const double span = curve->span;
        const double plotWidth = curve->paperWidth - LeftMargin - RightMargin;
        const double plotHeight = curve->paperHeight - BottomMargin - TopMargin;
        const double top = curve->displayMax;
        const double bottom = flat ? 0 : curve->minValue;
        const int n = curve->pointCount();
        auto mapX = [&](qint32 x) { return LeftMargin + x * plotWidth / span; };
        auto mapY = [&](qint32 y) {
            const double v = -double(y);
            return TopMargin + plotHeight * (top - v) / (top - bottom);
        };
        auto map = [&](int i) {
            const QPoint point = curve->pointAt(i);
            return Mapped{mapX(point.x()), mapY(point.y())};
        };

        // The walk below, one point at a time; done once it has its answer for the
        // whole pass (a tip, or a segment that ends the search).
        bool done = false;
        int a = -1;
        auto step = [&](int i) {
            const Mapped here = map(i);
            if (here.x < mx) {
                a = i;
                return true;
            }
            if (here.x == mx || a < 0)
                return true;
            const int b = i;
            const Mapped A = map(a);
            const Mapped B = here;
            if (!((my < B.y - 2 && A.y + 2 < my) || (B.y - 2 < my && my < A.y + 2)))
                return true;

            double dAB = 0;
            if (!distance(A, B, mx, my, &dAB))
                return !(done = true);
            // B lies right of the pointer by construction, so the following segment is
            // never a candidate; kept as the measure was defined.
            double dBC = Far;
            if (b + 1 < n && !(mx < B.x)) {
                if (!distance(B, map(b + 1), mx, my, &dBC))
                    return !(done = true);
            }
            double dPA = Far;
            if (b >= 2 && !(mx < map(b - 2).x)) {
                if (!distance(map(b - 2), A, mx, my, &dPA))
                    return !(done = true);
            }

            Mapped one, two, reference;
            if (dAB <= Near) {
                one = A, two = B, reference = B;
            } else if (dPA <= Near) {
                one = map(b - 2), two = A, reference = one;
            } else if (dBC <= Near) {
                one = B, two = map(b + 1), reference = B;
            } else {
                return true;
            }
            if (two.x == one.x)
                return !(done = true);
            double slope = (two.y - one.y) / (two.x - one.x);
            if (std::fabs(slope) < 0.03)
                slope = 0;
            double height = 0;
            qint64 seconds = 0;
            if (std::fabs(slope) <= 1) {
                seconds = qint64((mx - LeftMargin) * span / plotWidth);
                height = reference.y + (mx - reference.x) * slope;
            } else {
                seconds = qint64(((one.x + (my - one.y) / slope) - LeftMargin) * span / plotWidth);
                height = my;
            }
            const double value = top - (height - TopMargin) * (top - bottom) / plotHeight;
            const bool between = (one.y < my && my < two.y) || (two.y < my && my < one.y);
            if (value == 0 || !between)
                return true;

            const KVDDefinition definition =
                m_config ? m_config->definitions.value(curve->name) : KVDDefinition();
            const QString label = definition.value(0);
            tip.found = true;
            tip.date = curve->firstDate.addSecs(seconds);
            tip.value = value;
            tip.text = label + QLatin1Char(' ') + curve->user;
            tip.status = tip.date.toString() + QLatin1Char(' ') + label + QLatin1Char(' ') +
                         definition.value(curve->field) + QLatin1String(" = ") +
                         QString::number(value, 'g', 6);
            return !(done = true);
        };

        // A run of points is passed over whole only when its ranges prove what the walk
        // would do with each of its points: all left of the pointer (the last becomes A),
        // or none left of it and none passing the height test against A. Both mappings
        // then grow or shrink with the stored coordinates, so a run's extremes bound it.
        const bool monotone = span != 0 && std::isfinite(span) && std::isfinite(plotWidth) &&
                              std::isfinite(plotHeight) && std::isfinite(top) &&
                              std::isfinite(bottom) && top != bottom;
        const quint32 shift = curve->pendingShift();
        auto node = [&](const KVDCurveSummary::Node& run, int, int end) {
            qint32 low = 0;
            qint32 high = 0;
            if (!monotone || !KVDCurveSummary::shiftedX(run, shift, &low, &high))
                return Visit::Descend;
            const double x1 = mapX(low);
            const double x2 = mapX(high);
            if (std::max(x1, x2) < mx) {
                a = end - 1;
                return Visit::Skip;
            }
            if (std::min(x1, x2) < mx)
                return Visit::Descend;
            if (a < 0)
                return Visit::Skip;
            const double ay = map(a).y;
            const double y1 = mapY(run.minY);
            const double y2 = mapY(run.maxY);
            const double yLow = std::min(y1, y2);
            const double yHigh = std::max(y1, y2);
            const bool maybe = (my < yHigh - 2 && ay + 2 < my) || (yLow - 2 < my && my < ay + 2);
            return maybe ? Visit::Descend : Visit::Skip;
        };
        curve->summary().walk(0, n, node, step);
        if (done)
            return tip;
    }
    return tip;
}

void KVDToolTip::maybeTip(const QPoint& p)
{
    const Tip tip = tipAt(p);
    if (tip.quiet)
        return;
    if (!tip.found) {
        QToolTip::hideText();
        m_paper->update();
        return;
    }
    QToolTip::showText(m_paper->mapToGlobal(p), tip.text, m_paper, QRect(p, QSize(1, 1)));
    if (StudioInterface* host = KVDShell::host())
        if (QMainWindow* main = host->mainWindow())
            main->statusBar()->showMessage(tip.status, 20000);
}

bool KVDToolTip::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_paper && event->type() == QEvent::ToolTip) {
        maybeTip(static_cast<QHelpEvent*>(event)->pos());
        return true;
    }
    return QObject::eventFilter(watched, event);
}
