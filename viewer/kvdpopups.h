#ifndef KVDPOPUPS_H
#define KVDPOPUPS_H

#include <QDateTime>
#include <QPoint>

class KVDCurve;
class KVDView;
class QWidget;

// The right-button menus over the chart, and the event dialog they share with the
// "Events" menu item. A curve under the pointer gets its "Curve Properties" (colour,
// hide, maximum, label, scale side) and "Event Properties"; elsewhere the chart's own menu
// offers the events only. The caller repaints afterwards.
class KVDPopups
{
public:
    // Dialogs and menus open over window; the view is changed in place.
    KVDPopups(KVDView& view, QWidget* window);

    // A right click at pos (paper) and globalPos (screen) on a paper paperWidth wide: the
    // menu of every curve hit, last curve first, until one ends the scan; the chart's menu
    // when no curve was hit.
    void rightClick(const QPoint& pos, const QPoint& globalPos, double paperWidth);
    // Asks for a new event with the event dialog (on the day of Unix time `time`, today
    // for 0) and adds it; false when cancelled or when that day has an event already.
    bool createEvent(unsigned int time);
    // Whether pos lies near the first segment of curve that spans it, in the paper
    // geometry of the curve's last paint.
    static bool curveHit(const KVDCurve* curve, const QPoint& pos);

private:
    // Answers true when the scan of further curves stops.
    bool runCurvePopup(int& index, const QPoint& globalPos, const QDateTime& pointer);
    void runChartPopup(const QPoint& globalPos, const QDateTime& pointer);

    KVDView& m_view;
    QWidget* m_window = nullptr;
};

#endif
