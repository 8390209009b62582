#include "chartfixture.h"
#include "fakestudio.h"
#include "kvdconfig.h"
#include "kvdevent.h"
#include "kvdtooltip.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QLayout>
#include <QMenu>
#include <QPrinter>
#include <QtTest>

#include <memory>

namespace {

constexpr qint64 Day = 86400;
constexpr qint64 Hour = 3600;
// Built when asked, once the time zone is pinned.
QDateTime origin()
{
    return QDateTime(QDate(2024, 3, 1), QTime(0, 0));
}

// Points given as (hour, value); a span of 600 hours on a 600-pixel plot puts point
// (h, v) at paper (55 + h, 400 - v) when the scale runs from 0 to 350 over 350 pixels.
QPolygon hourly(const QList<QPoint>& points)
{
    QPolygon result;
    for (const QPoint& p : points)
        result << QPoint(int(p.x() * Hour), -p.y());
    return result;
}

// The menus the viewer pops up: top-level entries, then the entries of the last submenu,
// with "!" after a disabled one. Each popup is closed unanswered.
QString describe(QMenu* menu)
{
    QStringList entries;
    QMenu* last = nullptr;
    for (QAction* action : menu->actions())
        if (!action->isSeparator()) {
            entries << action->text() + (action->isEnabled() ? "" : "!");
            last = action->menu() ? action->menu() : last;
        }
    for (QAction* action : last ? last->actions() : QList<QAction*>())
        entries << action->text() + (action->isEnabled() ? "" : "!");
    return entries.join('|');
}

} // namespace

// The shown span: zoom steps and their limits, the fixed scales, dragging, the right-click
// hit test, tooltips and printing. Every move of the span must move each curve point.
class TstZoom : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    SampleRepository m_repository;
    QTemporaryDir m_fixtures;
    std::unique_ptr<QAKVD> m_viewer;
    QPolygon m_points;

    KVDCurve* fixture(const QPolygon& points, qint64 span, double top = 350, double bottom = 0)
    {
        m_points = points;
        KVDCurve* curve = ChartFixture::curve(m_fixtures.path(), points, double(span), top, bottom);
        curve->firstDate = origin();
        return curve;
    }
    // Each fixture point moved back by shift seconds, and the curve given the view's dates.
    void verifyShifted(const KVDView& view, qint64 shift)
    {
        const KVDCurve* curve = view.curves.value(0);
        QVERIFY2(curve && curve->points->size() == m_points.size(), "the curve is kept");
        for (int i = 0; i < m_points.size(); ++i)
            QCOMPARE(curve->points->at(i), m_points[i] - QPoint(int(shift), 0));
        QCOMPARE(curve->firstDate, view.start);
        QCOMPARE(curve->span, double(view.start.secsTo(view.end)));
    }
    // A started viewer whose paper is 905 x 500 (a 600 x 350 plot), showing only a
    // fixture curve over `days` days from origin(), painted once.
    QAKVD* viewer(const QPolygon& points, int days)
    {
        m_viewer = std::make_unique<QAKVD>(nullptr, "kvd", 0, false);
        KVDView& view = m_viewer->view();
        m_viewer->paper()->setFixedSize(905, 500);
        m_viewer->layout()->activate();
        view.curves.append(fixture(points, days * Day));
        view.start = origin();
        view.end = origin().addDays(days);
        view.datesSet = true;
        m_viewer->refreshContents();
        return m_viewer.get();
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        QAKVD::setHeadless(true); // a stray message must not block the run
        m_host.dataDirectory = TestEnv::built(QStringLiteral("share/kavendi"));
        m_host.install();
        KVDSampleWriter::Options options;
        options.users = 1;
        options.days = 5;
        QVERIFY2(m_repository.fill(options), qPrintable(m_repository.error()));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_repository.root()));
    }

    void cleanup()
    {
        // The fixture curves and events must not reach the repository's view file.
        if (m_viewer) {
            KVDView& view = m_viewer->view();
            qDeleteAll(view.curves);
            view.curves.clear();
            view.firstScale = view.secondScale = nullptr;
            view.events.clear();
            m_viewer.reset();
        }
    }

    void zoom_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<bool>("dated");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<qint64>("startMove");
        QTest::addColumn<qint64>("endMove");
        QTest::newRow("61 days in: 30 days off each end")
            << 61 << true << "in" << 30 * Day << -30 * Day;
        QTest::newRow("60 days in: fine step to 1 day")
            << 60 << true << "in" << 30 * Day << -29 * Day;
        QTest::newRow("59 days in: fine step to 2 days")
            << 59 << true << "in" << 29 * Day << -28 * Day;
        QTest::newRow("fine step undone exactly") << 60 << true << "in,out" << 0ll << 0ll;
        QTest::newRow("second fine step does nothing")
            << 60 << true << "in,in" << 30 * Day << -29 * Day;
        QTest::newRow("799 days out: 859 days") << 799 << true << "out" << -30 * Day << 30 * Day;
        QTest::newRow("800 days out does nothing") << 800 << true << "out" << 0ll << 0ll;
        QTest::newRow("undated view stays") << 61 << false << "in,out,out" << 0ll << 0ll;
    }

    void zoom()
    {
        QFETCH(int, days);
        QFETCH(bool, dated);
        QFETCH(QString, steps);
        QFETCH(qint64, startMove);
        QFETCH(qint64, endMove);
        KVDView view;
        view.curves.append(fixture(hourly({{0, 1}, {24, 2}, {days * 24, 3}}), days * Day));
        view.start = origin();
        view.end = origin().addDays(days);
        view.datesSet = dated;
        for (const QString& step : steps.split(','))
            step == "in" ? view.zoomIn() : view.zoomOut();
        QCOMPARE(view.start, origin().addSecs(startMove));
        QCOMPARE(view.end, origin().addDays(days).addSecs(endMove));
        verifyShifted(view, startMove);
    }

    void scales_data()
    {
        QTest::addColumn<QByteArray>("slot");
        QTest::addColumn<qint64>("startMove");
        QTest::addColumn<qint64>("endMove");
        // From 00:00 to 00:00 two days later: the middle is 24:00 of the first day.
        QTest::newRow("hour: 08:00 to 12:00 next day")
            << QByteArray("ScaleHour") << 8 * Hour << -12 * Hour;
        QTest::newRow("month: 15 days each way")
            << QByteArray("ScaleMonth") << -14 * Day << 14 * Day;
        QTest::newRow("year: 182 days before, 183 after")
            << QByteArray("ScaleYear") << -181 * Day << 182 * Day;
    }

    void scales()
    {
        QFETCH(QByteArray, slot);
        QFETCH(qint64, startMove);
        QFETCH(qint64, endMove);
        QAKVD* v = viewer(hourly({{0, 10}, {30, 20}}), 2);
        QVERIFY(QMetaObject::invokeMethod(v, slot.constData(), Q_ARG(int, 7)));
        QCOMPARE(v->view().start, origin().addSecs(startMove));
        QCOMPARE(v->view().end, origin().addDays(2).addSecs(endMove));
        verifyShifted(v->view(), startMove);
    }

    void drag_data()
    {
        QTest::addColumn<int>("to");
        QTest::addColumn<qint64>("shift");
        // A 30-day view on a 600-pixel plot: 4320 seconds a pixel.
        QTest::newRow("10 pixels left: 12 hours later") << 390 << 12 * Hour;
        QTest::newRow("10 pixels right: 12 hours earlier") << 410 << -12 * Hour;
        QTest::newRow("onto the plot's right edge") << 655 << -255 * 4320ll;
        QTest::newRow("past the plot's right edge") << 656 << 0ll;
        QTest::newRow("left of the plot") << 54 << 0ll;
    }

    void drag()
    {
        QFETCH(int, to);
        QFETCH(qint64, shift);
        QAKVD* v = viewer(hourly({{0, 10}, {300, 20}}), 30);
        QVERIFY2(v->paper()->width() == 905, "the paper has the size the arithmetic assumes");
        QTest::mousePress(v->paper(), Qt::LeftButton, {}, QPoint(400, 200));
        QTest::mouseMove(v->paper(), QPoint(to, 200));
        QTest::mouseRelease(v->paper(), Qt::LeftButton, {}, QPoint(to, 200));
        QCOMPARE(v->view().start, origin().addSecs(shift));
        QCOMPARE(v->view().end, origin().addDays(30).addSecs(shift));
        verifyShifted(v->view(), shift);
    }

    void rightClick_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("event"); // an event on the pointer's day
        QTest::addColumn<QString>("popups");
        // The curve runs (155, 300) - (355, 100) - (555, 300) on the paper.
        const QString curve =
            "Curve Properties|Event Properties|Set Event|Delete Event!|Hide Event!";
        const QString chart =
            "Curve Properties!|Event properties|Set Event|Delete Event!|Hide Event!";
        QTest::newRow("on a segment") << QPoint(255, 200) << false << curve;
        QTest::newRow("3.5 pixels off") << QPoint(255, 205) << false << curve;
        QTest::newRow("5.7 pixels off") << QPoint(255, 208) << false << chart;
        QTest::newRow("on the falling segment") << QPoint(455, 200) << false << curve;
        QTest::newRow("on the first point") << QPoint(155, 300) << false << chart;
        QTest::newRow("on a segment, event that day")
            << QPoint(255, 200) << true
            << "Curve Properties|Event Properties|Set Event!|Delete Event|Hide Event";
        QTest::newRow("off the curve, event that day")
            << QPoint(255, 350) << true
            << "Curve Properties!|Event properties|Edit Event|Delete Event|Hide Event";
    }

    void rightClick()
    {
        QFETCH(QPoint, at);
        QFETCH(bool, event);
        QFETCH(QString, popups);
        QAKVD* v = viewer(hourly({{100, 100}, {300, 300}, {500, 100}}), 25);
        // x = 255 is 200 hours into the view: day 8.
        if (event)
            v->view().events.items().append(
                new KVDEvent(origin().date().addDays(8), "release", true));
        QStringList seen;
        QTimer closer;
        connect(&closer, &QTimer::timeout, [&seen] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                seen << describe(menu);
                menu->close();
            }
        });
        closer.start(10);
        QTest::mousePress(v->paper(), Qt::RightButton, {}, at);
        QTest::mouseRelease(v->paper(), Qt::RightButton, {}, at);
        QCOMPARE(seen.join(" / "), popups);
    }

    void tooltip_data()
    {
        QTest::addColumn<QList<QPoint>>("points"); // (hour, value)
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<double>("value"); // 0: no tip
        QTest::addColumn<int>("hours");    // the date, in hours from the view start
        QTest::newRow("nearly flat: the right end's value")
            << QList<QPoint>{{100, 100}, {400, 105}} << QPoint(300, 298) << 105.0 << 245;
        QTest::newRow("steep: the pointer's height")
            << QList<QPoint>{{100, 50}, {150, 250}} << QPoint(180, 250) << 150.0 << 125;
        QTest::newRow("zero at the pointer: no tip")
            << QList<QPoint>{{0, 10}, {600, 0}} << QPoint(355, 395) << 0.0 << 0;
        QTest::newRow("left of every point")
            << QList<QPoint>{{100, 100}, {400, 105}} << QPoint(100, 298) << 0.0 << 0;
        // The point under the pointer is neither end; the segment two back is then empty.
        QTest::newRow("above a point's x: no tip")
            << QList<QPoint>{{100, 100}, {200, 110}, {400, 105}} << QPoint(255, 298) << 0.0 << 0;
    }

    void tooltip()
    {
        QFETCH(QList<QPoint>, points);
        QFETCH(QPoint, at);
        QFETCH(double, value);
        QFETCH(int, hours);
        QList<KVDCurve*> curves{fixture(hourly(points), 600 * Hour)};
        curves[0]->paperWidth = 905;
        curves[0]->paperHeight = 500;
        KVDConfig config(nullptr);
        config.definitions.insert("cov2", KVDDefinition{{0, "Coverage"}, {1, "Statements"}});
        QWidget paper;
        const KVDToolTip::Tip tip = KVDToolTip(&paper, &curves, &config, nullptr).tipAt(at);
        qDeleteAll(curves);
        QCOMPARE(tip.found, value != 0);
        if (tip.found) {
            QCOMPARE(tip.value, value);
            QCOMPARE(tip.date, origin().addSecs(hours * Hour));
            QCOMPARE(tip.text, QStringLiteral("Coverage alice"));
            QVERIFY2(tip.status.endsWith(QStringLiteral(" Coverage Statements = %1").arg(value)),
                     qPrintable(tip.status));
        }
    }

    void printToPdf()
    {
        QAKVD* v = viewer(hourly({{0, 10}, {300, 20}}), 30);
        QTemporaryDir out;
        QPrinter printer(QPrinter::ScreenResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(out.filePath("chart.pdf"));
        v->printChart(&printer);
        QFile pdf(printer.outputFileName());
        QVERIFY2(pdf.open(QIODevice::ReadOnly) && pdf.read(5) == "%PDF-", "a PDF is written");
        // Hit tests and tooltips work on the printed page until the next screen paint.
        QCOMPARE(v->view().curves[0]->paperWidth, double(printer.width()));
        QVERIFY(printer.width() != 905);
    }
};

QTEST_MAIN(TstZoom)
#include "tst_zoom.moc"
