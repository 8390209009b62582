#ifndef KVDCHART_H
#define KVDCHART_H

#include "kvdconfig.h"

#include <QDateTime>
#include <QList>
#include <QMultiMap>
#include <QSize>
#include <QString>

class KVDCurve;
class KVDCurveRun;
class KVDEvent;
class QPainter;

// One picture of the chart: background, calendar axis, curves, frame, margins, event
// markers, legend and the two value scales, drawn in device units onto any painter (the
// viewer's pixmap, an image, a printer, an SVG or PDF file). The viewer fills in its view
// state, paints, and reads back the scale curves, which a paint may clear.
//
// Geometry on screen, for a paper of W x H: the plot runs from x = 55 to W-250, the value
// band from y = 50 (scale top) to H-100, event labels sit in y = 0..40 and the legend and
// right scale in the 250-unit strip on the right.
class KVDChart
{
public:
    QDateTime start; // the shown span
    QDateTime end;
    bool datesSet = false;     // false until a measure gave the view its dates
    bool eventsHidden = false; // no event marker at all when set
    // Drawn in list order; not owned by the chart. A curve whose device coordinates run
    // too far off the plot for the window system is reported, removed from the list and
    // deleted by the paint that found it.
    QList<KVDCurve*>* curves = nullptr;
    QList<KVDEvent*>* events = nullptr; // drawn in list order; not owned
    // The curves whose values the left and right scales show, or null. A paint that
    // removes one of them clears the pointer here.
    KVDCurve* leftScale = nullptr;
    KVDCurve* rightScale = nullptr;
    // Measure key -> label (entry 0) and field names, for the legend; may be null.
    const QMultiMap<QString, KVDDefinition>* definitions = nullptr;
    // Where a curve's run has more points than device columns, stroke per column only its
    // first, lowest, highest and last point, on the devices where that lays exactly the
    // pixels of stroking every point (KVDCurveRun::columnsExact): a paint then costs what
    // the picture holds. False strokes every point on every device.
    bool mergeColumns = true;

    // The size a paint of a width x height viewport really draws: at least 400 x 200.
    static QSize paperSize(int width, int height);

    // Draws the screen picture of a width x height viewport at the origin of p's viewport
    // and answers the size drawn (paperSize). Every curve drawn records that size and its
    // point-to-paper transformation for hit tests. p's state is left as it was.
    QSize paint(QPainter* p, int width, int height);

    // Draws the chart for a page of width x height device units: every fixed distance is
    // scaled from a 640 x 480 reference page, the right strip is narrower, curves are
    // thicker, margins are white and no background is laid first. Without dates the page
    // stays blank. Curves record the page size as their paper size.
    void paintPrinted(QPainter* p, int width, int height);

private:
    struct Geometry;

    KVDCurveRun deviceRun(KVDCurve* curve, const Geometry& g, bool legendPass) const;
    bool tooFar(const KVDCurveRun& run, const Geometry& g) const;
    void drawCurves(QPainter* p, const Geometry& g, QList<KVDCurve*>& removed);
    void remove(int index, QList<KVDCurve*>& removed);
    void finish(QList<KVDCurve*>& removed);
    QString fieldName(const KVDCurve* curve, int entry) const;
};

#endif
