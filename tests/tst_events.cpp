#include "kvdevent.h"
#include "kvdeventlist.h"
#include "kvdeventset.h"
#include "modalanswerer.h"
#include "recordingshell.h"
#include "testenv.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

// Events: the dialog that asks for one, and the list operations the viewer forwards to.
class TstEvents : public QObject
{
    Q_OBJECT

private:
    static unsigned int noon(const QDate& day)
    {
        return unsigned(QDateTime(day, QTime(12, 0)).toSecsSinceEpoch());
    }
    static void fill(KVDEventList& list, const QList<QDate>& days, const QString& text = "old")
    {
        for (const QDate& day : days)
            list.items().append(new KVDEvent(day, text, true));
    }

private slots:
    void initTestCase() { TestEnv::pin(); }

    void dateClamp_data()
    {
        QTest::addColumn<QDate>("initial");
        QTest::addColumn<int>("year");  // 0: left as shown
        QTest::addColumn<int>("month"); // 0: left as shown
        QTest::addColumn<QDate>("expected");
        QTest::newRow("leap February") << QDate(2024, 1, 31) << 0 << 2 << QDate(2024, 2, 29);
        QTest::newRow("common February") << QDate(2023, 1, 31) << 0 << 2 << QDate(2023, 2, 28);
        QTest::newRow("thirty-day month") << QDate(2023, 3, 31) << 0 << 4 << QDate(2023, 4, 30);
        QTest::newRow("leap day into a common year")
            << QDate(2024, 2, 29) << 2023 << 0 << QDate(2023, 2, 28);
        QTest::newRow("year below the range")
            << QDate(2010, 5, 5) << 2000 << 0 << QDate(2001, 5, 5);
        QTest::newRow("year above the range")
            << QDate(2010, 5, 5) << 2051 << 0 << QDate(2050, 5, 5);
        QTest::newRow("time before the range")
            << QDate(1990, 6, 15) << 0 << 0 << QDate(2001, 6, 15);
        QTest::newRow("no time: today") << QDate() << 0 << 0 << QDate::currentDate();
    }

    void dateClamp()
    {
        QFETCH(QDate, initial);
        QFETCH(int, year);
        QFETCH(int, month);
        QFETCH(QDate, expected);
        KVDEventSet dialog(nullptr, "events", 0, initial.isValid() ? noon(initial) : 0);
        auto* yearBox = dialog.findChild<QSpinBox*>("eventYear");
        auto* monthBox = dialog.findChild<QSpinBox*>("eventMonth");
        auto* dayBox = dialog.findChild<QSpinBox*>("eventDay");
        QVERIFY2(yearBox && monthBox && dayBox, "the three date boxes exist");
        if (year)
            yearBox->setValue(year);
        if (month)
            monthBox->setValue(month);
        QCOMPARE(dialog.eventDate(), expected);
        QCOMPARE(dayBox->value(), expected.day());
        QCOMPARE(dayBox->maximum(), expected.daysInMonth());
    }

    void okHeldUntilLabel()
    {
        KVDEventSet dialog(nullptr, nullptr, 0, noon(QDate(2024, 5, 1)));
        ModalAnswerer answers;
        bool openAfterEmptyOk = false;
        answers.push([&](QWidget* modal) {
            auto* ok = modal->findChild<QPushButton*>();
            auto* edit = modal->findChild<QLineEdit*>("eventLabel");
            ok->click();
            openAfterEmptyOk = modal->isVisible();
            edit->setText("Release 2");
            edit->clear(); // emptying keeps the label typed before
            ok->click();
        });
        const int result = dialog.exec();
        QVERIFY2(openAfterEmptyOk, "OK without a label leaves the dialog open");
        QCOMPARE(result, 1);
        QCOMPARE(dialog.label(), QString("Release 2"));
        QCOMPARE(dialog.eventDate(), QDate(2024, 5, 1));
    }

    void add_data()
    {
        QTest::addColumn<QList<QDate>>("existing");
        QTest::addColumn<bool>("added");
        const QDate day(2024, 5, 1);
        QTest::newRow("added") << QList<QDate>{} << true;
        QTest::newRow("same day refused") << QList<QDate>{day} << false;
        QTest::newRow("same text another day") << QList<QDate>{day.addDays(1)} << true;
    }

    void add()
    {
        QFETCH(QList<QDate>, existing);
        QFETCH(bool, added);
        RecordingShell shell;
        shell.use();
        KVDEventList list;
        fill(list, existing, "Release");
        QCOMPARE(list.add(QDate(2024, 5, 1), "Release"), added);
        QCOMPARE(list.items().size(), existing.size() + (added ? 1 : 0));
        const QStringList refused{"warning|An Event already exists for this date\n"};
        QCOMPARE(shell.messages, added ? QStringList() : refused);
        if (added) {
            const KVDEvent* event = list.items().last();
            QCOMPARE(event->date, QDate(2024, 5, 1));
            QCOMPARE(event->text, QString("Release"));
            QVERIFY2(event->visible && !event->hasColor && !event->color.isValid(),
                     "a new event is visible and has no colour");
        }
    }

    void isNearTag_data()
    {
        QTest::addColumn<QList<QDate>>("events");
        QTest::addColumn<QDate>("day");
        QTest::addColumn<bool>("near");
        const QList<QDate> two{QDate(2024, 5, 1), QDate(2024, 6, 1)};
        QTest::newRow("empty list") << QList<QDate>{} << QDate(2024, 5, 1) << false;
        QTest::newRow("exact day") << two << QDate(2024, 6, 1) << true;
        QTest::newRow("day before") << two << QDate(2024, 4, 30) << false;
        QTest::newRow("day after") << two << QDate(2024, 5, 2) << false;
    }

    void isNearTag()
    {
        QFETCH(QList<QDate>, events);
        QFETCH(QDate, day);
        QFETCH(bool, near);
        KVDEventList list;
        fill(list, events);
        QCOMPARE(list.IsNearTag(day), near);
    }

    void hideTwiceShowsEveryEvent()
    {
        KVDEventList list;
        fill(list, {QDate(2024, 5, 1), QDate(2024, 6, 1)});
        list.items().at(1)->visible = false;

        list.EventHide();
        QVERIFY2(list.eventsHidden(), "the first call hides");
        QVERIFY2(list.items().at(0)->visible && !list.items().at(1)->visible,
                 "hiding leaves each event's own flag alone");
        list.EventHide();
        QVERIFY2(!list.eventsHidden(), "the second call shows");
        QVERIFY2(list.items().at(0)->visible && list.items().at(1)->visible,
                 "showing again makes every event visible");
    }
};

QTEST_MAIN(TstEvents)
#include "tst_events.moc"
