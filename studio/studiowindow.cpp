#include "studiowindow.h"
#include "qastviewerplugin.h"
#include "qastviewerwindow.h"
#include "studiopluginloader.h"

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QKeySequence>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QStatusBar>

#include <cstdio>

StudioWindow::StudioWindow(const QString& dataDirectory, QWidget* parent)
    : QMainWindow(parent), m_host(this, tr("Studio"), dataDirectory)
{
    setWindowTitle(tr("Studio"));
    m_mdi = new QMdiArea(this);
    m_mdi->setViewMode(QMdiArea::SubWindowView);
    setCentralWidget(m_mdi);
    connect(m_mdi, &QMdiArea::subWindowActivated, this, &StudioWindow::subWindowActivated);

    auto* dock = new QDockWidget(tr("Outline"), this);
    dock->setObjectName(QStringLiteral("outline"));
    m_outline = new QStackedWidget(dock);
    m_outline->addWidget(new QLabel(tr("No viewer"), m_outline));
    dock->setWidget(m_outline);
    addDockWidget(Qt::LeftDockWidgetArea, dock);

    QMenu* file = menuBar()->addMenu(tr("&File"));
    m_openViewer = file->addAction(tr("Open &Kavendi Viewer"), this, [this] { openViewer(); });
    m_openViewer->setShortcut(QKeySequence(tr("Ctrl+K")));
    m_openViewer->setEnabled(false);
    auto command = [this](QMenu* menu, const QString& text, bool (QAStViewerWindow::*enabled)(),
                          void (QAStViewerWindow::*run)()) {
        QAction* action = menu->addAction(text, this, [this, run] {
            if (m_active)
                (m_active.data()->*run)();
        });
        m_commands.append({action, enabled});
    };
    command(file, tr("&Print..."), &QAStViewerWindow::isPrintEnabled, &QAStViewerWindow::print);
    file->addSeparator();
    file->addAction(tr("E&xit"), this, &QWidget::close);
    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    command(edit, tr("&Copy"), &QAStViewerWindow::isCopyEnabled, &QAStViewerWindow::copy);
    command(edit, tr("&Reload"), &QAStViewerWindow::isReloadEnabled, &QAStViewerWindow::reload);
    command(edit, tr("R&eset"), &QAStViewerWindow::isResetEnabled, &QAStViewerWindow::reset);
    command(edit, tr("E&xport"), &QAStViewerWindow::isExportDocEnabled, &QAStViewerWindow::exportDoc);
    QMenu* view = menuBar()->addMenu(tr("&View"));
    command(view, tr("Zoom &In"), &QAStViewerWindow::isZoomEnabled, &QAStViewerWindow::zoomIn);
    command(view, tr("Zoom &Out"), &QAStViewerWindow::isZoomEnabled, &QAStViewerWindow::zoomOut);
    QMenu* window = menuBar()->addMenu(tr("&Window"));
    window->addAction(tr("&Tile"), m_mdi, &QMdiArea::tileSubWindows);
    window->addAction(tr("&Cascade"), m_mdi, &QMdiArea::cascadeSubWindows);
    updateCommands();

    statusBar()->showMessage(tr("Ready"));
    resize(1280, 860);
}

StudioWindow::~StudioWindow()
{
    // Viewers go before the host services they use.
    m_mdi->closeAllSubWindows();
    delete m_mdi;
}

bool StudioWindow::loadPlugin(const QString& path)
{
    QString error;
    QAStViewerPlugin* plugin = StudioPluginLoader::load(path, &error);
    if (!plugin) {
        const QString text = tr("Plug-in refused: %1").arg(error);
        m_refusals.append(text);
        std::fprintf(stderr, "%s\n", qPrintable(text));
        statusBar()->showMessage(text);
        return false;
    }
    if (!m_plugin) {
        m_plugin = plugin;
        m_plugin->initialize(&m_host, nullptr);
    }
    m_openViewer->setEnabled(true);
    statusBar()->showMessage(tr("Loaded %1 %2").arg(plugin->pluginName(), plugin->pluginVersion()));
    return true;
}

QAStViewerWindow* StudioWindow::openViewer()
{
    if (!m_plugin)
        return nullptr;
    QStringList files;
    QPointer<QAStViewerWindow> viewer = m_plugin->create(files, true, m_mdi, "kavendi");
    // A viewer that could not start has closed, and so explicitly hidden, itself already.
    if (!viewer || (viewer->testAttribute(Qt::WA_WState_ExplicitShowHide) && viewer->isHidden()))
        return nullptr;
    QMdiSubWindow* sub = m_mdi->addSubWindow(viewer);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    connect(viewer, &QObject::destroyed, sub, &QWidget::close);
    sub->showMaximized();
    if (viewer->activateDisplay())
        m_mdi->setActiveSubWindow(sub);
    return viewer;
}

QList<QAStViewerWindow*> StudioWindow::viewers() const
{
    QList<QAStViewerWindow*> list;
    for (QMdiSubWindow* sub : m_mdi->subWindowList())
        if (auto* viewer = qobject_cast<QAStViewerWindow*>(sub->widget()))
            list.append(viewer);
    return list;
}

QWidget* StudioWindow::outlinePane() const
{
    return m_outline->currentWidget();
}

void StudioWindow::closeEvent(QCloseEvent* event)
{
    for (QAStViewerWindow* viewer : viewers()) {
        if (!viewer->canClose()) {
            event->ignore();
            return;
        }
    }
    m_mdi->closeAllSubWindows();
    event->accept();
}

void StudioWindow::subWindowActivated(QMdiSubWindow* window)
{
    auto* viewer = window ? qobject_cast<QAStViewerWindow*>(window->widget()) : nullptr;
    if (viewer == m_active)
        return;
    if (m_active)
        m_active->desactivated();
    m_active = viewer;
    if (viewer)
        viewer->activated();

    QWidget* outline = viewer ? viewer->contentOutlineWidget() : nullptr;
    if (outline) {
        // The pane only shows the widget; the viewer keeps owning it and deletes it.
        if (m_outline->indexOf(outline) < 0)
            m_outline->addWidget(outline);
        m_outline->setCurrentWidget(outline);
    } else {
        m_outline->setCurrentIndex(0);
    }
    updateCommands();
}

void StudioWindow::updateCommands()
{
    for (const auto& [action, enabled] : m_commands)
        action->setEnabled(m_active && (m_active.data()->*enabled)());
}
