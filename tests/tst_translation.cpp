#include "modalanswerer.h"
#include "qakvd.h"
#include "samplerepository.h"
#include "studiowindow.h"
#include "testenv.h"

#include <QMenu>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

// The French catalogue: complete for the sources as they stand, and brought by the plug-in
// into a host that installs none (this suite runs with LANG=fr_FR.UTF-8, no LANGUAGE and
// no LC_ALL; tst_store runs kvd and the host in French).
class TstTranslation : public QObject
{
    Q_OBJECT

private slots:
    // lupdate merges the sources into a copy of the committed catalogue: every text must
    // come out translated, with its placeholders and final line break, and none may be
    // left over from a text the sources no longer have.
    void everySourceTextHasAFinishedTranslation()
    {
        QTemporaryDir dir;
        const QString copy = dir.filePath("kavendi_fr.ts");
        QVERIFY(QFile::copy(KVD_SOURCE_DIR "/translations/kavendi_fr.ts", copy));
        QStringList args = QString(TestEnv::contents(KVD_SOURCE_DIR "/LAYERS"))
                               .split('\n')
                               .filter(QRegularExpression("^\\w+$"));
        QProcess lupdate;
        lupdate.setWorkingDirectory(KVD_SOURCE_DIR);
        lupdate.start(KVD_LUPDATE, args << "-locations"
                                        << "none"
                                        << "-ts" << copy);
        QVERIFY2(lupdate.waitForFinished(60000) && lupdate.exitCode() == 0,
                 lupdate.readAllStandardError().constData());

        const QRegularExpression message("<source>(.*?)</source>\\s*(?:<comment>.*?</comment>)?"
                                         "\\s*<translation( type=\"\\w+\")?>(.*?)</translation>",
                                         QRegularExpression::DotMatchesEverythingOption);
        const auto shape = [](const QString& text) {
            QStringList marks{text.endsWith('\n') ? "final line break" : ""};
            for (const QRegularExpressionMatch& m : QRegularExpression("%\\d+").globalMatch(text))
                marks << m.captured();
            marks.sort();
            return marks;
        };
        QStringList faults;
        int count = 0;
        for (const QRegularExpressionMatch& m : message.globalMatch(TestEnv::contents(copy))) {
            const QString source = m.captured(1), text = m.captured(3);
            ++count;
            if (!m.captured(2).isEmpty() || text.isEmpty() || shape(source) != shape(text))
                faults << source.trimmed() + " ->" + m.captured(2) + ' ' + text.trimmed();
        }
        QVERIFY2(count > 200 && faults.isEmpty(),
                 qPrintable("update translations/kavendi_fr.ts:\n" + faults.join('\n')));
    }

    void viewerStartsInFrenchInAHost()
    {
        SampleRepository repository;
        // A measure the definitions do not know: start-up asks whether to configure it.
        QVERIFY(repository.fill({}) &&
                repository.writePair("lines", "alice", 1, SampleRepository::series(1, {1}, 1)));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(repository.root()));
        ModalAnswerer answers;
        answers.push(ModalAnswerer::click("Ignorer"));
        StudioWindow studio{TestEnv::built("share/kavendi")};
        QVERIFY(studio.loadPlugin(TestEnv::built("lib/libkavendi.so")));
        auto* viewer = qobject_cast<QAKVD*>(studio.openViewer());
        QVERIFY(viewer && viewer->viewerMenu());
        QStringList items;
        for (QAction* action : viewer->viewerMenu()->actions())
            items << action->text();
        QCOMPARE(items.mid(0, 4),
                 QStringList({"Surveillance", "Courbes personnalisées", "Échelle", "Événements"}));
        QCOMPARE(answers.seen(), QStringList("information|Configuration de Kavendi|Métrique "
                                             "détectée.\nVoulez-vous la configurer ?"));
        viewer->close();
    }
};

QTEST_MAIN(TstTranslation)
#include "tst_translation.moc"
