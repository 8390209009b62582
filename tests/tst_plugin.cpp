#include "qakvd.h"
#include "qastkvdplugin.h"
#include "samplerepository.h"
#include "studiopluginloader.h"
#include "studiowindow.h"
#include "testenv.h"

#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

// The plug-in as a host meets it: loaded through its entry points, asked for its
// metadata, initialised, asked for windows and their command answers.
class TstPlugin : public QObject
{
    Q_OBJECT

private:
    QAStViewerPlugin* m_plugin = nullptr;
    // The host stays for the whole run: the plug-in keeps its interface once given.
    QMainWindow m_main;
    StudioHost m_host{&m_main, QStringLiteral("Studio"), TestEnv::built(QStringLiteral("share/kavendi"))};
    SampleRepository m_repository;
    QString libraryPath() const { return TestEnv::built(QStringLiteral("lib/libkavendi.so")); }

private slots:
    void initTestCase()
    {
        TestEnv::pin();
        QString error;
        m_plugin = StudioPluginLoader::load(libraryPath(), &error);
        QVERIFY2(m_plugin, qPrintable(error));
        KVDSampleWriter::Options options;
        options.users = 2;
        options.days = 10;
        QVERIFY2(m_repository.fill(options), qPrintable(m_repository.error()));
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(m_repository.root()));
    }

    void metadata_data()
    {
        QTest::addColumn<QString>("getter");
        QTest::addColumn<QString>("expected");
        QTest::newRow("name") << "name" << "Kvd";
        QTest::newRow("description") << "description" << "The Kavendi";
        QTest::newRow("author") << "author" << "Orvane Quillon Gui Team";
        QTest::newRow("version") << "version" << "Version 1.0.0";
        QTest::newRow("pluginName") << "pluginName" << "Orvane Quillon Kavendi";
        QTest::newRow("pluginDescription") << "pluginDescription" << "Orvane Quillon Kavendi Description";
        QTest::newRow("pluginCompanyName") << "pluginCompanyName" << "Orvane";
        QTest::newRow("pluginCopyRight") << "pluginCopyRight" << "Orvane";
        QTest::newRow("pluginVersion") << "pluginVersion" << "Version 1.1.0";
        QTest::newRow("pluginCompanyIcon") << "pluginCompanyIcon" << "logo_90x90.xpm";
        QTest::newRow("pluginIcon") << "pluginIcon" << "";
    }

    void metadata()
    {
        QFETCH(QString, getter);
        QFETCH(QString, expected);
        const QMap<QString, QString> answers{
            {"name", m_plugin->name()},
            {"description", m_plugin->description()},
            {"author", m_plugin->author()},
            {"version", m_plugin->version()},
            {"pluginName", m_plugin->pluginName()},
            {"pluginDescription", m_plugin->pluginDescription()},
            {"pluginCompanyName", m_plugin->pluginCompanyName()},
            {"pluginCopyRight", m_plugin->pluginCopyRight()},
            {"pluginVersion", m_plugin->pluginVersion()},
            {"pluginCompanyIcon", m_plugin->pluginCompanyIcon()},
            {"pluginIcon", m_plugin->pluginIcon()},
        };
        QCOMPARE(answers.value(getter), expected);
    }

    void claimsNothingAndOffersNoPages()
    {
        QVERIFY(!m_plugin->pluginCompanyDescription().isEmpty());
        QCOMPARE(m_plugin->pluginCreation(), QDate::currentDate());
        QVERIFY2(m_plugin->accept().isEmpty() && m_plugin->filters().isEmpty(), "opened by command only");
        QVERIFY(m_plugin->toolbars().isEmpty());
        QVERIFY(!m_plugin->openedWindow(QStringLiteral("x")));
        QVERIFY(!m_plugin->preferenceSettings());
    }

    void initializeWithAndWithoutHost()
    {
        m_plugin->initialize(nullptr, nullptr);
        QVERIFY2(!QAStKvdPlugin::studioIFace, "no host: the interface stays null");
        QVERIFY(!QAKVD::iface());

        m_plugin->initialize(&m_host, nullptr);
        QCOMPARE(QAStKvdPlugin::studioIFace, static_cast<StudioInterface*>(&m_host));
        QCOMPARE(QAKVD::iface(), static_cast<StudioInterface*>(&m_host));
        QVERIFY2(QAKVD::toolBar(), "the first host interface brings the shared tool bar");
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

    void hostQueries_data()
    {
        QTest::addColumn<int>("query");
        QTest::addColumn<bool>("enabled");
        const char* names[] = {"save", "saveAs", "print", "copy", "paste", "cut", "undo", "redo", "del",
                               "selectAll", "find", "replace", "goTo", "reload", "reset", "exportDoc",
                               "zoom", "filter"};
        const bool answers[] = {false, false, true, true, false, false, false, false, false,
                                false, true, false, false, true, true, true, true, false};
        for (int k = 0; k < 18; ++k)
            QTest::newRow(names[k]) << k << answers[k];
    }

    void hostQueries()
    {
        QFETCH(int, query);
        QFETCH(bool, enabled);
        QAKVD viewer(nullptr, "q", 0, true);
        bool (QAStViewerWindow::*queries[])() = {
            &QAStViewerWindow::isSaveEnabled,     &QAStViewerWindow::isSaveAsEnabled,
            &QAStViewerWindow::isPrintEnabled,    &QAStViewerWindow::isCopyEnabled,
            &QAStViewerWindow::isPasteEnabled,    &QAStViewerWindow::isCutEnabled,
            &QAStViewerWindow::isUndoEnabled,     &QAStViewerWindow::isRedoEnabled,
            &QAStViewerWindow::isDelEnabled,      &QAStViewerWindow::isSelectAllEnabled,
            &QAStViewerWindow::isFindEnabled,     &QAStViewerWindow::isReplaceEnabled,
            &QAStViewerWindow::isGoToEnabled,     &QAStViewerWindow::isReloadEnabled,
            &QAStViewerWindow::isResetEnabled,    &QAStViewerWindow::isExportDocEnabled,
            &QAStViewerWindow::isZoomEnabled,     &QAStViewerWindow::isFilterEnabled};
        QAStViewerWindow* window = &viewer;
        QCOMPARE((window->*queries[query])(), enabled);
    }

    void inheritedDefaults()
    {
        QAKVD viewer(nullptr, "d", 0, true);
        QAStViewerWindow* w = &viewer;
        QVERIFY(!w->canReload());
        QCOMPARE(w->macro(QStringLiteral("m%1")), QStringLiteral("m%1"));
        w->setMode(QAStViewerWindow::ReadOnly);
        w->setChannel(3);
        w->setAutoReload(true);
        w->setRootName(QStringLiteral("root"));
        w->setNode({QStringLiteral("k"), QStringLiteral("t")});
        QCOMPARE(w->mode(), QAStViewerWindow::ReadOnly);
        QCOMPARE(w->channel(), 3);
        QVERIFY(w->autoReload());
        QCOMPARE(w->rootName(), QStringLiteral("root"));
        QCOMPARE(w->node().text, QStringLiteral("t"));
        w->setFile(QStringLiteral("ignored.kvd"));
        w->refreshContents(); // paints with a null event
        auto* tree = qobject_cast<QTreeWidget*>(w->contentOutlineWidget());
        QVERIFY2(tree && tree->topLevelItemCount() == 2, "the outline is the tree of the repository's users");
    }

    void hostRefusesBadPluginsAndStaysUp_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << TestEnv::built(QStringLiteral("lib/nothing-here.so")) << "no such file";
        QTest::newRow("not a library") << TestEnv::dataFile(QStringLiteral("not-a-library.so"))
                                       << "not a loadable library";
        QTest::newRow("no entry points") << TestEnv::built(QStringLiteral("lib/libsdk.so.1"))
                                         << "not a viewer plug-in";
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

    void studioStartsHeadlessWithAViewer()
    {
        QTemporaryDir dir;
        const QString shot = dir.filePath(QStringLiteral("studio.png"));
        QProcess studio;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        studio.setProcessEnvironment(env);
        studio.start(TestEnv::built(QStringLiteral("bin/kavendi-studio")),
                     {QStringLiteral("--open"), QStringLiteral("--screenshot"), shot});
        QVERIFY2(studio.waitForFinished(60000), "the host should exit after its screenshot");
        QVERIFY2(studio.exitCode() == 0, studio.readAllStandardError().constData());
        QImage image(shot);
        QVERIFY2(!image.isNull() && image.width() > 400, "the screenshot is a picture of the window");
    }

    void studioReportsRefusalOnStderr()
    {
        QTemporaryDir dir;
        QProcess studio;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        studio.setProcessEnvironment(env);
        studio.start(TestEnv::built(QStringLiteral("bin/kavendi-studio")),
                     {QStringLiteral("--plugin"), TestEnv::dataFile(QStringLiteral("not-a-library.so")),
                      QStringLiteral("--open"), QStringLiteral("--screenshot"), dir.filePath("s.png")});
        QVERIFY(studio.waitForFinished(60000));
        QCOMPARE(studio.exitCode(), 0);
        QVERIFY2(studio.readAllStandardError().contains("Plug-in refused"), "the refusal is reported");
    }
};

QTEST_MAIN(TstPlugin)
#include "tst_plugin.moc"
