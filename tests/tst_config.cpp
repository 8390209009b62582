#include "fakestudio.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "kvdwindowshell.h"
#include "measurefixture.h"
#include "modalanswerer.h"
#include "testenv.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using MeasureFixture::Record;

namespace {

// Definitions as text, latest definition of each key: "cov4=Coverage|Statements;tests2=...".
QString dump(const QMultiMap<QString, KVDDefinition>& definitions)
{
    QStringList out;
    for (const QString& key : definitions.uniqueKeys())
        out << key + "=" + definitions.value(key).values().join('|');
    return out.join(';');
}

// "key=a|b;key2=c" into definitions, in that order.
void preset(KVDConfig& config, const QString& text)
{
    for (const QString& entry : text.split(';', Qt::SkipEmptyParts)) {
        KVDDefinition definition;
        const QStringList labels = entry.section('=', 1).split('|');
        for (int i = 0; i < labels.size(); ++i)
            definition.insert(i, labels.at(i));
        config.definitions.insert(entry.section('=', 0, 0), definition);
    }
}

QString text(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                          : QString("(missing %1)").arg(path);
}

// Answers from a short script: "click:Text", or "fill:a|b|c" which types the labels
// form's rows and presses OK.
void script(ModalAnswerer& answers, const QStringList& steps)
{
    for (const QString& step : steps) {
        const QString arg = step.section(':', 1);
        if (step.startsWith("click:")) {
            answers.push(ModalAnswerer::click(arg));
            continue;
        }
        ModalAnswerer::Answer answer = ModalAnswerer::click("OK");
        const QStringList labels = arg.split('|');
        for (int i = labels.size() - 1; i >= 0; --i)
            answer = ModalAnswerer::type(QString("label%1").arg(i), labels.at(i), answer);
        answers.push(answer);
    }
}

struct View
{
    QList<KVDCurve*> curves;
    QList<KVDEvent*> events;
    QDateTime start;
    QDateTime end;
    int zoom = -1;
    KVDCurve* first = nullptr;
    KVDCurve* second = nullptr;
    ~View()
    {
        qDeleteAll(curves);
        qDeleteAll(events);
    }
    bool read(KVDConfig& config, const QString& dir)
    {
        return config.ReadConfig(dir, &curves, &start, &end, &zoom, &first, &second, &events);
    }
    bool store(KVDConfig& config, const QString& dir)
    {
        return config.StoreConfig(dir, &curves, start, end, zoom, first, second, &events);
    }
};

constexpr quint32 D0 = 1705000000u; // 2024-01-11 19:06:40 UTC
constexpr quint32 D1 = 1705400000u;

} // namespace

// The repository scan, the built-in definitions and the view file.
class TstConfig : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;

private slots:
    void initTestCase() { TestEnv::pin(); }

    void cleanup()
    {
        FakeStudio::uninstall();
        qputenv("TZ", "UTC");
        tzset();
    }

    void builtIn_data()
    {
        QTest::addColumn<bool>("withHost");
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("definitions");
        QTest::addColumn<QString>("message");
        QTest::newRow("two measures") << true << "builtin_two.cfg" << true
                                      << "cov4=Coverage|Statements|Branches|Functions|Conditions;"
                                         "tests2=Test runs|Passed|Failed"
                                      << "";
        QTest::newRow("later group hides earlier, case counts")
            << true << "builtin_hidden.cfg" << true
            << "COV4=Upper case;cov4=New coverage|Statements"
            << "";
        QTest::newRow("empty group is a definition, strings end at another kind")
            << true << "builtin_partial.cfg" << true << "ghost2=;mixed3=Mixed"
            << "";
        QTest::newRow("no definitions group") << true << "builtin_flat.cfg" << true << ""
                                              << "";
        const QString unreadable =
            "critical|Test Studio|Unable to read Kavendi configuration file (built in).\n";
        QTest::newRow("not well formed")
            << true << "builtin_broken.cfg" << false << "" << unreadable;
        QTest::newRow("missing file") << true << "" << false << "" << unreadable;
        QTest::newRow("no host, no built-in definitions")
            << false << "builtin_two.cfg" << false << ""
            << "";
    }

    void builtIn()
    {
        QFETCH(bool, withHost);
        QFETCH(QString, fixture);
        QFETCH(bool, ok);
        QFETCH(QString, definitions);
        QFETCH(QString, message);
        QTemporaryDir dir;
        if (!fixture.isEmpty())
            QVERIFY(QFile::copy(TestEnv::dataFile(fixture), dir.path() + "/KVD_built_in.cfg"));
        m_host.dataDirectory = dir.path();
        if (withHost)
            m_host.install();
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("OK"));
        KVDConfig config(KVDWindowShell::questions());
        QCOMPARE(config.ReadConfigBuiltIn(), ok);
        QCOMPARE(dump(config.definitions), definitions);
        QCOMPARE(answers.seen(), message.isEmpty() ? QStringList() : QStringList(message));
    }

    void scan_data()
    {
        QTest::addColumn<QString>("known");
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QString>("definitions");
        QTest::newRow("ignored question gives numbered fields")
            << "" << QStringList{"click:Ignore"}
            << "Tests2=Tests|Field 1|Field 2;alpha1=alpha|Field 1;cov4=cov|Field 1|Field 2|Field "
               "3|Field 4";
        QTest::newRow("labels typed, one form ignored")
            << "" << QStringList{"click:OK", "fill:A|a1", "click:Ignore", "fill:T|pass|fail"}
            << "Tests2=T|pass|fail;alpha1=A|a1;cov4=cov|Field 1|Field 2|Field 3|Field 4";
        QTest::newRow("known measures are never asked about")
            << "alpha1=Alpha|One;cov4=Coverage;Tests2=Tests" << QStringList{}
            << "Tests2=Tests;alpha1=Alpha|One;cov4=Coverage";
        QTest::newRow("question only at the first unknown measure")
            << "alpha1=Alpha|One" << QStringList{"click:Ignore"}
            << "Tests2=Tests|Field 1|Field 2;alpha1=Alpha|One;cov4=cov|Field 1|Field 2|Field "
               "3|Field 4";
    }

    void scan()
    {
        QFETCH(QString, known);
        QFETCH(QStringList, steps);
        QFETCH(QString, definitions);
        QTemporaryDir root;
        const QList<Record> one{Record{D0, 1, {1, 2, 3, 4}}};
        for (const auto& [measure, user, count] : {std::tuple{"cov", "alice", 4},
                                                   {"cov", "bob", 4},
                                                   {"Tests", "alice", 2},
                                                   {"alpha", "alice", 1}})
            QVERIFY(MeasureFixture::write(root.path(), measure, user, count, one));
        KVDConfig config(KVDWindowShell::questions());
        preset(config, known);
        ModalAnswerer answers;
        script(answers, steps);

        QVERIFY2(config.ScanRepository(root.path(), true), "the repository has data files");
        QCOMPARE(dump(config.definitions), definitions);
        QCOMPARE(answers.seen().size(), steps.size());
        QCOMPARE(answers.unexpected(), 0);
        // Listed by name regardless of case; one definition for both users of cov4.
        QCOMPARE(config.users.value("alice"), QStringList({"alpha1", "cov4", "Tests2"}));
        QCOMPARE(config.users.value("bob"), QStringList({"cov4"}));
        QCOMPARE(config.users.size(), 2);
        QCOMPARE(config.definitions.size(), 3);
    }

    void questionOncePerConfiguration()
    {
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "cov", "alice", 1, {Record{D0, 1, {1}}}));
        KVDConfig config(KVDWindowShell::questions());
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("OK"));
        answers.push(ModalAnswerer::click("Ignore"));
        QVERIFY(config.ScanRepository(root.path(), true));
        QVERIFY(MeasureFixture::write(root.path(), "late", "bob", 2, {Record{D0, 1, {1, 2}}}));
        QVERIFY(config.ScanRepository(root.path(), true));
        // The first answer holds: the new measure gets the labels form, not the question;
        // the form left unanswered is rejected, so the measure gets numbered fields.
        QCOMPARE(answers.seen().size(), 3);
        QVERIFY2(answers.seen().at(0).startsWith("information|") &&
                     answers.seen().at(1).startsWith("KVDConfigDlg|") &&
                     answers.seen().at(2).startsWith("KVDConfigDlg|"),
                 qPrintable(answers.seen().join(';')));
        QCOMPARE(answers.unexpected(), 1);
        QCOMPARE(config.definitions.value("late2").value(2), QString("Field 2"));
    }

    void nothingToDisplay_data()
    {
        QTest::addColumn<bool>("interactive");
        QTest::addColumn<bool>("withHost");
        QTest::addColumn<bool>("missingDirectory");
        QTest::addColumn<QString>("message");
        QTest::newRow("quiet") << false << false << false << "";
        QTest::newRow("interactive")
            << true << false << false << "critical|Kavendi|There is nothing to display.\n";
        QTest::newRow("interactive with host")
            << true << true << false << "critical|Test Studio|There is nothing to display.\n";
        QTest::newRow("missing directory")
            << true << false << true << "critical|Kavendi|There is nothing to display.\n";
    }

    void nothingToDisplay()
    {
        QFETCH(bool, interactive);
        QFETCH(bool, withHost);
        QFETCH(bool, missingDirectory);
        QFETCH(QString, message);
        QTemporaryDir root;
        QFile other(root.path() + "/notes.txt");
        QVERIFY(other.open(QIODevice::WriteOnly));
        if (withHost)
            m_host.install();
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("OK"));
        KVDConfig config(KVDWindowShell::questions());
        QVERIFY2(!config.ScanRepository(missingDirectory ? root.path() + "/gone" : root.path(),
                                        interactive),
                 "no data file, nothing to display");
        QCOMPARE(answers.seen(), message.isEmpty() ? QStringList() : QStringList(message));
        QVERIFY2(config.users.isEmpty(), "nothing collected");
    }

    void absurdCountsIgnored()
    {
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "cov", "alice", 1, {Record{D0, 1, {1}}}));
        for (const char* name : {"/huge.alice.10000.kvd", "/neg.alice.-3.kvd"}) {
            QFile file(root.path() + name);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        KVDConfig config(KVDWindowShell::questions());
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("Ignore"));
        answers.push(ModalAnswerer::click("OK"));
        QVERIFY(config.ScanRepository(root.path(), true));
        QCOMPARE(config.users.value("alice"), QStringList({"cov1"}));
        QCOMPARE(config.definitions.uniqueKeys(), QStringList({"cov1"}));
        QCOMPARE(answers.seen().size(), 2);
        const QString warning = answers.seen().last();
        QVERIFY2(warning.startsWith("warning|") && warning.contains("huge.alice.10000.kvd") &&
                     warning.contains("neg.alice.-3.kvd"),
                 qPrintable(warning));
    }

    void roundTrip()
    {
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "cov", "alice", 4,
                                      MeasureFixture::series(D0, {10, 20, 30}, 4)));
        QVERIFY(MeasureFixture::write(root.path(), "rat", "alice", 4,
                                      MeasureFixture::series(D1, {1, 2, 3}, 4)));
        KVDConfig config(KVDWindowShell::questions());
        preset(config, "cov4=Coverage|Statements|Branches|Functions|Conditions;rat4=rat|a|b|c|d");

        View view;
        view.start = QDateTime(QDate(2024, 1, 1), QTime(0, 0));
        view.end = QDateTime(QDate(2024, 2, 1), QTime(0, 0));
        view.zoom = 3;
        QDateTime s = view.start, e = view.end;
        auto* plain = new KVDCurve(root.path(), "cov4", 1, 4, "alice", s, e);
        plain->color = QColor(0, 128, 0);
        plain->hasColor = true;
        auto* ratio = new KVDCurve(root.path(), "rat", 1, 4, "alice", s, e);
        ratio->DIV(KVDCurve(root.path(), "rat", 3, 4, "alice", s, e));
        ratio->fixedScale = true;
        ratio->color = Qt::blue;
        ratio->hasColor = true;
        auto* fixed = new KVDCurve(root.path(), "cov4", 2, 4, "alice", s, e);
        fixed->color = Qt::red; // not chosen: stored black
        fixed->fixedScale = true;
        fixed->displayMax = 12.9;
        view.curves << plain << ratio << fixed;
        view.first = view.second = plain;
        auto* shown = new KVDEvent(QDate(2024, 1, 15), "Release 2", true);
        shown->color = QColor(255, 0, 0);
        shown->hasColor = true;
        view.events << shown
                    << new KVDEvent(QDate(2024, 1, 20), "Hidden <one> & \"quoted\"", false);

        QVERIFY(view.store(config, root.path()));
        QCOMPARE(text(root.path() + "/KVD.cfg"), text(TestEnv::dataFile("golden_view.cfg")));

        KVDConfig fresh;
        View back;
        ModalAnswerer answers;
        QVERIFY2(back.read(fresh, root.path()), qPrintable(answers.seen().join(';')));
        QCOMPARE(answers.seen().size(), 0);
        // Read back, the view stores as the same file; what the file leaves out follows.
        QTemporaryDir again;
        QVERIFY(back.store(fresh, again.path()));
        QCOMPARE(text(again.path() + "/KVD.cfg"), text(TestEnv::dataFile("golden_view.cfg")));
        // Every x counts from the stored start (2024-01-01); field 1 over field 3 in percent;
        // what was stored black comes back as a chosen colour.
        QStringList curves;
        for (const KVDCurve* curve : std::as_const(back.curves)) {
            QStringList points;
            for (const QPoint& p : std::as_const(*curve->points))
                points << QString("%1,%2").arg(p.x()).arg(p.y());
            curves << points.join(' ') + QString(" max=%1").arg(curve->displayMax);
            QVERIFY2(curve->hasColor && curve->firstDate == view.start &&
                         curve->endDate == view.end &&
                         curve->span == double(view.start.secsTo(view.end)),
                     "every curve is anchored to the stored range, with its colour");
        }
        QCOMPARE(curves, QStringList({"932800,-10 1019200,-20 1105600,-30 max=30",
                                      "1332800,-33 1419200,-33 1505600,-33 max=100",
                                      "932800,-20 1019200,-40 1105600,-60 max=12"}));
        QVERIFY2(back.events.size() == 2 && back.events[1]->hasColor,
                 "an event stored black comes back with a chosen colour");
        QCOMPARE(fresh.color, QColor(Qt::black));
    }

    void scaleAssignment_data()
    {
        QTest::addColumn<bool>("first");
        QTest::addColumn<bool>("second");
        QTest::addColumn<int>("stored");
        QTest::newRow("none") << false << false << 0;
        QTest::newRow("first") << true << false << 1;
        QTest::newRow("second") << false << true << 2;
        QTest::newRow("both") << true << true << 3;
    }

    void scaleAssignment()
    {
        QFETCH(bool, first);
        QFETCH(bool, second);
        QFETCH(int, stored);
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "cov", "alice", 1,
                                      MeasureFixture::series(D0, {5, 6}, 1)));
        KVDConfig config(KVDWindowShell::questions());
        View view;
        view.start = QDateTime::fromSecsSinceEpoch(D0);
        view.end = view.start.addDays(10);
        QDateTime s = view.start, e = view.end;
        view.curves << new KVDCurve(root.path(), "cov", 1, 1, "alice", s, e);
        view.first = first ? view.curves[0] : nullptr;
        view.second = second ? view.curves[0] : nullptr;
        QVERIFY(view.store(config, root.path()));
        QVERIFY2(text(root.path() + "/KVD.cfg")
                     .contains(QString("<int name=\"DISPSCALE\">%1</int>").arg(stored)),
                 "the scale assignment is stored as a number");

        View back;
        QVERIFY(back.read(config, root.path()));
        QCOMPARE(back.first, first ? back.curves.value(0) : nullptr);
        QCOMPARE(back.second, second ? back.curves.value(0) : nullptr);
    }

    void emptyView()
    {
        QTemporaryDir root;
        KVDConfig config(KVDWindowShell::questions());
        View view;
        view.start = QDateTime(QDate(2024, 1, 1), QTime(0, 0));
        view.end = view.start.addDays(30);
        view.zoom = 0;
        QVERIFY(view.store(config, root.path()));
        // No events: no EVENTSLIST, and an empty LASTVIEW.
        QCOMPARE(text(root.path() + "/KVD.cfg"), text(TestEnv::dataFile("golden_empty_view.cfg")));
        View back;
        QVERIFY(back.read(config, root.path()));
        QVERIFY2(back.events.isEmpty() && back.curves.isEmpty(), "nothing to read back");
        QCOMPARE(back.start, view.start);
    }

    void timeZone_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDate>("day");         // the view starts there at 10:00 in the zone
        QTest::addColumn<qint64>("shift");      // seconds the stored date-times move
        QTest::addColumn<qint64>("startShift"); // more for the start alone
        QTest::addColumn<int>("eventDayShift");
        const QDate march(2024, 3, 1);
        QTest::newRow("UTC") << QByteArray("UTC") << march << 0ll << 0ll << 0;
        QTest::newRow("five hours east") << QByteArray("<+05>-5") << march << 18000ll << 0ll << 0;
        QTest::newRow("half-hour zone east")
            << QByteArray("<+0530>-5:30") << march << 19800ll << 0ll << 0;
        QTest::newRow("seven hours west") << QByteArray("<-07>7") << march << -25200ll << 0ll << -1;
        // Dates before 1970 cannot be stored: the start comes back as 1970-01-01 00:00.
        QTest::newRow("start before 1970")
            << QByteArray("UTC") << QDate(1969, 12, 31) << 0ll << 50400ll << 0;
    }

    void timeZone()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QDate, day);
        QFETCH(qint64, shift);
        QFETCH(qint64, startShift);
        QFETCH(int, eventDayShift);
        qputenv("TZ", zone);
        tzset();
        QTemporaryDir root;
        KVDConfig config(KVDWindowShell::questions());
        View view;
        view.start = QDateTime(day, QTime(10, 0));
        view.end = view.start.addDays(3);
        view.zoom = 1;
        view.events << new KVDEvent(day.addDays(1), "Release", true);
        QVERIFY(view.store(config, root.path()));
        View back;
        QVERIFY(back.read(config, root.path()));
        QCOMPARE(view.start.secsTo(back.start), shift + startShift);
        QCOMPARE(view.end.secsTo(back.end), shift);
        QCOMPARE(back.events.value(0)->date, day.addDays(1 + eventDayShift));
    }

    void readFixture_data()
    {
        QTest::addColumn<QString>("fixture");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("definitions");
        QTest::addColumn<int>("events");
        QTest::addColumn<int>("curves");
        QTest::addColumn<int>("zoom");
        QTest::addColumn<QString>("start"); // null, saved (the file's) or moved (a curve's)
        const QString critical = "critical|Kavendi|Unable to read Kavendi configuration file.\n";
        const QString warning = "warning|Kavendi|Unable to read Kavendi configuration file.\n";
        QTest::newRow("missing file") << "" << false << critical << 0 << 0 << 0 << -1 << "null";
        QTest::newRow("not a resource file")
            << "config_not_resource.cfg" << false << critical << 0 << 0 << 0 << -1 << "null";
        QTest::newRow("zoom missing")
            << "config_no_zoom.cfg" << false << warning << 1 << 0 << 0 << -1 << "saved";
        QTest::newRow("event text of another kind")
            << "config_event_bad_text.cfg" << false << warning << 0 << 1 << 0 << -1 << "null";
        QTest::newRow("curve without scale assignment")
            << "config_curve_no_dispscale.cfg" << false << warning << 0 << 0 << 1 << 2 << "moved";
        QTest::newRow("SCALEY of another kind")
            << "config_scaley_string.cfg" << false << warning << 0 << 0 << 0 << 2 << "saved";
        QTest::newRow("no LASTVIEW")
            << "config_no_lastview.cfg" << true << "" << 1 << 0 << 0 << 2 << "saved";
        QTest::newRow("measure named like the ratio prefix")
            << "config_edited_metric_name.cfg" << true << "" << 0 << 0 << 1 << 2 << "saved";
    }

    void readFixture()
    {
        QFETCH(QString, fixture);
        QFETCH(bool, ok);
        QFETCH(QString, message);
        QFETCH(int, definitions);
        QFETCH(int, events);
        QFETCH(int, curves);
        QFETCH(int, zoom);
        QFETCH(QString, start);
        QTemporaryDir root;
        QVERIFY(MeasureFixture::write(root.path(), "cov", "alice", 4,
                                      MeasureFixture::series(D0, {1, 2}, 4)));
        QVERIFY(MeasureFixture::write(root.path(), "_EDITED_METRIC_", "alice", 1,
                                      MeasureFixture::series(D0, {1, 2}, 1)));
        if (!fixture.isEmpty())
            QVERIFY(QFile::copy(TestEnv::dataFile(fixture), root.path() + "/KVD.cfg"));
        KVDConfig config(KVDWindowShell::questions());
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("OK"));
        View view;
        QCOMPARE(view.read(config, root.path()), ok);
        QCOMPARE(answers.seen(), message.isEmpty() ? QStringList() : QStringList(message));
        QCOMPARE(int(config.definitions.size()), definitions);
        QCOMPARE(view.events.size(), events);
        QCOMPARE(view.curves.size(), curves);
        QCOMPARE(view.zoom, zoom);
        const QDateTime saved = QDateTime::fromSecsSinceEpoch(1704067200);
        const QString state = view.start.isNull()   ? "null"
                              : view.start == saved ? "saved"
                                                    : "moved";
        QCOMPARE(state, start);
        for (const KVDCurve* curve : std::as_const(view.curves))
            QVERIFY2(!curve->isRatio, "no ratio curve in these files");
    }

    void knownDefinitionsWin()
    {
        QTemporaryDir root;
        QVERIFY(QFile::copy(TestEnv::dataFile("config_no_lastview.cfg"), root.path() + "/KVD.cfg"));
        KVDConfig config(KVDWindowShell::questions());
        preset(config, "cov4=Coverage|Statements");
        View view;
        QVERIFY(view.read(config, root.path()));
        QCOMPARE(dump(config.definitions), QString("cov4=Coverage|Statements"));
        QCOMPARE(config.definitions.size(), 1);
    }

    void storeCustom()
    {
        KVDConfig config(KVDWindowShell::questions());
        preset(config, "cov4=Coverage|Statements|Branches");
        config.StoreCustom("cov4");
        QCOMPARE(
            dump(config.definitions),
            QString("Customcov4=Customcov4|Statements|Branches;cov4=Coverage|Statements|Branches"));
    }
};

QTEST_MAIN(TstConfig)
#include "tst_config.moc"
