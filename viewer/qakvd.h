#ifndef QAKVD_H
#define QAKVD_H

#include "qastviewerwindow.h"

#include <QWidget>

class QARes;
class StudioInterface;

// The chart viewer window the plug-in creates for the host.
class QAKVD : public QAStViewerWindow
{
    Q_OBJECT

public:
    // The drawing surface: shows the viewer's latest picture and hands mouse events to
    // the viewer; wheel events are swallowed.
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

    // flags are the host's widget flags (WDestructiveClose...); activate is handed to
    // the host through setActivateDisplay.
    QAKVD(QWidget* parent, const char* name, int flags, bool activate);
    ~QAKVD() override;

    // Remembers the host interface (null without a host) for every window.
    static void initialize(QARes* res, StudioInterface* iface);
    static StudioInterface* iface() { return _iface; }
    // The one way the viewer shows an error: a warning box on the host's main window
    // with the host's title, or parentless with the title "Kavendi" without a host.
    static void warningBox(const QString& text);
    // The user whose measures the viewer shows; null until a user is chosen.
    static QString GetCurrentUser() { return CurrentUser; }
    static QString CurrentUser;

    // 1: one shared view of the whole repository; 0: a view per user. Always 1; the
    // configuration keeps its per-user branches for 0.
    int viewMode() const { return m_viewMode; }

    QWidget* contentOutlineWidget() const override;
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

    KVDPaper* paper() const { return m_paper; }

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

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static StudioInterface* _iface;

    KVDPaper* m_paper = nullptr;
    QWidget* m_userTree = nullptr;
    int m_viewMode = 1;
};

#endif
