// Speed of the measure file reader and of the sample writer against plain stdio moving
// the same bytes. The summary at the end gives each as a ratio of the stdio time to its
// own (1.0 is as fast as stdio) from the runs just made.
#include "kvdmeasurefile.h"
#include "kvdsamplewriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr int Records = 1000000;
constexpr int Fields = 8;
constexpr int RecordWords = 2 * Fields + 2;
constexpr size_t ChunkBytes = 1 << 20;

// Inputs of the records as a recording tool gives them: date, key, then the values.
const std::vector<quint32>& inputs()
{
    static const std::vector<quint32> words = [] {
        std::vector<quint32> w;
        w.reserve(size_t(Records) * (2 + Fields));
        quint32 state = 12345;
        for (int r = 0; r < Records; ++r) {
            state = state * 1664525u + 1013904223u;
            w.push_back(1600000000u + quint32(r) * 60u);
            w.push_back(0x1000u + (state >> 28)); // 16 keys
            for (int k = 0; k < Fields; ++k)
                w.push_back((state >> (k * 3)) & 0xFFFFu);
        }
        return w;
    }();
    return words;
}

// Files go to memory when the machine has a memory file system, so that the figures are
// those of the code and not of the disk's write-back.
QTemporaryDir& scratch()
{
    static QTemporaryDir dir(QDir(QStringLiteral("/dev/shm")).exists()
                                 ? QStringLiteral("/dev/shm/kvd-bench-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/kvd-bench-XXXXXX"));
    return dir;
}

// The data file of a million 8-field records, written once.
const QString& dataFile()
{
    static const QString path = [] {
        KVDSampleWriter writer;
        const std::vector<quint32>& in = inputs();
        writer.create(scratch().path(), QStringLiteral("cov"), QStringLiteral("read"), Fields);
        for (int r = 0; r < Records; ++r) {
            const quint32* w = in.data() + size_t(r) * (2 + Fields);
            writer.append(w[0], w[1], w + 2);
        }
        writer.finish();
        return writer.dataPath();
    }();
    return path;
}

QByteArray dataBytes()
{
    QFile file(dataFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void BM_ReadMeasureFile(benchmark::State& state)
{
    const QString path = dataFile();
    for (auto _ : state) {
        KVDMeasureFile reader;
        if (!reader.open(path, Fields)) {
            state.SkipWithError("cannot open the data file");
            break;
        }
        quint64 sum = 0;
        qint64 count = 0;
        while (const quint32* record = reader.next()) {
            sum += KVDMeasureFile::fieldTotal(record, 1);
            ++count;
        }
        benchmark::DoNotOptimize(sum);
        if (count != Records)
            state.SkipWithError("short read");
    }
    state.SetBytesProcessed(state.iterations() * qint64(Records) * RecordWords * 4);
}

// The same bytes through fread in large chunks, touching the same word of each record.
void BM_FreadSameBytes(benchmark::State& state)
{
    const QByteArray path = QFile::encodeName(dataFile());
    std::vector<quint32> buffer(ChunkBytes / 4 / RecordWords * RecordWords);
    for (auto _ : state) {
        std::FILE* file = std::fopen(path.constData(), "rb");
        if (!file) {
            state.SkipWithError("cannot open the data file");
            break;
        }
        std::setvbuf(file, nullptr, _IONBF, 0);
        quint64 sum = 0;
        size_t words;
        while ((words = std::fread(buffer.data(), 4, buffer.size(), file)) > 0)
            for (size_t i = 3; i < words; i += RecordWords)
                sum += buffer[i];
        std::fclose(file);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * qint64(Records) * RecordWords * 4);
}

void BM_SampleWrite(benchmark::State& state)
{
    const std::vector<quint32>& in = inputs();
    const QString root = scratch().path();
    for (auto _ : state) {
        KVDSampleWriter writer;
        if (!writer.create(root, QStringLiteral("cov"), QStringLiteral("write"), Fields)) {
            state.SkipWithError("cannot create the pair");
            break;
        }
        for (int r = 0; r < Records; ++r) {
            const quint32* w = in.data() + size_t(r) * (2 + Fields);
            writer.append(w[0], w[1], w + 2);
        }
        if (!writer.finish()) {
            state.SkipWithError("writing failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * qint64(Records) * RecordWords * 4);
}

// The bytes the writer produces, written with fwrite in large chunks.
void BM_FwriteSameBytes(benchmark::State& state)
{
    const QByteArray bytes = dataBytes();
    const QByteArray path = QFile::encodeName(scratch().filePath(QStringLiteral("plain.kvd")));
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

BENCHMARK(BM_ReadMeasureFile)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FreadSameBytes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SampleWrite)->Unit(benchmark::kMillisecond);
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
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    auto ratio = [&](const char* plain, const char* ours) {
        const auto p = reporter.times.find(plain), o = reporter.times.find(ours);
        if (p != reporter.times.end() && o != reporter.times.end() && o->second > 0)
            std::printf("%-20s %.2f of %s speed\n", ours, p->second / o->second, plain);
    };
    std::printf("\n");
    ratio("BM_FreadSameBytes", "BM_ReadMeasureFile");
    ratio("BM_FwriteSameBytes", "BM_SampleWrite");
    benchmark::Shutdown();
    return 0;
}
