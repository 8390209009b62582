#include "fakestudio.h"
#include "kvdchecklist.h"
#include "kvdcurve.h"
#include "kvdcustomselect.h"
#include "kvdmeasurefile.h"
#include "modalanswerer.h"
#include "qakvd.h"
#include "qalistview.h"
#include "samplerepository.h"
#include "stderrcapture.h"
#include "testenv.h"

#include <QComboBox>
#include <QDirIterator>
#include <QMenu>
#include <QSpinBox>
#include <QtTest>

#include <memory>

// Record selection dialogs, record deletion and custom files, on a started viewer whose
// users are alice and bob.
namespace {

// alice's records in file order, keys 7 and 8 in turn; the dialogs' first range,
// 2001-01-01 to 2001-02-01, holds the first, second and fifth.
QList<KVDSampleWriter::Record> records()
{
    QList<KVDSampleWriter::Record> list;
    for (const char* date : {"2001-01-10T00:00:00", "2001-02-01T00:00:00", "2001-02-01T12:00:00",
                             "2001-02-01T00:00:01", "2001-01-01T00:00:00", "2001-03-01T00:00:00"})
        list.append({quint32(QDateTime::fromString(date, Qt::ISODate).toSecsSinceEpoch()),
                     quint32(7 + list.size() % 2),
                     {quint32(list.size()) + 1, 9}});
    return list;
}

template <typename Text> QStringList texts(int count, Text text)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list << text(i);
    return list;
}

QStringList dates(const QString& path)
{
    KVDMeasureFile file;
    QStringList found;
    if (file.open(path, 2))
        while (const quint32* record = file.next())
            found << QDateTime::fromSecsSinceEpoch(record[0]).toString(Qt::ISODate);
    return found;
}

QMap<QString, QByteArray> snapshot(const QString& dir)
{
    QMap<QString, QByteArray> files;
    for (QDirIterator it(dir, QDir::Files); it.hasNext();) {
        QFile file(it.next());
        files[it.fileName()] = file.open(QIODevice::ReadOnly) ? file.readAll() : "?";
    }
    return files;
}

// From January, so that the month chosen last decides the day shown.
void setDate(QWidget* dialog, const QString& row, int year, int month, int day)
{
    for (auto [box, value] : QList<std::pair<const char*, int>>{
             {"Month", 1}, {"Day", day}, {"Year", year}, {"Month", month}})
        dialog->findChild<QSpinBox*>(row + box)->setValue(value);
}

} // namespace

class TstRecords : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;
    std::unique_ptr<SampleRepository> m_repository;
    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<QAKVD> m_viewer;
    QString m_root;

    bool startViewer(const QString& sub = QString())
    {
        m_root = m_repository->root() + '/' + sub;
        const QList<KVDSampleWriter::Record> bob{{978652800, 3, {1, 2, 3, 4}}};
        if (!QDir().mkpath(m_root) ||
            !KVDSampleWriter::writePair(m_root, "tests", "alice", 2, records()) ||
            !KVDSampleWriter::writePair(m_root, "tests", "bob", 2, records().mid(0, 1)) ||
            !KVDSampleWriter::writePair(m_root, "cov", "bob", 4, bob))
            return false;
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_root));
        m_viewer = std::make_unique<QAKVD>(nullptr, "records", 0, true);
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
        m_host.starts = m_host.steps = m_host.ends = 0;
    }

    void cleanup()
    {
        m_viewer.reset();
        QVERIFY2(!m_answers->unexpected() && !m_answers->pending(),
                 qPrintable(m_answers->seen().join('\n')));
    }

    void dayFollowsMonth_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<QDate>("chosen"); // after day 31 of January
        QTest::newRow("from February 2001") << "from" << QDate(2001, 2, 28);
        QTest::newRow("to February 2004") << "to" << QDate(2004, 2, 29);
        QTest::newRow("to April") << "to" << QDate(2001, 4, 30);
        QTest::newRow("from March keeps 31") << "from" << QDate(2001, 3, 31);
    }

    void dayFollowsMonth()
    {
        QFETCH(QString, row);
        QFETCH(QDate, chosen);
        KVDRangeSelect dialog(m_repository->root(), nullptr, nullptr, 0);
        setDate(&dialog, row, chosen.year(), chosen.month(), 31);
        QCOMPARE(dialog.findChild<QSpinBox*>(row + "Day")->maximum(), chosen.daysInMonth());
        QCOMPARE(row == "from" ? dialog.startDate : dialog.endDate, chosen);
    }

    void comboListsTheCurrentUsersFiles_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<bool>("elsewhere"); // a directory holding only alice's files
        QTest::addColumn<QStringList>("items");
        QTest::addColumn<QString>("fileName"); // after OK
        QTest::addColumn<int>("fields");
        QTest::newRow("alice") << "alice" << false << QStringList{"tests"} << "tests.alice.2.kvd"
                               << 2;
        QTest::newRow("bob") << "bob" << false << QStringList{"cov", "tests"} << "cov.bob.4.kvd"
                             << 4;
        QTest::newRow("no file of bob") << "bob" << true << QStringList{} << "" << 0;
    }

    void comboListsTheCurrentUsersFiles()
    {
        QFETCH(QString, user);
        QFETCH(bool, elsewhere);
        QFETCH(QStringList, items);
        QFETCH(QString, fileName);
        QFETCH(int, fields);
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
        auto* tree = qobject_cast<QTreeWidget*>(m_viewer->contentOutlineWidget());
        tree->setCurrentItem(tree->findItems(user, Qt::MatchExactly).value(0));
        QTemporaryDir other;
        QVERIFY(KVDSampleWriter::writePair(other.path(), "tests", "alice", 2, records()));
        KVDRangeSelect dialog(elsewhere ? other.path() : m_root, m_viewer.get(), nullptr, 0);
        auto* combo = dialog.findChild<QComboBox*>();
        QCOMPARE(texts(combo->count(), [&](int i) { return combo->itemText(i); }), items);
        m_answers->push(ModalAnswerer::click("OK"));
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
        QVERIFY2(dialog.fileName == fileName && dialog.fields == fields,
                 qPrintable(dialog.fileName));
    }

    void listHoldsTheRangesRecords()
    {
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
        KVDCustomSelect dialog(m_root, m_viewer.get(), nullptr, 0, true);
        QAListView* list = dialog.recordList();
        QCOMPARE(texts(list->columnCount(), [&](int c) { return list->headerItem()->text(c); }),
                 QStringList({"Measure", "User", "Date", "FileId", "Field 1", "Field 2"}));
        int outside = 0;
        connect(list->model(), &QAbstractItemModel::rowsInserted, this,
                [&] { outside += !KVDCustomSelect::InProgress; });
        dialog.GetMeasure(0);
        const int listed[] = {0, 1, 4};
        const QStringList expected = texts(3, [&](int i) {
            return QDateTime::fromSecsSinceEpoch(records()[listed[i]].date).toString();
        });
        QCOMPARE(
            texts(list->topLevelItemCount(), [&](int r) { return list->topLevelItem(r)->text(2); }),
            expected);
        QVERIFY2(outside == 0 && !KVDCustomSelect::InProgress,
                 "the busy flag is up while rows go in");
        // The first record of key 8: its totals are the file's last totals plus its values.
        auto* second = static_cast<KVDCheckList*>(list->topLevelItem(1));
        QCOMPARE(texts(8, [&](int c) { return second->text(c); }),
                 QStringList({"tests", "alice", expected[1], "8", "2", "3", "9", "18"}));
        QVERIFY(second->position == 24 && second->secondText == "tests.alice.2.kvd");
    }

    void popUpItems_data()
    {
        QTest::addColumn<bool>("listed");
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("checked"); // the first row was checked before
        QTest::newRow("empty list") << false << "Select All"
                                    << "";
        QTest::newRow("select all") << true << "Select All"
                                    << "222";
        QTest::newRow("invert") << true << "Invert Selection"
                                << "022";
    }

    void popUpItems()
    {
        QFETCH(bool, listed);
        QFETCH(QString, item);
        QFETCH(QString, checked);
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
        KVDCustomSelect dialog(m_root, m_viewer.get(), nullptr, 0, false);
        QAListView* list = dialog.recordList();
        if (listed) {
            dialog.GetMeasure(0);
            list->topLevelItem(0)->setCheckState(0, Qt::Checked);
        }
        QList<bool> enabled;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (QAction* action : menu->actions())
                    if ((enabled << action->isEnabled()).last() && action->text() == item)
                        action->trigger();
                menu->close();
            }
        });
        poll.start(5);
        dialog.PopUp(nullptr, QPoint(20, 20), 0);
        QCOMPARE(enabled, QList<bool>(2, listed));
        QCOMPARE(texts(list->topLevelItemCount(),
                       [&](int r) { return QString::number(list->topLevelItem(r)->checkState(0)); })
                     .join(""),
                 checked);
    }

    void deletion_data()
    {
        QTest::addColumn<QString>("slot");
        QTest::addColumn<QString>("sub");  // the repository's folder
        QTest::addColumn<QDate>("to");     // from 2001-01-01
        QTest::addColumn<QString>("kept"); // the one record the store takes back
        QTest::addColumn<int>("reports");  // kept records the store refuses
        QTest::addColumn<bool>("curve");   // a curve of the file is shown (and reloaded)
        const QString shell = "a b;touch x$(echo y)";
        const QDate to(2001, 2, 1);
        QTest::newRow("range: end day kept at noon")
            << "RangeDeletion"
            << "" << to << "2001-02-01T12:00:00" << 2 << true;
        QTest::newRow("range: shell text in root")
            << "RangeDeletion" << shell << to << "2001-02-01T12:00:00" << 2 << false;
        QTest::newRow("range: everything") << "RangeDeletion"
                                           << "" << QDate(2002, 1, 1) << "" << 0 << false;
        // The first listed row stays unchecked.
        QTest::newRow("custom: rows") << "CustomDeletion"
                                      << "" << to << "2001-01-10T00:00:00" << 3 << true;
        QTest::newRow("custom: shell text in root")
            << "CustomDeletion" << shell << to << "2001-01-10T00:00:00" << 3 << false;
    }

    void deletion()
    {
        QFETCH(QString, slot);
        QFETCH(QString, sub);
        QFETCH(QDate, to);
        QFETCH(QString, kept);
        QFETCH(int, reports);
        QFETCH(bool, curve);
        QVERIFY2(startViewer(sub), "the viewer starts with alice chosen");
        m_viewer->view().selectField("Test runs");
        QVERIFY(!curve || m_viewer->view().selectMeasure(1, "alice"));
        m_answers->push([&](QWidget* modal) {
            setDate(modal, "to", to.year(), to.month(), to.day());
            if (auto* custom = qobject_cast<KVDCustomSelect*>(modal)) {
                custom->SelectAll(1);
                custom->recordList()->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
            }
            ModalAnswerer::click("OK")(modal);
        });
        StderrCapture capture;
        QVERIFY(QMetaObject::invokeMethod(m_viewer.get(), qPrintable(slot), Q_ARG(int, 1)));
        const QByteArray reported = capture.text();
        const QString data = KVDMeasureFile::path(m_root, "tests", "alice", 2);
        QCOMPARE(dates(data), kept.isEmpty() ? QStringList() : QStringList{kept});
        QCOMPARE(QFile::exists(data), !kept.isEmpty());
        QCOMPARE(QFileInfo(KVDMeasureFile::path(m_root, "tests", "alice", 2, ".idx")).size(),
                 kept.isEmpty() ? 0 : 8);
        QCOMPARE(int(reported.count("Quillon - Kavendi: Unable to read DataBase file\n")), reports);
        QVERIFY2(!QFile::exists(m_root + "/KVD.tmp"), "the temporary file goes");
        if (curve) {
            const QList<KVDCurve*>& curves = m_viewer->view().curves;
            QVERIFY2(curves.size() == 1 && curves[0]->points->size() == 1,
                     "the curve shows the shortened file");
        } else { // reloading a curve would show its own progress
            const QString cancel = slot == "RangeDeletion" ? "Stop Loading" : "&Stop Loading";
            QCOMPARE(m_host.label + m_host.cancelText, "KVD Processing..." + cancel);
            QVERIFY2(m_host.totalSteps == 6 && m_host.steps == 6 && m_host.ends > 0,
                     "a step a record, then closed");
        }
    }

    void moveFailureRewritesNothing()
    {
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
        QVERIFY(QDir(m_root).mkpath("KVD.tmp/in the way"));
        QMap<QString, QByteArray> files = snapshot(m_root);
        files.remove("tests.alice.2.idx"); // goes before the move
        m_answers->push(ModalAnswerer::click("OK"));
        m_answers->push(ModalAnswerer::click("OK"));
        m_viewer->RangeDeletion(1);
        QVERIFY2(snapshot(m_root) == files && m_host.starts == 0, "nothing is rewritten");
        QCOMPARE(m_answers->seen().value(1),
                 QString("warning|Test Studio|Kavendi Request has failed\n"));
    }

    void customFileTakesCheckedRowsLastFirst()
    {
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
        KVDCustomSelect dialog(m_root, m_viewer.get(), nullptr, 0, false);
        setDate(&dialog, "to", 2002, 1, 1);
        QAListView* list = dialog.recordList();
        QCOMPARE(list->topLevelItemCount(), 6);
        for (int row : {0, 2, 5})
            list->topLevelItem(row)->setCheckState(0, Qt::Checked);
        m_viewer->CreateCustomFile(list, "alice");
        const QMap<QString, QByteArray> files = snapshot(m_root);
        const QByteArray words = files["tests.alice.2.kvd"];
        QCOMPARE(files["Customtests.alice.2.kvd"],
                 words.mid(5 * 24, 24) + words.mid(2 * 24, 24) + words.mid(0, 24));
        QVERIFY2(!files.contains("Customtests.alice.2.idx"), "no index for a custom file");
        auto* row = static_cast<KVDCheckList*>(list->topLevelItem(1));
        QVERIFY2(row->MustBeChecked(records()[5].date) && !row->MustBeChecked(records()[1].date),
                 "the custom file answers which records it holds");
    }

    void cancelChangesNoFile_data()
    {
        QTest::addColumn<QString>("slot");
        QTest::addColumn<int>("id");
        QTest::newRow("range cancelled") << "RangeDeletion" << 1;
        QTest::newRow("custom cancelled") << "CustomDeletion" << 1;
        QTest::newRow("custom curves cancelled") << "CustomCurveMenu" << 1;
        QTest::newRow("range id 0") << "RangeDeletion" << 0;
        QTest::newRow("custom id 0") << "CustomDeletion" << 0;
    }

    void cancelChangesNoFile()
    {
        QFETCH(QString, slot);
        QFETCH(int, id);
        QVERIFY2(startViewer(), "the viewer starts with alice chosen");
        const QMap<QString, QByteArray> before = snapshot(m_root);
        if (id)
            m_answers->push(ModalAnswerer::click("Cancel"));
        QVERIFY(QMetaObject::invokeMethod(m_viewer.get(), qPrintable(slot), Q_ARG(int, id)));
        QVERIFY2(snapshot(m_root) == before && m_host.starts == 0, "no file changes");
        QVERIFY2(id || m_host.ends == 1, "an id of 0 closes the progress display");
    }
};

QTEST_MAIN(TstRecords)
#include "tst_records.moc"
