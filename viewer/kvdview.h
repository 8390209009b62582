#ifndef KVDVIEW_H
#define KVDVIEW_H

#include <QColor>
#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>

#include "kvdconfig.h"
#include "kvdeventlist.h"

class KVDChart;
class KVDCurve;
class KVDEvent;

// What a chart shows, apart from any window: the repository, its configuration, the
// curves and events (owned, deleted with the view), the shown dates and zoom, and the
// operations that move them. The viewer window drives one; the command-line tool drives
// one headless. Every change of the shown span moves the x of every curve point by the
// same number of seconds instead of reloading the curves.
class KVDView
{
public:
    KVDView() = default;
    ~KVDView();
    KVDView(const KVDView&) = delete;
    KVDView& operator=(const KVDView&) = delete;

    // Loads the repository `root` as start-up does, with a new configuration asking
    // `questions`: the built-in definitions, the saved view when `configFile` exists, the
    // scan; when `store` is set the view is written back. False after the failing step
    // has shown its message; with check false every step runs whatever it answers.
    bool load(const QString& root, const QString& configFile, bool store, bool check = true);
    // The view file: root/KVD.cfg, or root/KVD<current user>.cfg for a per-user view.
    QString configPath() const;
    // The chart pass's inputs: this view's dates, curves, events, scale curves and names.
    // After a paint, take the scale curves back: a paint may drop a curve.
    KVDChart chart();

    // Writes the view to the repository's view file.
    void storeView();

    // Empties the chart and shows the last 30 days.
    void clean();

    // Remembers the measure whose menu title is `text`: the last definition holding such
    // an entry wins, and its field count is its size less the label.
    void selectField(const QString& text);
    // Adds a curve for field `id` of the selected measure and `user`, as the field menu
    // does; answers the curve added, or null (a duplicate, or a file without records).
    KVDCurve* selectMeasure(int id, const QString& user);

    // Seconds moved by the last change of the view start.
    qint64 appliedShift() const { return m_appliedShift; }
    // Moves every curve point back by the applied shift and gives the curves the view's
    // dates (and span, unless updateSpan is false, as for a drag).
    void rebase(bool updateSpan);
    bool zoomIn();
    bool zoomOut();
    // Centres a span of before + after seconds on the middle of the view.
    void setScale(qint64 before, qint64 after);
    // Shows the days from `from` to `to`, both at 00:00.
    void setRange(const QDate& from, const QDate& to);
    void setRange(const QDateTime& from, const QDateTime& to);
    // Moves the view by whole seconds, as dragging does.
    void drag(qint64 seconds);

    KVDConfig* config = nullptr;    // owned
    KVDConfig::Questions questions; // for every configuration load() makes
    bool perUserView = false;       // never set: every viewer shows the shared view
    QString root;
    QList<KVDCurve*> curves;
    KVDEventList events; // with the events-hidden flag
    QDateTime start;
    QDateTime end;
    bool datesSet = false;
    int zoom = 0;
    int zoomStep = 0; // non-zero while zoomed in past the 60-day limit
    KVDCurve* firstScale = nullptr;
    KVDCurve* secondScale = nullptr;
    QColor lastColor = Qt::red;
    bool floating = false;
    QString selectedMeasure;
    int fieldCount = 0;
    int selectedField = 0;
    int timeOffset = 0;

private:
    qint64 m_appliedShift = 0;
};

#endif
