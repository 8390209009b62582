#include "chartfixture.h"
#include "kvdchart.h"
#include "kvdcurve.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QPolygon>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

// A full chart pass on a 1280 x 800 pixmap with four curves of 250,000 points spread over
// the shown range, against a bare polyline of the same device points, and a ten-year
// range (one axis cell per hour) against a one-year range.
namespace {

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

void paintPass(benchmark::State& state, int years)
{
    Scene scene(years);
    QPixmap pixmap(paperWidth, paperHeight);
    for (auto _ : state) {
        QPainter painter(&pixmap);
        scene.chart.paint(&painter, paperWidth, paperHeight);
    }
    if (scene.curves.size() != curveCount)
        state.SkipWithError("a curve was dropped from the view");
}

void BM_PaintPass(benchmark::State& state)
{
    paintPass(state, 1);
}

void BM_BarePolyline(benchmark::State& state)
{
    Scene scene(1);
    QPixmap pixmap(paperWidth, paperHeight);
    {
        // One pass leaves every curve's point-to-paper transformation behind.
        QPainter painter(&pixmap);
        scene.chart.paint(&painter, paperWidth, paperHeight);
    }
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
    paintPass(state, 1);
}

void BM_PaintTenYears(benchmark::State& state)
{
    paintPass(state, 10);
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
