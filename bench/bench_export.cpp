// Speed of the CSV export of four curves of 250,000 points, each curve at its own
// instants (a million rows), against fwrite writing the same bytes. The summary gives
// the export's time as a multiple of the fwrite time from the runs just made.
#include "chartfixture.h"
#include "kvdcsvexport.h"
#include "kvdcurve.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace {

constexpr int PointCount = 250000;
constexpr int CurveCount = 4;
constexpr size_t ChunkBytes = 1 << 20;

// Files go to memory when the machine has a memory file system, so that the figures are
// those of the code and not of the disk's write-back.
QTemporaryDir& scratch()
{
    static QTemporaryDir dir(QDir(QStringLiteral("/dev/shm")).exists()
                                 ? QStringLiteral("/dev/shm/kvd-bench-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/kvd-bench-XXXXXX"));
    return dir;
}

struct Scene
{
    Scene()
    {
        start = QDateTime(QDate(2010, 1, 1), QTime(0, 0));
        end = start.addSecs(qint64(PointCount) * CurveCount * 15);
        for (int c = 0; c < CurveCount; ++c) {
            QPolygon points(PointCount);
            for (int i = 0; i < PointCount; ++i)
                points[i] = QPoint((i * CurveCount + c) * 15, -((i * 7919 + c) % 100000));
            curves.append(
                ChartFixture::curve(scratch().path(), points, double(start.secsTo(end)), 1e5, 0.0));
        }
    }
    ~Scene() { qDeleteAll(curves); }

    QDateTime start;
    QDateTime end;
    QList<KVDCurve*> curves;
};

Scene& scene()
{
    static Scene s;
    return s;
}

void BM_ExportCsv(benchmark::State& state)
{
    Scene& s = scene();
    const QString path = scratch().filePath(QStringLiteral("export.csv"));
    for (auto _ : state)
        if (!KVDCsvExport::write(path, s.curves, s.start, s.end)) {
            state.SkipWithError("cannot write the export");
            break;
        }
    state.SetBytesProcessed(state.iterations() * QFileInfo(path).size());
}

// The export's bytes, made once, written with fwrite in large chunks.
void BM_FwriteSameBytes(benchmark::State& state)
{
    Scene& s = scene();
    const QByteArray bytes = KVDCsvExport::rows(s.curves, s.start, s.end);
    const QByteArray path = QFile::encodeName(scratch().filePath(QStringLiteral("plain.csv")));
    for (auto _ : state) {
        std::FILE* file = std::fopen(path.constData(), "wb");
        if (!file) {
            state.SkipWithError("cannot create the file");
            break;
        }
        std::setvbuf(file, nullptr, _IONBF, 0);
        for (qsizetype at = 0; at < bytes.size(); at += qsizetype(ChunkBytes))
            std::fwrite(bytes.constData() + at, 1,
                        size_t(std::min<qsizetype>(qsizetype(ChunkBytes), bytes.size() - at)),
                        file);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * qint64(bytes.size()));
}

BENCHMARK(BM_ExportCsv)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FwriteSameBytes)->Unit(benchmark::kMillisecond);

// Console output, plus the mean real time of each benchmark for the summary.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (!run.error_occurred && run.run_type == Run::RT_Iteration)
                times[run.benchmark_name()] = run.GetAdjustedRealTime();
    }
    std::map<std::string, double> times;
};

} // namespace

int main(int argc, char** argv)
{
    // The curves are QObjects made by the loader, which may show a message box.
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const auto plain = reporter.times.find("BM_FwriteSameBytes");
    const auto ours = reporter.times.find("BM_ExportCsv");
    if (plain != reporter.times.end() && ours != reporter.times.end() && plain->second > 0)
        std::printf("\nBM_ExportCsv takes %.2f times the fwrite time of its bytes\n",
                    ours->second / plain->second);
    benchmark::Shutdown();
    return 0;
}
