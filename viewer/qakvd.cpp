#include "qakvd.h"
#include "getpix.h"
#include "kvdchart.h"
#include "kvdconfig.h"
#include "kvdconfigdlg.h"
#include "kvdcurve.h"
#include "kvdicons.h"
#include "kvdtoolbar.h"
#include "kvdtooltip.h"
#include "kvdwindowshell.h"
#include "qalistview.h"
#include "studiointerface.h"

#include <QAction>
#include <QFile>
#include <QMouseEvent>
#include <QPainter>
#include <QPrinter>
#include <QTreeWidget>
#include <QWheelEvent>

StudioInterface* QAKVD::_iface = nullptr;
bool QAKVD::Started = false;
QString QAKVD::CurrentUser;

// ---------------------------------------------------------------------------------------
// Paper

QAKVD::KVDPaper::KVDPaper(QAKVD* owner, const char* name, int) : QWidget(owner), m_owner(owner)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(false);
}

void QAKVD::KVDPaper::mousePressEvent(QMouseEvent* event)
{
    m_owner->mousePressEvent(event);
}

void QAKVD::KVDPaper::mouseReleaseEvent(QMouseEvent* event)
{
    m_owner->mouseReleaseEvent(event);
}

void QAKVD::KVDPaper::mouseMoveEvent(QMouseEvent* event)
{
    m_owner->mouseMoveEvent(event);
}

void QAKVD::KVDPaper::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

void QAKVD::KVDPaper::paintEvent(QPaintEvent*)
{
    // All drawing happens in the viewer's pass; the paper only shows its picture, asking
    // for a new one when its size no longer matches.
    if (m_owner->m_picture.size() != KVDChart::paperSize(width(), height()))
        m_owner->paintEvent(nullptr);
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_owner->m_picture);
}

// ---------------------------------------------------------------------------------------
// Construction and lifecycle

QAKVD::QAKVD(QWidget* parent, const char* name, int flags, bool activate)
    : QAStViewerWindow(parent, name, flags | WRepaintNoErase)
{
    setActivateDisplay(activate);
    setWindowTitle(tr("Kavendi ", "Window title"));
    setWindowIcon(GETPIX("kvdmini_xpm", kvdmini_xpm_data));
    m_paper = new KVDPaper(this, name, 0);
    setCentralWidget(m_paper);
    // A window started without the plug-in's initialize() still talks through a shell.
    if (!KVDShell::current())
        KVDShell::install(&KVDWindowShell::instance());
    m_view.questions = KVDWindowShell::questions();

    if (!Start()) {
        Started = false;
        close();
        return;
    }
    m_toolTip = new KVDToolTip(m_paper, &m_view.curves, m_view.config, nullptr);
    if (m_view.perUserView) {
        CurrentUser = QStringLiteral("toto");
        if (!CreateToolMenu())
            close();
        else
            showMaximized();
    } else {
        showMaximized();
    }
    KVDToolBar::attach(this);
    m_dragPosition = 0.0;
    Started = true;
    repaintChart();
}

QAKVD::~QAKVD()
{
    if (Started && m_view.config)
        m_view.storeView();
    Started = false;
    delete m_view.config;
    m_view.config = nullptr;
    delete m_toolTip;
    m_toolTip = nullptr;
    qDeleteAll(m_view.curves);
    m_view.curves.clear();
    m_view.events.clear();
    delete m_userTree;
}

void QAKVD::initialize(QARes*, StudioInterface* iface)
{
    _iface = iface;
    KVDShell::install(&KVDWindowShell::instance());
    if (!KVDToolBar::bar() && iface && iface->mainWindow())
        CreateToolBar(iface->mainWindow());
}

void QAKVD::warningBox(const QString& text)
{
    KVDShell::warningBox(text);
}

void QAKVD::criticalBox(const QString& text)
{
    KVDShell::criticalBox(text);
}

bool QAKVD::Launched()
{
    return Started;
}

QString QAKVD::GetCurrentUser()
{
    return CurrentUser;
}

void QAKVD::CreateToolBar(QMainWindow* mainWindow)
{
    KVDToolBar::create(mainWindow);
}

void QAKVD::ResetToolBar()
{
    KVDToolBar::reset();
}

QToolBar* QAKVD::toolBar()
{
    return KVDToolBar::bar();
}

bool QAKVD::Start()
{
    if (!m_startup.load())
        return false;
    if (!m_view.perUserView) {
        CreateTree();
    } else if (!m_view.config->users.contains(CurrentUser)) {
        warningBox(tr("Nothing to display for user %1\n").arg(CurrentUser));
        return false;
    }
    m_view.datesSet = !m_view.curves.isEmpty();
    return true;
}

void QAKVD::activated()
{
    if (!Started)
        return;
    KVDToolBar::setEnabled(true);
    setFocus();
    CreateTree();
    CreateToolMenu();
    repaintChart();
}

void QAKVD::desactivated()
{
    KVDToolBar::setEnabled(false);
    m_menu.remove();
}

void QAKVD::clean()
{
    m_view.clean();
    m_menu.setExportEnabled(false);
    repaintChart();
}

bool QAKVD::canClose()
{
    if (Started && m_view.config)
        m_view.storeView();
    return true;
}

void QAKVD::FloatSc()
{
    m_view.floating = !m_view.floating;
}

QWidget* QAKVD::contentOutlineWidget() const
{
    return m_userTree;
}

// ---------------------------------------------------------------------------------------
// Selection

void QAKVD::CreateTree()
{
    delete m_userTree;
    m_userTree = new QAListView(this, "kvd-listview");
    m_userTree->setRootIsDecorated(true);
    m_userTree->setColumnCount(2);
    m_userTree->setHeaderLabels({QStringLiteral("col1")});
    m_userTree->setColumnHidden(1, true);
    m_userTree->setHeaderHidden(true);
    m_userTree->hide();
    if (m_view.config)
        for (const QString& user : m_view.config->users.uniqueKeys())
            new QTreeWidgetItem(m_userTree, {user, user});
    connect(m_userTree.data(), &QAListView::selectionChanged, this, &QAKVD::SelectUser);
    if (QTreeWidgetItem* first = m_userTree->topLevelItem(0))
        first->setSelected(true);
}

void QAKVD::SelectUser(QTreeWidgetItem* item)
{
    if (!item && m_userTree && !m_userTree->selectedItems().isEmpty())
        item = m_userTree->selectedItems().first();
    if (!item)
        return;
    CurrentUser = item->text(1);
    CreateToolMenu();
}

void QAKVD::SelectField(int id)
{
    if (QAction* item = m_menu.item(id))
        m_view.selectField(item->text());
}

void QAKVD::SelectMeasure(int id)
{
    if (m_view.selectMeasure(id, CurrentUser))
        m_menu.setExportEnabled(true);
    if (id != 0)
        repaintChart();
}

// ---------------------------------------------------------------------------------------
// Painting, printing and export

void QAKVD::paintEvent(QPaintEvent*)
{
    if (!m_paper)
        return;
    const QSize size = KVDChart::paperSize(m_paper->width(), m_paper->height());
    setPaperSize(size);
    if (m_picture.size() != size)
        m_picture = QPixmap(size);
    {
        QPainter painter(&m_picture);
        KVDChart chart = m_view.chart();
        chart.paint(&painter, size.width(), size.height());
        // A paint may drop a curve that runs too far off the plot, scale curves included.
        m_view.firstScale = chart.leftScale;
        m_view.secondScale = chart.rightScale;
    }
    m_paper->update();
}

void QAKVD::setPaperSize(const QSize& size)
{
    if (!size.isValid())
        return;
    m_paperWidth = size.width();
    m_paperHeight = size.height();
    m_firstPaint = false;
}

void QAKVD::print()
{
    setPaperSize(m_output.print());
}

void QAKVD::printChart(QPrinter* printer)
{
    setPaperSize(m_output.printChart(printer));
}

void QAKVD::ImportFile(int)
{
    m_output.exportCsv();
}

// ---------------------------------------------------------------------------------------
// Events

void QAKVD::CallCreateEvent(int id)
{
    if (id != 0)
        CreateEvents(0);
}

void QAKVD::EventHide()
{
    m_view.events.EventHide();
    repaintChart();
}

// ---------------------------------------------------------------------------------------
// Zoom and scales

void QAKVD::zoomIn()
{
    if (m_view.zoomIn())
        repaintChart();
}

void QAKVD::zoomOut()
{
    if (m_view.zoomOut())
        repaintChart();
}

void QAKVD::setScale(int id, qint64 before, qint64 after)
{
    m_menu.checkScale(id);
    // With identifier 0 the previous shift is applied again.
    if (id != 0)
        m_view.setScale(before, after);
    if (m_view.datesSet)
        m_view.rebase(true);
    repaintChart();
}

void QAKVD::ScaleYear(int id)
{
    setScale(id, 15724800, 15811200);
}

void QAKVD::ScaleMonth(int id)
{
    setScale(id, 1296000, 1296000);
}

// Deliberately lopsided: 16 hours before the middle, 12 after.
void QAKVD::ScaleHour(int id)
{
    setScale(id, 57600, 43200);
}

void QAKVD::ScaleCustom(int id)
{
    KVDConfigDlg dialog(this, QString());
    if (dialog.exec() == QDialog::Accepted) {
        m_menu.checkScale(id);
        m_view.setRange(dialog.GetStart(), dialog.GetEnd());
    }
    repaintChart();
}

// ---------------------------------------------------------------------------------------
// Mouse

void QAKVD::mousePressEvent(QMouseEvent* event)
{
    press(event);
}

void QAKVD::press(QMouseEvent* event)
{
    m_pressHandled = true;
    const QPoint pos = event->position().toPoint();
    if (event->button() == Qt::LeftButton) {
        m_dragging = true;
        setCursor(Qt::PointingHandCursor);
    }
    m_lastDragX = pos.x();
    if (event->button() == Qt::RightButton)
        m_popups.rightClick(pos, event->globalPosition().toPoint(), m_paperWidth);
    repaintChart();
}

void QAKVD::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint pos = event->position().toPoint();
    if (pos.x() < 55 || pos.x() > m_paperWidth - 250 || pos.y() < 50 ||
        pos.y() > m_paperHeight - 100)
        return;
    if (m_dragging) {
        const double perPixel = double(m_view.start.secsTo(m_view.end)) / (m_paperWidth - 305);
        if (pos.x() > m_lastDragX)
            m_dragShift = -perPixel * (pos.x() - m_lastDragX);
        else if (pos.x() < m_lastDragX)
            m_dragShift = perPixel * (m_lastDragX - pos.x());
        m_lastDragX = pos.x();
    }
    if (!m_view.datesSet) {
        repaintChart();
        return;
    }
    // Without a drag, or without a move, the previous shift is applied again: kept as is.
    m_view.drag(qint64(m_dragShift));
    repaintChart();
}

void QAKVD::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_dragging = false;
        setCursor(Qt::ArrowCursor);
    } else if (!m_pressHandled) {
        press(event);
    }
    m_pressHandled = false;
}

// ---------------------------------------------------------------------------------------
// Records: deletion and custom curves

void QAKVD::RangeDeletion(int id)
{
    if (id == 0) {
        if (_iface)
            _iface->progressEnd();
        return;
    }
    if (m_deletion.range(CurrentUser))
        rebuildView();
}

void QAKVD::CustomDeletion(int id)
{
    if (id == 0) {
        if (_iface)
            _iface->progressEnd();
        unsetCursor();
        return;
    }
    if (!m_deletion.custom())
        return;
    rebuildView();
    setCursor(Qt::ArrowCursor);
}

void QAKVD::CustomCurveMenu(int id)
{
    if (id != 0 && m_customCurves.choose(CurrentUser))
        rebuildView(false);
    else
        repaintChart();
}

void QAKVD::rebuildView(bool endProgress)
{
    if (QFile::exists(m_view.configPath()))
        m_view.storeView();
    clean();
    m_view.events.clear();
    m_startup.reload();
    if (m_toolTip)
        m_toolTip->setConfig(m_view.config);
    repaintChart();
    if (endProgress && _iface)
        _iface->progressEnd();
}
