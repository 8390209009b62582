#include "kvdcurvesummary.h"
#include "kvdfreshmemory.h"

#include <climits>

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#define KVD_WIDE_LEAVES 1
#endif

namespace {

using Node = KVDCurveSummary::Node;

// The extremes first, in a loop without branches, then where the extreme heights are:
// summarising is a pass over every point at load.
Node leaf(const QPoint* run, int begin, int end)
{
    const int n = end - begin;
    qint32 minX = run[0].x();
    qint32 maxX = minX;
    qint32 minY = run[0].y();
    qint32 maxY = minY;
    for (int i = 1; i < n; ++i) {
        minX = std::min(minX, run[i].x());
        maxX = std::max(maxX, run[i].x());
        minY = std::min(minY, run[i].y());
        maxY = std::max(maxY, run[i].y());
    }
    int lowAt = 0;
    while (run[lowAt].y() != minY)
        ++lowAt;
    int highAt = 0;
    while (run[highAt].y() != maxY)
        ++highAt;
    return Node{minX, maxX, minY, maxY, begin + lowAt, begin + highAt};
}

#ifdef KVD_WIDE_LEAVES
static_assert(KVDCurveSummary::LeafPoints == 32 && sizeof(QPoint) == 8,
              "a wide leaf is 8 lanes of 4 points");

// A whole leaf in 256-bit lanes, four times as fast as the loop above on processors that
// have them: the extremes lane by lane, folded to one x and one y, then the first point
// at each extreme height from a mask of the heights that equal it.
__attribute__((target("avx2"))) Node wideLeaf(const QPoint* run, int begin)
{
    const __m256i* lanes = reinterpret_cast<const __m256i*>(run);
    __m256i low = _mm256_loadu_si256(lanes);
    __m256i high = low;
    for (int k = 1; k < 8; ++k) {
        const __m256i four = _mm256_loadu_si256(lanes + k);
        low = _mm256_min_epi32(low, four);
        high = _mm256_max_epi32(high, four);
    }
    // Each lane holds x, y, x, y: fold the halves, then the two points of each half.
    low = _mm256_min_epi32(low, _mm256_permute2x128_si256(low, low, 1));
    high = _mm256_max_epi32(high, _mm256_permute2x128_si256(high, high, 1));
    low = _mm256_min_epi32(low, _mm256_shuffle_epi32(low, _MM_SHUFFLE(1, 0, 3, 2)));
    high = _mm256_max_epi32(high, _mm256_shuffle_epi32(high, _MM_SHUFFLE(1, 0, 3, 2)));
    Node node{_mm256_extract_epi32(low, 0),
              _mm256_extract_epi32(high, 0),
              _mm256_extract_epi32(low, 1),
              _mm256_extract_epi32(high, 1),
              0,
              0};
    const __m256i lowY = _mm256_set1_epi32(node.minY);
    const __m256i highY = _mm256_set1_epi32(node.maxY);
    quint64 atLow = 0;
    quint64 atHigh = 0;
    for (int k = 0; k < 8; ++k) {
        const __m256i four = _mm256_loadu_si256(lanes + k);
        atLow |= quint64(quint32(
                     _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_cmpeq_epi32(four, lowY)))))
                 << (8 * k);
        atHigh |= quint64(quint32(
                      _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_cmpeq_epi32(four, highY)))))
                  << (8 * k);
    }
    // Odd bits are heights; an x equal to the extreme height is no match.
    constexpr quint64 Heights = 0xAAAAAAAAAAAAAAAAull;
    node.lowAt = begin + __builtin_ctzll(atLow & Heights) / 2;
    node.highAt = begin + __builtin_ctzll(atHigh & Heights) / 2;
    return node;
}

bool hasWideLeaves()
{
    static const bool has = __builtin_cpu_supports("avx2");
    return has;
}
#endif

Node merge(const Node* nodes, size_t count)
{
    Node node = nodes[0];
    for (size_t k = 1; k < count; ++k) {
        const Node& part = nodes[k];
        node.minX = std::min(node.minX, part.minX);
        node.maxX = std::max(node.maxX, part.maxX);
        if (part.minY < node.minY) {
            node.minY = part.minY;
            node.lowAt = part.lowAt;
        }
        if (part.maxY > node.maxY) {
            node.maxY = part.maxY;
            node.highAt = part.highAt;
        }
    }
    return node;
}

} // namespace

void KVDCurveSummary::build(const QPolygon& points)
{
    const int count = int(points.size());
    start(count);
    for (int begin = 0; begin < count; begin += LeafPoints)
        addLeaf(points.constData() + begin, begin, std::min(begin + LeafPoints, count));
    finish(count);
}

void KVDCurveSummary::start(qint64 expected)
{
    m_levels.clear();
    m_levels.emplace_back();
    const size_t leaves = size_t((expected + LeafPoints - 1) / LeafPoints);
    m_levels[0].reserve(leaves);
    KVDFreshMemory::prepare(m_levels[0].data(), qint64(leaves * sizeof(Node)));
    m_levels[0].resize(leaves);
    m_count = 0;
}

void KVDCurveSummary::addLeaf(const QPoint* run, int begin, int end)
{
    Node& node = m_levels[0][size_t(begin / LeafPoints)];
#ifdef KVD_WIDE_LEAVES
    if (end - begin == LeafPoints && hasWideLeaves()) {
        node = wideLeaf(run, begin);
        return;
    }
#endif
    node = leaf(run, begin, end);
}

void KVDCurveSummary::finish(int count)
{
    m_count = count;
    m_levels[0].resize(size_t((qint64(count) + LeafPoints - 1) / LeafPoints));
    if (m_count == 0) {
        m_levels.clear();
        return;
    }
    while (m_levels.back().size() > 1) {
        const std::vector<Node>& below = m_levels.back();
        std::vector<Node> above;
        above.reserve((below.size() + FanOut - 1) / FanOut);
        for (size_t begin = 0; begin < below.size(); begin += FanOut)
            above.push_back(
                merge(below.data() + begin, std::min<size_t>(FanOut, below.size() - begin)));
        m_levels.push_back(std::move(above));
    }
}

void KVDCurveSummary::clear()
{
    m_levels.clear();
    m_count = 0;
}

bool KVDCurveSummary::shiftedX(const Node& node, quint32 shift, qint32* low, qint32* high)
{
    // Adding shift modulo 2^32 is adding its signed value and wrapping once at most.
    const qint64 by = qint32(shift);
    const qint64 a = node.minX + by;
    const qint64 b = node.maxX + by;
    constexpr qint64 Wrap = qint64(1) << 32;
    qint64 back = 0;
    if (a >= INT_MIN && b <= INT_MAX)
        back = 0;
    else if (a > INT_MAX)
        back = Wrap;
    else if (b < INT_MIN)
        back = -Wrap;
    else
        return false;
    *low = qint32(a - back);
    *high = qint32(b - back);
    return true;
}
