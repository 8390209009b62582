#include "kvdchart.h"
#include "kvddevice.h"
#include "kvdcurve.h"
#include "kvdcurverun.h"
#include "kvdevent.h"
#include "kvdschedule.h"
#include "kvdshell.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPen>
#include <QPolygon>
#include <QRect>
#include <QTransform>

#include <climits>
#include <cmath>
#include <utility>

using KVDDevice::outline;
using KVDDevice::toInt;

namespace {

const QColor marginColour(200, 200, 200);

// An ellipse inside the w x h units at (x, y), as outline() does for rectangles.
void ellipse(QPainter* p, int x, int y, int w, int h)
{
    p->drawEllipse(x, y, w - 1, h - 1);
}

QColor scaleColour(const KVDCurve* curve)
{
    return curve->color.isValid() ? curve->color : QColor(0, 0, 0);
}

QColor swatchColour(const KVDCurve* curve)
{
    return curve->hasColor ? curve->color : QColor(0, 0, 0);
}

struct Tick
{
    double offset; // distance above the band's bottom
    QString text;
};

// The labelled values of a scale showing curve over a band of the given height: eleven
// evenly spaced values for a range of 11 or more, else one per whole unit.
QList<Tick> scaleTicks(const KVDCurve* curve, double band)
{
    const double top = curve->displayMax;
    const double bottom = curve->minValue;
    double base;
    double range;
    if (top == bottom || curve->fixedScale) {
        base = 0;
        range = top == 0 ? 1.0 : top;
    } else {
        base = bottom;
        range = top - bottom;
    }
    QList<Tick> ticks;
    auto text = [](double value) {
        return value > 10000 ? QString::number(value, 'g', 2)
                             : QString::number(toInt(value)); // truncated, not rounded
    };
    if (range >= 11) {
        for (int i = 0; i <= 10; ++i) {
            const double offset = i * (band / 10);
            ticks.append({offset, text(offset * (range / band) + base)});
        }
    } else if (range >= 0) {
        for (int i = 0; i <= range; ++i)
            ticks.append({i * (band / range), text(base + i)});
    }
    return ticks;
}

QString tooFarMessage()
{
    // The wording, spelling and trailing newline are the message users know.
    return QCoreApplication::translate(
        "QAKVD", "Maybe too hard for the device-> Removing curve form view\n", "Warning message");
}

} // namespace

// Where a curve lands for one pass: the plot's left edge and width, the value band, the
// distance beyond which device coordinates are not trusted, and how curves are stroked.
struct KVDChart::Geometry
{
    double W;
    double H;
    double left;
    double plotWidth;
    double bandTop;
    double band;
    int limit;
    int penWidth;
    bool dots;
};

QSize KVDChart::paperSize(int width, int height)
{
    return QSize(std::max(width, 400), std::max(height, 200));
}

QString KVDChart::fieldName(const KVDCurve* curve, int entry) const
{
    return definitions ? definitions->value(curve->name).value(entry) : QString();
}

KVDCurveRun KVDChart::deviceRun(KVDCurve* curve, const Geometry& g, bool legendPass) const
{
    curve->paperWidth = g.W;
    curve->paperHeight = g.H;
    const double top = curve->displayMax;
    const double bottom = curve->minValue;
    const double sx = g.plotWidth / curve->span;
    QTransform t;
    if (top == bottom || curve->fixedScale) {
        if (top == 0) {
            // Nothing to scale against: every point collapses onto the corner, where the
            // margin covers it.
            t.scale(0, 0);
        } else {
            t.translate(g.left, (g.band * top) / top + g.bandTop);
            t.scale(sx, g.band / top);
        }
    } else {
        t.translate(g.left, (-top * g.band) / (bottom - top) + g.bandTop);
        t.scale(sx, g.band / (top - bottom));
    }
    curve->matrix = t;

    return KVDCurveRun(*curve, t, g.limit, legendPass);
}

bool KVDChart::tooFar(const KVDCurveRun& run, const Geometry& g) const
{
    const int first = run.first;
    const int last = run.last;
    return (run.x(first) < -g.limit && first + 1 < run.n && run.x(first + 1) > 0) ||
           (last > 2 && run.x(last - 1) > g.limit && run.x(last - 2) < g.W);
}

void KVDChart::remove(int index, QList<KVDCurve*>& removed)
{
    KVDCurve* curve = curves->takeAt(index);
    removed.append(curve);
    if (leftScale == curve)
        leftScale = nullptr;
    if (rightScale == curve)
        rightScale = nullptr;
}

void KVDChart::finish(QList<KVDCurve*>& removed)
{
    // Reported once the picture is complete, so that nothing the message box lets run
    // meets a half-updated curve list.
    for (int i = 0; i < removed.size(); ++i)
        KVDShell::warningBox(tooFarMessage());
    qDeleteAll(removed);
    removed.clear();
}

void KVDChart::drawCurves(QPainter* p, const Geometry& g, QList<KVDCurve*>& removed)
{
    if (!curves)
        return;
    for (int i = 0; i < curves->size(); ++i) {
        KVDCurve* curve = curves->at(i);
        if (!curve->hasPoints())
            continue;
        const KVDCurveRun run = deviceRun(curve, g, false);
        // The removed curve is still drawn this time; the one that followed it now sits
        // at index i and is skipped by the loop for the rest of this pass.
        if (tooFar(run, g))
            remove(i, removed);

        const QPen saved = p->pen();
        QPen pen = saved;
        pen.setWidth(g.penWidth);
        if (curve->hasColor)
            pen.setColor(curve->color);
        p->setPen(pen);
        const int first = run.first;
        const int last = run.last;
        if (run.x(first) > -g.limit && first < last && run.x(last - 1) >= 0 &&
            run.x(last - 1) < g.limit) {
            // Only the run near the plot: the window system's coordinates overflow on a
            // far zoom. When no point lies right of the plot the run ends with the curve.
            // Per device column where that lays the same pixels; every point on printers,
            // vector files and with wider pens, where it would not.
            const int count = std::min(last + 1 - first, run.n - first);
            const bool perColumn = mergeColumns && KVDCurveRun::columnsExact(p, pen);
            if (count >= 2)
                p->drawPolyline(run.polyline(first, count, perColumn));
        }
        if (g.dots) {
            if (run.x(first) > -g.limit)
                ellipse(p, run.x(first) - 2, run.y(first) - 2, 4, 4);
            if (last != 0 && last < run.n && run.x(last) < g.limit)
                ellipse(p, run.x(last) - 2, run.y(last) - 2, 4, 4);
        }
        p->setPen(saved);
    }
}

QSize KVDChart::paint(QPainter* p, int width, int height)
{
    const QSize size = paperSize(width, height);
    const double W = size.width();
    const double H = size.height();
    QList<KVDCurve*> removed;

    p->save();
    const QRect viewport = p->viewport();
    p->setViewport(viewport.x(), viewport.y(), size.width(), size.height());
    p->setWindow(0, 0, size.width(), size.height());
    p->setWorldTransform(QTransform());
    p->setPen(QPen(QColor(0, 0, 0), 1));
    p->setBrush(Qt::NoBrush);

    p->fillRect(0, 0, size.width(), size.height() - 40, Qt::white);

    {
        KVDSchedule schedule;
        if (datesSet) {
            schedule.Build(p, W - 305, start, end, 1.0, 1.0);
        } else {
            // A view without a measure shows the last 30 days.
            const QDateTime now = QDateTime::currentDateTime();
            schedule.Build(p, W - 305, now.addDays(-30), now, 1.0, 1.0);
        }
    }

    const Geometry g{W, H, 55, W - 305, 50, H - 150, 4000, 1, true};
    drawCurves(p, g, removed);

    outline(p, 55, 40, toInt(W - 305), toInt(H - 85));
    // The margins cover whatever the curves drew outside the plot; nothing is clipped.
    p->fillRect(0, 0, 55, toInt(H - 5), marginColour);
    p->fillRect(toInt(W - 250), 0, 250, toInt(H), marginColour);
    p->fillRect(0, toInt(H - 45), toInt(W), toInt(H), marginColour);
    p->fillRect(0, 0, toInt(W), 40, marginColour);

    if (events && !events->isEmpty()) {
        const double T = double(start.secsTo(end));
        for (const KVDEvent* event : std::as_const(*events)) {
            if (eventsHidden)
                break;
            const double s = double(start.secsTo(QDateTime(event->date, QTime(0, 0))));
            const double X = (W - 305) / T * s + 55;
            const double position = s * (W / T);
            if (T == 0 || !event->visible || !(position >= 0 && position <= W))
                continue;
            const QPen saved = p->pen();
            QPen pen = saved;
            pen.setWidth(1);
            if (event->hasColor)
                pen.setColor(event->color);
            p->setPen(pen);
            p->fillRect(toInt(X), 40, 5, toInt(H - 125), Qt::red);
            p->fillRect(toInt(X - 31), 0, 66, 40, Qt::gray);
            p->drawText(QRect(QPoint(toInt(X - 28), 0), QPoint(toInt(X + 30), 39)),
                        Qt::AlignCenter | Qt::TextWordWrap, event->text);
            outline(p, toInt(X - 32), 0, 67, 40);
            p->setPen(saved);
        }
    }

    double y = 50;
    bool leftShown = true;
    bool rightShown = true;
    for (int i = 0; curves && i < curves->size(); ++i) {
        KVDCurve* curve = curves->at(i);
        if (!curve->hasPoints())
            continue;
        const KVDCurveRun run = deviceRun(curve, g, true);
        if (tooFar(run, g))
            remove(i, removed);
        const int first = run.first;
        const int last = run.last;
        bool inView = false;
        QString label;
        // The two label forms differ on purpose: a curve with one or two points near the
        // plot is named by its measure key rather than by the measure's label.
        if (run.x(first) > -4000 && last >= 2 && last > first) {
            inView = run.x(last - 1) >= 55 && run.x(last - 1) <= 3999 && run.x(first) < W - 250 &&
                     run.x(last) >= 1;
            label = fieldName(curve, 0);
        } else if (last < 2) {
            inView = run.x(last) >= 55 && run.x(last) <= 3999 && run.x(first) < W - 250;
            label = curve->name;
        }
        if (inView) {
            if (y < H - 100) {
                const int row = toInt(y);
                outline(p, toInt(W - 200), row + 50, 10, 10);
                p->fillRect(toInt(W - 199), row + 51, 8, 8, swatchColour(curve));
                label += QStringLiteral(" (") + curve->user + QStringLiteral(")\n") +
                         fieldName(curve, curve->field);
                p->drawText(
                    QRect(QPoint(toInt(W - 185), row + 42), QPoint(toInt(W - 185 + 249), row + 81)),
                    Qt::AlignLeft | Qt::TextWordWrap, label);
                y += 50;
            }
        } else if (curve == rightScale) {
            rightShown = false;
        } else if (curve == leftScale) {
            leftShown = false;
        }
    }

    const double band = H - 150;
    if (leftScale && leftShown) {
        const QColor colour = scaleColour(leftScale);
        p->fillRect(55, 50, 1, toInt(band), colour);
        for (const Tick& tick : scaleTicks(leftScale, band)) {
            const double top = H - 100 - tick.offset - 7;
            p->drawText(QRect(QPoint(0, toInt(top)), QPoint(54, toInt(top + 29))), Qt::AlignRight,
                        tick.text);
            p->fillRect(55, toInt(H - 100 - tick.offset), 5, 1, colour);
        }
    }
    if (rightScale && rightShown) {
        const QColor colour = scaleColour(rightScale);
        p->fillRect(toInt(W - 251), 50, 1, toInt(band), colour);
        for (const Tick& tick : scaleTicks(rightScale, band)) {
            const double top = H - 100 - tick.offset - 7;
            // 34 units high where the left labels have 29: the right strip has the room.
            p->drawText(QRect(QPoint(toInt(W - 250), toInt(top)),
                              QPoint(toInt(W - 250 + 54), toInt(top + 34))),
                        Qt::AlignLeft, tick.text);
            p->fillRect(toInt(W - 251), toInt(H - 100 - tick.offset), -5, 1, colour);
        }
    }

    p->restore();
    finish(removed);
    return size;
}

void KVDChart::paintPrinted(QPainter* p, int width, int height)
{
    const double W = width;
    const double H = height;
    const double fx = W / 640;
    const double fy = H / 480;
    const double plotWidth = W - 55 * fx - 150 * fx;
    const double band = H - 100 * fy - 50 * fy;
    QList<KVDCurve*> removed;

    p->save();
    const QRect viewport = p->viewport();
    p->setViewport(viewport.x(), viewport.y(), width, height);
    p->setWindow(0, 0, width, height);
    p->setWorldTransform(QTransform());
    p->setPen(QPen(QColor(0, 0, 0), 1));
    p->setBrush(Qt::NoBrush);

    // Paper needs no background, and the dates are printed as they stand.
    KVDSchedule().Build(p, plotWidth, start, end, fx, fy);

    // Paper takes far larger coordinates than a window system; curves get ten times the
    // screen's room and a pen that stays visible in print. A printer is stroked every
    // point: its wider pen joins segments, so fewer points would change the page. Only a
    // page drawn into an image with a pen of one unit or less is merged per column.
    const Geometry g{W, H, 55 * fx, plotWidth, 50 * fy, band, 40000, int(W * 10 / 6800), false};
    drawCurves(p, g, removed);

    if (!datesSet) {
        // Nothing was measured yet: a deliberately blank page.
        p->fillRect(0, 0, width, height, Qt::white);
    } else {
        p->fillRect(0, 0, toInt(55 * fx), toInt(H - 5 * fy), Qt::white);
        p->fillRect(toInt(W - 150 * fx), 0, toInt(150 * fx + 2000), toInt(H + 2000), Qt::white);
        p->fillRect(0, toInt(H - 100 * fy + 55 * fy), width, height, Qt::white);
        p->fillRect(0, 0, width, toInt(40 * fy), Qt::white);
        outline(p, toInt(55 * fx), toInt(40 * fy), toInt(plotWidth),
                toInt(H - 100 * fy - 50 * fy + 65 * fy));
    }

    if (events && !events->isEmpty()) {
        const double T = double(start.secsTo(end));
        for (const KVDEvent* event : std::as_const(*events)) {
            if (eventsHidden)
                break;
            const double s = double(start.secsTo(QDateTime(event->date, QTime(0, 0))));
            const double X = s * (plotWidth / T) + 55 * fx;
            const double position = s * (W / T);
            if (T == 0 || !event->visible || !(position >= 0 && position <= W))
                continue;
            const QPen saved = p->pen();
            QPen pen = saved;
            pen.setWidth(1);
            if (event->hasColor)
                pen.setColor(event->color);
            p->setPen(pen);
            p->fillRect(toInt(X), toInt(40 * fy), toInt(5 * fx),
                        toInt(25 * fy + H - 50 * fy - 100 * fy), Qt::red);
            p->fillRect(toInt(X - 31 * fx), 0, toInt(66 * fx), toInt(40 * fy), Qt::gray);
            p->drawText(QRect(toInt(X - 28 * fx), 0, toInt(59 * fx), toInt(40 * fy)),
                        Qt::AlignCenter | Qt::TextWordWrap, event->text);
            outline(p, toInt(X - 31 * fx), 0, toInt(66 * fx), toInt(40 * fy));
            p->setPen(saved);
        }
    }

    // The legend keeps the screen's limit, so a curve printed far off the plot may lack
    // its entry. Printing never removes a curve on the legend's account.
    const Geometry legend{W, H, 55 * fx, plotWidth, 50 * fy, band, 4000, 1, false};
    double y = 50 * fy;
    bool leftShown = true;
    bool rightShown = true;
    for (int i = 0; curves && i < curves->size(); ++i) {
        KVDCurve* curve = curves->at(i);
        if (!curve->hasPoints())
            continue;
        const KVDCurveRun run = deviceRun(curve, legend, true);
        const int first = run.first;
        const int last = run.last;
        const bool inView = run.x(first) > -4000 && last > first && run.x(last - 1) >= 0 &&
                            run.x(last - 1) <= 3999 && run.x(first) < plotWidth && run.x(last) >= 1;
        if (inView) {
            if (y < H - 100 * fy) {
                y += 50 * fy;
                const int x = toInt(W - 150 * fx + 50 * fx);
                outline(p, x, toInt(y), toInt(11 * fx), toInt(11 * fy));
                p->fillRect(x, toInt(y), toInt(10 * fx), toInt(10 * fy), swatchColour(curve));
                const QString label = curve->name + QStringLiteral(" (") + curve->user +
                                      QStringLiteral(")\n") + fieldName(curve, curve->field);
                p->drawText(QRect(toInt(W - 150 * fx + 50 * fx + 15 * fx), toInt(y),
                                  toInt(250 * fx), toInt(40 * fy)),
                            Qt::AlignLeft | Qt::TextWordWrap, label);
            }
        } else if (curve == rightScale) {
            rightShown = false;
        } else if (curve == leftScale) {
            leftShown = false;
        }
    }

    if (leftScale && leftShown) {
        const QColor colour = scaleColour(leftScale);
        p->fillRect(toInt(55 * fx), toInt(50 * fy), 1, toInt(band), colour);
        for (const Tick& tick : scaleTicks(leftScale, band)) {
            const double top = H - 100 * fy - tick.offset - 7 * fy;
            p->drawText(QRect(0, toInt(top), toInt(55 * fx), toInt(30 * fy)), Qt::AlignRight,
                        tick.text);
            p->fillRect(toInt(55 * fx), toInt(H - 100 * fy - tick.offset), toInt(5 * fx), toInt(fy),
                        colour);
        }
    }
    if (rightScale && rightShown) {
        const QColor colour = scaleColour(rightScale);
        const int line = toInt(W - 150 * fx - 1);
        p->fillRect(line, toInt(50 * fy), 1, toInt(band), colour);
        for (const Tick& tick : scaleTicks(rightScale, band)) {
            const double top = H - 100 * fy - tick.offset - 7 * fy;
            p->drawText(QRect(toInt(W - 150 * fx), toInt(top), toInt(55 * fx), toInt(35 * fy)),
                        Qt::AlignLeft, tick.text);
            p->fillRect(line, toInt(H - 100 * fy - tick.offset), toInt(-5 * fx), toInt(fy), colour);
        }
    }

    p->restore();
    finish(removed);
}
