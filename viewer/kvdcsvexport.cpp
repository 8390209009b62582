#include "kvdcsvexport.h"
#include "kvdcurve.h"

#include <QFile>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <functional>
#include <limits>
#include <vector>

namespace {

constexpr qint64 Day = 86400;
constexpr size_t Chunk = 1 << 20;
constexpr size_t PieceRoom = 64; // more than the longest formula or value

qint64 floorDiv(qint64 a, qint64 b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

// Text goes out in pieces of about a megabyte; each piece written at once is shorter
// than PieceRoom.
class Output
{
public:
    using Sink = std::function<bool(const char*, qsizetype)>;
    explicit Output(const Sink& sink) : m_sink(sink), m_buffer(Chunk + PieceRoom) {}

    char* room()
    {
        if (m_used > Chunk)
            flush();
        return m_buffer.data() + m_used;
    }
    void done(char* end) { m_used = size_t(end - m_buffer.data()); }
    bool flush()
    {
        m_ok = m_ok && (m_used == 0 || m_sink(m_buffer.data(), qsizetype(m_used)));
        m_used = 0;
        return m_ok;
    }

private:
    Sink m_sink;
    std::vector<char> m_buffer;
    size_t m_used = 0;
    bool m_ok = true;
};

char* number(char* at, qint64 value)
{
    return std::to_chars(at, at + 24, value).ptr;
}

// The formula of start + x for increasing x, without a time-zone lookup per row: the
// offset from UTC is looked up at both ends of each UTC day and used for the whole day
// when it is the same at both (a zone changes its offset at most once a day); a day that
// holds a change is converted instant by instant.
class Clock
{
public:
    explicit Clock(const QDateTime& start) : m_start(start), m_startMs(start.toMSecsSinceEpoch()) {}

    char* formula(char* at, int x)
    {
        const qint64 utc = floorDiv(m_startMs + qint64(x) * 1000, 1000);
        const qint64 day = floorDiv(utc, Day);
        if (day != m_utcDay) {
            m_utcDay = day;
            m_offset = offsetAt(day * Day);
            m_steady = m_offset == offsetAt(day * Day + Day - 1);
        }
        const qint64 local = utc + (m_steady ? m_offset : offsetAt(utc));
        const qint64 localDay = floorDiv(local, Day);
        if (localDay != m_localDay) {
            m_localDay = localDay;
            const QDate date = QDate::fromJulianDay(2440588 + localDay);
            char* p = m_prefix;
            std::memcpy(p, "=DATE(", 6);
            p = number(p + 6, date.year());
            *p++ = ';';
            p = number(p, date.month());
            *p++ = ';';
            p = number(p, date.day());
            std::memcpy(p, ")+TEMPS(", 8);
            m_prefixLength = size_t(p + 8 - m_prefix);
        }
        const int seconds = int(local - localDay * Day);
        std::memcpy(at, m_prefix, m_prefixLength);
        at = number(at + m_prefixLength, seconds / 3600);
        *at++ = ';';
        at = number(at, seconds / 60 % 60);
        *at++ = ';';
        at = number(at, seconds % 60);
        *at++ = ')';
        return at;
    }

private:
    int offsetAt(qint64 utc) const
    {
        return m_start.addMSecs(utc * 1000 - m_startMs).offsetFromUtc();
    }

    QDateTime m_start;
    qint64 m_startMs;
    qint64 m_utcDay = std::numeric_limits<qint64>::min();
    int m_offset = 0;
    bool m_steady = false;
    qint64 m_localDay = std::numeric_limits<qint64>::min();
    char m_prefix[PieceRoom] = {};
    size_t m_prefixLength = 0;
};

struct Point
{
    int x;
    int y;
};

// Every curve's points by increasing x (stable, so that the values of one instant keep
// their order in the curve), then one row per instant merged across the curves: the
// same rows as scanning every point for every row, in time proportional to the points.
bool produce(const QList<KVDCurve*>& curves, const QDateTime& start, const QDateTime& end,
             const Output::Sink& sink)
{
    std::vector<std::vector<Point>> sorted;
    sorted.reserve(size_t(curves.size()));
    bool any = false;
    int first = 0;
    for (const KVDCurve* curve : curves) {
        std::vector<Point> points;
        if (curve->hasPoints()) {
            const QPolygon& p = *curve->points();
            points.reserve(size_t(p.size()));
            for (const QPoint& point : p)
                points.push_back({point.x(), point.y()});
            auto earlier = [](const Point& a, const Point& b) { return a.x < b.x; };
            if (!std::is_sorted(points.begin(), points.end(), earlier))
                std::stable_sort(points.begin(), points.end(), earlier);
            if (!any || p[0].x() < first)
                first = p[0].x();
            any = true;
        }
        sorted.push_back(std::move(points));
    }
    if (!any)
        return true;

    // A later row needs start + x < end, to the millisecond.
    const qint64 limitMs = end.toMSecsSinceEpoch() - start.toMSecsSinceEpoch();
    // Points before the first instant never get a row.
    std::vector<size_t> cursor(sorted.size(), 0);
    for (size_t c = 0; c < sorted.size(); ++c)
        cursor[c] =
            size_t(std::lower_bound(sorted[c].begin(), sorted[c].end(), Point{first, 0},
                                    [](const Point& a, const Point& b) { return a.x < b.x; }) -
                   sorted[c].begin());
    Output out(sink);
    Clock clock(start);
    int instant = first;
    for (;;) {
        out.done(clock.formula(out.room(), instant));
        bool more = false;
        int next = 0;
        for (size_t c = 0; c < sorted.size(); ++c) {
            const std::vector<Point>& points = sorted[c];
            size_t& k = cursor[c];
            char* at = out.room();
            *at++ = ',';
            out.done(at);
            for (; k < points.size() && points[k].x == instant; ++k)
                out.done(number(out.room(), -qint64(points[k].y)));
            if (k < points.size() && (!more || points[k].x < next)) {
                next = points[k].x;
                more = true;
            }
        }
        char* at = out.room();
        *at++ = '\n';
        out.done(at);
        if (!more || qint64(next) * 1000 >= limitMs)
            break;
        instant = next;
    }
    return out.flush();
}

} // namespace

QByteArray KVDCsvExport::formula(const QDateTime& instant)
{
    char text[PieceRoom];
    Clock clock(instant);
    return QByteArray(text, clock.formula(text, 0) - text);
}

QByteArray KVDCsvExport::rows(const QList<KVDCurve*>& curves, const QDateTime& start,
                              const QDateTime& end)
{
    QByteArray text;
    produce(curves, start, end, [&text](const char* data, qsizetype size) {
        text.append(data, size);
        return true;
    });
    return text;
}

bool KVDCsvExport::write(const QString& path, const QList<KVDCurve*>& curves,
                         const QDateTime& start, const QDateTime& end)
{
    // Opened with the first piece, so that no rows leave no file.
    QFile file(path);
    const bool produced = produce(curves, start, end, [&file](const char* data, qsizetype size) {
        if (!file.isOpen() && !file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return false;
        return file.write(data, size) == size;
    });
    // A full disk shows only when the buffered rows go out.
    return produced && (!file.isOpen() || file.flush());
}
