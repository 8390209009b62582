#include "chartfixture.h"
#include "fakestudio.h"
#include "recordingshell.h"
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

// The shown span (zoom and its limits, fixed scales, dragging), the right-click hit test,
// tooltips and printing. Every move of the span moves each curve point by the same shift.
class TstZoom : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Day = 86400;
    static constexpr qint64 Hour = 3600;
    FakeStudio m_host;
    RecordingShell m_shell{&m_host};
    SampleRepository m_repository;
    QTemporaryDir m_fixtures;
    std::unique_ptr<QAKVD> m_viewer;

    static QDateTime origin() { return QDateTime(QDate(2024, 3, 1), QTime(0, 0)); }
    // A started viewer with a 905 x 500 paper (a 600 x 350 plot) showing one curve over
    // `days` days from origin(). Its points are (hour, value) on a scale of 0 to 350: over
    // 25 days, point (h, v) lies at (55 + h, 400 - v).
    QAKVD* viewer(const QList<QPoint>& points, int days)
    {
        m_viewer = std::make_unique<QAKVD>(nullptr, "kvd", 0, false);
        m_viewer->paper()->setFixedSize(905, 500);
        m_viewer->layout()->activate();
        KVDView& view = m_viewer->view();
        QPolygon polygon;
        for (const QPoint& p : points)
            polygon << QPoint(int(p.x() * Hour), -p.y());
        view.curves.append(ChartFixture::curve(m_fixtures.path(), polygon, days * Day, 350, 0));
        view.curves[0]->firstDate = origin();
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
        m_host.dataDirectory = TestEnv::built(QStringLiteral("share/kavendi"));
        m_host.install();
        m_shell.use(); // a stray message must not block the run
        QVERIFY2(m_repository.fill({}), qPrintable(m_repository.error()));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_repository.root()));
    }

    // The fixture curve must not come back from the view file in the next test.
    void cleanup()
    {
        m_viewer.reset();
        QFile::remove(m_repository.root() + "/KVD.cfg");
    }

    void span_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("steps"); // viewer slots, drag:X from x = 400, undated
        QTest::addColumn<qint64>("startMove");
        QTest::addColumn<qint64>("endMove");
        QTest::newRow("61 days in: 1") << 61 << "zoomIn" << 30 * Day << -30 * Day;
        QTest::newRow("60 days in: 1") << 60 << "zoomIn" << 30 * Day << -29 * Day;
        QTest::newRow("59 days in: 2") << 59 << "zoomIn" << 29 * Day << -28 * Day;
        QTest::newRow("fine step undone") << 60 << "zoomIn zoomOut" << 0ll << 0ll;
        QTest::newRow("one fine step") << 60 << "zoomIn zoomIn" << 30 * Day << -29 * Day;
        QTest::newRow("799 days out: 859") << 799 << "zoomOut" << -30 * Day << 30 * Day;
        QTest::newRow("800 days out: none") << 800 << "zoomOut" << 0ll << 0ll;
        QTest::newRow("undated stays") << 61 << "undated zoomIn zoomOut drag:390" << 0ll << 0ll;
        // From 00:00 to 00:00 two days later: the middle is 24:00 of the first day.
        QTest::newRow("hour: 08:00 to 12:00") << 2 << "ScaleHour" << 8 * Hour << -12 * Hour;
        QTest::newRow("month") << 2 << "ScaleMonth" << -14 * Day << 14 * Day;
        QTest::newRow("year") << 2 << "ScaleYear" << -181 * Day << 182 * Day;
        // A 30-day view on a 600-pixel plot: 4320 seconds a pixel.
        QTest::newRow("drag 10 left: 12 h later") << 30 << "drag:390" << 12 * Hour << 12 * Hour;
        QTest::newRow("drag 10 right") << 30 << "drag:410" << -12 * Hour << -12 * Hour;
        QTest::newRow("drag to the edge") << 30 << "drag:655" << -1101600ll << -1101600ll;
        QTest::newRow("drag past the plot") << 30 << "drag:656" << 0ll << 0ll;
        QTest::newRow("drag left of it") << 30 << "drag:54" << 0ll << 0ll;
    }

    void span()
    {
        QFETCH(int, days);
        QFETCH(QString, steps);
        QFETCH(qint64, startMove);
        QFETCH(qint64, endMove);
        // Two points: a paint never drops a curve of two as too far off the plot.
        QAKVD* v = viewer({{0, 10}, {30, 20}}, days);
        for (const QString& step : steps.split(' ')) {
            const QPoint to(step.mid(5).toInt(), 200);
            if (step == "undated") {
                v->view().datesSet = false;
            } else if (step.startsWith("drag:")) {
                QTest::mousePress(v->paper(), Qt::LeftButton, {}, QPoint(400, 200));
                QTest::mouseMove(v->paper(), to);
                QTest::mouseRelease(v->paper(), Qt::LeftButton, {}, to);
            } else {
                QVERIFY(step.startsWith("Scale")
                            ? QMetaObject::invokeMethod(v, qPrintable(step), Q_ARG(int, 7))
                            : QMetaObject::invokeMethod(v, qPrintable(step)));
            }
        }
        const KVDView& view = v->view();
        QCOMPARE(view.start, origin().addSecs(startMove));
        QCOMPARE(view.end, origin().addDays(days).addSecs(endMove));
        QVERIFY2(view.curves.size() == 1, "the curve stays shown");
        QCOMPARE(view.curves[0]->points->constFirst(), QPoint(int(-startMove), -10));
        QCOMPARE(view.curves[0]->points->constLast(), QPoint(int(30 * Hour - startMove), -20));
        QCOMPARE(view.curves[0]->firstDate, view.start);
        QCOMPARE(view.curves[0]->span, double(view.start.secsTo(view.end)));
    }

    void rightClick_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("event"); // on the pointer's day
        QTest::addColumn<QString>("popups");
        // The curve runs (155, 300) - (355, 100) - (555, 300) on the paper.
        const QString curve = "Event Properties|Set Event|Delete Event!|Hide Event!";
        const QString chart = "Event properties|Set Event|Delete Event!|Hide Event!";
        QTest::newRow("on a segment") << QPoint(255, 200) << false << curve;
        QTest::newRow("3.5 pixels off") << QPoint(255, 205) << false << curve;
        QTest::newRow("5.7 pixels off") << QPoint(255, 208) << false << chart;
        QTest::newRow("on the falling segment") << QPoint(455, 200) << false << curve;
        QTest::newRow("on the first point") << QPoint(155, 300) << false << chart;
        QTest::newRow("event, on the curve")
            << QPoint(255, 200) << true << "Event Properties|Set Event!|Delete Event|Hide Event";
        QTest::newRow("event, off the curve")
            << QPoint(255, 350) << true << "Event properties|Edit Event|Delete Event|Hide Event";
    }

    void rightClick()
    {
        QFETCH(QPoint, at);
        QFETCH(bool, event);
        QFETCH(QString, popups);
        QAKVD* v = viewer({{100, 100}, {300, 300}, {500, 100}}, 25);
        if (event) // x = 255 is 200 hours in: day 8
            v->view().events.items() << new KVDEvent(origin().date().addDays(8), "x", true);
        // Each popup is closed unanswered; its event submenu is noted, "!" when disabled.
        QStringList seen;
        QTimer closer;
        connect(&closer, &QTimer::timeout, [&seen] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                seen << menu->actions().constLast()->text();
                for (QAction* action : menu->actions().constLast()->menu()->actions())
                    seen.last() += '|' + action->text() + (action->isEnabled() ? "" : "!");
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
        QTest::addColumn<QList<QPoint>>("points");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<double>("value"); // 0: no tip
        QTest::addColumn<int>("hours");    // the date, from the view start
        QTest::newRow("nearly flat: the right end's value")
            << QList<QPoint>{{100, 100}, {400, 105}} << QPoint(300, 298) << 105.0 << 245;
        QTest::newRow("steep: the pointer's height")
            << QList<QPoint>{{100, 50}, {150, 250}} << QPoint(180, 250) << 150.0 << 125;
        QTest::newRow("zero at the pointer")
            << QList<QPoint>{{0, 10}, {600, 0}} << QPoint(355, 395) << 0.0 << 0;
        // The point under the pointer is neither end; the segment two back is then empty.
        QTest::newRow("above a point's x")
            << QList<QPoint>{{100, 100}, {200, 110}, {400, 105}} << QPoint(255, 298) << 0.0 << 0;
    }

    void tooltip()
    {
        QFETCH(QList<QPoint>, points);
        QFETCH(QPoint, at);
        QFETCH(double, value);
        QFETCH(int, hours);
        QAKVD* v = viewer(points, 25);
        KVDView& view = v->view();
        view.config->definitions.insert("cov2", KVDDefinition{{0, "Coverage"}, {1, "Statements"}});
        const KVDToolTip::Tip tip =
            KVDToolTip(v->paper(), &view.curves, view.config, nullptr).tipAt(at);
        QCOMPARE(tip.found, value != 0);
        QCOMPARE(tip.value, value);
        QCOMPARE(tip.date, value != 0 ? origin().addSecs(hours * Hour) : QDateTime());
        QCOMPARE(tip.text, value != 0 ? QStringLiteral("Coverage alice") : QString());
    }

    void printToPdf()
    {
        QAKVD* v = viewer({{0, 10}, {300, 20}}, 30);
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
