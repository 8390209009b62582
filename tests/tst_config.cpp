#include "fakestudio.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "qaresgroup.h"
#include "recordingshell.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QFile>
#include <QtTest>

#include <memory>

namespace {

constexpr quint32 D0 = 1705000000u; // 2024-01-11 19:06:40 UTC
const auto series = &SampleRepository::series;

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

// A scan's questions, answered from a dialogue of "question=answer" in turn: "configure=yes",
// "labels:cov:4=Coverage|Statements|..." typed, "labels:cov:4=" declined. The log gets the
// questions actually asked, with the answers given.
KVDConfig::Questions script(const QStringList& dialogue, QStringList& log)
{
    const auto answer = [&dialogue, &log](const QString& question) {
        log << question + "=" + dialogue.value(int(log.size())).section('=', 1);
        return log.last().section('=', 1);
    };
    return {[answer] { return answer("configure") == "yes"; },
            [answer](const QString& measure, int count, KVDDefinition* labels) {
                const QStringList typed = answer(QString("labels:%1:%2").arg(measure).arg(count))
                                              .split('|', Qt::SkipEmptyParts);
                for (int i = 0; i < typed.size(); ++i)
                    labels->insert(i, typed[i]);
                return !typed.isEmpty();
            }};
}

// A view as the viewer holds it, owning its curves and events.
struct View
{
    QList<KVDCurve*> curves;
    QList<KVDEvent*> events;
    QDateTime start, end;
    int zoom = -1;
    KVDCurve *first = nullptr, *second = nullptr;
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

// A file read as built-in definitions or as the view file, over known definitions: what the
// configuration then holds and the messages ("read; cov4=Coverage; ...; warning|...").
struct Read
{
    bool builtIn;
    QString fixture; // under tests/data; empty: no file
    QString shows;
    QString known = "";
    bool host = true;
};

// A scan of alpha.alice.1, cov.alice.4, cov.bob.4 and Tests.alice.2 over known definitions.
struct Scan
{
    QString known;
    QString dialogue; // "question=answer, ..."
    QString definitions;
    QString perUser = ""; // the current user of a per-user view
    bool ask = true;      // false: nobody to ask
};

} // namespace

// The repository scan, the built-in definitions, the view file and the resource format
// both files are written in.
class TstConfig : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    RecordingShell m_shell{&m_host};

private slots:
    void init()
    {
        qputenv("TZ", "UTC");
        TestEnv::pin();
        m_shell.use();
        m_shell.messages.clear();
    }

    // Nesting far deeper than any file holds is read without recursion.
    void deepResourceTree()
    {
        const QByteArray open("<group name=\"g\">"), close("</group>");
        std::unique_ptr<QARes> root(QARes::parse(open.repeated(20000) + close.repeated(20000)));
        int levels = 0;
        for (QARes* node = root.get(); node; node = node->toResGroup()->firstChild())
            ++levels;
        QCOMPARE(levels, 20000);
    }

    void read_data()
    {
        QTest::addColumn<Read>("c");
        const QString noBuiltIn =
            "failed; ; critical|Unable to read Kavendi configuration file (built in).\n";
        // Fewer labels than fields leave the last fields without a name.
        QTest::newRow("built in: two measures") << Read{
            true, "builtin_two.cfg", "read; cov4=Coverage|Statements;tests2=Runs|Passed|Failed"};
        QTest::newRow("built in: later group hides earlier, case counts") << Read{
            true, "builtin_hidden.cfg", "read; COV4=Upper case;cov4=New coverage|Statements"};
        QTest::newRow("built in: empty group is a definition, strings end at another kind")
            << Read{true, "builtin_partial.cfg", "read; ghost2=;mixed3=Mixed"};
        QTest::newRow("built in: no definitions group") << Read{true, "builtin_flat.cfg", "read; "};
        QTest::newRow("built in: no host") << Read{true, "builtin_two.cfg", "failed; ", "", false};
        QTest::newRow("built in: missing file") << Read{true, "", noBuiltIn};
        // Whatever is not a whole, well-formed tree reads as nothing.
        for (const char* name :
             {"builtin_broken.cfg", "res/truncated.cfg", "res/crossed.cfg", "res/binary.cfg",
              "res/unknown-element.cfg", "res/no-name.cfg", "res/bad-int.cfg", "res/bad-bool.cfg",
              "res/bad-rgb.cfg", "res/stray-text.cfg", "res/empty.cfg", "res/entities.cfg",
              "res/two-roots.cfg"})
            QTest::newRow(name) << Read{true, name, noBuiltIn};

        // What a view file leaves in the view reads "events/curves/zoom start". A fault stops
        // reading; what was read stays, not moved back to the stored range.
        const QString fault = "; warning|Unable to read Kavendi configuration file.\n";
        QTest::newRow("view: missing file") << Read{
            false, "", "failed; ; 0/0/-1 ; critical|Unable to read Kavendi configuration file.\n"};
        QTest::newRow("view: zoom missing")
            << Read{false, "config_no_zoom.cfg",
                    "failed; cov4=Coverage; 0/0/-1 2024-01-01T00:00:00" + fault};
        QTest::newRow("view: event text of another kind")
            << Read{false, "config_event_bad_text.cfg", "failed; ; 1/0/-1 " + fault};
        QTest::newRow("view: curve without scale assignment") << Read{
            false, "config_curve_no_dispscale.cfg", "failed; ; 0/1/2 2024-01-11T19:06:40" + fault};
        QTest::newRow("view: known definitions win over the file's")
            << Read{false, "config_no_lastview.cfg",
                    "read; cov4=Coverage|Statements; 0/0/2 2024-01-01T00:00:00",
                    "cov4=Coverage|Statements"};
        // A date before 1970 cannot be stored: it reads as 1970-01-01.
        QTest::newRow("view: start before 1970")
            << Read{false, "config_before_1970.cfg", "read; ; 0/0/1 1970-01-01T00:00:00"};
        // A measure named like the ratio prefix is a measure; one without records is left out.
        QTest::newRow("view: prefix alone, measure without records")
            << Read{false, "config_odd_curves.cfg", "read; ; 0/1/2 2024-01-01T00:00:00"};
    }

    void read()
    {
        QFETCH(Read, c);
        SampleRepository root;
        QVERIFY(root.writePair("cov", "alice", 4, series(D0, {1, 2}, 4)) &&
                root.writePair("_EDITED_METRIC_", "alice", 1, series(D0, {1}, 1)) &&
                root.writePair("void", "alice", 1, {}));
        const QString target = root.root() + (c.builtIn ? "/KVD_built_in.cfg" : "/KVD.cfg");
        QVERIFY(c.fixture.isEmpty() || QFile::copy(TestEnv::dataFile(c.fixture), target));
        m_host.dataDirectory = root.root();
        RecordingShell shell(c.host ? &m_host : nullptr);
        shell.use();
        KVDConfig config;
        preset(config, c.known);
        View view;
        const bool ok = c.builtIn ? config.ReadConfigBuiltIn() : view.read(config, root.root());
        QStringList shows{ok ? "read" : "failed", dump(config.definitions)};
        if (!c.builtIn)
            shows << QString("%1/%2/%3 ")
                             .arg(view.events.size())
                             .arg(view.curves.size())
                             .arg(view.zoom) +
                         view.start.toString(Qt::ISODate);
        QCOMPARE((shows + shell.messages).join("; "), c.shows);
    }

    void scan_data()
    {
        QTest::addColumn<Scan>("c");
        const QString numbered = "Tests2=Tests|Field 1|Field 2;alpha1=alpha|Field 1;"
                                 "cov4=cov|Field 1|Field 2|Field 3|Field 4";
        QTest::newRow("nobody to ask: numbered fields") << Scan{"", "", numbered, "", false};
        QTest::newRow("question declined: numbered fields, no forms")
            << Scan{"", "configure=no", numbered};
        QTest::newRow("labels typed, one form declined")
            << Scan{"", "configure=yes, labels:alpha:1=A|a1, labels:cov:4=, labels:Tests:2=T|pass",
                    "Tests2=T|pass;alpha1=A|a1;cov4=cov|Field 1|Field 2|Field 3|Field 4"};
        const QString known = "Tests2=Tests;alpha1=Alpha|One;cov4=Coverage";
        QTest::newRow("known measures are never asked about") << Scan{known, "", known};
        QTest::newRow("question at the first unknown measure, once")
            << Scan{"alpha1=Alpha", "configure=yes, labels:cov:4=C|s|b|f|c, labels:Tests:2=",
                    "Tests2=Tests|Field 1|Field 2;alpha1=Alpha;cov4=C|s|b|f|c"};
        const QString eachTime = "configure=yes, labels:alpha:1=, configure=yes, labels:cov:4=, "
                                 "configure=yes, labels:Tests:2=";
        QTest::newRow("per-user view asks at each of the user's unknown measures")
            << Scan{"", eachTime, numbered, "alice"};
    }

    void scan()
    {
        QFETCH(Scan, c);
        SampleRepository root;
        const QStringList dialogue = c.dialogue.split(", ", Qt::SkipEmptyParts);
        QStringList log;
        m_shell.user = c.perUser;
        for (const char* name : {"cov.alice.4", "cov.bob.4", "Tests.alice.2", "alpha.alice.1"}) {
            const QStringList part = QString(name).split('.');
            QVERIFY(root.writePair(part[0], part[1], part[2].toInt(),
                                   series(D0, {1}, part[2].toInt())));
        }
        // A name filter that ignored case would list carol's upper-case file.
        for (const char* name : {"/huge.alice.10000.kvd", "/neg.alice.-3.kvd", "/cov.carol.4.KVD"})
            QVERIFY(QFile(root.root() + name).open(QIODevice::WriteOnly));
        // A quiet scan only looks for data files; a missing directory has none.
        KVDConfig quiet(script(dialogue, log));
        QVERIFY2(!quiet.ScanRepository(root.root() + "/none", false) &&
                     !quiet.ScanRepository(root.root() + "/none", true) &&
                     quiet.ScanRepository(root.root(), false) && quiet.users.isEmpty(),
                 "nothing collected");
        KVDConfig config(c.ask ? script(dialogue, log) : KVDConfig::Questions(),
                         !c.perUser.isEmpty());
        preset(config, c.known);
        QVERIFY2(config.ScanRepository(root.root(), true), "the repository has data files");
        QCOMPARE(log.join(", "), c.dialogue);
        QCOMPARE(dump(config.definitions), c.definitions);
        // Listed by name regardless of case; one definition for both users of cov4.
        QCOMPARE(config.users, (QMultiMap<QString, QStringList>{
                                   {"alice", {"alpha1", "cov4", "Tests2"}}, {"bob", {"cov4"}}}));
        QCOMPARE(m_shell.messages, QStringList({"critical|There is nothing to display.\n",
                                                "warning|These files were ignored: their number "
                                                "of values is not between 0 and 9999.\n"
                                                "huge.alice.10000.kvd\nneg.alice.-3.kvd\n"}));
    }

    // Read back, a view stores as the same file; what the file leaves out follows.

    void roundTrip()
    {
        SampleRepository root, again;
        const QString golden = TestEnv::dataFile("golden_view.cfg");
        QVERIFY(root.writePair("cov", "alice", 4, series(D0, {10, 20, 30}, 4)) &&
                root.writePair("rat", "alice", 4, series(D0, {1, 2, 3}, 4)) &&
                QFile::copy(golden, root.root() + "/KVD.cfg"));
        KVDConfig config;
        View view;
        QVERIFY2(view.read(config, root.root()), qPrintable(m_shell.messages.join(';')));
        // Every x counts from the stored start, 2024-01-01; the ratio is field 1 over field 3
        // of the file its definition's label names.
        const QDateTime start(QDate(2024, 1, 1), QTime(0, 0));
        QStringList curves;
        for (const KVDCurve* curve : std::as_const(view.curves)) {
            QStringList points;
            for (const QPoint& p : std::as_const(*curve->points()))
                points << QString("%1,%2").arg(p.x()).arg(p.y());
            curves << points.join(' ') + QString(" max=%1").arg(curve->displayMax);
            QVERIFY2(curve->hasColor && curve->firstDate == start && curve->span == 31 * 86400.0 &&
                         curve->endDate == start.addDays(31),
                     "every curve is anchored to the stored range, with its colour");
        }
        QCOMPARE(curves, QStringList({"932800,-10 1019200,-20 1105600,-30 max=30",
                                      "932800,-33 1019200,-33 1105600,-33 max=100",
                                      "932800,-20 1019200,-40 1105600,-60 max=12"}));
        QVERIFY2(view.first == view.curves[0] && view.second == view.curves[0] &&
                     view.curves[1]->isRatio && config.color == Qt::black,
                 "the curve of both scales comes back as both, the ratio as a ratio");
        QCOMPARE(view.events.value(1)->text, QString(" <one> & \"two\"\n\tthree\r\n&amp; "));
        // Colours never chosen are stored black, a fixed scale's top as a whole number.
        view.curves[2]->hasColor = false;
        view.curves[2]->color = Qt::red;
        view.curves[2]->displayMax = 12.9;
        view.events[1]->color = QColor();
        QVERIFY(view.store(config, again.root()));
        QCOMPARE(TestEnv::contents(again.root() + "/KVD.cfg"), TestEnv::contents(golden));

        // No events: no EVENTSLIST, and an empty LASTVIEW; a per-user view has its own file.
        m_shell.user = "bob";
        KVDConfig perUser({}, true);
        View empty{{}, {}, start, start.addDays(30), 0}, back;
        QVERIFY(empty.store(perUser, again.root()) && back.read(perUser, again.root()));
        QCOMPARE(TestEnv::contents(again.root() + "/KVDbob.cfg"),
                 TestEnv::contents(TestEnv::dataFile("golden_empty_view.cfg")));
    }

    // Dates are written as wall-clock seconds from 1970 and read as seconds since the epoch:
    // a stored view comes back moved by the zone's offset (later east of UTC, earlier west,
    // an event then on the day before), and a restart writes the moved value.
    void dates_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QDate>("day"); // the view starts at 00:30 that day, an event on it
        QTest::addColumn<int>("drift"); // seconds the read start lies after the stored one
        const QDate summer(2024, 7, 1), winter(2024, 1, 15);
        QTest::newRow("Paris, summer") << QByteArray("Europe/Paris") << summer << 7200;
        QTest::newRow("Paris, winter") << QByteArray("Europe/Paris") << winter << 3600;
        QTest::newRow("east, no daylight saving") << QByteArray("<+0530>-5:30") << summer << 19800;
        QTest::newRow("west: the day before") << QByteArray("<-07>7") << summer << -25200;
    }

    void dates()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QDate, day);
        QFETCH(int, drift);
        qputenv("TZ", zone);
        tzset();
        SampleRepository dir;
        const QDateTime start(day, QTime(0, 30));
        const qint64 wallClock = QDateTime(day, QTime(0, 30), Qt::UTC).toSecsSinceEpoch();
        KVDConfig config;
        View view{{}, {new KVDEvent(day, "e", true)}, start, start.addDays(30), 0}, back, again;
        QVERIFY(view.store(config, dir.root()) && back.read(config, dir.root()));
        QVERIFY2(TestEnv::contents(dir.root() + "/KVD.cfg").contains(QByteArray::number(wallClock)),
                 "the start as wall-clock seconds, whatever the zone's offset that day");
        QCOMPARE(back.start, start.addSecs(drift));
        QCOMPARE(back.events.value(0)->date, start.addSecs(drift).date());
        QVERIFY(back.store(config, dir.root()) && again.read(config, dir.root()));
        QCOMPARE(again.start, start.addSecs(2 * drift));
    }
};

QTEST_MAIN(TstConfig)
#include "tst_config.moc"
