#include "chartfixture.h"
#include "kvdconfig.h"
#include "kvdevent.h"
#include "modalanswerer.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "studiowindow.h"
#include "testenv.h"

#include <QPrinter>
#include <QtTest>
#include <QtWidgets>

#include <memory>

// The viewer window in a real host: start-up and what it saves and restores, how menu
// choices become curves, its menus and tool bar, the shown span (zoom, scales, dragging,
// each moving every curve point by the same shift), the right-click menus and printing.
class TstViewer : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 Hour = 3600;
    using ChartCase = std::tuple<int, int, QString, QString, QString>; // see chart_data()
    const QDateTime m_origin{QDate(2024, 3, 1), QTime(0, 0)};
    StudioWindow m_studio{TestEnv::built("share/kavendi")};
    SampleRepository m_repository;
    QTemporaryDir m_fixtures;
    QTemporaryDir m_empty;
    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<QAKVD> m_viewer;

    // A menu's item texts; with marks, "*" follows a checked item and "!" a disabled one.
    static QStringList texts(QMenu* menu, bool marks = false)
    {
        QStringList list;
        for (QAction* a : menu ? menu->actions() : QList<QAction*>())
            list << a->text() + (marks && a->isChecked() ? "*" : "") +
                        (marks && !a->isEnabled() ? "!" : "");
        return list;
    }
    static QAction* item(QMenu* menu, const QString& text)
    {
        return menu ? menu->actions().value(texts(menu).indexOf(text)) : nullptr;
    }
    static QMenu* submenu(QMenu* menu, const QString& text)
    {
        return item(menu, text) ? item(menu, text)->menu() : nullptr;
    }
    // Chooses field `field` of the measure titled `title` as a user does: highlights the
    // measure in "Monitoring", then activates the field in its submenu.
    static bool pick(QAKVD& viewer, const QString& title, int field)
    {
        QMenu* monitoring = submenu(viewer.viewerMenu(), "Monitoring");
        QMenu* fields = submenu(monitoring, title);
        if (!fields || field > fields->actions().size())
            return false;
        emit monitoring->hovered(item(monitoring, title));
        fields->actions().at(field - 1)->trigger();
        return true;
    }
    static QPoint point(const QString& xy)
    {
        return {xy.section(',', 0, 0).toInt(), xy.section(',', 1).toInt()};
    }
    static std::unique_ptr<QAKVD> open(const QString& root)
    {
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(root));
        return std::make_unique<QAKVD>(nullptr, "viewer", 0, true);
    }
    // Whether `menu` is the one viewer menu in the host's menu bar.
    bool soleHostMenu(QMenu* menu)
    {
        return m_studio.host().menuCount() == 1 &&
               m_studio.menuBar()->actions().contains(menu->menuAction());
    }
    // A viewer with a 905 x 500 paper (a 600 x 350 plot) showing `count` copies (fields 1 to
    // count) of one curve over `hours` from m_origin. Its points are (hour, value) on a scale
    // of 0 to 350: over 25 days, point (h, v) lies at (55 + h, 400 - v).
    QAKVD* chart(const QList<QPoint>& points, qint64 hours, int count = 1)
    {
        m_viewer = open(m_repository.root());
        m_viewer->paper()->setFixedSize(905, 500);
        m_viewer->layout()->activate();
        KVDView& view = m_viewer->view();
        QPolygon polygon;
        for (const QPoint& p : points)
            polygon << QPoint(int(p.x() * Hour), -p.y());
        for (int field = 1; field <= count; ++field)
            view.curves << ChartFixture::curve(m_fixtures.path(), polygon, hours * Hour, 350, 0,
                                               field);
        view.config->definitions.insert("cov2", {{0, "Coverage"}, {1, "Statements"}});
        view.start = view.curves[0]->firstDate = m_origin;
        view.end = m_origin.addSecs(hours * Hour);
        view.datesSet = true;
        m_viewer->refreshContents();
        return m_viewer.get();
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        QVERIFY2(m_repository.fill({}), qPrintable(m_repository.error()));
        QVERIFY(m_studio.loadPlugin(TestEnv::built("lib/libkavendi.so")));
        m_studio.show();
    }

    void init() { m_answers = std::make_unique<ModalAnswerer>(); }

    // A shown curve must not come back from the view file in the next test.
    void cleanup()
    {
        m_viewer.reset();
        QFile::remove(m_repository.root() + "/KVD.cfg");
        QVERIFY2(!m_answers->unexpected() && !m_answers->pending(),
                 qPrintable(m_answers->seen().join('\n')));
    }

    void repositoryRoot_data()
    {
        // The project's directory, the variable (null: unset), the directory chosen in the
        // dialog (empty: cancelled) and the root used (null: the window does not start).
        QTest::addColumn<QStringList>("c");
        const QString repo = m_repository.root(), none;
        QTest::newRow("open project, as it is")
            << QStringList{repo + "/.", m_empty.path(), none, repo + "/."};
        QTest::newRow("project scan fails") << QStringList{m_empty.path(), repo + "//", none, repo};
        QTest::newRow("variable, cleaned") << QStringList{none, repo + "/./", none, repo};
        QTest::newRow("unset, dialog cancelled") << QStringList{none, none, "", none};
        QTest::newRow("unset, directory chosen") << QStringList{none, none, repo, repo};
    }

    void repositoryRoot()
    {
        QFETCH(QStringList, c);
        const QString &project = c[0], &variable = c[1], &chosen = c[2], &root = c[3];
        m_studio.host().project().setDirectory(project);
        variable.isNull() ? qunsetenv("ZANTH_KVD_ROOT")
                          : qputenv("ZANTH_KVD_ROOT", QFile::encodeName(variable));
        if (!chosen.isNull()) {
            m_answers->push(ModalAnswerer::click("OK"));
            m_answers->push([chosen](QWidget* modal) {
                qobject_cast<QFileDialog*>(modal)->setDirectory(chosen);
                chosen.isEmpty() ? qobject_cast<QDialog*>(modal)->reject()
                                 : qobject_cast<QDialog*>(modal)->QDialog::accept();
            });
        }
        m_viewer = std::make_unique<QAKVD>(nullptr, "viewer", 0, true);
        m_studio.host().project().setDirectory(QString());
        const QString asked = "warning|Studio|ZANTH_KVD_ROOT not set.\n;QFileDialog|Find Directory";
        QCOMPARE(m_answers->seen().join(';'), chosen.isNull() ? QString() : asked);
        QVERIFY2(QAKVD::Launched() == !root.isNull() && m_viewer->isVisible() == !root.isNull(),
                 "a viewer that cannot start closes");
        QVERIFY2(root.isNull() || m_viewer->view().root == root, qPrintable(m_viewer->view().root));
    }

    // Curves from menu choices, saved on closing and restored at start-up.
    void fieldChoices_data()
    {
        QTest::addColumn<QString>("picks"); // user/measure title/field, or floating
        QTest::addColumn<QString>("colours");
        QTest::newRow("same field twice") << "alice/Coverage/1,alice/Coverage/1"
                                          << "#00ff00";
        QTest::newRow("same field, other user") << "alice/Coverage/1,bob/Coverage/1"
                                                << "#00ff00";
        QTest::newRow("floating keeps the dates") << "floating,alice/Test runs/1,alice/Coverage/1"
                                                  << "#00ff00,#0000ff";
        QTest::newRow("six curves cycle the colours")
            << "alice/Coverage/1,alice/Coverage/2,alice/Coverage/3,alice/Coverage/4,alice/Test "
               "runs/1,alice/Test runs/2"
            << "#00ff00,#0000ff,#00ffff,#ff00ff,#ffff00,#ff0000";
    }

    void fieldChoices()
    {
        QFETCH(QString, picks);
        QFETCH(QString, colours);
        const QString file = m_repository.root() + "/KVD.cfg";
        auto viewer = open(m_repository.root());
        QAction* exportItem = item(viewer->viewerMenu(), "Export");
        QVERIFY2(QFile::exists(file) && QAKVD::GetCurrentUser() == "alice" &&
                     !exportItem->isEnabled(),
                 "start-up writes a view file and takes the first user; nothing to export");
        auto* users = qobject_cast<QTreeWidget*>(viewer->contentOutlineWidget());
        for (const QString& choice : picks.split(',')) {
            const QStringList part = choice.split('/');
            if (choice == "floating")
                viewer->FloatSc();
            else
                users->setCurrentItem(users->findItems(part[0], Qt::MatchExactly).value(0));
            QVERIFY(choice == "floating" || (QAKVD::GetCurrentUser() == part[0] &&
                                             pick(*viewer, part[1], part[2].toInt())));
        }
        const KVDView& view = viewer->view();
        const QDateTime start =
            view.floating ? QDateTime::currentDateTime().addDays(-30) : view.start;
        QVERIFY2(qAbs(view.start.secsTo(start)) < 60 &&
                     view.start.secsTo(view.end) == 30 * 24 * Hour &&
                     (view.floating || view.curves.last()->points()->first().x() == 0),
                 "30 days from the newest curve's first record, or, floating, the last 30 days");
        QVERIFY2(view.firstScale == view.curves.last() && exportItem->isEnabled(),
                 "the newest curve takes the left scale");
        QStringList shown;
        for (const KVDCurve* curve : view.curves)
            shown << curve->color.name();
        QCOMPARE(shown.join(','), colours);
        const auto saved = std::pair(view.curves.size(), view.start.toSecsSinceEpoch());
        viewer.reset();
        viewer = open(m_repository.root());
        KVDView& back = viewer->view();
        QVERIFY2(std::pair(back.curves.size(), back.start.toSecsSinceEpoch()) == saved &&
                     back.lastColor == QColor(colours.right(7)),
                 "closing saved curves and dates; new curves go on from the last colour");
        back.zoom = 2;
        viewer->clean();
        QVERIFY2(!item(viewer->viewerMenu(), "Export")->isEnabled() && back.curves.isEmpty() &&
                     !back.zoom && back.datesSet &&
                     qAbs(back.end.secsTo(QDateTime::currentDateTime())) < 60 &&
                     back.start.secsTo(back.end) == 30 * 24 * Hour,
                 "Clear empties the chart, disables Export and shows the last 30 days, unzoomed");
        QVERIFY2(QFile::remove(file) && viewer->canClose() && QFile::exists(file),
                 "closing saves the view, changed or not");
        open(m_repository.root()).reset();
        QVERIFY2(QFile::remove(file) && !QAKVD::Launched() && viewer->canClose() &&
                     !QFile::exists(file),
                 "once any window went, closing saves nothing");
    }

    // The viewer menu, built for the active window of two, and the shared tool bar.
    void menusAndToolBar()
    {
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_repository.root()));
        QPointer<QAKVD> a = qobject_cast<QAKVD*>(m_studio.openViewer());
        QPointer<QAKVD> b = qobject_cast<QAKVD*>(m_studio.openViewer());
        QVERIFY(a && b && m_studio.activeViewer() == b && soleHostMenu(b->viewerMenu()) &&
                a->hostMenuId() == -1);
        QVERIFY2(m_studio.outlinePane() == b->contentOutlineWidget(),
                 "the outline pane shows the active viewer's users");
        auto* sub = qobject_cast<QMdiSubWindow*>(a->parentWidget());
        sub->mdiArea()->setActiveSubWindow(sub);
        QMenu* menu = a->viewerMenu();
        QVERIFY(m_studio.activeViewer() == a && soleHostMenu(menu) && b->hostMenuId() == -1);
        QCOMPARE(texts(menu).join(','),
                 "Monitoring,Custom Curves,Scale,Events,Delete Record,,Export");
        QCOMPARE(texts(submenu(menu, "Scale"), true).join(','), "Year,Month*,Hour,,Customize");
        const QList<QAction*> before = menu->actions();
        QVERIFY2(!a->CreateToolMenu() && menu->actions() == before && soleHostMenu(menu),
                 "a menu already in the host stays");
        QVERIFY2(pick(*a, "Coverage", 1) && a->view().curves.size() == 1 &&
                     b->view().curves.isEmpty(),
                 "the moved menu adds curves to its own viewer");

        // The shared tool bar holds the buttons of the newest viewer, and only those.
        QToolBar* bar = QAKVD::toolBar();
        QStringList tips;
        for (QAction* action : bar->actions()) {
            auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action));
            tips << button->toolTip() + (button->isCheckable() ? "*" : "");
            button->click();
        }
        QCOMPARE(tips.join(','), "Clear,Hide Events,Floating Schedule*");
        QVERIFY2(bar->isEnabled() && b->view().datesSet && b->view().events.eventsHidden() &&
                     b->view().floating,
                 "the newest viewer owns the buttons: Clear gave it dates");
        QVERIFY(!a->view().floating && !a->view().events.eventsHidden() &&
                a->view().curves.size() == 1);

        // A ratio shows for a user who sees the measure it names, whose label names the file
        // whose first fields it divides by the last ones. A view without an end shows Month.
        KVDConfig& config = *a->view().config;
        config.definitions.insert("_EDITED_METRIC_rat4",
                                  {{0, "Ratio"}, {1, "a"}, {2, "b"}, {3, "c"}, {4, "d"}});
        config.definitions.insert("_EDITED_METRIC_zzz1", {{0, "Unseen"}, {1, "a"}});
        config.definitions.insert("rat4", {{0, "cov"}});
        config.users.find("alice")->append("rat4");
        a->view().end = QDateTime();
        a->desactivated();
        QVERIFY(!bar->isEnabled() && a->hostMenuId() == -1);
        a->activated();
        QMenu* monitoring = submenu(menu, "Monitoring");
        QCOMPARE(texts(monitoring).join(','), "Ratio,Coverage,Detailed coverage,cov,Test runs");
        QCOMPARE(texts(submenu(monitoring, "Coverage"), true).join(','),
                 "Statements,Branches,Functions,Conditions");
        QCOMPARE(texts(submenu(menu, "Scale"), true).filter("*"), QStringList("Month*"));
        QVERIFY(pick(*a, "Ratio", 1));
        const KVDCurve* ratio = a->view().curves.value(1);
        QVERIFY2(ratio && ratio->isRatio && ratio->fixedScale && ratio->name == "cov8",
                 "the ratio divides fields of cov.alice.8");

        m_answers->push(ModalAnswerer::type("eventLabel", "Release", ModalAnswerer::click("OK")));
        item(menu, "Events")->trigger();
        a->CallCreateEvent(0);
        const QList<KVDEvent*>& events = a->view().events.items();
        QVERIFY2(events.size() == 1 && events[0]->date == QDate::currentDate() &&
                     events[0]->text == "Release",
                 "Events adds an event, today by default; id 0 asks nothing");

        a->desactivated();
        config.users.remove("alice");
        m_answers->push(ModalAnswerer::click("OK"));
        QVERIFY(!a->CreateToolMenu());
        QCOMPARE(m_answers->seen().last(), "warning|Studio|Nothing to display for user alice\n");
        QVERIFY2(texts(menu).isEmpty() && soleHostMenu(menu), "the menu stays in the host, empty");
        a->parentWidget()->close();
        b->parentWidget()->close();
        QTRY_VERIFY2(!a && !b && !m_studio.host().menuCount(),
                     "viewers take their menus along when they go");
        for (QWidget* widget : QApplication::topLevelWidgets())
            QVERIFY2(!qobject_cast<QToolButton*>(widget), "replaced tool buttons do not linger");
    }

    // The shown span, the right-click menus and printing, on fixture curves.
    void chart_data()
    {
        // curves: 0 for one of two points, else copies of one of three; hours: shown from
        // m_origin. steps: slots (an id after ':'), Scale menu items (Customize with its
        // dialog's answer), menu (rebuilt), undated, print, drag:x,y;x,y... (from 400, 200),
        // right:x,y. choices: for each popup, comma separated, the item chosen, after ':' the
        // answer to its dialog; "-" closes the popup. expected: the hours the start and the
        // end moved and the checked scales; after a right click, each popup's event submenu
        // ("!": disabled) and, after "=>", the curves (< the left scale, > the right one, ^ a
        // fixed maximum, a colour set), the events (day, text, "-" hidden) and field 1's label
        // when they changed, and what the dialogs offered first.
        QTest::addColumn<ChartCase>("c");
        const auto span = [](const char* name, int hours, const char* steps, const char* expected) {
            QTest::newRow(name) << ChartCase{0, hours, steps, QString(), expected};
        };
        span("61 days in: 1", 61 * 24, "zoomIn", "720 -720 Month");
        span("60 days in: 1", 60 * 24, "zoomIn", "720 -696 Month");
        span("799 days out: 859", 799 * 24, "zoomOut", "-720 720 Month");
        span("800 days out: none", 800 * 24, "zoomOut", "0 0 Month");
        span("undated stays", 61 * 24, "undated zoomIn zoomOut drag:390,200", "0 0 Month");
        // From 00:00 to 00:00 two days later: the middle is 24:00 of the first day.
        span("hour: 08:00 to 12:00", 48, "Hour", "8 -12 Hour");
        span("year", 48, "Year", "-4344 4368 Year");
        span("year, then hour", 48, "Year Hour", "20 0 Hour");
        span("id 0: marks no longer move", 48, "ScaleMonth:0 Year Hour", "20 0 Year Hour");
        span("custom: 2001-01-01 to 2001-02-01", 48, "Customize:OK", "-203040 -202344 Customize");
        span("menu: 365 days", 365 * 24, "menu", "0 0 Year");
        span("menu: 366 days", 366 * 24, "menu", "0 0 Customize");
        // A 30-day view on a 600-pixel plot: 4320 seconds a pixel.
        // Ten pixels left, 12 hours later; a still move repeats the step.
        span("a still move repeats the step", 30 * 24, "drag:390,200;390,200", "24 24 Month");
        span("to the top left corner", 30 * 24, "drag:55,50", "414 414 Month");
        for (const char* outside : {"drag:54,200", "drag:656,200", "drag:390,49", "drag:390,401"})
            span(outside, 30 * 24, outside, "0 0 Month");
        // Hit tests work on the printed page until the next screen paint.
        span("print", 30 * 24, "print", "0 0 Month %PDF- page");

        // The curve runs (155, 300) - (355, 100) - (555, 300) on the paper, over 25 days.
        // Events "x" on day 8 (x = 255, 200 hours in) and "y" on day 20.
        const auto click = [](const char* name, int curves, int x, int y, const char* choices,
                              const QString& expected) {
            QTest::newRow(name) << ChartCase{curves, 600, QString("right:%1,%2").arg(x).arg(y),
                                             choices, "0 0 Month " + expected};
        };
        const QString on = "Event Properties|Set Event!|Delete Event|Hide Event";
        const QString off = "Event Properties|Set Event|Delete Event!|Hide Event!";
        const QString chartOn = "Event properties|Edit Event|Delete Event|Hide Event";
        const QString chartOff = "Event properties|Set Event|Delete Event!|Hide Event!";
        click("3.5 pixels off", 1, 255, 205, "-", on + " => f1");
        click("5.7 pixels off", 1, 255, 208, "-", chartOn + " => f1");
        click("on the first point", 1, 155, 300, "-", chartOff + " => f1");
        click("scale left ends the scan", 2, 255, 200, "Scale Left", on + " => f1 f2<");
        click("scale right", 2, 255, 200, "Scale Right", on + " => f1 f2>");
        click("colour", 2, 255, 200, "Change Curve Color:OK", on + " => f1 f2#123456");
        click("hide the last of two", 2, 255, 200, "Hide Curve", on + " => f1<");
        click("hide the last of five: the first still asks", 5, 255, 200, "Hide Curve,-",
              on + " / " + on + " => f1 f2< f3 f4");
        click("maximum: the next curve asks", 2, 255, 200, "Set Max Value:OK,-",
              on + " / " + on + " => f1 f2^500 0");
        click("label", 1, 255, 200, "Change Label:OK", on + " => f1 Renamed Statements");
        click("set event on a curve", 1, 455, 200, "Set Event:OK", off + " => f1 9x 21y 17new");
        click("hide event on a curve", 1, 255, 200, "Hide Event", on + " => f1 9x- 21y");
        click("delete event on a curve", 1, 255, 200, "Delete Event", on + " => f1 21y");
        click("edit event", 1, 255, 350, "Edit Event:OK", chartOn + " => f1 21y 9new");
        click("delete event on the chart", 1, 255, 350, "Delete Event", chartOn + " => f1 21y");
    }

    void chart()
    {
        QFETCH(ChartCase, c);
        const auto [curves, hours, steps, choices, expected] = c;
        // Two points: a paint never drops a curve of two as too far off the plot.
        QAKVD* v = curves ? chart({{100, 100}, {300, 300}, {500, 100}}, hours, curves)
                          : chart({{0, 10}, {30, 20}}, hours);
        KVDView& view = v->view();
        for (auto [day, text] : {std::pair(8, "x"), std::pair(20, "y")})
            view.events.items() << new KVDEvent(m_origin.date().addDays(day), text, true);
        const QStringList plan = choices.split(',', Qt::SkipEmptyParts);
        QStringList seen, asked;
        for (const QString& choice : plan)
            if (choice.contains(':'))
                m_answers->push([&asked, button = choice.section(':', 1)](QWidget* modal) {
                    if (auto* input = qobject_cast<QInputDialog*>(modal)) {
                        const bool number = input->inputMode() == QInputDialog::IntInput;
                        asked << (number ? QString::number(input->intValue()) : input->textValue());
                        number ? input->setIntValue(500) : input->setTextValue("Renamed");
                    } else if (auto* colours = qobject_cast<QColorDialog*>(modal)) {
                        colours->setCurrentColor(QColor(0x123456));
                    } else {
                        modal->findChild<QLineEdit*>("eventLabel")->setText("new");
                    }
                    ModalAnswerer::click(button)(modal);
                });
        // Each popup's event submenu is noted; the item chosen is taken with the keys.
        QTimer driver;
        connect(&driver, &QTimer::timeout, this, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu || !menu->actions().constLast()->menu())
                return;
            QMenu* events = menu->actions().constLast()->menu();
            seen << events->title() + '|' + texts(events, true).join('|');
            const QString choice = plan.value(seen.size() - 1).section(':', 0, 0);
            for (QAction* entry : menu->actions())
                if (QAction* chosen = item(entry->menu(), choice)) {
                    menu->setActiveAction(entry);
                    QTest::keyClick(menu, Qt::Key_Right);
                    entry->menu()->setActiveAction(chosen);
                    return QTest::keyClick(entry->menu(), Qt::Key_Return);
                }
            menu->close();
        });
        driver.start(10);

        QMenu* scale = submenu(v->viewerMenu(), "Scale");
        QStringList held;
        for (const QString& step : steps.split(' ')) {
            const QString name = step.section(':', 0, 0), argument = step.section(':', 1);
            const QPoint at = point(argument.section(';', -1));
            QPrinter printer(QPrinter::ScreenResolution);
            if (step == "undated") {
                view.datesSet = false;
            } else if (step == "menu") {
                v->desactivated();
                QVERIFY(v->CreateToolMenu());
                scale = submenu(v->viewerMenu(), "Scale");
            } else if (step == "print") {
                printer.setOutputFileName(m_fixtures.filePath("chart.pdf"));
                v->printChart(&printer);
                const bool page =
                    view.curves[0]->paperWidth == printer.width() && printer.width() != 905;
                held << TestEnv::contents(printer.outputFileName()).left(5)
                     << (page ? "page" : "screen");
            } else if (name == "drag" || name == "right") {
                const Qt::MouseButton button = name == "drag" ? Qt::LeftButton : Qt::RightButton;
                QTest::mousePress(v->paper(), button, {}, name == "drag" ? QPoint(400, 200) : at);
                for (const QString& p : argument.split(';'))
                    QTest::mouseMove(v->paper(), point(p));
                QTest::mouseRelease(v->paper(), button, {}, at);
            } else if (QAction* scaleItem = item(scale, name)) {
                if (!argument.isEmpty())
                    m_answers->push(ModalAnswerer::click(argument));
                scaleItem->trigger();
            } else {
                QVERIFY(argument.isEmpty()
                            ? QMetaObject::invokeMethod(v, qPrintable(name))
                            : QMetaObject::invokeMethod(v, qPrintable(name),
                                                        Q_ARG(int, argument.toInt())));
            }
        }
        const qint64 moved = m_origin.secsTo(view.start);
        const KVDCurve* curve = view.curves.value(0);
        QVERIFY2(curves || (curve->points()->constFirst() == QPoint(int(-moved), -10) &&
                            curve->points()->constLast().x() == 30 * Hour - moved &&
                            curve->firstDate == view.start &&
                            curve->span == double(view.start.secsTo(view.end))),
                 "every point moves with the start; the curve keeps the view's dates and span");
        QStringList marks{
            QString::number(moved / double(Hour), 'g', 10),
            QString::number(m_origin.addSecs(hours * Hour).secsTo(view.end) / double(Hour), 'g',
                            10)};
        for (QAction* action : scale->actions())
            if (action->isChecked())
                marks << action->text();
        QVERIFY2(v->checkedScale() ==
                         (marks.size() == 3 ? item(scale, marks[2])->data().toInt() : 0) &&
                     v->cursor().shape() == Qt::ArrowCursor,
                 "the mark checked last is recorded, unless an id 0 unrecorded it; no drag lasts");
        if (curves)
            held << seen.join(" / ") << "=>";
        for (const KVDCurve* c : curves ? view.curves : QList<KVDCurve*>())
            held << QString("f%1").arg(c->field) + (c == view.firstScale ? "<" : "") +
                        (c == view.secondScale ? ">" : "") +
                        (c->fixedScale ? QString("^%1").arg(c->displayMax) : "") +
                        (c->hasColor ? c->color.name() : "");
        QStringList events;
        for (const KVDEvent* event : view.events.items())
            events << QString::number(event->date.day()) + event->text +
                          (event->visible ? "" : "-");
        const QString label = view.config->definitions.value("cov2").value(1);
        if (curves && events.join(' ') != "9x 21y")
            held << events;
        if (curves && label != "Statements")
            held << label;
        held << asked;
        QCOMPARE((marks + held).join(' '), expected);
    }
};

QTEST_MAIN(TstViewer)
#include "tst_viewer.moc"
