#include "kvdcurve.h"
#include "kvdmeasurefile.h"
#include "modalanswerer.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "studiowindow.h"
#include "testenv.h"

#include <QFileDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest>

#include <memory>
#include <tuple>

namespace {

constexpr qint64 ThirtyDays = 2592000;

QStringList texts(QMenu* menu)
{
    QStringList list;
    for (QAction* action : menu ? menu->actions() : QList<QAction*>())
        list << action->text();
    return list;
}

QAction* item(QMenu* menu, const QString& text)
{
    return menu ? menu->actions().value(texts(menu).indexOf(text)) : nullptr;
}

QMenu* submenu(QMenu* menu, const QString& text)
{
    QAction* action = item(menu, text);
    return action ? action->menu() : nullptr;
}

// Chooses field `field` of the measure titled `title` as a user does: highlights the
// measure in "Monitoring", then activates the field in its submenu.
bool pick(QAKVD& viewer, const QString& title, int field)
{
    QMenu* monitoring = submenu(viewer.viewerMenu(), QStringLiteral("Monitoring"));
    QAction* entry = item(monitoring, title);
    if (!entry || !entry->menu() || field > entry->menu()->actions().size())
        return false;
    emit monitoring->hovered(entry);
    entry->menu()->actions().at(field - 1)->trigger();
    return true;
}

QDateTime firstRecord(const QString& data, int fields)
{
    KVDMeasureFile file;
    const quint32* record = file.open(data, fields, nullptr) ? file.next() : nullptr;
    return record ? QDateTime::fromSecsSinceEpoch(KVDMeasureFile::date(record)) : QDateTime();
}

} // namespace

// The viewer window in a real host: where it finds its repository, what it restores and
// saves, how choices in its menu become curves, and how its menu follows the active window.
class TstViewer : public QObject
{
    Q_OBJECT

private:
    StudioWindow m_studio{TestEnv::built(QStringLiteral("share/kavendi"))};
    SampleRepository m_repository;
    QTemporaryDir m_empty;

    std::unique_ptr<QAKVD> open(const QString& root)
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

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        QVERIFY2(m_repository.fill({}), qPrintable(m_repository.error()));
        QVERIFY(m_studio.loadPlugin(TestEnv::built(QStringLiteral("lib/libkavendi.so"))));
        m_studio.show();
    }

    void startUpWritesAndRestoresTheView()
    {
        SampleRepository repository;
        QVERIFY(repository.fill({}));
        const QString file = repository.root() + QLatin1String("/KVD.cfg");
        auto viewer = open(repository.root());
        QVERIFY2(QFile::exists(file), "start-up writes a fresh view file");
        QVERIFY(!viewer->view().datesSet);
        QVERIFY(pick(*viewer, QStringLiteral("Coverage"), 1));
        QVERIFY(pick(*viewer, QStringLiteral("Coverage"), 2));
        const QDateTime start = viewer->view().start;
        viewer.reset();
        viewer = open(repository.root());
        const KVDView& view = viewer->view();
        QVERIFY2(view.curves.size() == 2 && view.datesSet, "closing saved the curves");
        QCOMPARE(view.start, start);
        QVERIFY2(view.lastColor == QColor(Qt::blue), "new curves go on from the last saved colour");
        QVERIFY(QFile::remove(file));
        QVERIFY(viewer->canClose());
        QVERIFY2(QFile::exists(file), "closing saves the view, changed or not");
    }

    void repositoryRoot_data()
    {
        QTest::addColumn<QString>("project");
        QTest::addColumn<QString>("variable"); // null: unset
        QTest::addColumn<QString>("chosen");   // in the directory dialog; empty: cancelled
        QTest::addColumn<QString>("root");     // null: the window does not start
        const QString repo = m_repository.root();
        const QString empty = m_empty.path();
        QTest::newRow("open project, as it is") << repo + "/." << empty << QString() << repo + "/.";
        QTest::newRow("project scan fails") << empty << repo + "//" << QString() << repo;
        QTest::newRow("variable, cleaned") << QString() << repo + "/./" << QString() << repo;
        QTest::newRow("unset, dialog cancelled") << QString() << QString() << "" << QString();
        QTest::newRow("unset, directory chosen") << QString() << QString() << repo << repo;
    }

    void repositoryRoot()
    {
        QFETCH(QString, project);
        QFETCH(QString, variable);
        QFETCH(QString, chosen);
        QFETCH(QString, root);
        m_studio.host().project().setDirectory(project);
        if (variable.isNull())
            qunsetenv("ZANTH_KVD_ROOT");
        else
            qputenv("ZANTH_KVD_ROOT", QFile::encodeName(variable));
        ModalAnswerer answerer;
        if (!chosen.isNull()) {
            answerer.push(ModalAnswerer::click(QStringLiteral("OK")));
            answerer.push([chosen](QWidget* modal) {
                if (auto* dialog = qobject_cast<QFileDialog*>(modal)) {
                    dialog->setDirectory(chosen);
                    chosen.isEmpty() ? dialog->reject() : static_cast<QDialog*>(dialog)->accept();
                }
            });
        }
        auto viewer = std::make_unique<QAKVD>(nullptr, "viewer", 0, true);
        m_studio.host().project().setDirectory(QString());
        const QStringList seen = answerer.seen();
        QVERIFY2(!answerer.unexpected() &&
                     (chosen.isNull()
                          ? seen.isEmpty()
                          : seen.value(0) == "warning|Studio|ZANTH_KVD_ROOT not set.\n" &&
                                seen.value(1).startsWith("QFileDialog|")),
                 qPrintable(seen.join(';')));
        QCOMPARE(QAKVD::Launched(), !root.isNull());
        QVERIFY2(viewer->isVisible() == !root.isNull(), "a viewer that cannot start closes");
        if (!root.isNull())
            QCOMPARE(viewer->view().root, root);
    }

    void fieldChoices_data()
    {
        QTest::addColumn<QString>("picks"); // user/measure title/field, comma separated
        QTest::addColumn<QString>("colours");
        QTest::newRow("same field twice") << "alice/Coverage/1,alice/Coverage/1"
                                          << "#00ff00";
        QTest::newRow("same field, other user") << "alice/Coverage/1,bob/Coverage/1"
                                                << "#00ff00";
        QTest::newRow("same number, other measure") << "alice/Coverage/2,alice/Test runs/2"
                                                    << "#00ff00,#0000ff";
        QTest::newRow("six curves cycle the colours")
            << "alice/Coverage/1,alice/Coverage/2,alice/Coverage/3,alice/Coverage/4,"
               "alice/Test runs/1,alice/Test runs/2"
            << "#00ff00,#0000ff,#00ffff,#ff00ff,#ffff00,#ff0000";
    }

    void fieldChoices()
    {
        QFETCH(QString, picks);
        QFETCH(QString, colours);
        SampleRepository repository;
        QVERIFY(repository.fill({}));
        auto viewer = open(repository.root());
        QAction* exportItem = item(viewer->viewerMenu(), QStringLiteral("Export"));
        QVERIFY2(exportItem && !exportItem->isEnabled(), "nothing to export without curves");
        auto* users = qobject_cast<QTreeWidget*>(viewer->contentOutlineWidget());
        for (const QString& choice : picks.split(QLatin1Char(','))) {
            const QStringList part = choice.split(QLatin1Char('/'));
            users->setCurrentItem(users->findItems(part[0], Qt::MatchExactly).value(0));
            QCOMPARE(QAKVD::GetCurrentUser(), part[0]);
            QVERIFY2(pick(*viewer, part[1], part[2].toInt()), qPrintable(choice));
        }
        QStringList shown;
        for (const KVDCurve* curve : viewer->view().curves)
            shown << curve->color.name();
        QCOMPARE(shown.join(QLatin1Char(',')), colours);
        QVERIFY2(viewer->view().firstScale == viewer->view().curves.last(),
                 "the newest curve takes the left scale");
        QVERIFY2(exportItem->isEnabled(), "a curve with points enables Export");
        viewer->clean();
        QVERIFY2(!exportItem->isEnabled(), "Clear disables Export again");
    }

    void viewDates_data()
    {
        QTest::addColumn<bool>("floating");
        QTest::newRow("calendar follows the curves") << false;
        QTest::newRow("floating schedule keeps the dates") << true;
    }

    void viewDates()
    {
        QFETCH(bool, floating);
        SampleRepository repository;
        QVERIFY(repository.fill({}));
        auto viewer = open(repository.root());
        const KVDView& view = viewer->view();
        if (floating)
            viewer->FloatSc();
        QList<QDateTime> firsts;
        for (const auto& [title, measure, fields] :
             {std::tuple("Test runs", "tests", 2), {"Coverage", "cov", 4}}) {
            const QDateTime before = view.start;
            QVERIFY(pick(*viewer, QLatin1String(title), 1));
            firsts << firstRecord(repository.path(QLatin1String(measure), "alice", fields), fields);
            if (!floating)
                QCOMPARE(view.start, firsts.last());
            else if (before.isValid())
                QCOMPARE(view.start, before);
            else
                QVERIFY2(qAbs(view.start.secsTo(QDateTime::currentDateTime()) - ThirtyDays) < 60,
                         "the first curve sets the last 30 days");
            QCOMPARE(view.start.secsTo(view.end), ThirtyDays);
        }
        for (int k = 0; k < view.curves.size(); ++k)
            QVERIFY2(firsts[k].isValid() &&
                         view.curves[k]->points->first().x() == view.start.secsTo(firsts[k]),
                     "every point lies at its seconds from the view start");
    }

    void scaleMark_data()
    {
        QTest::addColumn<qint64>("span"); // 0: no dates, -1: cleared
        QTest::addColumn<QString>("checked");
        QTest::newRow("365 days") << qint64(31536000) << "Year";
        QTest::newRow("366 days") << qint64(31622400) << "Customize";
        QTest::newRow("30 days") << ThirtyDays << "Month";
        QTest::newRow("28 hours") << qint64(100800) << "Hour";
        QTest::newRow("no dates") << qint64(0) << "Month";
        QTest::newRow("cleared empty chart") << qint64(-1) << "Month";
    }

    void scaleMark()
    {
        QFETCH(qint64, span);
        QFETCH(QString, checked);
        auto viewer = open(m_repository.root());
        KVDView& view = viewer->view();
        view.start = span ? QDateTime(QDate(2024, 2, 1), QTime(0, 0)) : QDateTime();
        view.end = span ? view.start.addSecs(span) : QDateTime();
        if (span < 0)
            viewer->clean();
        QVERIFY2(span >= 0 ||
                     (view.datesSet && qAbs(view.end.secsTo(QDateTime::currentDateTime())) < 60),
                 "a cleared view shows the last 30 days");
        viewer->desactivated();
        QVERIFY(viewer->CreateToolMenu());
        QMenu* scale = submenu(viewer->viewerMenu(), QStringLiteral("Scale"));
        QStringList marked;
        for (QAction* action : scale->actions())
            if (action->isChecked())
                marked << action->text();
        QCOMPARE(marked, QStringList{checked});
        QCOMPARE(viewer->checkedScale(), item(scale, checked)->data().toInt());
    }

    void menuIsBuiltOnce()
    {
        auto viewer = open(m_repository.root());
        QMenu* menu = viewer->viewerMenu();
        QCOMPARE(texts(menu), (QStringList{"Monitoring", "Custom Curves", "Scale", "Events",
                                           "Delete Record", "", "Export"}));
        QMenu* monitoring = submenu(menu, QStringLiteral("Monitoring"));
        QCOMPARE(texts(monitoring), (QStringList{"Coverage", "Detailed coverage", "Test runs"}));
        QVERIFY2(!item(monitoring, QStringLiteral("Coverage"))->isCheckable(),
                 "measures show no box");
        const int submenus = int(menu->findChildren<QMenu*>().size());
        viewer->desactivated();
        viewer->activated();
        QVERIFY2(menu->findChildren<QMenu*>().size() == submenus,
                 "a rebuilt menu drops its old submenus");
        const int id = viewer->hostMenuId();
        const QList<QAction*> before = menu->actions();
        QVERIFY2(!viewer->CreateToolMenu(), "a menu already in the host stays");
        QCOMPARE(viewer->hostMenuId(), id);
        QCOMPARE(menu->actions(), before);
        QVERIFY(soleHostMenu(menu));
        viewer.reset();
        QVERIFY2(!m_studio.host().menuCount(), "a viewer takes its menu along when it goes");
    }

    void menuFollowsTheActiveWindow()
    {
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_repository.root()));
        QPointer<QAKVD> a = qobject_cast<QAKVD*>(m_studio.openViewer());
        QPointer<QAKVD> b = qobject_cast<QAKVD*>(m_studio.openViewer());
        QVERIFY(a && b);
        QCOMPARE(m_studio.activeViewer(), b.data());
        QVERIFY(soleHostMenu(b->viewerMenu()));
        QCOMPARE(a->hostMenuId(), -1);
        auto* outline = qobject_cast<QTreeWidget*>(m_studio.outlinePane());
        QVERIFY2(outline && outline == b->contentOutlineWidget() &&
                     outline->topLevelItemCount() == 3,
                 "the outline pane shows the active viewer's users");

        auto* sub = qobject_cast<QMdiSubWindow*>(a->parentWidget());
        QVERIFY(sub);
        sub->mdiArea()->setActiveSubWindow(sub);
        QCOMPARE(m_studio.activeViewer(), a.data());
        QVERIFY(soleHostMenu(a->viewerMenu()));
        QCOMPARE(b->hostMenuId(), -1);
        QVERIFY2(QAKVD::toolBar()->isEnabled(), "the tool bar serves the active viewer");
        QVERIFY2(pick(*a, QStringLiteral("Coverage"), 1) && a->view().curves.size() == 1,
                 "the moved menu adds curves to its own viewer");
        QVERIFY(b->view().curves.isEmpty());

        // The shared tool bar holds the buttons of the newest viewer, and only those.
        QToolBar* bar = QAKVD::toolBar();
        QStringList tips;
        for (QAction* action : bar->actions())
            if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action)))
                tips << button->toolTip() + (button->isCheckable() ? "*" : "");
        QCOMPARE(tips, (QStringList{"Clear", "Hide Events", "Floating Schedule*"}));
        qobject_cast<QToolButton*>(bar->widgetForAction(bar->actions().at(2)))->click();
        QVERIFY2(b->view().floating && !a->view().floating, "the newest viewer owns the buttons");
        for (QWidget* widget : QApplication::topLevelWidgets())
            QVERIFY2(!qobject_cast<QToolButton*>(widget), "replaced buttons do not linger");
        a->desactivated();
        QVERIFY(!bar->isEnabled());

        a->parentWidget()->close();
        b->parentWidget()->close();
        QTRY_VERIFY(!a && !b);
        QVERIFY(!m_studio.host().menuCount());
    }
};

QTEST_MAIN(TstViewer)
#include "tst_viewer.moc"
