#ifndef KVDSCHEDULE_H
#define KVDSCHEDULE_H

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QString>

class QPainter;

// The calendar axis under the plot: a fine row of cells (hours, days, weeks or months),
// a coarse row beneath it (days, months or years), and a light stripe behind the plot for
// every fine cell. The granularity follows the number of days shown. Holds no state: the
// painting and printing passes make one, call Build once and drop it.
class KVDSchedule : public QObject
{
    Q_OBJECT

public:
    KVDSchedule();

    // Draws the axis for the span start..end into p. width is the plot width in device
    // units; sx and sy scale the fixed margins (1.0 on screen). The rows sit at fixed
    // distances from the bottom of p's viewport; x positions start at 55*sx. Uses the
    // painter's current pen and font and leaves them as the last cell left them.
    void Build(QPainter* p, double width, QDateTime start, QDateTime end, double sx, double sy);

    // Draws one cell with its top left corner at (x, y): a fill one unit lower and one
    // unit narrower than the cell so that the frame stays visible, the frame when framed,
    // and the label centred. Every cell of Build goes through here, except that Build
    // leaves out an unlabelled cell that would cover exactly the units of the one it just
    // drew, when drawing it again could not change a pixel.
    virtual void drawElem(QPainter* p, double x, double y, int w, int h, QColor colour,
                          QString label, bool framed);
};

#endif
