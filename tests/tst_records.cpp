#include "fakestudio.h"
#include "kvdchecklist.h"
#include "kvdconfigdlg.h"
#include "kvdcustomselect.h"
#include "kvdevent.h"
#include "kvdeventset.h"
#include "kvdmeasurefile.h"
#include "modalanswerer.h"
#include "qakvd.h"
#include "qalistview.h"
#include "samplerepository.h"
#include "testenv.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

namespace {

// alice's records in file order, keys 7 and 8 in turn, values (n, 9); the dialogs' first
// range, 2001-01-01 to 2001-02-01, holds the first, second and fifth.
const QStringList Dates{"2001-01-10T00:00:00", "2001-02-01T00:00:00", "2001-02-01T12:00:00",
                        "2001-02-01T00:00:01", "2001-01-01T00:00:00", "2001-03-01T00:00:00"};

QList<KVDSampleWriter::Record> records()
{
    QList<KVDSampleWriter::Record> list;
    for (const QString& date : Dates)
        list.append({quint32(QDateTime::fromString(date, Qt::ISODate).toSecsSinceEpoch()),
                     quint32(7 + list.size() % 2),
                     {quint32(list.size()) + 1, 9}});
    return list;
}

// Answers a dialog, in turn: spin boxes and line edits by name (name=value), the record
// list's rows to check (rows=025), all of them (all) or the others (invert), buttons by text.
ModalAnswerer::Answer answer(const QString& script)
{
    return [script](QWidget* modal) {
        for (const QString& step : script.split(' ', Qt::SkipEmptyParts)) {
            const QString name = step.section('=', 0, 0);
            const QString value = step.section('=', 1);
            auto* list = modal->findChild<QTreeWidget*>();
            auto* records = qobject_cast<KVDCustomSelect*>(modal);
            if (step == "all" || step == "invert")
                step == "all" ? records->SelectAll(1) : records->Reverse(1);
            else if (!step.contains('='))
                ModalAnswerer::click(step)(modal);
            else if (auto* box = modal->findChild<QSpinBox*>(name))
                box->setValue(value.toInt());
            else if (auto* edit = modal->findChild<QLineEdit*>(name))
                edit->setText(value);
            else
                for (int row = 0; row < list->topLevelItemCount(); ++row)
                    list->topLevelItem(row)->setCheckState(
                        0, value.contains(QString::number(row)) ? Qt::Checked : Qt::Unchecked);
        }
    };
}

} // namespace

// Record editing on a started viewer whose users are alice and bob: the record selection
// dialogs, range and record-by-record deletion, custom curves, and the property dialogs.
class TstRecords : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    std::unique_ptr<SampleRepository> m_repository;
    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<QAKVD> m_viewer;
    QString m_root;

    bool startViewer()
    {
        m_root = m_repository->root();
        if (!KVDSampleWriter::writePair(m_root, "tests", "alice", 2, records()) ||
            !KVDSampleWriter::writePair(m_root, "tests", "bob", 2, records().mid(0, 1)) ||
            !KVDSampleWriter::writePair(m_root, "cov", "bob", 4, {{978652800, 3, {1, 2, 3, 4}}}) ||
            // Not a data file: the filter tells case, so no dialog or scan lists it.
            !QFile(m_root + "/cov.alice.4.KVD").open(QIODevice::WriteOnly))
            return false;
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_root));
        m_viewer.reset(); // a window going ends the started state
        m_viewer = std::make_unique<QAKVD>(nullptr, "records", 0, true);
        m_host.starts = m_host.steps = m_host.ends = 0;
        return QAKVD::Launched() && QAKVD::GetCurrentUser() == "alice";
    }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        m_host.dataDirectory = TestEnv::built("share/kavendi");
        m_host.install();
    }

    void init()
    {
        m_repository = std::make_unique<SampleRepository>();
        m_answers = std::make_unique<ModalAnswerer>();
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
    }

    void cleanup()
    {
        m_viewer.reset();
        m_host.install();
        QVERIFY2(!m_answers->unexpected() && !m_answers->pending(),
                 qPrintable(m_answers->seen().join('\n')));
    }

    void dialogs_data()
    {
        // range (for alice; bob; empty: no file of hers; gone: her file removed before OK),
        // records (the record list, likewise), scale (the Customize form), event (at noon of
        // a day, else today); "bare": without a host.
        // Then the script for answer(), and the outcome: the result, then what the dialog
        // holds: range: the files listed, dates and file; records: columns and rows; scale:
        // dates; event: date and label.
        QTest::addColumn<QStringList>("c");
        const auto row = [](const char* name, const char* dialog, const char* script,
                            const QString& outcome) {
            QTest::newRow(name) << QStringList{dialog, script, outcome};
        };
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        row("range: from February", "range", "fromDay=31 fromMonth=2 OK",
            "1 tests 2001-02-28 2001-02-01 tests.alice.2.kvd");
        row("range: bob's files", "range bob", "OK",
            "1 cov tests 2001-01-01 2001-02-01 cov.bob.4.kvd");
        row("range: file gone before OK", "range gone", "OK", "1 tests 2001-01-01 2001-02-01 ");
        row("records: no file of hers", "records empty", "OK", "1 4 0");
        // Listed for update, as a deletion would open it: refused before anything is tried.
        row("records: a file that cannot be updated", "records locked", "OK|OK",
            "1 6 0 warning|Test Studio|Kavendi Request has failed\n");
        row("scale: from March keeps 31", "scale", "fromDay=31 fromMonth=3 OK",
            "1 2001-03-31 2001-02-01");
        row("scale: year capped, no host", "scale bare",
            "toMonth=1 toDay=31 toMonth=4 toYear=2099 Cancel", "0 2001-01-01 2050-04-30");
        row("event: into a common year", "event 2024-02-29", "eventYear=2023 eventLabel=a OK",
            "1 2023-02-28 a");
        // OK does nothing without a label; an emptied line keeps the label typed before.
        row("event: today, label kept", "event", "OK eventLabel=a eventLabel= OK",
            "1 " + today + " a");
    }

    void dialogs()
    {
        QFETCH(QStringList, c);
        const QString &dialog = c[0], &script = c[1], &outcome = c[2];
        auto* users = qobject_cast<QTreeWidget*>(m_viewer->contentOutlineWidget());
        users->setCurrentItem(
            users->findItems(dialog.contains("bob") ? "bob" : "alice", Qt::MatchExactly).value(0));
        QTemporaryDir empty;
        if (dialog.contains("bare"))
            FakeStudio::uninstall();
        const QDateTime noon(QDate::fromString(dialog.section(' ', 1, 1), Qt::ISODate),
                             QTime(12, 0));
        const QString dir = dialog.contains("empty") ? empty.path() : m_root;
        KVDRangeSelect range(dir, nullptr, nullptr, 0);
        KVDCustomSelect records(dir, nullptr, nullptr, 0, true);
        KVDConfigDlg scale(nullptr, QString());
        KVDEventSet event(nullptr, "event", 0, noon.isValid() ? noon.toSecsSinceEpoch() : 0);
        const QMap<QString, QDialog*> all{
            {"range", &range}, {"records", &records}, {"scale", &scale}, {"event", &event}};
        QDialog* shown = all[dialog.section(' ', 0, 0)];
        QVERIFY(!dialog.contains("gone") || QFile::remove(m_root + "/tests.alice.2.kvd"));
        if (dialog.contains("locked")) { // a regular file that not even root may write
            const QString locked = "/sys/devices/system/cpu/online";
            if (!QFileInfo(locked).isFile() || QFile(locked).open(QIODevice::ReadWrite))
                QSKIP("no file here refuses to be opened for writing");
            QVERIFY(QFile::remove(m_root + "/tests.alice.2.kvd") &&
                    QFile::link(locked, m_root + "/tests.alice.2.kvd"));
        }
        for (const QString& part : script.split('|'))
            m_answers->push(answer(part));
        if (dialog.contains("locked"))
            records.GetMeasure(0); // as a change of dates would
        QStringList held(QString::number(shown->exec()));
        const bool bare = dialog.contains("bare");
        QVERIFY2(shown->windowTitle() == (bare ? "Kavendi" : "Test Studio") && shown->isModal() &&
                     !shown->windowIcon().isNull(),
                 "every dialog is modal, with the viewer's icon and the host's title");
        const auto iso = [](const QDate& date) { return date.toString(Qt::ISODate); };
        for (int i = 0; shown == &range && i < range.findChild<QComboBox*>()->count(); ++i)
            held << range.findChild<QComboBox*>()->itemText(i);
        if (shown == &range)
            held << iso(range.startDate) << iso(range.endDate) << range.fileName;
        if (shown == &records)
            held << QString::number(records.recordList()->columnCount())
                 << QString::number(records.recordList()->topLevelItemCount());
        if (shown == &scale)
            held << iso(scale.GetStart()) << iso(scale.GetEnd());
        if (shown == &event)
            held << iso(event.eventDate()) << event.label();
        QCOMPARE((held + m_answers->seen().filter("warning|")).join(' '), outcome);
    }

    void edits_data()
    {
        // The slot; the answers ('|' between dialogs; none: id 0); the outcome: alice's data
        // file (its one record, or how many), its index's size, the temporary file left, the
        // progress display, its closings, the view file saved again, then the messages shown.
        QTest::addColumn<QStringList>("c");
        const auto row = [](const char* name, const char* slot, const char* answers,
                            const QString& outcome) {
            QTest::newRow(name) << QStringList{slot, answers, outcome};
        };
        const QString rewritten = " | KVD Processing... Stop Loading 6/6 | ends 1 | saved";
        const QString untouched = "6 records | idx 16";
        row("range: end day kept at noon", "RangeDeletion", "OK",
            "2001-02-01T12:00:00 7 3 9 | idx 8" + rewritten);
        row("range: everything", "RangeDeletion", "toYear=2002 toMonth=1 OK",
            "- | idx 0" + rewritten);
        // A day more lists two records of 2001-02-01 more; the second and third rows go.
        row("custom: all", "CustomDeletion", "toYear=2002 toMonth=1 all OK",
            "- | idx 0 | KVD Processing... &Stop Loading 6/6 | ends 1 | saved");
        row("custom: rows", "CustomDeletion", "toDay=2 rows=034 invert OK",
            "2001-01-10T00:00:00 7 1 9 | idx 8 | KVD Processing... &Stop Loading 6/6 | "
            "ends 1 | saved");
        row("custom cancelled", "CustomDeletion", "Cancel", untouched + " | ends 1");
        row("custom curves cancelled", "CustomCurveMenu", "Cancel", untouched);
        row("custom curves, no rows", "CustomCurveMenu", "fromYear=2002 OK", untouched);
        row("range id 0", "RangeDeletion", "", untouched + " | ends 1");
        row("custom curves id 0", "CustomCurveMenu", "", untouched);
    }

    void edits()
    {
        QFETCH(QStringList, c);
        const QString &slot = c[0], &answers = c[1], &outcome = c[2];
        for (const QString& script : answers.split('|', Qt::SkipEmptyParts))
            m_answers->push(answer(script));
        // An event only the view holds: a rebuilt view saves it.
        m_viewer->view().events.items() << new KVDEvent(QDate(2024, 5, 1), "x", true);
        const QByteArray saved = TestEnv::contents(m_root + "/KVD.cfg");
        QVERIFY(QMetaObject::invokeMethod(m_viewer.get(), qPrintable(slot),
                                          Q_ARG(int, answers.isEmpty() ? 0 : 1)));
        const QString data = KVDMeasureFile::path(m_root, "tests", "alice", 2);
        KVDMeasureFile file;
        QStringList kept;
        for (const quint32* r = file.open(data, 2) ? file.next() : nullptr; r; r = file.next())
            kept << QDateTime::fromSecsSinceEpoch(r[0]).toString(Qt::ISODate) +
                        QString(" %1 %2 %3").arg(r[1]).arg(r[2]).arg(r[4]);
        QStringList parts{!QFile::exists(data) ? "-"
                          : kept.size() == 1   ? kept[0]
                                               : QString("%1 records").arg(kept.size()),
                          QString("idx %1").arg(QFileInfo(data.chopped(3) + "idx").size())};
        const auto note = [&parts](bool shown, const QString& text) {
            if (shown)
                parts << text;
        };
        note(QFile::exists(m_root + "/KVD.tmp"), "tmp");
        note(m_host.starts, m_host.label + ' ' + m_host.cancelText +
                                QString(" %1/%2").arg(m_host.steps).arg(m_host.totalSteps));
        note(m_host.ends, QString("ends %1").arg(m_host.ends));
        note(TestEnv::contents(m_root + "/KVD.cfg") != saved, "saved");
        QCOMPARE((parts + m_answers->seen().mid(1)).join(" | "), outcome);
    }

    // A custom curve from checked rows, and the record list that offers them.
    void customCurve()
    {
        m_viewer->view().selectField("Test runs");
        QVERIFY(m_viewer->view().selectMeasure(1, "alice"));
        m_host.starts = m_host.ends = 0;
        // The custom file is a new measure: asked about, then labelled.
        for (const char* script :
             {"toYear=2002 toMonth=1 rows=025 OK", "OK", "label0=Picked label1=p label2=f OK"})
            m_answers->push(answer(script));
        m_viewer->CustomCurveMenu(1);
        const QByteArray words = TestEnv::contents(m_root + "/tests.alice.2.kvd");
        QCOMPARE(TestEnv::contents(m_root + "/Customtests.alice.2.kvd"),
                 words.mid(5 * 24, 24) + words.mid(2 * 24, 24) + words.left(24));
        QVERIFY2(!QFile::exists(m_root + "/Customtests.alice.2.idx"), "no index for a custom file");
        QCOMPARE(m_viewer->view().config->definitions.value("Customtests2"),
                 (KVDDefinition{{0, "Picked"}, {1, "p"}, {2, "f"}}));
        QVERIFY2(m_viewer->view().curves.size() == 1 && m_host.ends == m_host.starts,
                 "the view is rebuilt from the saved one; only its curve's progress closes");
        // Rows listed (of the custom file, first by name) but none ticked select nothing.
        const QStringList files = QDir(m_root).entryList(QDir::Files);
        const QByteArray custom = TestEnv::contents(m_root + "/Customtests.alice.2.kvd");
        m_answers->push(answer("toYear=2002 toMonth=1 OK"));
        m_viewer->CustomCurveMenu(1);
        QVERIFY2(QDir(m_root).entryList(QDir::Files) == files &&
                     TestEnv::contents(m_root + "/Customtests.alice.2.kvd") == custom,
                 "no file written");

        KVDCustomSelect dialog(m_root, m_viewer.get(), nullptr, 0, false);
        QAListView* list = dialog.recordList();
        dialog.GetMeasure(1);
        QStringList rows{list->headerItem()->text(5)};
        for (int r = 0; r < list->topLevelItemCount(); ++r)
            for (int c = 0; c < 8; ++c)
                rows << list->topLevelItem(r)->text(c);
        // A total is the sum of each key's latest value.
        const auto date = [](int i) {
            return QDateTime::fromString(Dates[i], Qt::ISODate).toString();
        };
        const QString expected = "Field 2,tests,alice,%1,7,1,1,9,9,tests,alice,%2,8,2,3,9,18,"
                                 "tests,alice,%3,7,5,9,9,18";
        QCOMPARE(rows.join(','), expected.arg(date(0), date(1), date(4)));
        auto* row = static_cast<KVDCheckList*>(list->topLevelItem(1));
        QVERIFY2(row->position == 24 && row->secondText == "tests.alice.2.kvd" &&
                     row->fieldCount == 2 && row->textAlignment(5) == Qt::AlignCenter,
                 "rows say where their record lies, centred");
        QVERIFY2(row->MustBeChecked(records()[5].date) && !row->MustBeChecked(records()[1].date),
                 "the custom file answers which records it holds");
    }
};

QTEST_MAIN(TstRecords)
#include "tst_records.moc"
