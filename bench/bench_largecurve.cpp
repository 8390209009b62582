#include "kvdchart.h"
#include "kvdcurve.h"
#include "kvdsamplewriter.h"
#include "kvdtooltip.h"
#include "kvdview.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "studiowindow.h"
#include "testenv.h"

#include <QApplication>
#include <QLayout>
#include <QPainter>
#include <QPixmap>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

// One curve of 10,000,000 records, a record every 3 seconds over about a year, written with
// the sample writer and shown whole on a 1280 x 800 paper: its load against reading the
// file's bytes and the heap it holds per point, a paint, a pan by a tenth of the view, a
// tooltip over a pointer that is near no point, and a drag of 60 steps in the host. Each
// prints its time against its budget (of_budget: 16 ms a picture, 1 s a drag).
namespace {

using Clock = std::chrono::steady_clock;

constexpr int Records = 10000000;
constexpr quint32 FirstDate = 1262304000u; // 2010-01-01 00:00 UTC
constexpr quint32 Step = 3;
constexpr int Width = 1280;
constexpr int Height = 800;

double seconds(Clock::time_point from, Clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

// Mean seconds of the timed iterations against budget seconds.
void budget(benchmark::State& state, double total, double budget)
{
    state.counters["of_budget"] = total / double(state.iterations()) / budget;
}

// Bytes allocated by malloc, from its arenas and as whole mapped blocks.
size_t heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// A random walk with a spike now and then, so that columns hold both flat runs and jumps.
struct LargeFile
{
    QTemporaryDir dir;
    bool ok = false;

    LargeFile()
    {
        KVDSampleWriter writer;
        ok = writer.create(dir.path(), QStringLiteral("big"), QStringLiteral("u"), 1);
        QRandomGenerator random(20100101);
        qint64 level = 500000;
        for (int i = 0; ok && i < Records; ++i) {
            level = std::max<qint64>(0, level + qint64(random.bounded(201)) - 100);
            const quint32 value = quint32(i % 100003 == 0 ? level * 2 : level);
            ok = writer.append(FirstDate + quint32(i) * Step, 1, &value);
        }
        ok = ok && writer.finish();
    }
    QString path() const { return dir.filePath(QStringLiteral("big.u.1.kvd")); }

    // The curve as the viewer loads it, over the whole span of its records.
    KVDCurve* load() const
    {
        QDateTime start = QDateTime::fromSecsSinceEpoch(FirstDate);
        QDateTime end = start.addSecs(qint64(Records) * Step);
        auto* curve =
            new KVDCurve(dir.path(), QStringLiteral("big"), 1, 1, QStringLiteral("u"), start, end);
        curve->color = Qt::blue;
        curve->hasColor = true;
        return curve;
    }
};

LargeFile* file = nullptr;

int pointCount(const KVDCurve* curve)
{
    return curve->pointCount();
}

// The loaded curve in a view of its whole span, shared by the paint, pan and tooltip runs.
KVDView& shown()
{
    static std::unique_ptr<KVDView> view;
    if (!view) {
        view = std::make_unique<KVDView>();
        KVDCurve* curve = file->load();
        view->curves << curve;
        view->start = curve->firstDate;
        view->end = curve->endDate;
        view->datesSet = true;
        view->firstScale = curve;
    }
    return *view;
}

bool paint(KVDView& view, QPixmap& pixmap)
{
    QPainter painter(&pixmap);
    KVDChart chart = view.chart();
    chart.paint(&painter, Width, Height);
    view.firstScale = chart.leftScale;
    return view.curves.size() == 1;
}

// The load against two ways of reading the file's bytes: streamed through one reused
// buffer of 1 MiB, at the rate of the page cache, and read whole into fresh memory.
// rate_vs_* is the load's rate over the read's: 1 is as fast as reading. The load itself
// also writes a point a record into fresh memory, which the streamed read never does.
void BM_LargeLoad(benchmark::State& state)
{
    std::vector<char> buffer(1 << 20);
    const QByteArray path = QFile::encodeName(file->path());
    double streamed = 0;
    double whole = 0;
    double load = 0;
    double perPoint = 0;
    for (auto _ : state) {
        const Clock::time_point t0 = Clock::now();
        std::FILE* f = std::fopen(path.constData(), "rb");
        size_t bytes = 0;
        for (size_t got = 1; f && got > 0;)
            bytes += got = std::fread(buffer.data(), 1, buffer.size(), f);
        if (f)
            std::fclose(f);
        benchmark::DoNotOptimize(bytes);
        const Clock::time_point t1 = Clock::now();
        {
            QFile all(file->path());
            const QByteArray read = all.open(QIODevice::ReadOnly) ? all.readAll() : QByteArray();
            benchmark::DoNotOptimize(read.constData());
        }
        const Clock::time_point t2 = Clock::now();
        const size_t before = heapInUse();
        std::unique_ptr<KVDCurve> curve(file->load());
        const Clock::time_point t3 = Clock::now();
        perPoint = double(heapInUse() - before) / Records;
        if (pointCount(curve.get()) != Records)
            state.SkipWithError("the curve lacks records");
        streamed += seconds(t0, t1);
        whole += seconds(t1, t2);
        load += seconds(t2, t3);
        state.SetIterationTime(seconds(t2, t3));
    }
    const double n = double(state.iterations());
    state.counters["read_streamed_ms"] = streamed / n * 1e3;
    state.counters["read_whole_ms"] = whole / n * 1e3;
    state.counters["rate_vs_streamed"] = streamed / load;
    state.counters["rate_vs_whole"] = whole / load;
    state.counters["bytes_per_point"] = perPoint;
}

void BM_LargePaint(benchmark::State& state)
{
    KVDView& view = shown();
    QPixmap pixmap(Width, Height);
    double total = 0;
    for (auto _ : state) {
        const Clock::time_point t0 = Clock::now();
        if (!paint(view, pixmap))
            state.SkipWithError("the curve was dropped from the view");
        total += seconds(t0, Clock::now());
    }
    budget(state, total, 0.016);
}

// A tenth of the view one way, then back, each followed by the paint it calls for.
void BM_LargePan(benchmark::State& state)
{
    KVDView& view = shown();
    QPixmap pixmap(Width, Height);
    const qint64 tenth = view.start.secsTo(view.end) / 10;
    qint64 direction = 1;
    double total = 0;
    for (auto _ : state) {
        const Clock::time_point t0 = Clock::now();
        view.drag(direction * tenth);
        if (!paint(view, pixmap))
            state.SkipWithError("the curve was dropped from the view");
        total += seconds(t0, Clock::now());
        direction = -direction;
    }
    if (direction < 0)
        view.drag(-tenth);
    budget(state, total, 0.016);
}

// Above the value band, in the middle of the plot: every segment's height test fails, so
// the walk reaches the curve's end.
void BM_LargeTooltipMiss(benchmark::State& state)
{
    KVDView& view = shown();
    QPixmap pixmap(Width, Height);
    paint(view, pixmap); // the curve takes the paper's geometry
    QWidget paper;
    const KVDToolTip tips(&paper, &view.curves, nullptr, nullptr);
    const QPoint pointer(55 + (Width - 305) / 2, 48);
    double total = 0;
    for (auto _ : state) {
        const Clock::time_point t0 = Clock::now();
        if (tips.tipAt(pointer).found)
            state.SkipWithError("a tip was found");
        total += seconds(t0, Clock::now());
    }
    budget(state, total, 0.016);
}

// The host's viewer dragged by 5 pixels 60 times, one way and then back, with every
// picture shown on the paper: the time of one whole drag.
void BM_DragInHost(benchmark::State& state)
{
    SampleRepository repository;
    KVDSampleWriter::Options options;
    options.users = 1;
    options.days = 2;
    StudioWindow studio(TestEnv::built(QStringLiteral("share/kavendi")));
    if (!repository.fill(options) ||
        !studio.loadPlugin(TestEnv::built(QStringLiteral("lib/libkavendi.so")))) {
        state.SkipWithError("no host or repository");
        return;
    }
    qputenv("ZANTH_KVD_ROOT", QFile::encodeName(repository.root()));
    auto viewer = std::make_unique<QAKVD>(nullptr, "viewer", 0, true);
    viewer->paper()->setFixedSize(Width, Height);
    viewer->layout()->activate();
    KVDView& view = viewer->view();
    KVDCurve* curve = file->load();
    view.curves << curve;
    view.start = curve->firstDate;
    view.end = curve->endDate;
    view.datesSet = true;
    view.firstScale = curve;
    viewer->refreshContents();
    QCoreApplication::processEvents();

    int direction = -1;
    double total = 0;
    for (auto _ : state) {
        const Clock::time_point t0 = Clock::now();
        QWidget* paper = viewer->paper();
        QPoint at(640, 300);
        QTest::mousePress(paper, Qt::LeftButton, {}, at);
        for (int step = 0; step < 60; ++step) {
            at.rx() += 5 * direction;
            QTest::mouseMove(paper, at);
            QCoreApplication::processEvents();
        }
        QTest::mouseRelease(paper, Qt::LeftButton, {}, at);
        total += seconds(t0, Clock::now());
        direction = -direction;
    }
    if (view.curves.size() != 1)
        state.SkipWithError("the curve was dropped from the view");
    budget(state, total, 1.0);
    viewer.reset();
    QAKVD::initialize(nullptr, nullptr);
}

} // namespace

BENCHMARK(BM_LargeLoad)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_LargePaint)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LargePan)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LargeTooltipMiss)->Unit(benchmark::kMillisecond);
// Last: loading the plug-in gives every later curve load the host's progress display.
BENCHMARK(BM_DragInHost)->Unit(benchmark::kMillisecond)->Iterations(4);

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    TestEnv::pin();
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    LargeFile large;
    if (!large.ok) {
        std::fprintf(stderr, "could not write the large measure file\n");
        return 1;
    }
    file = &large;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
