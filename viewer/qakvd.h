#ifndef QAKVD_H
#define QAKVD_H

#include "kvdview.h"
#include "qastviewerwindow.h"

#include <QColor>
#include <QDateTime>
#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class KVDChart;
class KVDConfig;
class KVDCurve;
class KVDEvent;
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

// The chart viewer window the plug-in creates for the host. It owns the repository
// configuration, the curve and event lists (and their items), the view dates and the
// paper; it deletes itself when closed.
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

    // Remembers the host interface (null without a host) for every window and, the first
    // time there is one, creates the shared tool bar in its main window.
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
    bool CreateToolMenu();
    // The printing pass onto an accepted printer (the print dialog is print()'s).
    void printChart(QPrinter* printer);
    // Whether a checked row of list (column 2) shows the date-time of Unix time `time`.
    bool InList(unsigned int time, QTreeWidget* list);
    // Asks for a new event with the event dialog (on the day of Unix time `time`, today
    // for 0) and adds it; false when cancelled or when that day has an event already.
    bool CreateEvents(unsigned int time);
    // Whether an event lies on exactly that day.
    bool IsNearTag(const QDate& day) const;
    // Writes the checked rows of list, last row first, into the custom measure file of
    // the measure named by the last row and of `user`. No index file is written for it.
    void CreateCustomFile(QTreeWidget* list, const QString& user);

    QWidget* contentOutlineWidget() const override;
    bool canClose() override;
    bool isSaveEnabled() override;
    bool isSaveAsEnabled() override;
    bool isPrintEnabled() override;
    bool isCopyEnabled() override;
    bool isPasteEnabled() override;
    bool isCutEnabled() override;
    bool isUndoEnabled() override;
    bool isRedoEnabled() override;
    bool isDelEnabled() override;
    bool isSelectAllEnabled() override;
    bool isFindEnabled() override;
    bool isReplaceEnabled() override;
    bool isGoToEnabled() override;
    bool isReloadEnabled() override;
    bool isResetEnabled() override;
    bool isExportDocEnabled() override;
    bool isZoomEnabled() override;
    bool isFilterEnabled() override;
    void setFiles(QStringList* files, QStringList* others, ViewerMode mode) override;
    // The window's own by-value overload; the host's const-reference one stays visible.
    using QAStViewerWindow::scrollToTag;
    virtual void scrollToTag(QString tag, int line, int column);

    // Read access for the host, the tools and the tests.
    KVDPaper* paper() const { return m_paper; }
    KVDView& view() { return m_view; }
    // 1: one shared view of the whole repository; 0: a view per user. Always 1; the
    // configuration keeps its per-user branches for 0.
    int viewMode() const { return m_view.perUserView ? 0 : 1; }
    const KVDView& view() const { return m_view; }
    QMenu* viewerMenu() const { return m_menu; }
    int hostMenuId() const { return m_menuId; }
    int checkedScale() const { return m_checkedScale; }
    // The menu action carrying int id `id` (kept with QAction::setData), searched through
    // the viewer menu and its submenus; null when there is none.
    QAction* menuItem(int id) const;

public slots:
    void activated() override;
    void desactivated() override;
    void save() override;
    void saveAs() override;
    void print() override;
    void copy() override;
    void paste() override;
    void cut() override;
    void undo() override;
    void redo() override;
    void del() override;
    void selectAll() override;
    void replace() override;
    void goTo() override;
    void reload() override;
    void reset() override;
    void exportDoc() override;
    void zoomIn() override;
    void zoomOut() override;
    void zoom(int level) override;
    void mnFilter() override;
    void find();
    void find(const QString& text) override;
    void refreshContents() override;

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
    void ImportFile(int id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    // Moves the check mark of the scale entries to `id`, as every scale slot does.
    void checkScale(int id);
    void setScale(int id, qint64 before, qint64 after);
    void press(QMouseEvent* event);
    // The right-button menus: the curve under the pointer, else the chart itself.
    bool curveHit(const KVDCurve* curve, const QPoint& pos) const;
    // Answers true when the scan of further curves stops.
    bool runCurvePopup(int& index, const QPoint& globalPos, const QDateTime& pointer);
    void runChartPopup(const QPoint& globalPos, const QDateTime& pointer);
    // Appends again, through the store, every record of the temporary file that
    // `deleted` does not claim, then removes the temporary file.
    void rewrite(const QString& temporary, const QString& measure, const QString& user, int fields,
                 const QString& cancelText, const QString& failure,
                 const std::function<bool(const quint32*)>& deleted);
    // After a deletion or a new custom file: store the view, clear it, and load the
    // repository again as at start-up.
    void rebuildView();
    void reloadConfiguration();
    void storeView();

    void repaintChart();
    int newMenuId();

    static StudioInterface* _iface;
    static bool Started;
    // Goes with the host's main window.
    static QPointer<QToolBar> ToolBar;
    static QString CurrentUser;

    KVDView m_view;
    int m_menuId = -1;
    bool m_firstPaint = true;
    QMenu* m_menu = nullptr;
    KVDPaper* m_paper = nullptr;
    QPointer<QAListView> m_userTree;
    KVDToolTip* m_toolTip = nullptr;
    bool m_rootFromDialog = false;
    double m_dragPosition = 0.0;
    bool m_pending = false;

    // Menu items remembered by id.
    int m_exportId = 0;
    int m_checkedScale = 0;
    int m_nextMenuId = -2;

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
