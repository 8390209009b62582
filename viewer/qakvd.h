#ifndef QAKVD_H
#define QAKVD_H

#include "kvdcustomcurves.h"
#include "kvdmenu.h"
#include "kvdoutput.h"
#include "kvdpopups.h"
#include "kvdrecorddeletion.h"
#include "kvdstartup.h"
#include "kvdview.h"
#include "qastviewerwindow.h"

#include <QPixmap>
#include <QPointer>
#include <QString>
#include <QWidget>

class KVDToolTip;
class QAction;
class QARes;
class QAListView;
class QMenu;
class QPrinter;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;
class StudioInterface;

// The chart viewer window the plug-in creates for the host. It owns the view (the
// repository configuration, the curve and event lists and their items, the view dates)
// and the paper, wires the host's calls, the menus and the mouse to the jobs that act on
// the view, and repaints. It deletes itself when closed.
class QAKVD : public QAStViewerWindow
{
    Q_OBJECT

public:
    // The drawing surface: shows the viewer's latest picture and hands mouse events to
    // the viewer; wheel events are deliberately swallowed.
    class KVDPaper : public QWidget
    {
    public:
        KVDPaper(QAKVD* owner, const char* name, int flags);

    protected:
        void mousePressEvent(QMouseEvent* event) override;
        void mouseReleaseEvent(QMouseEvent* event) override;
        void mouseMoveEvent(QMouseEvent* event) override;
        void wheelEvent(QWheelEvent* event) override;
        void paintEvent(QPaintEvent* event) override;

    private:
        QAKVD* m_owner = nullptr;
    };

    // flags are the host's widget flags (WDestructiveClose...); activate is handed to the
    // host through setActivateDisplay. The window starts at once: when the repository
    // cannot be opened it closes itself (and, with WDestructiveClose, goes away).
    QAKVD(QWidget* parent, const char* name, int flags, bool activate);
    ~QAKVD() override;

    // Remembers the host interface (null without a host) for every window, installs the
    // windows' shell and, the first time there is a host, creates the shared tool bar in
    // its main window.
    static void initialize(QARes* res, StudioInterface* iface);
    static StudioInterface* iface() { return _iface; }
    // The one way the viewer shows an error, through the installed shell: a warning box
    // on the host's main window with the host's title, or parentless with the title
    // "Kavendi" without a host.
    static void warningBox(const QString& text);
    // The critical box of the configuration steps, likewise.
    static void criticalBox(const QString& text);
    // True once a window has finished starting, until a window goes away.
    static bool Launched();
    static QString GetCurrentUser();
    // The tool bar shared by every viewer window, in the host's main window.
    static void CreateToolBar(QMainWindow* mainWindow);
    static void ResetToolBar();
    static QToolBar* toolBar();

    // Finds the repository and loads its configuration; false after the failing step
    // has shown its message.
    bool Start();
    // Builds the user tree shown in the host's outline pane.
    void CreateTree();
    // Builds the "&Kavendi" menu and puts it into the host's menu bar; false without a
    // host, when the menu is there already, or when the current user is unknown.
    bool CreateToolMenu() { return m_menu.build(this, m_view, CurrentUser); }
    // The printing pass onto an accepted printer (the print dialog is print()'s).
    void printChart(QPrinter* printer);
    bool InList(unsigned int time, QTreeWidget* list)
    {
        return KVDRecordDeletion::InList(time, list);
    }
    bool CreateEvents(unsigned int time) { return m_popups.createEvent(time); }
    // Whether an event lies on exactly that day.
    bool IsNearTag(const QDate& day) const { return m_view.events.IsNearTag(day); }
    void CreateCustomFile(QTreeWidget* list, const QString& user)
    {
        m_customCurves.CreateCustomFile(list, user);
    }

    QWidget* contentOutlineWidget() const override;
    bool canClose() override;
    bool isSaveEnabled() override { return false; }
    bool isSaveAsEnabled() override { return false; }
    bool isPrintEnabled() override { return true; }
    bool isCopyEnabled() override { return true; }
    bool isPasteEnabled() override { return false; }
    bool isCutEnabled() override { return false; }
    bool isUndoEnabled() override { return false; }
    bool isRedoEnabled() override { return false; }
    bool isDelEnabled() override { return false; }
    bool isSelectAllEnabled() override { return false; }
    bool isFindEnabled() override { return true; }
    bool isReplaceEnabled() override { return false; }
    bool isGoToEnabled() override { return false; }
    bool isReloadEnabled() override { return true; }
    bool isResetEnabled() override { return true; }
    bool isExportDocEnabled() override { return true; }
    bool isZoomEnabled() override { return true; }
    bool isFilterEnabled() override { return false; }
    void setFiles(QStringList*, QStringList*, ViewerMode) override {}
    // The window's own by-value overload; the host's const-reference one stays visible.
    using QAStViewerWindow::scrollToTag;
    virtual void scrollToTag(QString, int, int) {}

    // Read access for the host, the tools and the tests.
    KVDPaper* paper() const { return m_paper; }
    KVDView& view() { return m_view; }
    const KVDView& view() const { return m_view; }
    // 1: one shared view of the whole repository; 0: a view per user. Always 1; the
    // configuration keeps its per-user branches for 0.
    int viewMode() const { return m_view.perUserView ? 0 : 1; }
    QMenu* viewerMenu() const { return m_menu.menu(); }
    int hostMenuId() const { return m_menu.hostMenuId(); }
    int checkedScale() const { return m_menu.checkedScale(); }
    QAction* menuItem(int id) const { return m_menu.item(id); }

public slots:
    void activated() override;
    void desactivated() override;
    void print() override;
    // The host shows copy, find, reload, reset, export and zoom-by-level enabled; they
    // are deliberately empty, as are the commands it shows disabled.
    void save() override {}
    void saveAs() override {}
    void copy() override {}
    void paste() override {}
    void cut() override {}
    void undo() override {}
    void redo() override {}
    void del() override {}
    void selectAll() override {}
    void replace() override {}
    void goTo() override {}
    void reload() override {}
    void reset() override {}
    void exportDoc() override {}
    void zoomIn() override;
    void zoomOut() override;
    void zoom(int) override {}
    void mnFilter() override {}
    void find() {}
    void find(const QString&) override {}
    void refreshContents() override { repaintChart(); }

    void SelectMeasure(int id);
    void SelectField(int id);
    void SelectUser(QTreeWidgetItem* item);
    void clean();
    void ScaleYear(int id);
    void ScaleMonth(int id);
    void ScaleHour(int id);
    void ScaleCustom(int id);
    void CustomCurveMenu(int id);
    void CustomDeletion(int id);
    void RangeDeletion(int id);
    void CallCreateEvent(int id);
    void EventHide();
    void FloatSc();
    // Keeps its name although it exports: the "Export" item is wired to it.
    void ImportFile(int id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void setScale(int id, qint64 before, qint64 after);
    void press(QMouseEvent* event);
    // After the repository's files changed: store the view, clear it, and load the
    // repository again as at start-up; endProgress also ends the host's progress display.
    void rebuildView(bool endProgress = true);
    void repaintChart() { paintEvent(nullptr); }
    // The paper geometry the mouse works in: the latest screen picture or printed page.
    void setPaperSize(const QSize& size);

    static StudioInterface* _iface;
    static bool Started;
    static QString CurrentUser;

    KVDView m_view;
    KVDStartup m_startup{m_view, this};
    KVDMenu m_menu;
    KVDPopups m_popups{m_view, this};
    KVDRecordDeletion m_deletion{m_view, this};
    KVDCustomCurves m_customCurves{m_view, this};
    KVDOutput m_output{m_view, this};
    KVDPaper* m_paper = nullptr;
    QPointer<QAListView> m_userTree;
    KVDToolTip* m_toolTip = nullptr;
    bool m_firstPaint = true;
    double m_dragPosition = 0.0;
    bool m_pending = false;

    // Zoom, scales and mouse.
    double m_paperWidth = 0.0;
    double m_paperHeight = 0.0;
    bool m_dragging = false;
    int m_lastDragX = 0;
    double m_dragShift = 0.0;
    bool m_pressHandled = false;

    // The latest picture of the chart, shown by the paper.
    QPixmap m_picture;
};

#endif
