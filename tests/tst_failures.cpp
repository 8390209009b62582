#include "fakestudio.h"
#include "kvdconfig.h"
#include "kvdcsvexport.h"
#include "kvdcurve.h"
#include "kvdcustomcurves.h"
#include "kvdchecklist.h"
#include "kvdevent.h"
#include "kvdfaults.h"
#include "kvdrecorddeletion.h"
#include "kvdstore.h"
#include "kvdview.h"
#include "modalanswerer.h"
#include "recordingshell.h"
#include "samplerepository.h"
#include "stderrcapture.h"
#include "testenv.h"

#include <QtTest>
#include <QtWidgets>

#include <cerrno>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// Every call that an operation makes to the C library's file functions is made to fail in
// turn; each failure must end as the table below says: the operation's result, the
// messages shown, and the state of each file it touches. The table is also what
// docs/failures.md shows; the test fails when that file is not the one it generates.
namespace {

// How one run ended: "result | messages | state of each file".
using Outcome = QString;

struct Operation
{
    const char* name;
    QStringList files; // watched, in the order of the states
    std::function<void(SampleRepository&)> setup;
    std::function<QString(SampleRepository&)> run; // its result
    bool onward = false;                           // every call after the failing one fails too
};

const quint32 Date2001 = 978307200; // 2001-01-01T00:00:00Z
const quint32 Day = 86400;

const QList<KVDSampleWriter::Record> oneRecord{{Date2001, 7, {3, 4}}};

// Kind of a file for the call's description: what a reader of the table recognises.
QString kind(const QString& name)
{
    if (name.endsWith(".idx"))
        return "index";
    if (name.endsWith(".lck"))
        return "lock";
    if (name.startsWith("Custom"))
        return "custom file";
    if (name.endsWith(".kvd"))
        return "data";
    return name.endsWith(".csv") ? "csv" : name;
}

// "fwrite cov.alice.2.idx" -> "fwrite index 2" when it is the second fwrite of the index.
QStringList describe(const QStringList& calls)
{
    QStringList labels;
    QMap<QString, int> seen, total;
    QStringList plain;
    for (const QString& call : calls) {
        const QStringList words = call.split(' ');
        const QString name = words.value(1);
        plain << words[0] + (name.isEmpty() ? QString() : ' ' + kind(name));
        ++total[plain.last()];
    }
    for (const QString& label : plain)
        labels << (total[label] > 1 ? label + ' ' + QString::number(++seen[label]) : label);
    return labels;
}

// old: the watched files that existed before the run, with their contents.
QString state(const QString& file, const QString& name, const QByteArray& complete,
              const QMap<QString, QByteArray>& old)
{
    const bool existedBefore = old.contains(name);
    const QByteArray before = old.value(name);
    if (!QFile::exists(file))
        return "absent";
    if (file.endsWith(".lck"))
        return "left";
    const QByteArray now = TestEnv::contents(file);
    if (existedBefore && now == before)
        return "unchanged";
    if (now == complete)
        return "complete";
    if (now.isEmpty())
        return "empty";
    for (auto it = old.begin(); it != old.end(); ++it)
        if (now == it.value() && !file.endsWith(it.key()))
            return "the old " + kind(it.key());
    if (existedBefore && now.startsWith(before))
        return QString("+%1 bytes").arg(now.size() - before.size());
    if (complete.startsWith(now))
        return QString("first %1 of %2 bytes").arg(now.size()).arg(complete.size());
    return QString("other (%1 bytes)").arg(now.size());
}

// Makes the custom file of the records at these offsets of measure.user.fields.kvd, as the
// record list's checked rows ask for them.
void customFile(KVDView& view, const QString& measure, const QString& user, int fields,
                const QList<int>& offsets)
{
    QTreeWidget list;
    for (int offset : offsets) {
        auto* row = new KVDCheckList(view.root, &list, {measure, user, "-"});
        row->fieldCount = fields;
        row->position = offset;
        row->secondText = QString("%1.%2.%3.kvd").arg(measure, user).arg(fields);
        row->setCheckState(0, Qt::Checked);
    }
    KVDCustomCurves(view, nullptr).CreateCustomFile(&list, user);
}

} // namespace

class TstFailures : public QObject
{
    Q_OBJECT

    FakeStudio m_host;
    RecordingShell m_shell{&m_host};
    ModalAnswerer m_answers;
    bool m_allocations = false;
    QStringList m_document; // the table's rows, as docs/failures.md shows them

    QList<Operation> operations();

    // Runs op in a fresh repository with call number `fail` failing (0: none), and answers
    // the outcome and, in *calls, the calls counted.
    Outcome runOnce(const Operation& op, int fail, int error, QStringList* calls)
    {
        SampleRepository repo;
        if (op.setup)
            op.setup(repo);
        QMap<QString, QByteArray> old;
        for (const QString& name : op.files)
            if (QFile::exists(repo.root() + '/' + name))
                old.insert(name, TestEnv::contents(repo.root() + '/' + name));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(repo.root()));
        m_shell.messages.clear();
        StderrCapture capture;
        kvdfaults_watch(QFile::encodeName(repo.root()).constData());
        kvdfaults_arm(fail, error, op.onward);
        const QString result = op.run(repo);
        kvdfaults_stop();
        // A failing store call leaves its streams open; what it wrote lands when they are
        // flushed, at the latest when the process ends.
        std::fflush(nullptr);
        const QByteArray errors = capture.text();
        for (int i = 1; calls && i <= kvdfaults_count(); ++i)
            *calls << QString::fromLatin1(kvdfaults_call(i));

        QStringList messages;
        for (const QByteArray& line : errors.split('\n')) {
            if (line.startsWith("Quillon - Kavendi: "))
                messages << QString::fromUtf8(line.mid(19));
            else if (line == "toto")
                messages << "toto";
        }
        for (const QString& shown : m_shell.messages)
            messages << shown.section('|', 1).trimmed();
        if (!fail) {
            m_complete[op.name].clear();
            for (const QString& name : op.files)
                m_complete[op.name] << TestEnv::contents(repo.root() + '/' + name);
        }
        QStringList states;
        for (int i = 0; i < op.files.size(); ++i)
            states << state(repo.root() + '/' + op.files[i], op.files[i],
                            m_complete[op.name].value(i), old);
        return QString("%1 | %2 | %3")
            .arg(result, messages.isEmpty() ? "-" : messages.join(" + "), states.join(", "));
    }

    QMap<QString, QList<QByteArray>> m_complete;

    // Runs kvd with args, ZANTH_KVD_ROOT=root, in directory cwd; its status and stderr.
    static QPair<int, QString> kvd(const QStringList& args, const QString& root, const QString& cwd)
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("ZANTH_KVD_ROOT", root);
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(cwd);
        process.start(TestEnv::built("bin/kvd"), args);
        if (!process.waitForFinished(60000)) {
            process.kill();
            process.waitForFinished();
            return {-1, "timed out"};
        }
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2,
                QString::fromLocal8Bit(process.readAllStandardError())};
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_shell.use();
        m_shell.user = "alice";
        m_host.dataDirectory = TestEnv::built(QStringLiteral("share/kavendi"));
        m_allocations =
            kvdfaults_count_allocations_of(reinterpret_cast<const void*>(&Write_Measure));
    }

    void sweep_data()
    {
        QTest::addColumn<int>("index");
        const QList<Operation> ops = operations();
        for (int i = 0; i < ops.size(); ++i)
            QTest::newRow(ops[i].name) << i;
    }

    // Each call of the operation fails in turn, with EIO, ENOSPC and EACCES in rotation.
    void sweep()
    {
        QFETCH(int, index);
        const Operation op = operations().at(index);
        // tests/data/failures-outcomes.txt: operation, failing call, outcome; tab-separated.
        QMap<QString, QString> expected;
        for (const QByteArray& line :
             TestEnv::contents(TestEnv::dataFile("failures-outcomes.txt")).split('\n')) {
            const QList<QByteArray> row = line.split('\t');
            if (row.size() == 3 && op.name == QString::fromUtf8(row[0]))
                expected.insert(QString::fromUtf8(row[1]), QString::fromUtf8(row[2]));
        }
        QStringList calls;
        const Outcome fine = runOnce(op, 0, 0, &calls);
        QVERIFY2(fine == expected.take("none"), qPrintable("without a failure: " + fine));
        m_document << QString("| %1 | none | %2 |").arg(op.name, fine);
        const QStringList labels = describe(calls);
        static const int errors[] = {EIO, ENOSPC, EACCES};
        for (int k = 1; k <= labels.size(); ++k) {
            const QString& label = labels[k - 1];
            if (label.startsWith("malloc") && !m_allocations)
                continue;
            QVERIFY2(expected.contains(label),
                     qPrintable(QString("no outcome listed for call %1, %2 (%3)")
                                    .arg(k)
                                    .arg(label, calls[k - 1])));
            const Outcome want = expected.take(label);
            const Outcome got = runOnce(op, k, errors[k % 3], nullptr);
            QVERIFY2(got == want, qPrintable(QString("%1 failing (%2): got \"%3\", expected \"%4\"")
                                                 .arg(label, calls[k - 1], got, want)));
            m_document << QString("| %1 | %2 | %3 |").arg(op.name, label, got);
        }
        if (m_allocations)
            QVERIFY2(expected.isEmpty(),
                     qPrintable("listed but never made: " + expected.keys().join(", ")));
    }

    // Eight processes write 200 records each at the same moment, in turn to a pair of their
    // own and to one shared pair: each pair keeps its first record, whole, and no lock.
    // (A lock left behind holding writers is racingWriters in tst_store.)
    void storm()
    {
        QTemporaryDir dir;
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(dir.path()));
        int go[2];
        QVERIFY(pipe(go) == 0);
        QList<pid_t> writers;
        for (int id = 0; id < 8; ++id) {
            if ((writers << fork()).last() == 0) {
                alarm(120); // no writer outlives a failed test
                dup2(open("/dev/null", O_WRONLY), 2);
                ::close(go[1]);
                char start;
                read(go[0], &start, 1); // all start when the pipe closes
                const QByteArray own = "own" + QByteArray::number(id);
                int written = 0;
                for (uint32_t i = 0; i < 200; ++i) {
                    const uint32_t values[2] = {i, uint32_t(id)};
                    written += !Write_Measure(i % 2 ? "shared" : own.constData(), "w", i,
                                              1000000000u + i, 2, values);
                }
                _exit(written);
            }
        }
        QElapsedTimer clock;
        clock.start();
        ::close(go[0]);
        ::close(go[1]);
        int written = 0, status = 0;
        for (pid_t pid : std::as_const(writers))
            written +=
                waitpid(pid, &status, 0) == pid && WIFEXITED(status) ? WEXITSTATUS(status) : 0;
        qInfo("8 writers, 1600 writes: %lld ms", clock.elapsed());
        QCOMPARE(written, 9);
        for (int id = -1; id < 8; ++id) {
            const QString pair = id < 0 ? QString("shared") : QString("own%1").arg(id);
            const QByteArray data = TestEnv::contents(dir.path() + '/' + pair + ".w.2.kvd");
            const QByteArray index = TestEnv::contents(dir.path() + '/' + pair + ".w.2.idx");
            QVERIFY2(data.size() == 24 && index.size() == 8,
                     qPrintable(pair + ": not one whole record and one index entry"));
            const auto* words = reinterpret_cast<const quint32*>(data.constData());
            const auto* entry = reinterpret_cast<const quint32*>(index.constData());
            QVERIFY2(entry[0] == words[1] && entry[1] == 0 && words[0] == 1000000000u + words[1] &&
                         words[2] == words[3] && words[4] == words[5],
                     qPrintable(pair + ": a torn record, or index and record disagree"));
        }
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 18); // no lock left
    }

    // Repositories whose paths a shell would misread: every command works on them, and
    // nothing is written outside them but the outputs asked for.
    void hostilePaths_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"with space", "quote ' and \"", "$(touch pwned)", "new\nline",
                                 "\xc3\xa9l\xc3\xa8ve \xe6\xb8\xac"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void hostilePaths()
    {
        QFETCH(QString, name);
        QTemporaryDir parent;
        const QString root = parent.path() + '/' + name;
        const QString png = parent.path() + "/out.png", csv = parent.path() + "/out.csv";
        const QList<QStringList> commands{{"sample", root, "--users", "2", "--days", "5", "--view"},
                                          {"render", "--root", root, "--view", "-o", png},
                                          {"export", "--root", root, "--view", "-o", csv},
                                          {"write", "m", "u", "1", "2001-01-01", "5"},
                                          {"dump", root + "/m.u.1.kvd"}};
        for (const QStringList& args : commands) {
            const auto [status, errors] = kvd(args, root, parent.path());
            QVERIFY2(status == 0, qPrintable(args[0] + ": " + errors));
        }
        // The demo view: curves on both scales, a ratio and events.
        KVDView view;
        QVERIFY(view.load(root, root + "/KVD.cfg", false));
        QVERIFY2(view.curves.size() == 5 && view.firstScale && view.secondScale &&
                     view.firstScale != view.secondScale && view.events.items().size() == 3 &&
                     view.curves.last()->isRatio && !view.curves.last()->points()->isEmpty(),
                 "the saved demo view did not load");
        // A range deletion takes u's record of 2001-01-01 away; a custom file copies another.
        m_shell.user = "u";
        m_answers.push(ModalAnswerer::click("OK"));
        KVDRecordDeletion(view, nullptr).range("u");
        m_shell.user = "alice";
        QVERIFY2(!QFile::exists(root + "/m.u.1.kvd") && !QFile::exists(root + "/KVD.tmp"),
                 "the deletion did not remove the record of 2001-01-01");
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(root));
        const uint32_t value = 6;
        QCOMPARE(Write_Measure("m", "u", 1, Date2001, 1, &value), 0u);
        customFile(view, "m", "u", 1, {0});
        QCOMPARE(TestEnv::contents(root + "/Customm.u.1.kvd"),
                 TestEnv::contents(root + "/m.u.1.kvd"));
        QStringList outside =
            QDir(parent.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries);
        outside.sort();
        QStringList expected{name, "out.csv", "out.png"};
        expected.sort();
        QCOMPARE(outside, expected);
    }

    // View files that are no file, never end or nest without end: each is refused with a
    // message, by the viewer and by kvd alike, and nothing waits.
    void hostileViewFile_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"directory", "fifo", "unreadable", "nested", "truncated"})
            QTest::newRow(kind) << QString(kind);
    }
    void hostileViewFile()
    {
        QFETCH(QString, kind);
        QTemporaryDir dir;
        const QString file = dir.path() + "/KVD.cfg";
        QVERIFY(kvd({"sample", dir.path(), "--users", "1", "--days", "3"}, dir.path(), dir.path())
                    .first == 0);
        QByteArray text;
        if (kind == "directory")
            QVERIFY(QDir().mkdir(file));
        else if (kind == "fifo")
            QVERIFY(mkfifo(QFile::encodeName(file).constData(), 0600) == 0);
        else if (kind == "unreadable")
            QVERIFY(QFile::link("/proc/self/mem", file)); // no byte of it reads, even as root
        else if (kind == "nested")
            text = QByteArray("<group name=\"a\">").repeated(3000000);
        else
            text = TestEnv::contents(TestEnv::dataFile("golden_view.cfg"));
        // Cut inside each element in turn; the other kinds are tried once, as made.
        QList<int> cuts;
        for (int at = text.indexOf('<', 1); kind == "truncated" && at > 0;
             at = text.indexOf('<', at + 1))
            cuts << at + 3;
        if (kind != "truncated")
            cuts << int(text.size());
        for (int cut : cuts) {
            if (!text.isEmpty()) {
                QFile out(file);
                QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
                out.write(text.left(cut));
            }
            m_shell.messages.clear();
            KVDView view;
            QVERIFY2(!view.load(dir.path(), file, false),
                     qPrintable(QString("read a view cut at %1").arg(cut)));
            QVERIFY2(!m_shell.messages.isEmpty(), "refused without a message");
        }
        const auto [status, errors] =
            kvd({"render", "--root", dir.path(), "--view", "-o", dir.path() + "/x.png"}, dir.path(),
                dir.path());
        const QString named = kind == "fifo"        ? "is a pipe"
                              : kind == "directory" ? "is a directory"
                                                    : "";
        QVERIFY2(status == 1 && !errors.isEmpty() && errors.contains(named), qPrintable(errors));
    }

    // Names and places the store cannot write to are refused before the store waits for a
    // lock it can never create.
    void unwritable_data()
    {
        QTest::addColumn<QStringList>("c"); // root (empty: a fresh one), measure, refusal
        QTest::newRow("1000-character measure")
            << QStringList{"", QString(1000, 'm'), "bytes long"};
        QTest::newRow("read-only file system")
            << QStringList{"/proc", "m", "no file can be created"};
        QTest::newRow("missing directory")
            << QStringList{"/nonexistent/repo", "m", "not a writable"};
    }
    void unwritable()
    {
        QFETCH(QStringList, c);
        const QString &root = c[0], &measure = c[1], &refusal = c[2];
        QTemporaryDir dir;
        const auto [status, errors] = kvd({"write", measure, "u", "1", "2001-01-01", "5"},
                                          root.isEmpty() ? dir.path() : root, dir.path());
        QVERIFY2(status == 1 && errors.contains(refusal), qPrintable(errors));
        QVERIFY(QDir(dir.path()).isEmpty());
    }

    // docs/failures.md is this table; KVD_WRITE_FAILURES=1 rewrites it.
    void document()
    {
        if (!m_allocations)
            QSKIP("allocations are not counted in a sanitizer build; the table would lack them");
        QFile head(TestEnv::dataFile("failures-head.md"));
        QVERIFY2(head.open(QIODevice::ReadOnly), "the table's introduction is missing");
        const QByteArray text = head.readAll() + m_document.join('\n').toUtf8() + '\n';
        const QString path = QStringLiteral(KVD_SOURCE_DIR "/docs/failures.md");
        if (qEnvironmentVariableIsSet("KVD_WRITE_FAILURES")) {
            QFile out(path);
            QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
            out.write(text);
        }
        QVERIFY2(TestEnv::contents(path) == text,
                 "docs/failures.md is not the table this test makes; run the test with "
                 "KVD_WRITE_FAILURES=1 to write it");
    }
};

// Stores a view with an event over an older KVD.cfg.
static Operation storeView(bool onward)
{
    return {onward ? "storing KVD.cfg, disk full" : "storing KVD.cfg",
            {"KVD.cfg"},
            [](SampleRepository& repo) {
                QFile old(repo.root() + "/KVD.cfg");
                QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old view\n") > 0);
            },
            [](SampleRepository& repo) {
                KVDConfig config;
                QList<KVDCurve*> curves;
                QList<KVDEvent*> events{new KVDEvent(QDate(2001, 1, 5), "release", true)};
                const QDateTime start = QDateTime::fromSecsSinceEpoch(Date2001);
                const bool stored = config.StoreConfig(
                    repo.root(), &curves, start, start.addDays(30), 1, nullptr, nullptr, &events);
                qDeleteAll(events);
                return QString(stored ? "true" : "false");
            },
            onward};
}

// Exports a curve of two records, loaded before the export starts.
static Operation csvExport(bool onward, const std::function<void(SampleRepository&)>& records)
{
    auto curve = std::make_shared<std::unique_ptr<KVDCurve>>();
    auto start = std::make_shared<QDateTime>();
    return {onward ? "CSV export, disk full" : "CSV export",
            {"view.csv"},
            [=](SampleRepository& repo) {
                records(repo);
                QDateTime end;
                curve->reset(new KVDCurve(repo.root(), "cov", 1, 2, "alice", *start, end));
            },
            [=](SampleRepository& repo) {
                const bool written = KVDCsvExport::write(repo.root() + "/view.csv", {curve->get()},
                                                         *start, start->addDays(30));
                curve->reset();
                return QString(written ? "true" : "false");
            },
            onward};
}

QList<Operation> TstFailures::operations()
{
    const QStringList pair{"cov.alice.2.idx", "cov.alice.2.kvd", "cov.alice.2.lck"};
    const auto write = [](quint32 key, int count = 2) {
        return [key, count](SampleRepository&) {
            std::vector<uint32_t> values(size_t(count), 5u);
            values.back() = 9;
            return QString::number(
                Write_Measure("cov", "alice", key, Date2001 + Day, count, values.data()));
        };
    };
    const auto holding = [](const QList<KVDSampleWriter::Record>& records) {
        return [records](SampleRepository& repo) {
            QVERIFY(repo.writePair("cov", "alice", 2, records));
        };
    };
    const auto fileKey = [](const char* text) {
        return [text](SampleRepository&) {
            uint32_t key = 0;
            return QString::number(File_Key(text, &key));
        };
    };
    const auto path = [](SampleRepository& repo, const char* name) {
        return QFile::encodeName(repo.root() + name);
    };
    const auto twoDays = holding({{Date2001, 7, {1, 9}}, {Date2001 + Day, 8, {2, 9}}});
    QList<Operation> ops;
    ops << Operation{"Write_Measure, first write", pair, nullptr, write(7)}
        << Operation{"Write_Measure, new key", pair, holding(oneRecord), write(8)}
        << Operation{"Write_Measure, same key", pair, holding(oneRecord), write(7)}
        << Operation{"Write_Measure, 10000 values", pair, nullptr, write(7, 10000)}
        << Operation{"Create_Data_Base", pair.mid(0, 2), nullptr,
                     [=](SampleRepository& repo) {
                         std::vector<uint32_t> words{5, 5, 9, 9};
                         return QString::number(Create_Data_Base(path(repo, "/cov.alice.2.kvd"),
                                                                 path(repo, "/cov.alice.2.idx"),
                                                                 Date2001, 7, 2, words.data()));
                     }}
        // A record of no values is the one way past the read that fails on this build.
        << Operation{"Update_Data_Base, no values", pair.mid(0, 2), holding(oneRecord),
                     [=](SampleRepository& repo) {
                         uint32_t word = 0;
                         return QString::number(Update_Data_Base(path(repo, "/cov.alice.2.kvd"),
                                                                 path(repo, "/cov.alice.2.idx"),
                                                                 Date2001 + Day, 8, -1, &word));
                     }}
        << Operation{"File_Key", {}, nullptr, fileKey("suite/test_parser.c")}
        << Operation{"File_Key of no text", {}, nullptr, fileKey(nullptr)}
        // Of three records the range 2001-01-01 .. 2001-02-01 keeps the one of March.
        << Operation{"range deletion",
                     {"cov.alice.2.idx", "cov.alice.2.kvd", "KVD.tmp", "cov.alice.2.lck"},
                     holding({{Date2001 + 9 * Day, 7, {1, 9}},
                              {Date2001 + 59 * Day, 8, {2, 9}},
                              {Date2001, 7, {3, 9}}}),
                     [this](SampleRepository& repo) {
                         KVDView view;
                         view.root = repo.root();
                         QWidget window;
                         m_answers.push(ModalAnswerer::click("OK"));
                         KVDRecordDeletion(view, &window).range("alice");
                         return QString("-");
                     }}
        << Operation{"custom-file creation",
                     {"Customcov.alice.2.kvd"},
                     twoDays,
                     [](SampleRepository& repo) {
                         KVDView view;
                         view.root = repo.root();
                         customFile(view, "cov", "alice", 2, {0, 24});
                         return QString("-");
                     }}
        << csvExport(false, twoDays) << csvExport(true, twoDays) << storeView(false)
        << storeView(true);
    return ops;
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    TstFailures test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_failures.moc"
