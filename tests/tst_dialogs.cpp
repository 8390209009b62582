#include "fakestudio.h"
#include "kvdconfigdlg.h"
#include "kvdconfigmsg.h"
#include "kvdeventset.h"
#include "modalanswerer.h"
#include "testenv.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

#include <memory>

// The labels and date-range forms, the labelling question, and the frame they share.
class TstDialogs : public QObject
{
    Q_OBJECT

private:
    FakeStudio m_host;

private slots:
    void initTestCase() { TestEnv::pin(); }

    void labelsForm_data()
    {
        QTest::addColumn<int>("emptied");
        for (int row = 0; row <= 3; ++row)
            QTest::addRow("row %d emptied", row) << row;
    }

    void labelsForm()
    {
        QFETCH(int, emptied);
        KVDConfigDlg dialog(nullptr, 3, "cov");
        QList<QLineEdit*> edits;
        for (int row = 0; row <= 3; ++row)
            edits << dialog.findChild<QLineEdit*>(QString("label%1").arg(row));
        QVERIFY2(!edits.contains(nullptr) && !dialog.findChild<QLineEdit*>("label4"),
                 "one line per label: the metric's and three fields'");
        auto* ok = dialog.findChild<QPushButton*>();
        QCOMPARE(ok->text(), QString("OK"));
        QVERIFY2(!ok->isEnabled(), "OK starts disabled");

        for (int row = 0; row <= 3; ++row)
            edits[row]->setText(QString("name %1").arg(row));
        QVERIFY2(ok->isEnabled(), "OK enabled once every row has text");
        edits[emptied]->clear();
        QVERIFY2(!ok->isEnabled(), "emptying any row disables OK again");
        for (int row = 0; row <= 3; ++row)
            QCOMPARE(dialog.GetValue(row),
                     row == emptied ? QString() : QString("name %1").arg(row));
        QCOMPARE(dialog.GetValue(4), QString());
        QStringList texts;
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            if (!label->text().isEmpty())
                texts << label->text();
        QCOMPARE(texts, QStringList({"Enter a label for the cov metric",
                                     "Enter a label for field 1 of cov metric",
                                     "Enter a label for field 2 of cov metric",
                                     "Enter a label for field 3 of cov metric"}));
    }

    void dateRange_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<int>("year");
        QTest::addColumn<int>("month");
        QTest::addColumn<int>("day");
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QDate>("end");
        QTest::newRow("untouched")
            << "from" << 0 << 0 << 0 << QDate(2001, 1, 1) << QDate(2001, 2, 1);
        QTest::newRow("leap February start")
            << "from" << 2004 << 2 << 30 << QDate(2004, 2, 29) << QDate(2001, 2, 1);
        QTest::newRow("day 31 then February end")
            << "to" << 0 << 0 << 31 << QDate(2001, 1, 1) << QDate(2001, 2, 28);
        QTest::newRow("end year capped")
            << "to" << 2099 << 0 << 0 << QDate(2001, 1, 1) << QDate(2050, 2, 1);
    }

    void dateRange()
    {
        QFETCH(QString, row);
        QFETCH(int, year);
        QFETCH(int, month);
        QFETCH(int, day);
        QFETCH(QDate, start);
        QFETCH(QDate, end);
        KVDConfigDlg dialog(nullptr, QString());
        QVERIFY2(dialog.rangeSet(), "the range form always has a range");
        if (year)
            dialog.findChild<QSpinBox*>(row + "Year")->setValue(year);
        if (month)
            dialog.findChild<QSpinBox*>(row + "Month")->setValue(month);
        if (day)
            dialog.findChild<QSpinBox*>(row + "Day")->setValue(day);
        QCOMPARE(dialog.GetStart(), start);
        QCOMPARE(dialog.GetEnd(), end);
    }

    void question_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("result");
        QTest::newRow("OK") << "OK" << 1;
        QTest::newRow("Ignore") << "Ignore" << 0;
    }

    void question()
    {
        QFETCH(QString, button);
        QFETCH(int, result);
        KVDConfigMsg box(nullptr);
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click(button));
        QCOMPARE(box.exec(), result);
        QCOMPARE(answers.seen(), QStringList("information|Kavendi Configuration|Metric "
                                             "detected.\nDo you want to configure it?"));
        QVERIFY2(!box.windowIcon().isNull(), "the question carries the viewer's icon");
    }

    void frame_data()
    {
        QTest::addColumn<bool>("withHost");
        QTest::addColumn<QString>("caption");
        QTest::newRow("without host") << false << "Kavendi";
        QTest::newRow("with host") << true << "Test Studio";
    }

    void frame()
    {
        QFETCH(bool, withHost);
        QFETCH(QString, caption);
        if (withHost)
            m_host.install();
        std::unique_ptr<QDialog> dialogs[] = {std::make_unique<KVDEventSet>(nullptr, nullptr, 0, 0),
                                              std::make_unique<KVDConfigDlg>(nullptr, 1, "m"),
                                              std::make_unique<KVDConfigDlg>(nullptr, "range")};
        FakeStudio::uninstall();
        for (const auto& dialog : dialogs) {
            QCOMPARE(dialog->windowTitle(), caption);
            QVERIFY2(
                dialog->isModal() && !dialog->windowIcon().isNull(),
                qPrintable(
                    QString("%1 is modal with an icon").arg(dialog->metaObject()->className())));
        }
    }
};

QTEST_MAIN(TstDialogs)
#include "tst_dialogs.moc"
