#include "qakvd.h"
#include "qastkvdplugin.h"
#include "samplerepository.h"
#include "studiopluginloader.h"
#include "studiowindow.h"
#include "testenv.h"

#include <QPointer>
#include <QtTest>

// The plug-in as a host meets it: loaded through its entry points, initialised, asked for
// windows and their command answers.
class TstPlugin : public QObject
{
    Q_OBJECT

private:
    QAStViewerPlugin* m_plugin = nullptr;
    // The host stays for the whole run: the plug-in keeps its interface once given.
    QMainWindow m_main;
    StudioHost m_host{&m_main, QStringLiteral("Studio"),
                      TestEnv::built(QStringLiteral("share/kavendi"))};
    SampleRepository m_repository;
    QString libraryPath() const { return TestEnv::built(QStringLiteral("lib/libkavendi.so")); }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        QString error;
        m_plugin = StudioPluginLoader::load(libraryPath(), &error);
        QVERIFY2(m_plugin, qPrintable(error));
        m_plugin->initialize(&m_host, nullptr);
        QVERIFY2(m_repository.fill({2, 10, 4, 1, {}}), qPrintable(m_repository.error()));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_repository.root()));
    }

    void createdWindowDeletesItselfOnClose()
    {
        QStringList files;
        QPointer<QAStViewerWindow> window = m_plugin->create(files, nullptr, "viewer");
        QVERIFY2(qobject_cast<QAKVD*>(window), "create makes a chart viewer");
        QVERIFY(window->testAttribute(Qt::WA_DeleteOnClose));
        QVERIFY2(window->activateDisplay(), "the short create activates");
        QPointer<QAStViewerWindow> quiet = m_plugin->create(files, false, nullptr, "quiet");
        QVERIFY(!quiet->activateDisplay());
        window->close();
        quiet->close();
        QTRY_VERIFY2(!window && !quiet, "closed windows delete themselves");
    }

    // Of the host's command queries the viewer answers yes to print, copy, find, reload,
    // reset, export and zoom alone.
    void hostQueries()
    {
        QAKVD viewer(nullptr, "q", 0, true);
        QAStViewerWindow* w = &viewer;
        // Save, save as, print, copy, paste, cut, undo, redo, delete, select all, find,
        // replace, go to, reload, reset, export, zoom, filter.
        const QList<bool> answers{
            w->isSaveEnabled(),      w->isSaveAsEnabled(), w->isPrintEnabled(),
            w->isCopyEnabled(),      w->isPasteEnabled(),  w->isCutEnabled(),
            w->isUndoEnabled(),      w->isRedoEnabled(),   w->isDelEnabled(),
            w->isSelectAllEnabled(), w->isFindEnabled(),   w->isReplaceEnabled(),
            w->isGoToEnabled(),      w->isReloadEnabled(), w->isResetEnabled(),
            w->isExportDocEnabled(), w->isZoomEnabled(),   w->isFilterEnabled()};
        QCOMPARE(answers, QList<bool>({0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 1, 1, 1, 0}));
        w->refreshContents(); // paints with a null event
    }

    void hostRefusesBadPluginsAndStaysUp_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << TestEnv::built("lib/nothing-here.so") << "no such file";
        QTest::newRow("not a library") << TestEnv::dataFile("not-a-library.so") << "not a loadable";
        QTest::newRow("no entry points") << TestEnv::built("lib/libsdk.so.1") << "not a viewer";
    }

    void hostRefusesBadPluginsAndStaysUp()
    {
        QFETCH(QString, path);
        QFETCH(QString, reason);
        StudioWindow studio{QString()};
        QVERIFY(!studio.loadPlugin(path));
        QCOMPARE(studio.refusals().size(), 1);
        QVERIFY2(studio.refusals().first().contains(reason), qPrintable(studio.refusals().first()));
        QVERIFY2(studio.loadPlugin(libraryPath()), "a good plug-in still loads afterwards");
    }
};

QTEST_MAIN(TstPlugin)
#include "tst_plugin.moc"
