#include "kvdcurvesummary.h"

#include <climits>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

using Node = KVDCurveSummary::Node;

// The extremes first, in a loop without branches, then where the extreme heights are:
// summarising is a pass over every point at load.
Node leaf(const QPoint* points, int begin, int end)
{
    qint32 minX = points[begin].x();
    qint32 maxX = minX;
    qint32 minY = points[begin].y();
    qint32 maxY = minY;
    for (int i = begin + 1; i < end; ++i) {
        minX = std::min(minX, points[i].x());
        maxX = std::max(maxX, points[i].x());
        minY = std::min(minY, points[i].y());
        maxY = std::max(maxY, points[i].y());
    }
    int lowAt = begin;
    while (points[lowAt].y() != minY)
        ++lowAt;
    int highAt = begin;
    while (points[highAt].y() != maxY)
        ++highAt;
    return Node{minX, maxX, minY, maxY, lowAt, highAt};
}

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
        addLeaf(points.constData(), begin, std::min(begin + LeafPoints, count));
    finish();
}

void KVDCurveSummary::start(qint64 expected)
{
    m_levels.clear();
    m_levels.emplace_back();
    const size_t leaves = size_t((expected + LeafPoints - 1) / LeafPoints);
    m_levels[0].reserve(leaves);
    prepareFreshMemory(m_levels[0].data(), qint64(leaves * sizeof(Node)));
    m_count = 0;
}

void KVDCurveSummary::addLeaf(const QPoint* points, int begin, int end)
{
    m_levels[0].push_back(leaf(points, begin, end));
    m_count = end;
}

void KVDCurveSummary::finish()
{
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

void KVDCurveSummary::prepareFreshMemory(void* data, qint64 bytes)
{
#ifdef Q_OS_LINUX
    constexpr quintptr Huge = quintptr(2) << 20;
    constexpr qint64 Mapped = 64 * 1024;
    if (!data || bytes < Mapped)
        return;
    const quintptr from = quintptr(data);
    const quintptr to = from + quintptr(bytes);
    if (bytes >= qint64(2 * Huge)) {
        const quintptr begin = (from + Huge - 1) & ~(Huge - 1);
        const quintptr end = to & ~(Huge - 1);
        if (end > begin)
            madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    }
#ifdef MADV_POPULATE_WRITE
    // After the advice, so that the pages mapped in are huge where they may be. Only
    // whole pages inside the block; a system without the request ignores it.
    const quintptr page = quintptr(sysconf(_SC_PAGESIZE));
    const quintptr begin = (from + page - 1) & ~(page - 1);
    const quintptr end = to & ~(page - 1);
    if (end > begin)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
#endif
#else
    Q_UNUSED(data);
    Q_UNUSED(bytes);
#endif
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
