#include "kvdcsvexport.h"
#include "kvdcurve.h"

#include <QFile>

#include <algorithm>
#include <vector>

QByteArray KVDCsvExport::formula(const QDateTime& instant)
{
    const QDate d = instant.date();
    const QTime t = instant.time();
    QByteArray text = "=DATE(";
    text += QByteArray::number(d.year()) + ';' + QByteArray::number(d.month()) + ';' +
            QByteArray::number(d.day()) + ")+TEMPS(" + QByteArray::number(t.hour()) + ';' +
            QByteArray::number(t.minute()) + ';' + QByteArray::number(t.second()) + ')';
    return text;
}

QByteArray KVDCsvExport::rows(const QList<KVDCurve*>& curves, const QDateTime& start, const QDateTime& end)
{
    // Instants are compared as seconds from the view start, which is what the points hold.
    struct Point
    {
        int x;
        int index;
    };
    std::vector<std::vector<Point>> byTime;
    bool any = false;
    int first = 0;
    for (const KVDCurve* curve : curves) {
        std::vector<Point> points;
        if (curve->points && !curve->points->isEmpty()) {
            const QPolygon& p = *curve->points;
            points.reserve(size_t(p.size()));
            for (int i = 0; i < p.size(); ++i)
                points.push_back({p[i].x(), i});
            // Stable, so that the values of one instant keep their order in the curve.
            std::stable_sort(points.begin(), points.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
            if (!any || p[0].x() < first)
                first = p[0].x();
            any = true;
        }
        byTime.push_back(std::move(points));
    }
    if (!any)
        return QByteArray();

    // The instants of the rows: the first one, then every later one before the view end.
    const qint64 limit = start.secsTo(end);
    std::vector<int> instants{first};
    for (const auto& points : byTime)
        for (const Point& point : points)
            if (point.x > first && point.x < limit)
                instants.push_back(point.x);
    std::sort(instants.begin(), instants.end());
    instants.erase(std::unique(instants.begin(), instants.end()), instants.end());

    std::vector<size_t> cursor(byTime.size(), 0);
    QByteArray out;
    out.reserve(int(instants.size()) * (32 + 8 * int(curves.size())));
    for (const int instant : instants) {
        out += formula(start.addSecs(instant));
        for (size_t c = 0; c < byTime.size(); ++c) {
            out += ',';
            const auto& points = byTime[c];
            size_t& k = cursor[c];
            while (k < points.size() && points[k].x < instant)
                ++k;
            const QPolygon* p = curves[int(c)]->points;
            for (; k < points.size() && points[k].x == instant; ++k)
                out += QByteArray::number(-qint64((*p)[points[k].index].y()));
        }
        out += '\n';
    }
    return out;
}

bool KVDCsvExport::write(const QString& path, const QList<KVDCurve*>& curves, const QDateTime& start,
                         const QDateTime& end)
{
    const QByteArray text = rows(curves, start, end);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(text) == text.size();
}
