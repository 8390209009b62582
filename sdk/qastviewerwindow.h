#ifndef QASTVIEWERWINDOW_H
#define QASTVIEWERWINDOW_H

#include <QMainWindow>
#include <QPixmap>
#include <QString>
#include <QStringList>

class QAIProgressMonitor;
class QAILogMonitor;

// Widget flags of the host's window constructor, mapped onto widget attributes.
enum QAStWidgetFlags {
    WDestructiveClose = 0x00010000, // Qt::WA_DeleteOnClose
    WRepaintNoErase = 0x00800000    // Qt::WA_OpaquePaintEvent
};

// A node of the host's project tree handed to a viewer.
struct nodeData
{
    QString key;
    QString text;
};

// A document window of the host. The host asks the is...Enabled() queries to enable
// its generic commands and calls the matching command slots; activated() and
// desactivated() tell the window when it becomes, or stops being, the current one.
class QAStViewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    enum ViewerMode { Normal = 0, ReadOnly = 1, Stream = 2 };

    QAStViewerWindow(QWidget* parent = nullptr, const char* name = nullptr, int flags = 0);
    ~QAStViewerWindow() override;

    virtual void setFile(const QString& file);
    // Answers whether the window may close now; the host asks before closing it.
    virtual bool canClose();
    virtual QWidget* contentOutlineWidget() const;
    virtual bool isSaveEnabled();
    virtual bool isSaveAsEnabled();
    virtual bool isPrintEnabled();
    virtual bool isCopyEnabled();
    virtual bool isPasteEnabled();
    virtual bool isCutEnabled();
    virtual bool isUndoEnabled();
    virtual bool isRedoEnabled();
    virtual bool isDelEnabled();
    virtual bool isSelectAllEnabled();
    virtual bool isFindEnabled();
    virtual bool isReplaceEnabled();
    virtual bool isGoToEnabled();
    virtual bool isReloadEnabled();
    virtual bool isResetEnabled();
    virtual bool isExportDocEnabled();
    virtual bool isZoomEnabled();
    virtual bool isFilterEnabled();
    virtual QString macro(const QString& text);
    virtual void exportHTML(const QString& file, const QString& directory,
                            QAIProgressMonitor* progress, QAILogMonitor* log);

public slots:
    virtual void activated();
    virtual void desactivated();
    virtual void save();
    virtual void saveAs();
    virtual void print();
    virtual void copy();
    virtual void paste();
    virtual void cut();
    virtual void undo();
    virtual void redo();
    virtual void del();
    virtual void selectAll();
    virtual void find(const QString& text);
    virtual void replace();
    virtual void goTo();
    virtual void reload();
    virtual void zoomIn();
    virtual void zoomOut();
    virtual void zoom(int level);
    virtual void mnFilter();
    virtual void reset();
    virtual void exportDoc();
    virtual void refreshContents();

public:
    virtual bool canReload();
    // files and the second list may be null.
    virtual void setFiles(QStringList* files, QStringList* others, ViewerMode mode);
    virtual void setMode(ViewerMode mode);
    virtual void setNode(const nodeData& node);
    virtual void setChannel(int channel);
    virtual void scrollToTag(const QString& tag, int line, int column);
    virtual void setRootName(const QString& name);
    virtual void setRootIcon(const QPixmap& icon);
    virtual void setAutoReload(bool autoReload);
    virtual void streamCharReceived(const char* text);

    // Whether the host should make the window current when it is shown.
    void setActivateDisplay(bool activate);
    bool activateDisplay() const { return m_activateDisplay; }

    ViewerMode mode() const { return m_mode; }
    int channel() const { return m_channel; }
    bool autoReload() const { return m_autoReload; }
    const nodeData& node() const { return m_node; }
    QString rootName() const { return m_rootName; }
    QPixmap rootIcon() const { return m_rootIcon; }

private:
    bool m_activateDisplay = true;
    ViewerMode m_mode = Normal;
    int m_channel = 0;
    bool m_autoReload = false;
    nodeData m_node;
    QString m_rootName;
    QPixmap m_rootIcon;
};

#endif
