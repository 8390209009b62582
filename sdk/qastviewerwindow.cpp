#include "qastviewerwindow.h"

QAStViewerWindow::QAStViewerWindow(QWidget* parent, const char* name, int flags) : QMainWindow(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    if (flags & WDestructiveClose)
        setAttribute(Qt::WA_DeleteOnClose);
    if (flags & WRepaintNoErase)
        setAttribute(Qt::WA_OpaquePaintEvent);
}

QAStViewerWindow::~QAStViewerWindow() = default;

void QAStViewerWindow::setFile(const QString& file)
{
    QStringList files{file};
    setFiles(&files, nullptr, Normal);
}

bool QAStViewerWindow::canClose() { return true; }
QWidget* QAStViewerWindow::contentOutlineWidget() const { return nullptr; }
bool QAStViewerWindow::isSaveEnabled() { return false; }
bool QAStViewerWindow::isSaveAsEnabled() { return false; }
bool QAStViewerWindow::isPrintEnabled() { return false; }
bool QAStViewerWindow::isCopyEnabled() { return false; }
bool QAStViewerWindow::isPasteEnabled() { return false; }
bool QAStViewerWindow::isCutEnabled() { return false; }
bool QAStViewerWindow::isUndoEnabled() { return false; }
bool QAStViewerWindow::isRedoEnabled() { return false; }
bool QAStViewerWindow::isDelEnabled() { return false; }
bool QAStViewerWindow::isSelectAllEnabled() { return false; }
bool QAStViewerWindow::isFindEnabled() { return false; }
bool QAStViewerWindow::isReplaceEnabled() { return false; }
bool QAStViewerWindow::isGoToEnabled() { return false; }
bool QAStViewerWindow::isReloadEnabled() { return false; }
bool QAStViewerWindow::isResetEnabled() { return false; }
bool QAStViewerWindow::isExportDocEnabled() { return false; }
bool QAStViewerWindow::isZoomEnabled() { return false; }
bool QAStViewerWindow::isFilterEnabled() { return false; }
QString QAStViewerWindow::macro(const QString& text) { return text; }
void QAStViewerWindow::exportHTML(const QString&, const QString&, QAIProgressMonitor*, QAILogMonitor*) {}

void QAStViewerWindow::activated() {}
void QAStViewerWindow::desactivated() {}
void QAStViewerWindow::save() {}
void QAStViewerWindow::saveAs() {}
void QAStViewerWindow::print() {}
void QAStViewerWindow::copy() {}
void QAStViewerWindow::paste() {}
void QAStViewerWindow::cut() {}
void QAStViewerWindow::undo() {}
void QAStViewerWindow::redo() {}
void QAStViewerWindow::del() {}
void QAStViewerWindow::selectAll() {}
void QAStViewerWindow::find(const QString&) {}
void QAStViewerWindow::replace() {}
void QAStViewerWindow::goTo() {}
void QAStViewerWindow::reload() {}
void QAStViewerWindow::zoomIn() {}
void QAStViewerWindow::zoomOut() {}
void QAStViewerWindow::zoom(int) {}
void QAStViewerWindow::mnFilter() {}
void QAStViewerWindow::reset() {}
void QAStViewerWindow::exportDoc() {}
void QAStViewerWindow::refreshContents() {}
bool QAStViewerWindow::canReload() { return false; }
void QAStViewerWindow::setFiles(QStringList*, QStringList*, ViewerMode) {}
void QAStViewerWindow::setMode(ViewerMode mode) { m_mode = mode; }
void QAStViewerWindow::setNode(const nodeData& node) { m_node = node; }
void QAStViewerWindow::setChannel(int channel) { m_channel = channel; }
void QAStViewerWindow::scrollToTag(const QString&, int, int) {}
void QAStViewerWindow::setRootName(const QString& name) { m_rootName = name; }
void QAStViewerWindow::setRootIcon(const QPixmap& icon) { m_rootIcon = icon; }
void QAStViewerWindow::setAutoReload(bool autoReload) { m_autoReload = autoReload; }
void QAStViewerWindow::streamCharReceived(const char*) {}
void QAStViewerWindow::setActivateDisplay(bool activate) { m_activateDisplay = activate; }
