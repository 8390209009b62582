#ifndef KVDCURVESUMMARY_H
#define KVDCURVESUMMARY_H

#include <QPolygon>
#include <QtGlobal>

#include <algorithm>
#include <vector>

// The value and time ranges of a curve's points by runs of consecutive points, so that a
// paint or a hit test can pass over a whole run without looking at its points. Points keep
// file order, which need not follow the dates, so nothing here assumes sorted x.
//
// Runs form a tree: level 0 holds one node per LeafPoints points, each higher level one node
// per FanOut nodes of the level below, up to a single root. For n points that is about
// n / LeafPoints * FanOut / (FanOut - 1) nodes of 24 bytes: under one byte a point.
//
// Ranges are of the points as stored. The curve keeps a pending shift of x apart
// (KVDCurve::MoveX); shiftedX() gives a node's x range with it.
class KVDCurveSummary
{
public:
    static constexpr int LeafPoints = 32;
    static constexpr int FanOut = 8;

    // One run: the extreme coordinates and the indices of a point with the lowest y and
    // one with the highest (the first such, in file order).
    struct Node
    {
        qint32 minX;
        qint32 maxX;
        qint32 minY;
        qint32 maxY;
        qint32 lowAt;
        qint32 highAt;
    };

    // What a walk does with a whole node: passes over its points, looks at its parts, or
    // ends there.
    enum class Visit { Skip, Descend, Stop };
    // What a backward search knows of a whole node: none of its points qualifies, all do,
    // or some may.
    enum class Holds { None, All, Some };

    // Summarises points; call again whenever they change.
    void build(const QPolygon& points);
    // The same while the points are being written, so that each is read while still in
    // the cache: start() with the count expected, addLeaf() for every run of LeafPoints
    // points begin..end-1, run pointing at point begin (begin a multiple of LeafPoints; the
    // last run may be shorter, end is then the count), and finish() with the count
    // written. Runs may come in any order and from several threads at once, each run from
    // one thread; finish() drops the runs past count.
    void start(qint64 expected);
    void addLeaf(const QPoint* run, int begin, int end);
    void finish(int count);
    void clear();
    int count() const { return m_count; }

    // The x range of the node's points once shift is added to each, wrapped to 32 bits
    // as the points are. False when the shift wraps some of them and not the others: no
    // range then holds them all.
    static bool shiftedX(const Node& node, quint32 shift, qint32* low, qint32* high);

    // Walks points from..to-1 in order. A node whose points all lie in that range is
    // first offered to node(const Node&, int begin, int end); Descend looks at its parts,
    // down to point(int i) for single points. point answers false to stop. Answers false
    // when stopped.
    template <typename NodeFn, typename PointFn>
    bool walk(int from, int to, NodeFn&& node, PointFn&& point) const
    {
        from = std::max(from, 0);
        to = std::min(to, m_count);
        if (from >= to)
            return true;
        return walkNode(top(), 0, from, to, node, point);
    }

    // The smallest index in from..to-1 whose point passes test(int i), or -1. A node whose
    // points all lie in the range is first offered to holds(const Node&).
    template <typename HoldsFn, typename TestFn>
    int firstIndex(int from, int to, HoldsFn&& holds, TestFn&& test) const
    {
        int found = -1;
        walk(
            from, to,
            [&](const Node& node, int begin, int) {
                const Holds verdict = holds(node);
                if (verdict == Holds::None)
                    return Visit::Skip;
                if (verdict == Holds::Some)
                    return Visit::Descend;
                found = begin;
                return Visit::Stop;
            },
            [&](int i) {
                if (!test(i))
                    return true;
                found = i;
                return false;
            });
        return found;
    }

    // The largest index in from..to-1 whose point passes test(int i), or -1. A node whose
    // points all lie in the range is first offered to holds(const Node&).
    template <typename HoldsFn, typename TestFn>
    int lastIndex(int from, int to, HoldsFn&& holds, TestFn&& test) const
    {
        from = std::max(from, 0);
        to = std::min(to, m_count);
        if (from >= to)
            return -1;
        return lastInNode(top(), 0, from, to, holds, test);
    }

private:
    int top() const { return int(m_levels.size()) - 1; }
    qint64 nodePoints(int level) const
    {
        qint64 size = LeafPoints;
        for (int k = 0; k < level; ++k)
            size *= FanOut;
        return size;
    }

    template <typename NodeFn, typename PointFn>
    bool walkNode(int level, qint64 j, int from, int to, NodeFn& node, PointFn& point) const
    {
        const qint64 size = nodePoints(level);
        const qint64 begin = j * size;
        const qint64 end = std::min<qint64>(begin + size, m_count);
        if (from <= begin && end <= to) {
            const Visit visit = node(m_levels[size_t(level)][size_t(j)], int(begin), int(end));
            if (visit == Visit::Skip)
                return true;
            if (visit == Visit::Stop)
                return false;
        }
        const int low = int(std::max<qint64>(begin, from));
        const int high = int(std::min<qint64>(end, to));
        if (level == 0) {
            for (int i = low; i < high; ++i)
                if (!point(i))
                    return false;
            return true;
        }
        const qint64 child = size / FanOut;
        for (qint64 c = low / child; c * child < high; ++c)
            if (!walkNode(level - 1, c, from, to, node, point))
                return false;
        return true;
    }

    template <typename HoldsFn, typename TestFn>
    int lastInNode(int level, qint64 j, int from, int to, HoldsFn& holds, TestFn& test) const
    {
        const qint64 size = nodePoints(level);
        const qint64 begin = j * size;
        const qint64 end = std::min<qint64>(begin + size, m_count);
        if (from <= begin && end <= to) {
            const Holds verdict = holds(m_levels[size_t(level)][size_t(j)]);
            if (verdict == Holds::None)
                return -1;
            if (verdict == Holds::All)
                return int(end - 1);
        }
        const int low = int(std::max<qint64>(begin, from));
        const int high = int(std::min<qint64>(end, to));
        if (level == 0) {
            for (int i = high - 1; i >= low; --i)
                if (test(i))
                    return i;
            return -1;
        }
        const qint64 child = size / FanOut;
        for (qint64 c = (high - 1) / child; c * child + child > low; --c) {
            const int found = lastInNode(level - 1, c, from, to, holds, test);
            if (found >= 0)
                return found;
        }
        return -1;
    }

    int m_count = 0;
    std::vector<std::vector<Node>> m_levels; // [0] over the points, the last one the root
};

#endif
