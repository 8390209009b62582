#include "chartfixture.h"
#include "kvdchart.h"
#include "kvdconfig.h"
#include "kvdcurverun.h"
#include "kvdevent.h"
#include "kvdschedule.h"
#include "kvdtooltip.h"
#include "paintrecorder.h"
#include "recordingshell.h"
#include "testenv.h"

#include <QPainter>
#include <QPointer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QColor grey(200, 200, 200), black(0, 0, 0), white(255, 255, 255), magenta(255, 0, 255);
const QColor green(0, 128, 0), blue(0, 0, 255), red(255, 0, 0), gray(Qt::gray);
const QString name = "Coverage (alice)", key = "cov2 (alice)";
const QString tooFar = "warning|Maybe too hard for the device-> Removing curve form view\n";

QDateTime at(int y, int m, int d, int h = 0, int min = 0)
{
    return QDateTime(QDate(y, m, d), QTime(h, min));
}

bool contains(const QImage& image, const QRect& area, const QColor& colour)
{
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (image.pixelColor(x, y) == colour)
                return true;
    return false;
}

// A view of `days` days from 1 March 2024 over curves of measure cov2 ("Coverage", fields
// "Statements" and "Branches") of user alice, on screen or on a printed page. On 640 x 480
// both have the plot from x = 55 and the value band from y = 50 to 380; the right strip is
// 250 wide on screen, 150 on paper.
struct Scene
{
    explicit Scene(bool printed = false, int days = 30) : printed(printed)
    {
        chart.start = at(2024, 3, 1);
        chart.end = chart.start.addDays(days);
        chart.datesSet = true;
        chart.curves = &curves;
        chart.events = &events;
        chart.definitions = &config.definitions;
        config.definitions.insert("cov2", {{0, "Coverage"}, {1, "Statements"}, {2, "Branches"}});
    }
    ~Scene() { qDeleteAll(events); }
    int strip() const { return printed ? 150 : 250; }

    // A curve through (time, value) points, time in units of `unit` seconds, by default
    // fractions of the view span.
    KVDCurve* add(const QList<QPointF>& at, double top, double bottom, const QColor& colour,
                  double unit = 0)
    {
        const double span = chart.start.secsTo(chart.end);
        QPolygon points;
        for (const QPointF& p : at)
            points << QPoint(qRound(p.x() * (unit ? unit : span)), -qRound(p.y()));
        KVDCurve* curve = ChartFixture::curve(dir.path(), points, span, top, bottom);
        curve->setParent(&owner); // gone with the scene unless a paint removes it first
        curve->color = colour;
        curve->hasColor = true;
        curve->firstDate = chart.start;
        return curves.emplace_back(curve);
    }
    KVDCurve* flat(double value, double top, double bottom, const QColor& colour = green)
    {
        return add({{0.1, value}, {0.5, value}, {0.9, value}}, top, bottom, colour);
    }

    // Paints on an image, magenta where the pass lays nothing, then again to read the texts.
    QImage paint(int w = 640, int h = 480)
    {
        QImage image(w, h, QImage::Format_RGB32);
        image.fill(magenta);
        recorder.texts.clear();
        for (QPaintDevice* device : std::initializer_list<QPaintDevice*>{&image, &recorder}) {
            QPainter painter(device);
            if (printed)
                chart.paintPrinted(&painter, w, h);
            else
                chart.paint(&painter, w, h);
        }
        return image;
    }

    bool printed;
    QObject owner;
    PaintRecorder recorder{640, 480};
    QTemporaryDir dir;
    QList<KVDCurve*> curves;
    QList<KVDEvent*> events;
    KVDConfig config;
    KVDChart chart;
};

// The calendar axis on a 1600 x 300 image: the fine row's top at 300 - 85 * scale, the
// coarse row's at 300 - 66 * scale. Keeps each cell handed to drawElem by its row's top, as
// its x and its colour, L(ight) or G(rey), followed by its label.
class Axis : public KVDSchedule
{
public:
    void drawElem(QPainter* p, double x, double y, int w, int h, QColor colour, QString label,
                  bool framed) override
    {
        rows[y] << qMakePair(x, (colour == Qt::lightGray ? "L"
                                 : colour == gray        ? "G"
                                                         : "?") +
                                    label);
        KVDSchedule::drawElem(p, x, y, w, h, colour, label, framed);
    }
    QImage build(double width, const QDateTime& start, double days, double scale = 1,
                 QPainter::CompositionMode mode = QPainter::CompositionMode_SourceOver)
    {
        QImage image(1600, 300, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setCompositionMode(mode);
        Build(&painter, width, start, start.addSecs(qRound64(days * 86400)), scale, scale);
        return image;
    }

    QMap<double, QList<QPair<double, QString>>> rows;
};

// Random curves for the per-column stroke: 4000 to 8000 points over about 10^6 seconds,
// values about 0 to 1000, in file order.
enum Shape { Steps, Spikes, FlatRuns, Gaps, FarOutside, Reversed, Unsorted, Wrapping, Shapes };
const char* const shapeNames[Shapes] = {"steps",   "spikes",   "flat runs", "gaps",
                                        "far off", "reversed", "unsorted",  "wrapping"};

QPolygon randomCurve(Shape shape, QRandomGenerator& r)
{
    const int n = 4000 + int(r.bounded(4000));
    QPolygon points(n);
    qint64 x = shape == Reversed ? 1200000 : shape == Wrapping ? INT_MAX - 1200000 : 0;
    int value = 500;
    for (int i = 0; i < n; ++i) {
        const int step = int(r.bounded(300));
        if (shape == Unsorted)
            x = r.bounded(1200000), value = int(r.bounded(1001));
        else if (shape == Gaps)
            x += r.bounded(40) == 0 ? 20000 + r.bounded(60000) : r.bounded(30);
        else
            x += shape == Reversed ? -step : shape == FlatRuns ? step / 4 : step;
        // Steps hold a value for about 50 points, flat runs for about 400; the others walk.
        if ((shape == Steps || shape == Wrapping) && r.bounded(50) == 0)
            value = int(r.bounded(1001));
        else if (shape == FlatRuns && r.bounded(400) == 0)
            value = int(r.bounded(1001));
        else if (shape == Spikes)
            value = qBound(0, value + int(r.bounded(21)) - 10, 1000);
        else if (shape == Gaps || shape == FarOutside || shape == Reversed)
            value = qBound(0, value + int(r.bounded(41)) - 20, 1000);
        int shown = value;
        if (shape == Spikes && r.bounded(60) == 0)
            shown = value + int(r.bounded(4001)) - 2000;
        if (shape == FarOutside && r.bounded(50) == 0)
            shown = int(r.bounded(2000000)) - 1000000;
        const bool far = shape == FarOutside && r.bounded(97) == 0;
        points[i] = QPoint(far ? int(r.bounded(2000000000)) - 1000000000 : int(x), -shown);
    }
    return points;
}

// The rows of the tables below, as their row() functions name them.
enum Mark { NoEvent, Shown, Hidden, Unshown };
using Picture =
    std::tuple<bool, bool, bool, double, double, int, int, QStringList, int, Mark, bool>;
using Placement = std::tuple<bool, QList<double>, bool, bool, QString, bool>;
using Hover = std::tuple<QList<QPointF>, QPoint, double, int, bool, bool>;
using Span = std::tuple<QDateTime, double, QStringList, QDateTime, QDateTime, double, double>;
using Strokes = std::tuple<int, int>;

} // namespace

// The chart pass (frame, margins, curves, scales, legend, events, curves too far off the
// plot, the printed page), the calendar axis beneath it, and the tooltips over it.
class TstChart : public QObject
{
    Q_OBJECT
    RecordingShell m_shell;

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_shell.use();
    }
    void init() { m_shell.messages.clear(); }

    // One curve on a scale and one event, on a 640 x 480 screen and page.
    void chart_data()
    {
        QTest::addColumn<Picture>("c");
        int n = 0;
        // Each case on screen and on paper, on both sides. y: the curve's, -1 when it does not
        // show; labels: the scale's lowest, highest and their count; day: the event's.
        auto row = [&n](const char* name, bool fromZero, double top, double bottom, int value,
                        int y, const QStringList& labels, int day, Mark mark, bool dated = true) {
            for (bool printed : {false, true}) {
                const bool right = (n + printed) % 2;
                QTest::addRow("%s, %s scale: %s", printed ? "page" : "screen",
                              right ? "right" : "left", name)
                    << Picture{printed, right,  fromZero, top,  bottom, value,
                               y,       labels, day,      mark, dated};
            }
            ++n;
        };
        row("constant on the top line", false, 500, 500, 500, 50, {"0", "500", "11"}, 0, NoEvent);
        row("constant zero, event at the start", false, 0, 0, 0, -1, {}, 0, Shown);
        row("from zero, event inside", true, 1000, 200, 500, 215, {"0", "1000", "11"}, 15, Shown);
        row("half way, event at the end", false, 1000, 200, 600, 215, {"200", "1000", "11"}, 30,
            Shown);
        row("at the bottom, event the day before", false, 1000, 200, 200, 380,
            {"200", "1000", "11"}, -1, Shown);
        row("range 11, event the day after", false, 11, 0, 0, 380, {"0", "11", "11"}, 31, Shown);
        row("range 3, events hidden", false, 13, 10, 10, 380, {"10", "13", "4"}, 15, Hidden);
        row("from zero, range 3, event not shown", true, 3, 1, 1, 270, {"0", "3", "4"}, 15,
            Unshown);
        row("above 10000", false, 12345, 0, 12345, 50, {"0", "1.2e+04", "11"}, 0, NoEvent);
        row("inverted range: a line, no tick", false, 0, 5, 5, 380, {}, 0, NoEvent);
        row("undated: a blank page", false, 0, 0, 0, -1, {}, 0, NoEvent, false);
    }

    void chart()
    {
        QFETCH(Picture, c);
        const auto [printed, right, fromZero, top, bottom, value, y, labels, day, mark, dated] = c;
        Scene scene(printed);
        scene.chart.datesSet = dated;
        KVDCurve* curve = scene.flat(value, top, bottom, blue);
        curve->fixedScale = fromZero;
        (right ? scene.chart.rightScale : scene.chart.leftScale) = curve;
        if (mark != NoEvent)
            scene.events << new KVDEvent(QDate(2024, 3, 1).addDays(day), "release",
                                         mark != Unshown);
        scene.chart.eventsHidden = mark == Hidden;
        const QImage image = scene.paint();
        const int end = 640 - scene.strip(), line = right ? end - 1 : 55;
        const bool blank = printed && !dated;
        for (const QPoint& p : {QPoint(0, 0), QPoint(54, 420), QPoint(end, 420), QPoint(639, 479),
                                QPoint(100, 39), QPoint(100, 435)})
            QVERIFY2(image.pixelColor(p) == (printed ? white : grey), "margin");
        for (const QPoint& p :
             {QPoint(55, 420), QPoint(end - 1, 420), QPoint(100, 40), QPoint(100, 434)})
            QVERIFY2(image.pixelColor(p) == (blank ? white : black), "frame");
        // Paper gets no background: nothing is laid between the stripes and the axis.
        QCOMPARE(image.pixelColor(100, 394), printed && !blank ? magenta : white);
        QVERIFY2(printed || !contains(image, image.rect(), magenta), "the screen is covered");
        QVERIFY2(y >= 0 || !contains(image, image.rect(), blue), "neither curve nor scale");
        for (int x : {100, 200, 300})
            QVERIFY2(y < 0 || image.pixelColor(x, y) == blue, "the curve at its height");
        // Hit tests find the points on the paper through the transformation kept.
        for (const QPoint& p : {curve->matrix.map(curve->points()->first()),
                                curve->matrix.map(curve->points()->last())})
            QVERIFY2(y < 0 || (image.pixelColor(p) == blue &&
                               contains(image, QRect(p.x() - 2, y - 3, 5, 2), blue) != printed),
                     "its ends, with dots on screen only");
        const QStringList found =
            scene.recorder.textsIn(right ? end : 0, 41, right ? end + 55 : 55, 395);
        const QStringList ends{found.value(0), found.value(found.size() - 1)};
        QCOMPARE(found.isEmpty() ? found : ends + QStringList{QString::number(found.size())},
                 labels);
        QVERIFY2(found.isEmpty() || image.pixelColor(right ? line - 3 : line + 3, 380) == blue,
                 "the lowest tick");
        QVERIFY2(y < 0 || image.pixelColor(line, 240) == blue, "the scale line");
        const bool marked = mark == Shown && day >= 0 && day <= 30;
        QCOMPARE(scene.recorder.textsIn(0, 0, 640, 40),
                 marked ? QStringList{"release"} : QStringList());
        QVERIFY2(marked || !contains(image, image.rect(), red), "no marker");
        const int x = int(55 + (585 - scene.strip()) * day / 30.0);
        QVERIFY2(!marked ||
                     (image.pixelColor(x + 2, 200) == red && image.pixelColor(x - 25, 5) == gray &&
                      image.pixelColor(x - 25, 0) == black),
                 "the bar, the label's box and its outline");
    }

    // A curve on the left scale and a follower, on a screen of 800 x 500 (a plot of 495 from
    // 55, so that 4000 units are about 8 spans) or a page of 1280 x 960 (a plot of 870 from
    // 110, and ten times the room).
    void visibility_data()
    {
        QTest::addColumn<Placement>("c");
        // at: fractions of the view span, of value 5 in 0..10; label: the first line of its
        // legend entry, none when it is left out, and its scale with it.
        auto row = [](const char* name, bool printed, const QList<double>& at, bool removed,
                      bool drawn, const QString& label, bool zeroSpan = false) {
            QTest::newRow(name) << Placement{printed, at, removed, drawn, label, zeroSpan};
        };
        row("screen: on the plot", false, {0, 0.5, 1}, false, true, name);
        row("screen: two points, by key", false, {0, 1}, false, true, key);
        row("screen: left of the plot", false, {-2, -1.6, -1.2}, false, false, "");
        row("screen: far left, then on the plot", false, {-10, 0.5, 1}, true, false, "");
        row("screen: spike far right", false, {0, 0.2, 10, 0.5}, true, false, "");
        row("screen: spike as the second point", false, {0, 10, 0.5}, false, false, "");
        row("screen: within the limits", false, {-7, 0.5, 1}, false, true, name);
        row("screen: zero span", false, {0, 0.5, 1}, false, false, "", true);
        row("page: on the plot", true, {0, 0.5, 1}, false, true, key);
        row("page: 5000 units off, kept", true, {-5110.0 / 870, 0.5, 1}, false, true, "");
        row("page: 50000 units off", true, {-50, 0.5, 1}, true, false, "");
    }

    void visibility()
    {
        QFETCH(Placement, c);
        const auto [printed, at, removed, drawn, label, zeroSpan] = c;
        Scene scene(printed);
        QList<QPointF> points;
        for (double x : at)
            points << QPointF(x, 5);
        QPointer<KVDCurve> curve = scene.add(points, 10, 0, blue);
        curve->span = zeroSpan ? 0 : curve->span;
        scene.chart.leftScale = curve;
        scene.flat(8, 10, 0);
        const int w = printed ? 1280 : 800, h = printed ? 960 : 500, f = printed ? 2 : 1;
        const QRect plot(QPoint(56 * f, 41 * f), QPoint(w - scene.strip() * f - 2, h - 47 * f));
        const QImage image = scene.paint(w, h);
        QCOMPARE(m_shell.messages, removed ? QStringList{tooFar} : QStringList());
        QVERIFY2(curve.isNull() == removed && !scene.chart.leftScale == removed &&
                     scene.curves.size() == 2 - removed,
                 "a removed curve is deleted and its scale cleared");
        QVERIFY2(!drawn || contains(image, plot, blue), "drawn");
        QCOMPARE(image.pixelColor(55 * f, plot.center().y()), label.isEmpty() ? black : blue);
        QCOMPARE(image.pixelColor(printed ? QPoint(w - 192, 208) : QPoint(w - 196, 104)),
                 label.isEmpty() ? green : blue); // the first swatch
        const QStringList follower{printed ? key : name, "Statements"};
        QCOMPARE(scene.recorder.textsIn(w - scene.strip() * f, 0, w, h - 85 * f),
                 (label.isEmpty() ? QStringList() : QStringList{label, "Statements"}) + follower);
        // The pass that removes a curve skips the one after it, which comes back next time.
        QVERIFY2(contains(image, plot, green) != removed, "follower skipped only then");
        QVERIFY2(contains(scene.paint(w, h), plot, green), "follower drawn again");
    }

    void tooltip_data()
    {
        QTest::addColumn<Hover>("c");
        // points: (hours, value), at (55 + hours, 400 - value) on the paper; value: 0 for no
        // tip; hours: the tip's date from the view start.
        auto row = [](const char* name, const QList<QPointF>& points, QPoint at, double value,
                      int hours, bool fromZero = false, bool behindFlatZero = false) {
            QTest::newRow(name) << Hover{points, at, value, hours, fromZero, behindFlatZero};
        };
        const QList<QPointF> nearlyFlat{{100, 100}, {400, 105}}, steep{{100, 50}, {150, 250}};
        const QList<QPointF> back{{45, 100}, {47, 300}, {345, 100}}; // steep, then falling
        row("nearly flat: the right end's value", nearlyFlat, {300, 298}, 105, 245);
        row("in the slack, beyond the ends", nearlyFlat, {300, 301}, 0, 0);
        row("left of the curve", nearlyFlat, {120, 299}, 0, 0);
        row("slope 0.03 is not flat", {{100, 100}, {200, 103}}, {205, 298}, 101.5, 150);
        row("slope 1: the curve's height", {{100, 100}, {200, 200}}, {205, 249}, 150, 150);
        row("steep: the pointer's height", steep, {180, 250}, 150, 125);
        row("steep, scale from zero", steep, {180, 250}, 150, 125, true);
        row("behind a flat zero curve: quiet", steep, {180, 250}, 0, 0, false, true);
        row("zero at the pointer", {{0, 10}, {600, 0}}, {355, 395}, 0, 0);
        // The point under the pointer is neither end; the segment two back is then empty.
        row("above a point", {{100, 100}, {200, 100}, {202, 300}}, {255, 290}, 0, 0);
        row("near the segment before", back, {103, 200}, 200, 46);
        row("at the slack's lower edge", back, {103, 298}, 0, 0);
        row("at the slack's upper edge", back, {103, 102}, 0, 0);
        // Long curves, walked past runs of points at a time: first 128 points left of the
        // pointer, the last of them its left end; then 149 points right of it too low for
        // the height test before the one that passes.
        QList<QPointF> left, low{{100, 100}};
        for (int h = 0; h < 128; ++h)
            left << QPointF(h, 100);
        for (int h = 151; h < 300; ++h)
            low << QPointF(h, 10);
        row("after 128 points left of it", left << QPointF(129, 300), {183, 200}, 200, 128);
        row("after 149 points too low", low << QPointF(300, 300), {205, 250}, 150, 150);
    }

    void tooltip()
    {
        QFETCH(Hover, c);
        const auto [points, at, value, hours, fromZero, behindFlatZero] = c;
        // 905 x 500 over 25 days: a plot of 600 x 350, one unit an hour and a value.
        Scene scene(false, 25);
        if (behindFlatZero)
            scene.flat(0, 0, 0);
        scene.add(points, 350, fromZero ? 100 : 0, blue, 3600)->fixedScale = fromZero;
        scene.paint(905, 500); // the curves take the paper's geometry
        QWidget paper;
        const KVDToolTip::Tip tip =
            KVDToolTip(&paper, &scene.curves, &scene.config, nullptr).tipAt(at);
        const QDateTime date = scene.chart.start.addSecs(hours * 3600);
        QCOMPARE(tip.quiet, behindFlatZero);
        QCOMPARE(tip.found, value != 0);
        QCOMPARE(tip.value, value);
        QVERIFY2(value == 0 || (tip.date == date && tip.text == "Coverage alice" &&
                                tip.status == date.toString() + " Coverage Statements = " +
                                                  QString::number(value)),
                 qPrintable(tip.status));
    }

    // Stroking only a few points of each device column changes no pixel: random curves, at
    // zooms from far out to far in, from view starts kept as a pending shift, painted with
    // and without merging and once more after the shift was applied, give one image byte
    // for byte, and the points the shift was applied to wrapped as 32-bit numbers do.
    void columns_data()
    {
        QTest::addColumn<Strokes>("c");
        const char* const scales[] = {"min to max", "from zero", "upside down"};
        for (int shape = 0; shape < Shapes; ++shape)
            for (int scale = 0; scale < 3; ++scale)
                QTest::addRow("%s, %s", shapeNames[shape], scales[scale]) << Strokes{shape, scale};
    }

    void columns()
    {
        QFETCH(Strokes, c);
        const int shape = std::get<0>(c), scale = std::get<1>(c); // a lambda captures them
        QRandomGenerator r(quint32(1000 * shape + scale + 1));
        const QPolygon points = randomCurve(Shape(shape), r);
        int low = INT_MAX, high = INT_MIN;
        for (const QPoint& p : points)
            low = std::min(low, -p.y()), high = std::max(high, -p.y());
        // A shift past 2^31 puts the points it wraps 2^32 seconds from the others: views of
        // that order keep both near the plot.
        const QList<double> spans = shape == Wrapping ? QList<double>{4294967296.0, 5e9}
                                                      : QList<double>{2e3, 5e4, 4e5, 1.2e6, 8e6};
        for (const double span : spans) {
            const qint64 shift = shape == Wrapping ? -400000 - qint64(r.bounded(1500000))
                                                   : qint64(r.bounded(1800000)) - 400000;
            auto render = [&](bool merge, bool applied, int* kept) {
                Scene scene;
                KVDCurve* curve =
                    ChartFixture::curve(scene.dir.path(), points, span, scale == 2 ? low : high,
                                        scale == 2 ? high : low);
                curve->setParent(&scene.owner);
                curve->fixedScale = scale == 1;
                curve->color = blue;
                curve->hasColor = true;
                curve->MoveX(-shift);
                if (applied) {
                    const QPolygon moved = *curve->points();
                    for (int i = 0; i < points.size(); ++i) {
                        const qint64 x = qint64(points[i].x()) - shift + (qint64(1) << 31);
                        const qint64 wrapped =
                            ((x % (qint64(1) << 32)) + (qint64(1) << 32)) % (qint64(1) << 32) -
                            (qint64(1) << 31);
                        if (moved[i] != QPoint(int(wrapped), points[i].y()))
                            return QImage();
                    }
                }
                scene.curves << curve;
                scene.chart.mergeColumns = merge;
                QImage image(640, 480, QImage::Format_RGB32);
                QPainter painter(&image);
                if (!KVDCurveRun::columnsExact(&painter, QPen(blue, 1)))
                    return QImage();
                scene.chart.paint(&painter, 640, 480);
                if (kept && !scene.curves.isEmpty())
                    *kept = int(KVDCurveRun(*curve, curve->matrix, 4000, false)
                                    .polyline(0, int(points.size()), true)
                                    .size());
                return image;
            };
            int kept = 0;
            const QImage merged = render(true, false, &kept);
            QVERIFY2(!merged.isNull(), "an image with one pixel per unit, drawn to merge");
            QVERIFY2(merged == render(false, false, nullptr),
                     qPrintable(QString("span %1, shift %2").arg(span).arg(shift)));
            QVERIFY2(merged == render(true, true, nullptr),
                     "the same points and picture once the shift is applied");
            // Dense sorted curves on the whole plot do merge, so the images compare two ways.
            QVERIFY(span != spans.last() || shape == Unsorted || kept < points.size() / 4);
        }
    }

    void axis_data()
    {
        QTest::addColumn<Span>("c");
        // cells: the first fine cells, then the first coarse one, none when nothing is drawn;
        // fineFrom, coarseFrom: where the first of each row begins.
        auto row = [](const char* name, const QDateTime& start, double days,
                      const QStringList& cells, const QDateTime& fineFrom,
                      const QDateTime& coarseFrom, double width = 1295, double scale = 1) {
            QTest::newRow(name) << Span{start, days, cells, fineFrom, coarseFrom, width, scale};
        };
        auto weeks = [](const QString& cells, const QString& coarse) {
            QStringList labels;
            for (const QString& cell : cells.split(' '))
                labels << cell.left(1) + "Week " + cell.mid(1);
            return labels << coarse;
        };
        const QDateTime wed = at(2009, 1, 7, 10, 30), ten = at(2009, 1, 7, 10);
        const QDateTime jan7 = at(2009, 1, 7), jan5 = at(2009, 1, 5), jan1 = at(2009, 1, 1);
        const QStringList hours{"G10", "L11", "LWed 7 Jan 2009"};
        row("2 days: hours from the whole hour, days", wed, 2, hours, ten, jan7);
        row("33 days: days, months", wed, 33, {"L7", "G8", "LJan 2009"}, jan7, jan1, 601.3);
        row("123 days: weeks from Monday, months", wed, 123, weeks("G2 L3", "LJan 2009"), jan5,
            jan1);
        // To 1 January 2012: neither a month nor a year cell begins at the end.
        row("1000 days: months, years", at(2009, 4, 6), 1000, {"GApr", "LMay", "L2009"},
            at(2009, 4, 1), jan1, 487.3);
        row("1001 days: an hour band, years", wed, 1001, {"G", "G", "L2009"}, wed, wed, 975.3);
        row("2 Jan 2009 is in week 1", at(2009, 1, 2), 38, weeks("L1 G2 L3 G4", "GDec 2008"),
            at(2008, 12, 29), at(2008, 12, 1));
        row("29 Dec 2008 is week 1", at(2008, 12, 1), 38,
            weeks("L49 G50 L51 G52 L1 G2", "GDec 2008"), at(2008, 12, 1), at(2008, 12, 1));
        row("28 Dec 2009 is week 53", at(2009, 12, 1), 38,
            weeks("L49 G50 L51 G52 L53 L1", "LNov 2009"), at(2009, 11, 30), at(2009, 11, 1), 777);
        // A week is a fifth of the plot: the long form needs room for seven a's.
        QImage probe(1, 1, QImage::Format_RGB32);
        const int sevenAs = QPainter(&probe).fontMetrics().horizontalAdvance("aaaaaaa");
        row("seven a's just fit a week", jan5, 35, weeks("G2 L3", "LJan 2009"), jan5, jan1,
            5 * sevenAs + 0.5);
        row("one unit short: W 2", jan5, 35, {"GW 2", "LW 3", "LJan 2009"}, jan5, jan1,
            5 * sevenAs - 0.5);
        row("zero seconds", wed, 0, {}, {}, {});
        row("end a day before", wed, -1, {}, {}, {});
        row("end within the first hour", wed, -600 / 86400.0, {"G10", "LWed 7 Jan 2009"}, ten,
            jan7);
    }

    void axis()
    {
        QFETCH(Span, c);
        const auto [start, days, cells, fineFrom, coarseFrom, width, scale] = c;
        Axis axis, every;
        const QImage image = axis.build(width, start, days, scale);
        const double fineTop = 300 - 85 * scale, coarseTop = 300 - 66 * scale;
        const auto fine = axis.rows.value(fineTop), coarse = axis.rows.value(coarseTop);
        QCOMPARE(axis.rows.size(), qsizetype(cells.isEmpty() ? 0 : 2));
        if (cells.isEmpty())
            return;
        QStringList found;
        for (const auto& cell : fine.mid(0, cells.size() - 1) + coarse.mid(0, 1))
            found << cell.second;
        QCOMPARE(found, cells);
        // The first cells begin at or before the start; none begins at or after the end.
        const double S = qRound64(days * 86400), k = width / S, left = 55 * scale;
        QCOMPARE(fine[0].first, left + k * start.secsTo(fineFrom));
        QCOMPARE(coarse[0].first, left + k * start.secsTo(coarseFrom));
        for (const auto& cell : fine + coarse)
            QVERIFY2((cell.first - left) / k < S - 0.5, qPrintable("past the end: " + cell.second));
        if (S < 0)
            return;
        // Runs of identical hour cells are drawn once: that must give the picture of every hour
        // drawn, as a painter that replaces pixels (and so may not skip them) draws it.
        const bool band = days > 1000;
        const QImage all = every.build(width, start, days, scale, QPainter::CompositionMode_Source);
        QCOMPARE(every.rows.value(fineTop).size(), band ? qsizetype(days * 24) : fine.size());
        QVERIFY2(!band || fine.size() < every.rows.value(fineTop).size(), "repeats skipped");
        QVERIFY2(!band || image.copy(0, 0, 1600, coarseTop) == all.copy(0, 0, 1600, coarseTop),
                 "above the coarse row, the pixels of every hour drawn");
        // Neighbouring cells share their border, and their stripes follow them without a gap.
        const QMap<QRgb, QChar> stripes{{qRgb(250, 250, 250), 'L'}, {qRgb(240, 240, 240), 'G'}};
        for (int x = left + 1; x < int(left + width); ++x) {
            QVERIFY2(stripes.contains(image.pixel(x, 100)),
                     qPrintable(QString("stripe gap at %1").arg(x)));
            for (int y :
                 {int(fineTop) + 1, int(coarseTop) + 1}) { // under the borders, above labels
                const QColor c = image.pixelColor(x, y);
                QVERIFY2(c == black || c == QColor(Qt::lightGray) || c == gray,
                         qPrintable(c.name()));
                QVERIFY2(band || c != black || image.pixelColor(x - 1, y) != black,
                         qPrintable(QString("double border at %1").arg(x)));
            }
        }
        for (int i = 1; !band && i < fine.size(); ++i) {
            const int border = int(fine[i].first); // the stripe begins just right of it
            QVERIFY2(border <= left + 1 || border >= int(left + width) - 1 ||
                         (stripes.value(image.pixel(border, 100)) == fine[i - 1].second[0] &&
                          stripes.value(image.pixel(border + 1, 100)) == fine[i].second[0]),
                     qPrintable(QString("stripe off its cell at %1").arg(border)));
        }
    }
};

QTEST_MAIN(TstChart)
#include "tst_chart.moc"
