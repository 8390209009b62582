#include "kvdcurve.h"
#include "kvdmeasurefile.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "studiointerface.h"

#include <QApplication>
#include <QMainWindow>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>

// Loading one field of a large measure file into a curve, against the shared reader alone.
namespace {

constexpr int Fields = 8;
constexpr quint32 FirstDate = 1600000000u;

// A host whose progress display only counts its steps.
class CountingHost : public StudioInterface
{
public:
    bool queryInterface(const QUuid&, QUnknownInterface** iface) override
    {
        *iface = nullptr;
        return false;
    }
    QMainWindow* mainWindow() const override { return window.get(); }
    QString title() const override { return QStringLiteral("Bench"); }
    bool queryObject(const QString&, const QUuid&, QUnknownInterface** object) override
    {
        *object = nullptr;
        return false;
    }
    int insertMenu(const QString&, QMenu*) override { return 1; }
    void removeMenu(int) override {}
    void progressStart(int, const QString&, const QString&, QObject*, int) override {}
    void progressStep(int progress) override
    {
        ++steps;
        last = progress;
    }
    void progressEnd() override {}
    QString directory() const override { return QString(); }

    std::unique_ptr<QMainWindow> window = std::make_unique<QMainWindow>();
    long long steps = 0;
    int last = 0;
};

struct Repository
{
    QTemporaryDir dir;
    QString root() const { return dir.path(); }
    QString path(int records) const
    {
        return KVDMeasureFile::path(root(), QStringLiteral("m%1").arg(records), QStringLiteral("u"),
                                    Fields);
    }
    void make(int records)
    {
        QList<quint32> values(records);
        for (int i = 0; i < records; ++i)
            values[i] = quint32(i % 1000);
        KVDSampleWriter::writePair(root(), QStringLiteral("m%1").arg(records), QStringLiteral("u"),
                                   Fields, SampleRepository::series(FirstDate, values, Fields));
    }
};

Repository* repository = nullptr;
CountingHost* host = nullptr;
constexpr int Big = 1000000;
constexpr int Small = 1000;

// Bytes allocated by malloc, from its arenas and as whole mapped blocks.
size_t heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void BM_ReaderAlone(benchmark::State& state)
{
    const QString path = repository->path(Big);
    for (auto _ : state) {
        KVDMeasureFile file;
        file.open(path, Fields);
        quint64 sum = 0;
        while (const quint32* record = file.next())
            sum += KVDMeasureFile::date(record) + KVDMeasureFile::fieldTotal(record, 3);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * Big);
}

void BM_CurveLoad(benchmark::State& state)
{
    QAKVD::initialize(nullptr, host);
    QDateTime start = QDateTime::fromSecsSinceEpoch(FirstDate), end = start.addDays(30);
    for (auto _ : state) {
        host->steps = 0;
        KVDCurve curve(repository->root(), QStringLiteral("m%1").arg(Big), 3, Fields,
                       QStringLiteral("u"), start, end);
        if (curve.pointCount() != Big || host->steps != Big)
            state.SkipWithError("curve incomplete or progress not stepped once per record");
        benchmark::DoNotOptimize(curve.points()->constData());
    }
    state.SetItemsProcessed(state.iterations() * Big);
    QAKVD::initialize(nullptr, nullptr);
}

// Heap held by a loaded curve, per point beyond what a small curve holds.
void BM_CurveMemory(benchmark::State& state)
{
    QAKVD::initialize(nullptr, host);
    QDateTime start = QDateTime::fromSecsSinceEpoch(FirstDate), end = start.addDays(30);
    double perPoint = 0;
    for (auto _ : state) {
        const size_t before = heapInUse();
        auto small =
            std::make_unique<KVDCurve>(repository->root(), QStringLiteral("m%1").arg(Small), 3,
                                       Fields, QStringLiteral("u"), start, end);
        const size_t afterSmall = heapInUse();
        auto big = std::make_unique<KVDCurve>(repository->root(), QStringLiteral("m%1").arg(Big), 3,
                                              Fields, QStringLiteral("u"), start, end);
        const size_t afterBig = heapInUse();
        const double smallBytes = double(afterSmall - before);
        const double bigBytes = double(afterBig - afterSmall);
        perPoint = (bigBytes - smallBytes) / double(Big - Small);
    }
    state.counters["bytes_per_point"] = perPoint;
    QAKVD::initialize(nullptr, nullptr);
}

BENCHMARK(BM_ReaderAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveLoad)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveMemory)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    Repository files;
    files.make(Small);
    files.make(Big);
    repository = &files;
    CountingHost counting;
    host = &counting;

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
