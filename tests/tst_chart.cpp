#include "chartfixture.h"
#include "kvdchart.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "recordingshell.h"
#include "paintrecorder.h"
#include "testenv.h"

#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace {

const QColor margin(200, 200, 200);
const QColor black(0, 0, 0);
const QColor green(0, 128, 0);
const QColor blue(0, 0, 255);
const QColor red(255, 0, 0);
const QString tooFarWarning = "warning|Maybe too hard for the device-> Removing curve form view\n";

bool contains(const QImage& image, const QRect& area, const QColor& colour)
{
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (image.pixelColor(x, y) == colour)
                return true;
    return false;
}

// A view of January 2009 (30 days) with measure cov2: "Coverage", "Statements", "Branches".
struct Scene
{
    Scene()
    {
        chart.start = QDateTime(QDate(2009, 1, 1), QTime(0, 0));
        chart.end = QDateTime(QDate(2009, 1, 31), QTime(0, 0));
        chart.datesSet = true;
        chart.curves = &curves;
        chart.events = &events;
        chart.definitions = &definitions;
        definitions.insert("cov2", {{0, "Coverage"}, {1, "Statements"}, {2, "Branches"}});
    }
    ~Scene()
    {
        qDeleteAll(curves);
        qDeleteAll(events);
    }

    // A curve through `values` at the fractions `at` of the view span.
    KVDCurve* add(const QList<double>& at, const QList<int>& values, double top, double bottom,
                  const QColor& colour = green)
    {
        const double span = chart.start.secsTo(chart.end);
        QPolygon points;
        for (int i = 0; i < at.size(); ++i)
            points.append(QPoint(int(at[i] * span), -values[i]));
        curves.append(ChartFixture::curve(dir.path(), points, span, top, bottom));
        curves.last()->color = colour;
        curves.last()->hasColor = true;
        return curves.last();
    }
    // `count` points of one value across the view.
    KVDCurve* flat(int value, double top, double bottom, int count = 10,
                   const QColor& colour = green)
    {
        QList<double> at;
        for (int i = 0; i < count; ++i)
            at.append(count == 1 ? 0.0 : double(i) / (count - 1));
        return add(at, QList<int>(count, value), top, bottom, colour);
    }

    void draw(QPaintDevice* device, int w, int h, bool printed)
    {
        QPainter painter(device);
        if (printed)
            chart.paintPrinted(&painter, w, h);
        else
            chart.paint(&painter, w, h);
    }
    QImage paint(int w, int h, bool printed = false)
    {
        QImage image(w, h, QImage::Format_RGB32);
        image.fill(printed ? Qt::magenta : Qt::white);
        draw(&image, w, h, printed);
        return image;
    }
    // The texts a paint puts in [left, right) x [top, bottom).
    QStringList texts(int w, int h, QRectF area, bool printed = false)
    {
        PaintRecorder recorder(w, h);
        draw(&recorder, w, h, printed);
        return recorder.textsIn(area.left(), area.top(), area.right(), area.bottom());
    }

    QTemporaryDir dir;
    QList<KVDCurve*> curves;
    QList<KVDEvent*> events;
    QMultiMap<QString, KVDDefinition> definitions;
    KVDChart chart;
};

} // namespace

// The chart picture: fixed margins and frame, curve placement and removal, scales,
// legend, event markers, and the printed page.
class TstChart : public QObject
{
    Q_OBJECT

private:
    RecordingShell m_shell;

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_shell.use();
    }
    void init() { m_shell.messages.clear(); }

    void emptyChart_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::newRow("left margin") << QRect(0, 0, 55, 500 - 5);
        QTest::newRow("right strip") << QRect(800 - 250, 0, 250, 500);
        QTest::newRow("bottom margin") << QRect(0, 500 - 45, 800, 45);
        QTest::newRow("top band") << QRect(0, 0, 800, 40);
    }

    void emptyChart()
    {
        QFETCH(QRect, area);
        Scene scene;
        scene.chart.datesSet = false;
        const QImage image = scene.paint(800, 500);
        for (const QPoint& p : {area.topLeft(), area.bottomRight(), area.center()})
            QCOMPARE(image.pixelColor(p), margin);
        // The frame shows on its four sides, just inside the margins.
        for (const QPoint& p :
             {QPoint(55, 250), QPoint(549, 250), QPoint(300, 40), QPoint(300, 454)})
            QCOMPARE(image.pixelColor(p), black);
        QCOMPARE(image.pixelColor(300, 414), QColor(Qt::white)); // between stripes and axis

        // The axis shows the last 30 days and is the only text.
        const QDate today = QDate::currentDate();
        const QStringList days = scene.texts(800, 500, QRectF(0, 415, 800, 19));
        QCOMPARE(days.size(), 31);
        QCOMPARE(days.first(), QString::number(today.addDays(-30).day()));
        QCOMPARE(days.last(), QString::number(today.day()));
        QVERIFY(scene.texts(800, 500, QRectF(0, 434, 800, 66))
                    .contains(QLocale::system().monthName(today.month(), QLocale::ShortFormat) +
                              " " + QString::number(today.year())));
        QCOMPARE(scene.texts(800, 500, QRectF(0, 0, 800, 415)), QStringList());
    }

    void minimumSize_data()
    {
        QTest::addColumn<QSize>("requested");
        QTest::addColumn<QSize>("drawn");
        QTest::newRow("both too small") << QSize(300, 150) << QSize(400, 200);
        QTest::newRow("narrow") << QSize(399, 500) << QSize(400, 500);
        QTest::newRow("low") << QSize(800, 199) << QSize(800, 200);
    }

    void minimumSize()
    {
        QFETCH(QSize, requested);
        QFETCH(QSize, drawn);
        Scene scene;
        QImage image(drawn, QImage::Format_RGB32);
        QPainter painter(&image);
        QCOMPARE(scene.chart.paint(&painter, requested.width(), requested.height()), drawn);
        painter.end();
        const int W = drawn.width(), H = drawn.height();
        QCOMPARE(image.pixelColor(W - 250, H / 2), margin);
        QCOMPARE(image.pixelColor(W - 251, H / 2), black);
        QCOMPARE(image.pixelColor(W / 4, H - 45), margin);
        QCOMPARE(image.pixelColor(W / 4, H - 46), black);
    }

    void curvePlacement_data()
    {
        QTest::addColumn<double>("top");
        QTest::addColumn<double>("bottom");
        QTest::addColumn<bool>("fromZero");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("y"); // on a paper 550 high: the band runs from 50 to 450

        QTest::newRow("constant curve on the top line") << 500.0 << 500.0 << false << 500 << 50;
        QTest::newRow("constant zero is invisible") << 0.0 << 0.0 << false << 0 << -1;
        QTest::newRow("from zero, half way") << 1000.0 << 200.0 << true << 500 << 250;
        QTest::newRow("between bottom and top") << 1000.0 << 200.0 << false << 600 << 250;
        QTest::newRow("at the bottom") << 1000.0 << 200.0 << false << 200 << 450;
    }

    void curvePlacement()
    {
        QFETCH(double, top);
        QFETCH(double, bottom);
        QFETCH(bool, fromZero);
        QFETCH(int, value);
        QFETCH(int, y);
        Scene scene;
        KVDCurve* curve = scene.flat(value, top, bottom);
        curve->fixedScale = fromZero;
        const QImage image = scene.paint(800, 550);
        QCOMPARE(QSizeF(curve->paperWidth, curve->paperHeight), QSizeF(800, 550));
        if (y < 0) {
            QVERIFY2(!contains(image, image.rect(), green), "nothing of the curve shows");
            return;
        }
        for (int x : {100, 300, 500})
            QVERIFY2(image.pixelColor(x, y) == green && image.pixelColor(x, y - 1) != green &&
                         image.pixelColor(x, y + 1) != green,
                     "one unit thick, at the expected height");
        // The transformation kept in the curve finds its points on the paper.
        QCOMPARE(image.pixelColor(curve->matrix.map(curve->points->at(4))), green);
    }

    void scaleLabels_data()
    {
        QTest::addColumn<bool>("right");
        QTest::addColumn<double>("top");
        QTest::addColumn<double>("bottom");
        QTest::addColumn<bool>("fromZero");
        QTest::addColumn<QStringList>("labels"); // count, lowest, highest; null: no scale

        for (bool right : {false, true}) {
            const char* side = right ? "right" : "left";
            QTest::addRow("%s: range 100", side)
                << right << 100.0 << 0.0 << false << QStringList{"11", "0", "100"};
            QTest::addRow("%s: range 11", side)
                << right << 11.0 << 0.0 << false << QStringList{"11", "0", "11"};
            QTest::addRow("%s: range 3", side)
                << right << 13.0 << 10.0 << false << QStringList{"4", "10", "13"};
            QTest::addRow("%s: from zero", side)
                << right << 3.0 << 1.0 << true << QStringList{"4", "0", "3"};
            QTest::addRow("%s: above 10000", side)
                << right << 12345.0 << 0.0 << false << QStringList{"11", "0", "1.2e+04"};
            QTest::addRow("%s: inverted range", side)
                << right << 0.0 << 5.0 << false << QStringList{"0"};
            // A constant zero lies on the plot's corner, out of view, taking its scale along.
            QTest::addRow("%s: constant zero", side)
                << right << 0.0 << 0.0 << false << QStringList();
        }
    }

    void scaleLabels()
    {
        QFETCH(bool, right);
        QFETCH(double, top);
        QFETCH(double, bottom);
        QFETCH(bool, fromZero);
        QFETCH(QStringList, labels);
        Scene scene;
        KVDCurve* curve = scene.flat(int(bottom), top, bottom, 10, blue);
        curve->fixedScale = fromZero;
        (right ? scene.chart.rightScale : scene.chart.leftScale) = curve;

        PaintRecorder recorder(800, 800);
        QPainter painter(&recorder);
        scene.chart.paint(&painter, 800, 800);
        painter.end();
        QList<PaintRecorder::Text> found;
        for (const PaintRecorder::Text& t : std::as_const(recorder.texts))
            if (t.at.x() >= (right ? 550 : 0) && t.at.x() < (right ? 605 : 55) && t.at.y() < 715)
                found.append(t);
        std::sort(found.begin(), found.end(), [](auto& a, auto& b) { return a.at.y() > b.at.y(); });
        QCOMPARE(QString::number(found.size()), labels.value(0, "0"));
        if (!found.isEmpty()) {
            QCOMPARE(found.first().text, labels[1]);
            QCOMPARE(found.last().text, labels[2]);
            QVERIFY2(found.first().at.y() > 693 && found.first().at.y() < 722,
                     "at the band's foot");
        }
        const QImage image = scene.paint(800, 800);
        const int line = right ? 549 : 55;
        QCOMPARE(image.pixelColor(line, 400), labels.isEmpty() ? black : blue);
        if (!found.isEmpty()) // the lowest tick, outward from the line
            QCOMPARE(image.pixelColor(right ? line - 3 : line + 3, 700), blue);
    }

    void legendLabel_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<QString>("first");
        QTest::newRow("three points: measure label") << 3 << "Coverage (alice)";
        QTest::newRow("two points: measure key") << 2 << "cov2 (alice)";
        QTest::newRow("one point: measure key") << 1 << "cov2 (alice)";
    }

    void legendLabel()
    {
        QFETCH(int, points);
        QFETCH(QString, first);
        Scene scene;
        scene.flat(5, 10, 0, points);
        QCOMPARE(scene.texts(800, 500, QRectF(615, 0, 185, 500)),
                 QStringList({first, "Statements"}));
        const QImage image = scene.paint(800, 500);
        QCOMPARE(image.pixelColor(604, 104), green); // swatch
        QCOMPARE(image.pixelColor(600, 100), black); // its outline
    }

    void legendOverflow()
    {
        // 300 high leaves room for three entries; all five curves are still drawn.
        Scene scene;
        QList<QColor> colours;
        for (int i = 0; i < 5; ++i)
            scene.flat(10 + 15 * i, 100, 0, 10,
                       colours.emplace_back(QColor::fromHsv(i * 60, 255, 220).toRgb()));
        const QImage image = scene.paint(800, 300);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(image.pixelColor(604, 104 + 50 * i), colours[i]);
        QCOMPARE(image.pixelColor(604, 254), margin);
        for (const QColor& colour : colours)
            QVERIFY2(contains(image, QRect(56, 41, 493, 170), colour), qPrintable(colour.name()));
        QCOMPARE(scene.texts(800, 300, QRectF(615, 0, 185, 300)).size(), 6);
    }

    void scaleCurveOutOfView_data()
    {
        QTest::addColumn<bool>("right");
        QTest::newRow("left") << false;
        QTest::newRow("right") << true;
    }

    void scaleCurveOutOfView()
    {
        QFETCH(bool, right);
        Scene scene;
        KVDCurve* curve = scene.add({-2.0, -1.8, -1.6, -1.4, -1.2}, {1, 2, 3, 4, 5}, 5, 1);
        (right ? scene.chart.rightScale : scene.chart.leftScale) = curve;
        QCOMPARE(scene.texts(800, 500, QRectF(0, 0, 55, 415)), QStringList());
        QCOMPARE(scene.texts(800, 500, QRectF(550, 0, 250, 415)), QStringList()); // no legend
        QCOMPARE(scene.paint(800, 500).pixelColor(right ? 549 : 55, 250), black);
    }

    void events_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<bool>("shown");
        QTest::addColumn<int>("day"); // of the view, -1 when not drawn

        QTest::newRow("at the view start") << QDate(2009, 1, 1) << false << true << 0;
        QTest::newRow("inside") << QDate(2009, 1, 16) << false << true << 15;
        QTest::newRow("at the view end") << QDate(2009, 1, 31) << false << true << 30;
        QTest::newRow("the day before") << QDate(2008, 12, 31) << false << true << -1;
        QTest::newRow("the day after") << QDate(2009, 2, 1) << false << true << -1;
        QTest::newRow("events hidden") << QDate(2009, 1, 16) << true << true << -1;
        QTest::newRow("event not shown") << QDate(2009, 1, 16) << false << false << -1;
    }

    void events()
    {
        QFETCH(QDate, date);
        QFETCH(bool, hidden);
        QFETCH(bool, shown);
        QFETCH(int, day);
        Scene scene;
        scene.events.append(new KVDEvent(date, "release", shown));
        scene.chart.eventsHidden = hidden;
        const QImage image = scene.paint(800, 500);
        const QStringList labels = scene.texts(800, 500, QRectF(0, 0, 800, 40));
        if (day < 0) {
            QVERIFY2(!contains(image, image.rect(), red) && labels.isEmpty(), "no marker");
            return;
        }
        const int X = int(55 + 495.0 * day / 30);
        QCOMPARE(image.pixelColor(X + 2, 250), red);
        QCOMPARE(image.pixelColor(X - 25, 5), QColor(Qt::gray)); // label box
        QCOMPARE(labels, QStringList({"release"}));
    }

    void tooFar_data()
    {
        QTest::addColumn<QList<double>>("at"); // fractions of the view span
        QTest::addColumn<bool>("zeroSpan");
        QTest::addColumn<bool>("removed");
        // 800 wide: the plot is 495 wide, so 4000 units are about 8 spans.
        QTest::newRow("far left, then on the plot") << QList<double>{-10, 0.5, 1} << false << true;
        QTest::newRow("spike far right") << QList<double>{0, 0.2, 10, 0.5} << false << true;
        QTest::newRow("within the limits") << QList<double>{-7, 0.5, 1} << false << false;
        QTest::newRow("zero span") << QList<double>{0, 0.5, 1} << true << false;
    }

    void tooFar()
    {
        QFETCH(QList<double>, at);
        QFETCH(bool, zeroSpan);
        QFETCH(bool, removed);
        Scene scene;
        QPointer<KVDCurve> curve = scene.add(at, QList<int>(at.size(), 5), 10, 0);
        curve->span = zeroSpan ? 0 : curve->span;
        scene.chart.leftScale = curve;
        scene.paint(800, 500);
        QCOMPARE(m_shell.messages, removed ? QStringList{tooFarWarning} : QStringList());
        QCOMPARE(scene.curves.size(), removed ? 0 : 1);
        QVERIFY2(curve.isNull() == removed && !scene.chart.leftScale == removed,
                 "a removed curve is deleted and its scale cleared");
    }

    void removalSkipsFollower()
    {
        // The curve after a removed one is left out of that pass's drawing, though it
        // keeps its legend entry, and comes back at the next paint.
        Scene scene;
        scene.add({-10, 0.5, 1}, {5, 5, 5}, 10, 0, blue);
        scene.flat(5, 10, 0);
        const QRect plot(56, 41, 493, 370);
        const QImage first = scene.paint(800, 500);
        QVERIFY2(!contains(first, plot, green), "skipped in the pass that removed its neighbour");
        QCOMPARE(first.pixelColor(604, 104), green);
        QVERIFY2(contains(scene.paint(800, 500), plot, green), "drawn again next time");
        QCOMPARE(m_shell.messages, QStringList{tooFarWarning});
    }

    void printedPenWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("thickness");
        QTest::newRow("4760 wide: 7 units") << 4760 << 7;
        QTest::newRow("2040 wide: 3 units") << 2040 << 3;
        QTest::newRow("640 wide: thinnest pen") << 640 << 1;
    }

    void printedPenWidth()
    {
        QFETCH(int, width);
        QFETCH(int, thickness);
        Scene scene;
        scene.flat(500, 500, 500);
        const int height = width * 3 / 4;
        const QImage page = scene.paint(width, height, true);
        int run = 0;
        for (int y = 0; y < height; ++y)
            run += page.pixelColor(width / 2, y) == green;
        QCOMPARE(run, thickness);
        // Around a printed chart the margins are white, not grey.
        QCOMPARE(page.pixelColor(2, height / 2), QColor(Qt::white));
        QCOMPARE(page.pixelColor(width - 2, height / 2), QColor(Qt::white));
    }

    void printedBlankWithoutDates()
    {
        Scene scene;
        scene.chart.datesSet = false;
        QImage white(1280, 960, QImage::Format_RGB32);
        white.fill(Qt::white);
        QVERIFY2(scene.paint(1280, 960, true) == white, "a blank page");
    }

    void printedFarCurveKept()
    {
        // 5000 units left of the plot on paper: drawn and kept, but the legend keeps the
        // screen's limit and leaves it out. 1280 wide: the plot runs from 110, 870 wide.
        Scene scene;
        scene.add({-5110.0 / 870, 0.5, 1}, {5, 5, 5}, 10, 0);
        QVERIFY2(contains(scene.paint(1280, 960, true), QRect(110, 0, 870, 960), green), "drawn");
        QCOMPARE(m_shell.messages, QStringList());
        QCOMPARE(scene.curves.size(), 1);
        QCOMPARE(scene.texts(1280, 960, QRectF(1080, 0, 200, 760), true), QStringList());
    }
};

QTEST_MAIN(TstChart)
#include "tst_chart.moc"
