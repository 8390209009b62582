#include "qakvd.h"
#include "getpix.h"
#include "kvdicons.h"
#include "studiointerface.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPainter>
#include <QWheelEvent>

StudioInterface* QAKVD::_iface = nullptr;
QString QAKVD::CurrentUser;

QAKVD::KVDPaper::KVDPaper(QAKVD* owner, const char* name, int) : QWidget(owner), m_owner(owner)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void QAKVD::KVDPaper::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
}

void QAKVD::KVDPaper::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
}

void QAKVD::KVDPaper::mouseMoveEvent(QMouseEvent* event)
{
    QWidget::mouseMoveEvent(event);
}

void QAKVD::KVDPaper::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

void QAKVD::KVDPaper::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
}

QAKVD::QAKVD(QWidget* parent, const char* name, int flags, bool activate)
    : QAStViewerWindow(parent, name, flags | WRepaintNoErase)
{
    setActivateDisplay(activate);
    setWindowTitle(tr("Kavendi ", "Window title"));
    setWindowIcon(GETPIX("kvdmini_xpm", kvdmini_xpm_data));
    m_paper = new KVDPaper(this, name, 0);
    setCentralWidget(m_paper);
}

QAKVD::~QAKVD() = default;

void QAKVD::initialize(QARes*, StudioInterface* iface)
{
    _iface = iface;
}

void QAKVD::warningBox(const QString& text)
{
    if (_iface)
        QMessageBox::warning(_iface->mainWindow(), _iface->title(), text);
    else
        QMessageBox::warning(nullptr, tr("Kavendi", "Default title for message box"), text);
}

QWidget* QAKVD::contentOutlineWidget() const
{
    return m_userTree;
}

bool QAKVD::isSaveEnabled() { return false; }
bool QAKVD::isSaveAsEnabled() { return false; }
bool QAKVD::isPrintEnabled() { return true; }
bool QAKVD::isCopyEnabled() { return true; }
bool QAKVD::isPasteEnabled() { return false; }
bool QAKVD::isCutEnabled() { return false; }
bool QAKVD::isUndoEnabled() { return false; }
bool QAKVD::isRedoEnabled() { return false; }
bool QAKVD::isDelEnabled() { return false; }
bool QAKVD::isSelectAllEnabled() { return false; }
bool QAKVD::isFindEnabled() { return true; }
bool QAKVD::isReplaceEnabled() { return false; }
bool QAKVD::isGoToEnabled() { return false; }
bool QAKVD::isReloadEnabled() { return true; }
bool QAKVD::isResetEnabled() { return true; }
bool QAKVD::isExportDocEnabled() { return true; }
bool QAKVD::isZoomEnabled() { return true; }
bool QAKVD::isFilterEnabled() { return false; }

void QAKVD::setFiles(QStringList*, QStringList*, ViewerMode) {}
void QAKVD::scrollToTag(QString, int, int) {}

void QAKVD::activated() {}
void QAKVD::desactivated() {}
void QAKVD::save() {}
void QAKVD::saveAs() {}
void QAKVD::print() {}
// The host shows copy, find, reload, reset, export and zoom-by-level enabled; they are
// deliberately empty.
void QAKVD::copy() {}
void QAKVD::paste() {}
void QAKVD::cut() {}
void QAKVD::undo() {}
void QAKVD::redo() {}
void QAKVD::del() {}
void QAKVD::selectAll() {}
void QAKVD::replace() {}
void QAKVD::goTo() {}
void QAKVD::reload() {}
void QAKVD::reset() {}
void QAKVD::exportDoc() {}
void QAKVD::zoomIn() {}
void QAKVD::zoomOut() {}
void QAKVD::zoom(int) {}
void QAKVD::mnFilter() {}
void QAKVD::find() {}
void QAKVD::find(const QString&) {}

void QAKVD::refreshContents()
{
    paintEvent(nullptr);
}

void QAKVD::paintEvent(QPaintEvent*)
{
    if (m_paper)
        m_paper->update();
}
