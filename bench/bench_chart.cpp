#include "chartfixture.h"
#include "kvdchart.h"
#include "kvdcurve.h"
#include "kvdcurverun.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QPolygon>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>

// A full chart pass on a 1280 x 800 pixmap with four curves of 250,000 points spread over
// the shown range, against bare polylines of the points it strokes, and a ten-year range
// (one axis cell per hour) against a one-year range. Ratios are timed side by side, in
// alternation within one run, and printed as counters.
namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

constexpr int paperWidth = 1280;
constexpr int paperHeight = 800;
constexpr int pointCount = 250000;
constexpr int curveCount = 4;

class Scene
{
public:
    explicit Scene(int years)
    {
        start = QDateTime(QDate(2010, 1, 1), QTime(0, 0));
        end = start.addYears(years);
        const qint64 span = start.secsTo(end);
        QRandomGenerator random(20100101);
        for (int c = 0; c < curveCount; ++c) {
            QPolygon points(pointCount);
            int value = 5000;
            int top = value;
            int bottom = value;
            for (int i = 0; i < pointCount; ++i) {
                value = std::max(0, value + int(random.bounded(101)) - 50);
                top = std::max(top, value);
                bottom = std::min(bottom, value);
                points[i] = QPoint(int(span * i / (pointCount - 1)), -value);
            }
            KVDCurve* curve =
                ChartFixture::curve(dir.path(), points, double(span), top, bottom, c + 1);
            curve->color = QColor::fromHsv(c * 90, 255, 200);
            curve->hasColor = true;
            curves.append(curve);
        }
        chart.start = start;
        chart.end = end;
        chart.datesSet = true;
        chart.curves = &curves;
        chart.leftScale = curves.first();
        chart.rightScale = curves.last();
    }
    ~Scene() { qDeleteAll(curves); }

    QTemporaryDir dir;
    QDateTime start;
    QDateTime end;
    QList<KVDCurve*> curves;
    KVDChart chart;
};

double paintOnce(Scene& scene, QPixmap& pixmap)
{
    const Clock::time_point t0 = Clock::now();
    {
        QPainter painter(&pixmap);
        scene.chart.paint(&painter, paperWidth, paperHeight);
    }
    return seconds(t0, Clock::now());
}

// The whole pass, and (untimed by the benchmark, timed for the ratio) bare polylines of
// the device points the pass strokes, each curve cut per column as the pass cuts it.
void BM_PaintPass(benchmark::State& state)
{
    Scene scene(1);
    QPixmap pixmap(paperWidth, paperHeight);
    paintOnce(scene, pixmap); // every curve keeps its point-to-paper transformation
    QList<QPolygon> stroked;
    for (const KVDCurve* curve : std::as_const(scene.curves)) {
        const KVDCurveRun run(*curve, curve->matrix, 4000, false);
        stroked << run.polyline(run.first, std::min(run.last + 1 - run.first, run.n - run.first),
                                true);
    }
    double pass = 0;
    double bare = 0;
    for (auto _ : state) {
        pass += paintOnce(scene, pixmap);
        state.PauseTiming();
        const Clock::time_point t0 = Clock::now();
        {
            QPainter painter(&pixmap);
            for (const QPolygon& points : std::as_const(stroked))
                painter.drawPolyline(points);
        }
        bare += seconds(t0, Clock::now());
        state.ResumeTiming();
    }
    if (scene.curves.size() != curveCount)
        state.SkipWithError("a curve was dropped from the view");
    state.counters["vs_bare_polyline"] = pass / bare;
    qint64 points = 0;
    for (const QPolygon& line : std::as_const(stroked))
        points += line.size();
    state.counters["points_stroked"] = double(points);
}

// Every point stroked, as a pass that does not cut per column would.
void BM_BarePolyline(benchmark::State& state)
{
    Scene scene(1);
    QPixmap pixmap(paperWidth, paperHeight);
    paintOnce(scene, pixmap);
    QList<QPolygon> device;
    for (const KVDCurve* curve : std::as_const(scene.curves))
        device.append(curve->matrix.map(*curve->points()));
    for (auto _ : state) {
        QPainter painter(&pixmap);
        for (const QPolygon& points : std::as_const(device))
            painter.drawPolyline(points);
    }
}

void BM_PaintOneYear(benchmark::State& state)
{
    Scene scene(1);
    QPixmap pixmap(paperWidth, paperHeight);
    for (auto _ : state)
        paintOnce(scene, pixmap);
}

// Ten years, with a one-year pass timed in alternation for the ratio.
void BM_PaintTenYears(benchmark::State& state)
{
    Scene ten(10);
    Scene one(1);
    QPixmap pixmap(paperWidth, paperHeight);
    double tenYears = 0;
    double oneYear = 0;
    for (auto _ : state) {
        tenYears += paintOnce(ten, pixmap);
        state.PauseTiming();
        oneYear += paintOnce(one, pixmap);
        state.ResumeTiming();
    }
    if (ten.curves.size() != curveCount || one.curves.size() != curveCount)
        state.SkipWithError("a curve was dropped from the view");
    state.counters["vs_one_year"] = tenYears / oneYear; // at most 3
}

} // namespace

BENCHMARK(BM_PaintPass)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BarePolyline)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PaintOneYear)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PaintTenYears)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
