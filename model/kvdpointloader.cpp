#include "kvdpointloader.h"
#include "kvdcurvesummary.h"
#include "kvdmeasurefile.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <system_error>
#include <thread>
#include <vector>

namespace {

// Records a thread takes at a time: enough that taking one costs nothing beside
// converting it, few enough that the threads finish together and progress moves.
constexpr qint64 ChunkRecords = 64 * KVDCurveSummary::LeafPoints * 32;
static_assert(ChunkRecords % KVDCurveSummary::LeafPoints == 0, "chunks hold whole leaves");
// Bytes read at a time into a thread's buffer, which stays in its core's cache.
constexpr qint64 ReadBytes = 64 * 1024;
// Below this many records a second thread costs more to start than it saves.
constexpr qint64 ThreadedRecords = 4 * ChunkRecords;
constexpr int MostThreads = 8;

struct Chunk
{
    qint64 read = 0; // whole records converted; fewer than wanted when the file ran short
    quint32 low = 0;
    quint32 high = 0;
};

class Conversion
{
public:
    Conversion(const KVDMeasureFile& file, int field, quint32 origin, QPoint* points,
               KVDCurveSummary& summary)
        : m_file(file), m_total(2 * field + 1),
          m_words(KVDMeasureFile::recordWords(file.fieldCount())), m_origin(origin),
          m_points(points), m_summary(summary), m_records(file.recordCount()),
          m_chunks(size_t((m_records + ChunkRecords - 1) / ChunkRecords))
    {
    }

    qint64 chunkCount() const { return qint64(m_chunks.size()); }
    const Chunk& chunk(qint64 c) const { return m_chunks[size_t(c)]; }
    // Records of chunk c: ChunkRecords but in the last one.
    qint64 wanted(qint64 c) const { return std::min(ChunkRecords, m_records - c * ChunkRecords); }
    qint64 done() const { return m_done.load(std::memory_order_relaxed); }

    // Converts chunks until none is left; progress, when set, after each one.
    void run(const KVDPointLoader::Progress* progress)
    {
        // Whole runs of records, so that runs never straddle two reads.
        constexpr qint64 Leaf = KVDCurveSummary::LeafPoints;
        const qint64 records = std::max<qint64>(Leaf, ReadBytes / (4 * m_words) / Leaf * Leaf);
        std::vector<quint32> buffer(size_t(records * m_words));
        for (qint64 c = m_next.fetch_add(1); c < chunkCount(); c = m_next.fetch_add(1)) {
            convert(c, buffer);
            if (progress && *progress)
                (*progress)(done());
        }
    }

private:
    void convert(qint64 c, std::vector<quint32>& buffer)
    {
        constexpr int Leaf = KVDCurveSummary::LeafPoints;
        Chunk& chunk = m_chunks[size_t(c)];
        const qint64 first = c * ChunkRecords;
        const qint64 wanted = this->wanted(c);
        const qint64 perRead = qint64(buffer.size()) / m_words;
        quint32 low = std::numeric_limits<quint32>::max();
        quint32 high = 0;
        qint64 read = 0;
        while (read < wanted) {
            const qint64 asked = std::min(perRead, wanted - read);
            const qint64 got = m_file.readAt(first + read, buffer.data(), asked);
            const quint32* record = buffer.data();
            // A run at a time, converted into a block that stays in the nearest cache and
            // summarised there before it is written out.
            for (qint64 begin = 0; begin < got; begin += Leaf) {
                alignas(32) QPoint run[Leaf];
                const int n = int(std::min<qint64>(Leaf, got - begin));
                // Unsigned differences wrap to 32 bits as the points do.
                for (int r = 0; r < n; ++r, record += m_words) {
                    const quint32 total = record[m_total];
                    low = std::min(low, total);
                    high = std::max(high, total);
                    run[r] = QPoint(int(record[0] - m_origin), int(0u - total));
                }
                const int at = int(first + read + begin);
                m_summary.addLeaf(run, at, at + n);
                std::copy(run, run + n, m_points + at);
            }
            read += got;
            if (got < asked)
                break;
        }
        chunk.read = read;
        chunk.low = low;
        chunk.high = high;
        m_done.fetch_add(read, std::memory_order_relaxed);
    }

    const KVDMeasureFile& m_file;
    const int m_total;
    const int m_words;
    const quint32 m_origin;
    QPoint* const m_points;
    KVDCurveSummary& m_summary;
    const qint64 m_records;
    std::vector<Chunk> m_chunks;
    std::atomic<qint64> m_next{0};
    std::atomic<qint64> m_done{0};
};

} // namespace

KVDPointLoader::Result KVDPointLoader::load(const KVDMeasureFile& file, int field, QPoint* points,
                                            KVDCurveSummary& summary, const Progress& progress,
                                            int threads)
{
    Result result;
    std::vector<quint32> first(size_t(KVDMeasureFile::recordWords(file.fieldCount())));
    if (file.recordCount() == 0 || field < 1 || field > file.fieldCount() ||
        file.readAt(0, first.data(), 1) != 1)
        return result;
    result.firstDate = KVDMeasureFile::date(first.data());

    Conversion conversion(file, field, result.firstDate, points, summary);
    if (threads <= 0)
        threads = int(std::thread::hardware_concurrency());
    if (file.recordCount() < ThreadedRecords)
        threads = 1;
    threads =
        int(std::clamp<qint64>(threads, 1, std::min<qint64>(MostThreads, conversion.chunkCount())));
    std::vector<std::thread> helpers;
    for (int t = 1; t < threads; ++t) {
        try {
            helpers.emplace_back([&conversion] { conversion.run(nullptr); });
        } catch (const std::system_error&) {
            break; // no more threads to be had: the others share the chunks
        }
    }
    conversion.run(&progress);
    for (std::thread& helper : helpers)
        helper.join();

    // The points stop at the first record that could not be read.
    for (qint64 c = 0; c < conversion.chunkCount(); ++c) {
        const Chunk& chunk = conversion.chunk(c);
        if (chunk.read > 0) {
            result.lowTotal = result.count ? std::min(result.lowTotal, chunk.low) : chunk.low;
            result.highTotal = std::max(result.highTotal, chunk.high);
        }
        result.count += chunk.read;
        if (chunk.read < conversion.wanted(c))
            break;
    }
    // The helpers may have finished after the caller's last report.
    if (progress)
        progress(result.count);
    return result;
}
