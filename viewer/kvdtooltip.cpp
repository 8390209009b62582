#include "kvdtooltip.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdshell.h"
#include "studiointerface.h"

#include <QHelpEvent>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolTip>
#include <QWidget>

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
        const QPolygon& points = *curve->points();
        auto map = [&](int i) {
            const double v = -double(points[i].y());
            return Mapped{LeftMargin + points[i].x() * plotWidth / span,
                          TopMargin + plotHeight * (top - v) / (top - bottom)};
        };

        int a = -1;
        for (int i = 0; i < points.size(); ++i) {
            const Mapped here = map(i);
            if (here.x < mx) {
                a = i;
                continue;
            }
            if (here.x == mx || a < 0)
                continue;
            const int b = i;
            const Mapped A = map(a);
            const Mapped B = here;
            if (!((my < B.y - 2 && A.y + 2 < my) || (B.y - 2 < my && my < A.y + 2)))
                continue;

            double dAB = 0;
            if (!distance(A, B, mx, my, &dAB))
                return tip;
            // B lies right of the pointer by construction, so the following segment is
            // never a candidate; kept as the measure was defined.
            double dBC = Far;
            if (b + 1 < points.size() && !(mx < B.x)) {
                if (!distance(B, map(b + 1), mx, my, &dBC))
                    return tip;
            }
            double dPA = Far;
            if (b >= 2 && !(mx < map(b - 2).x)) {
                if (!distance(map(b - 2), A, mx, my, &dPA))
                    return tip;
            }

            Mapped one, two, reference;
            if (dAB <= Near) {
                one = A, two = B, reference = B;
            } else if (dPA <= Near) {
                one = map(b - 2), two = A, reference = one;
            } else if (dBC <= Near) {
                one = B, two = map(b + 1), reference = B;
            } else {
                continue;
            }
            if (two.x == one.x)
                return tip;
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
                continue;

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
            return tip;
        }
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
