#include "fakestudio.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "kvdeventlist.h"
#include "recordingshell.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QtTest>

#include <memory>

using Records = QList<KVDSampleWriter::Record>;
static const auto series = &SampleRepository::series;
static constexpr quint32 D = 1700000000u;
static const QDate May(2024, 5, 1), June(2024, 6, 1);

// A curve's points, value range and scale top ("0,-5 10,-8 / 5..8 top 8"), or "no points".
static QString shapeOf(const KVDCurve& curve)
{
    QStringList points;
    for (const QPoint& p : curve.points() ? *curve.points() : QPolygon())
        points << QString("%1,%2").arg(p.x()).arg(p.y());
    const QString range = QString(" / %1..%2 top %3").arg(curve.minValue).arg(curve.maxValue);
    return curve.points() ? points.join(' ') + range.arg(curve.displayMax) : "no points";
}

// A curve asked of a repository holding cov.alice.2.kvd with records, cut bytes short: what
// it shows, then the messages; a ratio curve shows after the division.
struct Load
{
    Records records;
    QString shows;
    int cut = 0;
    QString measure = "cov2"; // named with its count, as the menus name it
    int field = 1;
    int count = 2;
    int over = 0; // a ratio curve: the field divided by this one
};

// The chart model: curves loaded from measure files, ratio curves, and the event list.
class TstModel : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host; // counts the progress display
    RecordingShell m_shell{&m_host};

private slots:
    void initTestCase() { TestEnv::pin(); }
    void init()
    {
        m_shell.use();
        m_shell.messages.clear();
        m_host.starts = m_host.ends = m_host.lastStep = 0;
    }

    void load_data()
    {
        QTest::addColumn<Load>("c");
        const Records shuffled{{D, 1, {1, 0}}, {D - 500, 1, {2, 0}}, {D + 1000, 1, {3, 0}}};
        const Records one = series(D, {1}, 2);
        const QString open = "no points; warning|Can't open file: ROOT/%1.alice.%2.kvd\n";
        const QString bad =
            "no points; warning|Invalid number of measure values: 10000 (0 to 9999)\n";
        const QString none =
            "no points; warning|Field %1 does not exist in ROOT/cov.alice.2.kvd (1 to 2)\n";
        QTest::newRow("empty file") << Load{{}, " / 0..0 top 0"};
        QTest::newRow("dates out of order kept in file order")
            << Load{shuffled, "0,-1 -500,-2 1000,-3 / 1..3 top 3"};
        // Field 2 holds twice field 1.
        QTest::newRow("last field, smallest total later")
            << Load{series(D, {3, 1, 2}, 2), "0,-6 86400,-2 172800,-4 / 2..6 top 6", 0, "cov2", 2};
        QTest::newRow("truncated last record")
            << Load{series(D, {1, 2, 3}, 2), "0,-1 86400,-2 / 1..2 top 2", 4};
        // Minus 3e9 does not fit a signed 32-bit coordinate: it wraps to 2^32 - 3e9.
        QTest::newRow("total beyond 2^31")
            << Load{series(D, {3000000000u}, 2), "0,1294967296 / 3e+09..3e+09 top 3e+09"};
        QTest::newRow("missing file") << Load{one, open.arg("nope").arg(2), 0, "nope"};
        // The name is cut at the last occurrence of the count, digits and all.
        QTest::newRow("a12b1212 cut at the last 12")
            << Load{one, open.arg("a12b12").arg(12), 0, "a12b1212", 1, 12};
        QTest::newRow("count at the start leaves nothing")
            << Load{one, open.arg("").arg(8), 0, "8abc", 1, 8};
        QTest::newRow("field 0") << Load{one, none.arg(0), 0, "cov", 0};
        QTest::newRow("field past the count") << Load{one, none.arg(3), 0, "cov", 3};
        QTest::newRow("count past the largest") << Load{one, bad, 0, "cov", 1, 10000};
        // Ratios pair points by index and divide both limits by the other curve's maximum:
        // field 1 over field 2, 1/3, 2/3, 3/4, then 2/4, 2/0, 2/2.
        const Records thirds{{D, 1, {1, 3}}, {D + 10, 1, {2, 3}}, {D + 20, 1, {3, 4}}};
        const Records zero{{D, 1, {2, 4}}, {D + 10, 1, {2, 0}}, {D + 20, 1, {2, 2}}};
        QTest::newRow("ratio truncated toward zero")
            << Load{thirds, "0,-33 10,-66 20,-75 / 25..75 top 100", 0, "cov2", 1, 2, 2};
        QTest::newRow("ratio with a zero point")
            << Load{zero, "0,-50 10,0 20,-100 / 50..50 top 100", 0, "cov2", 1, 2, 2};
        QTest::newRow("ratio over a field that cannot be read")
            << Load{series(D, {1, 2}, 2), "0,0 86400,0 / 0..0 top 100", 0, "cov2", 1, 2, 3};
    }

    void load()
    {
        QFETCH(Load, c);
        SampleRepository root;
        QVERIFY(root.writePair("cov", "alice", 2, c.records));
        QFile data(root.path("cov", "alice", 2));
        QVERIFY(data.resize(data.size() - c.cut)); // a write torn by a crash
        const QDateTime asked = QDateTime::fromSecsSinceEpoch(D - 86400 * 60);
        QDateTime start = asked, end = asked.addDays(30);
        std::unique_ptr<KVDCurve> other(
            c.over ? new KVDCurve(root.root(), "cov2", c.over, 2, "alice", start, end) : nullptr);
        init();
        KVDCurve curve(root.root(), c.measure, c.field, c.count, "alice", start, end);
        if (other)
            curve.DIV(*other);
        const QStringList shows = QStringList(shapeOf(curve)) + m_shell.messages;
        QCOMPARE(shows.join("; ").replace(root.root(), "ROOT"), c.shows);
        // The range keeps its length but starts at the first record; no record, no change.
        const bool anchored = curve.hasPoints();
        const QDateTime first = anchored ? QDateTime::fromSecsSinceEpoch(D) : QDateTime();
        QCOMPARE(curve.firstDate, first);
        QCOMPARE(start, anchored ? first : asked);
        QCOMPARE(end, start.addDays(30));
        QCOMPARE(curve.endDate, anchored ? end : QDateTime());
        const int loaded = curve.points() != nullptr, n = curve.pointCount();
        QCOMPARE(QList<int>({m_host.starts, m_host.ends, m_host.lastStep}),
                 QList<int>({loaded, loaded, n}));
        QVERIFY2(loaded ? curve.name == "cov2" && curve.span == 30 * 86400 &&
                              curve.isRatio == bool(other) && m_host.progressParent == &curve
                        : curve.name.isEmpty() && curve.valueCount + curve.field == 0,
                 "named by its measure key, for the asked span; or nothing at all");
        curve.MoveX(60);
        QVERIFY2(!anchored || curve.points()->first().x() == 60, "moved right by a minute");
    }

    void eventList_data()
    {
        // A list of events on 1 June and twice on 1 May; found: the index of the event on the
        // day, -1 for none, so that the day is free.
        QTest::addColumn<QDate>("day");
        QTest::addColumn<int>("found");
        QTest::newRow("exact day") << June << 0;
        QTest::newRow("day before, same text") << May.addDays(-1) << -1;
        QTest::newRow("first of two on a day") << May << 1;
    }

    void eventList()
    {
        QFETCH(QDate, day);
        QFETCH(int, found);
        KVDEventList list;
        for (const QDate& date : {June, May, May})
            list.items().append(new KVDEvent(date, "Release", true));
        const bool free = found < 0;
        QCOMPARE(list.on(day), free ? nullptr : list.items().at(found));
        QCOMPARE(list.IsNearTag(day), !free);
        QCOMPARE(list.add(day, "Release"), free);
        QCOMPARE(list.items().size(), free ? 4 : 3);
        const QStringList refused{"warning|An Event already exists for this date\n"};
        QCOMPARE(m_shell.messages, free ? QStringList() : refused);
        const KVDEvent* last = list.items().last();
        QVERIFY2(!free || (last->date == day && last->text == "Release" && last->visible &&
                           !last->hasColor && !last->color.isValid() && list.on(day) == last),
                 "a new event is visible, has no colour, and is found on its day");

        list.items().append(new KVDEvent(QDate(2030, 1, 1), "hidden", false));
        list.EventHide();
        QVERIFY2(list.eventsHidden() && list.items()[0]->visible && !list.items().last()->visible,
                 "hiding all leaves each event's own flag alone");
        list.EventHide();
        QVERIFY2(!list.eventsHidden() && list.items().last()->visible,
                 "showing all again makes every event visible");
    }
};

QTEST_MAIN(TstModel)
#include "tst_model.moc"
