#ifndef STUDIOWINDOW_H
#define STUDIOWINDOW_H

#include "qastviewerwindow.h"
#include "studiohost.h"

#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QStringList>

class QAction;
class QAStViewerPlugin;
class QMdiArea;
class QMdiSubWindow;
class QStackedWidget;

// The host's main window: a menu bar, viewer windows in an MDI area, an outline pane
// showing the active viewer's outline widget, tool bars and a status bar.
class StudioWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit StudioWindow(const QString& dataDirectory, QWidget* parent = nullptr);
    ~StudioWindow() override;

    StudioHost& host() { return m_host; }

    // Loads and initialises a viewer plug-in. On refusal the reason is reported on
    // standard error and in the status bar, kept in refusals(), and the host goes on.
    bool loadPlugin(const QString& path);
    QAStViewerPlugin* plugin() const { return m_plugin; }
    QStringList refusals() const { return m_refusals; }

    // Opens a viewer of the loaded plug-in; null when there is none or when the viewer
    // closed itself while starting.
    QAStViewerWindow* openViewer();
    QAStViewerWindow* activeViewer() const { return m_active; }
    QList<QAStViewerWindow*> viewers() const;
    QWidget* outlinePane() const;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void subWindowActivated(QMdiSubWindow* window);
    void updateCommands();

    StudioHost m_host;
    QMdiArea* m_mdi = nullptr;
    QStackedWidget* m_outline = nullptr;
    QAStViewerPlugin* m_plugin = nullptr;
    QPointer<QAStViewerWindow> m_active;
    QStringList m_refusals;
    QAction* m_openViewer = nullptr;
    QList<QPair<QAction*, bool (QAStViewerWindow::*)()>> m_commands;
};

#endif
