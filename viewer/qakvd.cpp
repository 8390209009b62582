#include "qakvd.h"
#include "getpix.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "kvdconfigdlg.h"
#include "kvdchart.h"
#include "kvdchecklist.h"
#include "kvdcsvexport.h"
#include "kvdcustomselect.h"
#include "kvdmeasurefile.h"
#include "kvdstore.h"
#include "kvdeventset.h"
#include "kvdicons.h"
#include "kvdwindowshell.h"
#include "kvdtooltip.h"
#include "qalistview.h"
#include "studiointerface.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QWheelEvent>

#include <cstdio>
#include <cstdlib>
#include <vector>

StudioInterface* QAKVD::_iface = nullptr;
bool QAKVD::Started = false;
QPointer<QToolBar> QAKVD::ToolBar;
QString QAKVD::CurrentUser;

namespace {

const QLatin1String EditedMetric("_EDITED_METRIC_");

struct ToolButtonInfo
{
    const char* icon;
    const char* const* const* xpm;
    const char* tip;
    const char* whatsThis;
    bool toggle;
};

const ToolButtonInfo ToolButtons[] = {
    {"kvd_clear_xpm", &kvd_clear_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Clear"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Clear </b><br>Clears all graphics from the viewer window"),
     false},
    {"kvd_hide_xpm", &kvd_hide_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Hide Events"),
     QT_TRANSLATE_NOOP("QAKVD",
                       "<b> Hide Events </b><br>Hides all events markers in the viewer window"),
     false},
    {"kvd_float_xpm", &kvd_float_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Floating Schedule"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Floating Schedule </b><br>Toggles positioning of the calendar "
                                "depending on displayed values"),
     true},
};

QToolButton* addToolButton(QToolBar* bar, const ToolButtonInfo& info)
{
    auto* button = new QToolButton(bar);
    button->setIcon(GETPIX(info.icon, *info.xpm));
    button->setToolTip(QAKVD::tr(info.tip));
    button->setWhatsThis(QAKVD::tr(info.whatsThis));
    button->setCheckable(info.toggle);
    bar->addWidget(button);
    return button;
}

} // namespace

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

    const bool started = Start();
    if (started) {
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
        if (ToolBar) {
            // clear() hands the previous buttons back without a parent; they go with
            // their actions.
            const QList<QAction*> previous = ToolBar->actions();
            ToolBar->clear();
            qDeleteAll(previous);
            ToolBar->setEnabled(true);
            QToolButton* clear = addToolButton(ToolBar, ToolButtons[0]);
            connect(clear, &QToolButton::clicked, this, &QAKVD::clean);
            QToolButton* hide = addToolButton(ToolBar, ToolButtons[1]);
            connect(hide, &QToolButton::clicked, this, &QAKVD::EventHide);
            QToolButton* floating = addToolButton(ToolBar, ToolButtons[2]);
            connect(floating, &QToolButton::clicked, this, &QAKVD::FloatSc);
        }
        m_dragPosition = 0.0;
        Started = true;
    } else {
        Started = false;
        close();
        return;
    }
    repaintChart();
}

QAKVD::~QAKVD()
{
    if (Started && m_view.config)
        storeView();
    Started = false;
    delete m_view.config;
    m_view.config = nullptr;
    delete m_toolTip;
    m_toolTip = nullptr;
    qDeleteAll(m_view.curves);
    m_view.curves.clear();
    m_view.events.clear();
    // The variable was set from the directory dialog for this window only.
    if (m_rootFromDialog)
        putenv(const_cast<char*>("ZANTH_KVD_ROOT"));
    delete m_userTree;
    if (m_menuId != -1 && _iface)
        _iface->removeMenu(m_menuId);
    delete m_menu;
}

void QAKVD::initialize(QARes*, StudioInterface* iface)
{
    _iface = iface;
    KVDShell::install(&KVDWindowShell::instance());
    if (!ToolBar && iface && iface->mainWindow())
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

bool QAKVD::Start()
{
    delete m_view.config;
    m_view.config = nullptr;
    ProjectInterface* project = nullptr;
    if (_iface) {
        QUnknownInterface* answer = nullptr;
        _iface->queryObject(QStringLiteral("Project"), IID_ProjectInterface, &answer);
        project = static_cast<ProjectInterface*>(answer);
    }

    if (project && project->isOpen())
        m_view.root = project->directory();
    else if (m_view.perUserView)
        m_view.root = QString();
    if (!m_view.root.isNull()) {
        KVDConfig probe({}, m_view.perUserView);
        if (!probe.ScanRepository(m_view.root, false))
            m_view.root = QString();
    }

    if (m_view.root.isNull()) {
        const char* variable = std::getenv("ZANTH_KVD_ROOT");
        QString value = variable ? QString::fromLocal8Bit(variable) : QString();
        if (value.isNull()) {
            warningBox(tr("ZANTH_KVD_ROOT not set.\n"));
            value = QFileDialog::getExistingDirectory(this, QString(), QString(),
                                                      QFileDialog::ShowDirsOnly);
            if (value.isNull())
                return false;
            // Deliberately the chosen path itself, without a variable name, as the
            // environment entry; the destructor takes it back.
            static QByteArray entry;
            entry = value.toLocal8Bit();
            putenv(entry.data());
            m_rootFromDialog = true;
        }
        m_view.root = QDir::cleanPath(value);
    }
    if (!m_view.load(m_view.root, m_view.configPath(), true))
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
    if (ToolBar)
        ToolBar->setEnabled(true);
    setFocus();
    CreateTree();
    CreateToolMenu();
    repaintChart();
}

void QAKVD::desactivated()
{
    if (ToolBar)
        ToolBar->setEnabled(false);
    if (_iface && m_menuId != -1) {
        _iface->removeMenu(m_menuId);
        if (m_menu)
            m_menu->clear();
        m_menuId = -1;
    }
}

void QAKVD::clean()
{
    m_view.clean();
    if (QAction* exportItem = menuItem(m_exportId))
        exportItem->setEnabled(false);
    repaintChart();
}

bool QAKVD::canClose()
{
    if (Started && m_view.config)
        storeView();
    return true;
}

void QAKVD::FloatSc()
{
    m_view.floating = !m_view.floating;
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
    if (m_view.config) {
        for (const QString& user : m_view.config->users.uniqueKeys()) {
            auto* item = new QTreeWidgetItem(m_userTree, {user, user});
            Q_UNUSED(item);
        }
    }
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

int QAKVD::newMenuId()
{
    return m_nextMenuId--;
}

QAction* QAKVD::menuItem(int id) const
{
    if (!m_menu || id == 0)
        return nullptr;
    QList<QMenu*> pending{m_menu};
    while (!pending.isEmpty()) {
        QMenu* menu = pending.takeFirst();
        for (QAction* action : menu->actions()) {
            if (action->data().isValid() && action->data().toInt() == id)
                return action;
            if (action->menu())
                pending.append(action->menu());
        }
    }
    return nullptr;
}

void QAKVD::SelectField(int id)
{
    if (QAction* item = menuItem(id))
        m_view.selectField(item->text());
}

void QAKVD::SelectMeasure(int id)
{
    if (m_view.selectMeasure(id, CurrentUser))
        if (QAction* exportItem = menuItem(m_exportId))
            exportItem->setEnabled(true);
    if (id != 0)
        repaintChart();
}

// ---------------------------------------------------------------------------------------
// Menus and tool bar

void QAKVD::CreateToolBar(QMainWindow* mainWindow)
{
    ToolBar = new QToolBar(tr("Kavendi"), mainWindow);
    ToolBar->setObjectName(QStringLiteral("kavendi-toolbar"));
    mainWindow->addToolBar(Qt::TopToolBarArea, ToolBar);
    ResetToolBar();
}

QToolBar* QAKVD::toolBar()
{
    return ToolBar;
}

void QAKVD::ResetToolBar()
{
    if (!ToolBar)
        return;
    for (const ToolButtonInfo& info : ToolButtons)
        addToolButton(ToolBar, info)->setEnabled(false);
}

bool QAKVD::CreateToolMenu()
{
    if (!_iface || m_menuId != -1 || !m_view.config)
        return false;
    QMainWindow* main = _iface->mainWindow();
    if (!m_menu)
        m_menu = new QMenu(main);
    // The submenus of an earlier build go with its items.
    m_menu->clear();
    qDeleteAll(m_menu->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    m_menuId = _iface->insertMenu(tr("&Kavendi", "Menu Item"), m_menu);

    // "Monitoring": one submenu per measure the current user may see.
    auto* monitoring = new QMenu(tr("Monitoring", "Menu Item"), m_menu);
    const auto userIt = m_view.config->users.constFind(CurrentUser);
    QString previousTitle;
    int measures = 0;
    for (auto it = m_view.config->definitions.cbegin(); it != m_view.config->definitions.cend();
         ++it) {
        if (userIt == m_view.config->users.constEnd()) {
            warningBox(tr("Nothing to display for user %1\n").arg(CurrentUser));
            delete monitoring;
            return false;
        }
        const QStringList* userMeasures = &userIt.value();
        const QString& key = it.key();
        bool visible = userMeasures->contains(key);
        if (key.left(EditedMetric.size()) == EditedMetric &&
            userMeasures->contains(key.mid(EditedMetric.size())))
            visible = true;
        if (!visible)
            continue;
        // The array of measure submenus had a fixed room of 500; beyond it measures are
        // left out rather than overflowing.
        if (++measures > 500)
            break;
        const KVDDefinition& definition = it.value();
        auto* submenu = new QMenu(monitoring);
        QString title = previousTitle;
        if (!definition.isEmpty()) {
            title = definition.value(0);
            for (int i = 1; i < int(definition.size()); ++i) {
                QAction* field = submenu->addAction(definition.value(i));
                field->setData(i);
                connect(field, &QAction::triggered, this, [this, i] { SelectMeasure(i); });
            }
        }
        previousTitle = title;
        submenu->setTitle(title);
        QAction* entry = monitoring->addMenu(submenu);
        entry->setData(newMenuId());
        monitoring->setObjectName(key);
        // Deliberately one connection per visible measure: SelectField runs once per
        // visible measure on each highlight.
        connect(monitoring, &QMenu::hovered, this, [this](QAction* action) {
            if (action->data().isValid())
                SelectField(action->data().toInt());
        });
    }
    m_menu->addMenu(monitoring);

    QAction* custom = m_menu->addAction(tr("Custom Curves", "Menu Item"));
    custom->setData(newMenuId());
    connect(custom, &QAction::triggered, this,
            [this, custom] { CustomCurveMenu(custom->data().toInt()); });

    auto* scale = new QMenu(tr("Scale", "Menu Item"), m_menu);
    auto addScale = [this, scale](const QString& text, void (QAKVD::*slot)(int)) {
        QAction* item = scale->addAction(text);
        item->setCheckable(true);
        item->setData(newMenuId());
        connect(item, &QAction::triggered, this, [this, item, slot] {
            // The scale slots move the check mark themselves; undo the action's own toggle.
            item->setChecked(!item->isChecked());
            (this->*slot)(item->data().toInt());
        });
        return item;
    };
    QAction* year = addScale(tr("Year", "Menu Item"), &QAKVD::ScaleYear);
    QAction* month = addScale(tr("Month", "Menu Item"), &QAKVD::ScaleMonth);
    QAction* hour = addScale(tr("Hour", "Menu Item"), &QAKVD::ScaleHour);
    scale->addSeparator();
    QAction* customize = addScale(tr("Customize", "Menu Item"), &QAKVD::ScaleCustom);
    m_menu->addMenu(scale);

    QAction* events = m_menu->addAction(tr("Events", "Menu Item"));
    events->setData(newMenuId());
    connect(events, &QAction::triggered, this,
            [this, events] { CallCreateEvent(events->data().toInt()); });

    auto* deletion = new QMenu(tr("Delete Record", "Menu Item"), m_menu);
    QAction* customDelete = deletion->addAction(tr("Custom Delete", "Menu Item"));
    customDelete->setData(newMenuId());
    connect(customDelete, &QAction::triggered, this,
            [this, customDelete] { CustomDeletion(customDelete->data().toInt()); });
    QAction* rangeDelete = deletion->addAction(tr("Range Delete", "Menu Item"));
    rangeDelete->setData(newMenuId());
    connect(rangeDelete, &QAction::triggered, this,
            [this, rangeDelete] { RangeDeletion(rangeDelete->data().toInt()); });
    m_menu->addMenu(deletion);
    m_menu->addSeparator();

    QAction* exportItem = m_menu->addAction(tr("Export", "Menu Item"));
    m_exportId = newMenuId();
    exportItem->setData(m_exportId);
    exportItem->setEnabled(!m_view.curves.isEmpty());
    connect(exportItem, &QAction::triggered, this, [this] { ImportFile(m_exportId); });

    // "Month" is checked on insertion; the span of the view then decides.
    month->setChecked(true);
    QAction* checked = month;
    if (m_view.start.isValid() && m_view.end.isValid()) {
        const qint64 span = m_view.start.secsTo(m_view.end);
        checked = span == 31536000  ? year
                  : span == 2592000 ? month
                  : span == 100800  ? hour
                                    : customize;
    }
    for (QAction* item : {year, month, hour, customize})
        item->setChecked(item == checked);
    m_checkedScale = checked->data().toInt();
    return true;
}

// ---------------------------------------------------------------------------------------
// Host commands

QWidget* QAKVD::contentOutlineWidget() const
{
    return m_userTree;
}

bool QAKVD::isSaveEnabled()
{
    return false;
}
bool QAKVD::isSaveAsEnabled()
{
    return false;
}
bool QAKVD::isPrintEnabled()
{
    return true;
}
bool QAKVD::isCopyEnabled()
{
    return true;
}
bool QAKVD::isPasteEnabled()
{
    return false;
}
bool QAKVD::isCutEnabled()
{
    return false;
}
bool QAKVD::isUndoEnabled()
{
    return false;
}
bool QAKVD::isRedoEnabled()
{
    return false;
}
bool QAKVD::isDelEnabled()
{
    return false;
}
bool QAKVD::isSelectAllEnabled()
{
    return false;
}
bool QAKVD::isFindEnabled()
{
    return true;
}
bool QAKVD::isReplaceEnabled()
{
    return false;
}
bool QAKVD::isGoToEnabled()
{
    return false;
}
bool QAKVD::isReloadEnabled()
{
    return true;
}
bool QAKVD::isResetEnabled()
{
    return true;
}
bool QAKVD::isExportDocEnabled()
{
    return true;
}
bool QAKVD::isZoomEnabled()
{
    return true;
}
bool QAKVD::isFilterEnabled()
{
    return false;
}

void QAKVD::setFiles(QStringList*, QStringList*, ViewerMode) {}
void QAKVD::scrollToTag(QString, int, int) {}

void QAKVD::save() {}
void QAKVD::saveAs() {}
void QAKVD::print()
{
    QPrinter printer(QPrinter::ScreenResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    printChart(&printer);
}
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
void QAKVD::zoom(int) {}
void QAKVD::mnFilter() {}
void QAKVD::find() {}
void QAKVD::find(const QString&) {}

// Keeps its name although it exports: the "Export" item is wired to it.
void QAKVD::ImportFile(int)
{
    if (m_view.curves.isEmpty())
        return;
    const QString path =
        QFileDialog::getSaveFileName(this, QString(), QString(), QStringLiteral("*.csv"));
    if (path.isNull())
        return;
    // A file that cannot be created ends the export quietly.
    KVDCsvExport::write(path, m_view.curves, m_view.start, m_view.end);
}

// ---------------------------------------------------------------------------------------
// Painting

void QAKVD::refreshContents()
{
    paintEvent(nullptr);
}

void QAKVD::repaintChart()
{
    paintEvent(nullptr);
}

void QAKVD::paintEvent(QPaintEvent*)
{
    if (!m_paper)
        return;
    const QSize size = KVDChart::paperSize(m_paper->width(), m_paper->height());
    m_paperWidth = size.width();
    m_paperHeight = size.height();
    m_firstPaint = false;
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

void QAKVD::printChart(QPrinter* printer)
{
    QPainter painter;
    if (!painter.begin(printer))
        return;
    const QRect viewport = painter.viewport();
    m_paperWidth = viewport.width();
    m_paperHeight = viewport.height();
    m_firstPaint = false;
    KVDChart chart = m_view.chart();
    chart.paintPrinted(&painter, viewport.width(), viewport.height());
    m_view.firstScale = chart.leftScale;
    m_view.secondScale = chart.rightScale;
    painter.end();
}

bool QAKVD::InList(unsigned int time, QTreeWidget* list)
{
    const QString text = QDateTime::fromSecsSinceEpoch(time).toString();
    for (QTreeWidgetItemIterator it(list); *it; ++it)
        if ((*it)->checkState(0) == Qt::Checked && (*it)->text(2) == text)
            return true;
    return false;
}

// ---------------------------------------------------------------------------------------
// Events

bool QAKVD::CreateEvents(unsigned int time)
{
    KVDEventSet dialog(this, nullptr, 0, time);
    if (dialog.exec() == QDialog::Rejected)
        return false;
    return m_view.events.add(dialog.eventDate(), dialog.label());
}

void QAKVD::CallCreateEvent(int id)
{
    if (id != 0)
        CreateEvents(0);
}

bool QAKVD::IsNearTag(const QDate& day) const
{
    return m_view.events.IsNearTag(day);
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

void QAKVD::checkScale(int id)
{
    if (m_checkedScale != 0) {
        if (QAction* previous = menuItem(m_checkedScale))
            previous->setChecked(false);
        m_checkedScale = id;
    } else if (QAction* item = menuItem(id)) {
        // Checked in the menu but deliberately not recorded.
        item->setChecked(true);
    }
    if (QAction* item = id != 0 ? menuItem(id) : nullptr)
        item->setChecked(true);
}

void QAKVD::setScale(int id, qint64 before, qint64 after)
{
    checkScale(id);
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
        checkScale(id);
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
    if (event->button() != Qt::RightButton) {
        repaintChart();
        return;
    }

    const double plotWidth = m_paperWidth - 305;
    const qint64 fromEpoch = QDateTime(QDate(1970, 1, 1), QTime(0, 0)).secsTo(m_view.start);
    const qint64 pointerTime = qint64(double(fromEpoch) + double(m_view.start.secsTo(m_view.end)) /
                                                              plotWidth * (pos.x() - 55));
    const QDateTime pointer = QDateTime::fromSecsSinceEpoch(pointerTime);
    const QPoint globalPos = event->globalPosition().toPoint();

    bool shown = false;
    for (int index = int(m_view.curves.size()) - 1; index >= 0; --index) {
        if (index >= m_view.curves.size())
            continue;
        KVDCurve* curve = m_view.curves[index];
        if (!curve->points || curve->points->isEmpty() || !curveHit(curve, pos))
            continue;
        shown = true;
        if (runCurvePopup(index, globalPos, pointer))
            break;
    }
    if (!shown)
        runChartPopup(globalPos, pointer);
    repaintChart();
}

bool QAKVD::curveHit(const KVDCurve* curve, const QPoint& pos) const
{
    const double top = curve->displayMax;
    const double bottom = curve->minValue;
    const bool fromZero = curve->fixedScale || top == bottom;
    if (fromZero && top == 0)
        return false;
    const double band = curve->paperHeight - 150;
    const double sx = (curve->paperWidth - 305) / curve->span;
    auto deviceX = [&](const QPoint& p) { return p.x() * sx + 55; };
    auto deviceY = [&](const QPoint& p) {
        const double v = -double(p.y());
        return fromZero ? curve->paperHeight - 100 - v * band / top
                        : 50 + (top - v) * band / (top - bottom);
    };
    const double px = pos.x();
    const double py = pos.y();
    const QPolygon& points = *curve->points;
    int previous = -1;
    for (int i = 0; i < points.size(); ++i) {
        const double x1 = deviceX(points[i]);
        if (x1 < px) {
            previous = i;
            continue;
        }
        if (!(x1 > px) || previous < 0)
            continue;
        // One segment is tested: the first one that spans the pointer.
        const double y1 = deviceY(points[i]);
        const double x0 = deviceX(points[previous]);
        const double y0 = deviceY(points[previous]);
        const double low = std::min(y1 - 2, y0 + 2);
        const double high = std::max(y1 - 2, y0 + 2);
        if (!(low < py && py < high))
            return false;
        const double numerator = (px - x0) * (y1 - y0) - (py - y0) * (x1 - x0);
        const double denominator = (x1 - x0) * (x1 - x0) + (y1 - y0) * (y1 - y0);
        const double d =
            denominator != 0 ? numerator * numerator / denominator : numerator * numerator;
        if (i >= 2) {
            const double x2 = deviceX(points[i - 2]);
            const double y2 = deviceY(points[i - 2]);
            const double n2 = (px - x2) * (y0 - y2) - (py - y2) * (x0 - x2);
            const double d2den = (x0 - x2) * (x0 - x2) + (y0 - y2) * (y0 - y2);
            const double d2 = d2den != 0 ? n2 * n2 / d2den : 1000.0;
            if (!(x2 > px) && d2 < 25)
                return true;
        }
        return d < 25;
    }
    return false;
}

bool QAKVD::runCurvePopup(int& index, const QPoint& globalPos, const QDateTime& pointer)
{
    KVDCurve* curve = m_view.curves[index];
    QMenu popup(this);
    QMenu* properties = popup.addMenu(tr("Curve Properties", "Menu Item"));
    QAction* color = properties->addAction(tr("Change Curve Color", "Menu Item"));
    QAction* hide = properties->addAction(tr("Hide Curve", "Menu Item"));
    QAction* max = properties->addAction(tr("Set Max Value", "Menu Item"));
    QAction* label = properties->addAction(tr("Change Label", "Menu Item"));
    QAction* right = properties->addAction(tr("Scale Right", "Menu Item"));
    QAction* left = properties->addAction(tr("Scale Left", "Menu Item"));
    popup.addSeparator();
    QMenu* eventMenu = popup.addMenu(tr("Event Properties", "Menu Item"));
    QAction* setEvent = eventMenu->addAction(tr("Set Event", "Menu Item"));
    QAction* deleteEvent = eventMenu->addAction(tr("Delete Event", "Menu Item"));
    QAction* hideEvent = eventMenu->addAction(tr("Hide Event", "Menu Item"));
    const QDate day = pointer.date();
    if (IsNearTag(day)) {
        setEvent->setEnabled(false);
    } else {
        deleteEvent->setEnabled(false);
        hideEvent->setEnabled(false);
    }

    QAction* chosen = popup.exec(globalPos);
    if (!chosen)
        return false;
    const QString caption =
        _iface ? _iface->title() : tr("Kavendi", "Default title for message box");
    if (chosen == color) {
        const QColor picked = QColorDialog::getColor(curve->color, this);
        if (picked.isValid())
            curve->color = picked;
        curve->hasColor = true;
        return true;
    }
    if (chosen == left) {
        m_view.firstScale = curve;
        return true;
    }
    if (chosen == right) {
        m_view.secondScale = curve;
        return true;
    }
    if (chosen == hide) {
        if (m_view.firstScale == curve)
            m_view.firstScale = nullptr;
        if (m_view.secondScale == curve)
            m_view.secondScale = nullptr;
        m_view.curves.removeAt(index);
        delete curve;
        // The list cursor after a removal rests on the curve that followed, or on the new
        // last one. Two steps back from there give the new left-scale curve; when the
        // first step finds none, the first curve takes the scale and the cursor is lost.
        int cursor = index < m_view.curves.size() ? index : int(m_view.curves.size()) - 1;
        if (cursor >= 0)
            --cursor;
        if (cursor >= 0) {
            --cursor;
            m_view.firstScale = cursor >= 0 ? m_view.curves[cursor] : nullptr;
        } else {
            m_view.firstScale = m_view.curves.isEmpty() ? nullptr : m_view.curves.first();
            cursor = -1;
        }
        // The scan of the remaining curves goes on backwards from the cursor.
        index = cursor;
        return false;
    }
    if (chosen == max) {
        bool ok = false;
        const int bottom = int(curve->minValue);
        const int value =
            QInputDialog::getInt(this, caption, QStringLiteral("Enter the maximum value"), bottom,
                                 bottom, 1000000000, 1, &ok);
        if (ok) {
            curve->displayMax = value;
            curve->fixedScale = true;
        }
        return false;
    }
    if (chosen == label && m_view.config) {
        auto definition = m_view.config->definitions.find(curve->name);
        const QString current = definition != m_view.config->definitions.end()
                                    ? definition->value(curve->field)
                                    : QString();
        bool ok = false;
        const QString text = QInputDialog::getText(this, caption, tr("Enter new label"),
                                                   QLineEdit::Normal, current, &ok);
        if (ok && definition != m_view.config->definitions.end())
            definition->insert(curve->field, text);
        return false;
    }
    if (chosen == setEvent) {
        CreateEvents(uint(pointer.toSecsSinceEpoch()));
        return false;
    }
    if (KVDEvent* event = m_view.events.on(day)) {
        if (chosen == hideEvent) {
            event->visible = false;
        } else if (chosen == deleteEvent) {
            m_view.events.items().removeOne(event);
            delete event;
        }
    }
    return false;
}

void QAKVD::runChartPopup(const QPoint& globalPos, const QDateTime& pointer)
{
    QMenu popup(this);
    QMenu* properties = popup.addMenu(tr("Curve Properties", "Menu Item"));
    properties->setEnabled(false);
    popup.addSeparator();
    // Deliberately spelt with a small "p" here.
    QMenu* eventMenu = popup.addMenu(tr("Event properties", "Menu Item"));
    QAction* setEvent = eventMenu->addAction(tr("Set Event", "Menu Item"));
    QAction* deleteEvent = eventMenu->addAction(tr("Delete Event", "Menu Item"));
    QAction* hideEvent = eventMenu->addAction(tr("Hide Event", "Menu Item"));
    const QDate day = pointer.date();
    KVDEvent* existing = m_view.events.on(day);
    if (existing) {
        setEvent->setText(tr("Edit Event", "Menu Item"));
    } else {
        deleteEvent->setEnabled(false);
        hideEvent->setEnabled(false);
    }

    QAction* chosen = popup.exec(globalPos);
    if (!chosen)
        return;
    if (chosen == setEvent) {
        // The day's event steps aside while the dialog runs, and comes back at the end of
        // the list when no new one replaces it.
        if (existing)
            m_view.events.items().removeOne(existing);
        if (!CreateEvents(uint(pointer.toSecsSinceEpoch()))) {
            if (existing)
                m_view.events.items().append(existing);
        } else {
            delete existing;
        }
    } else if (existing && chosen == hideEvent) {
        existing->visible = false;
    } else if (existing && chosen == deleteEvent) {
        m_view.events.items().removeOne(existing);
        delete existing;
    }
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
// Record deletion and custom files

namespace {

// The store appends under ZANTH_KVD_ROOT; while records are rewritten it must name the
// repository this viewer shows, whichever way that was found.
class RootForStore
{
public:
    explicit RootForStore(const QString& root)
        : m_previous(qgetenv("ZANTH_KVD_ROOT")), m_had(qEnvironmentVariableIsSet("ZANTH_KVD_ROOT"))
    {
        qputenv("ZANTH_KVD_ROOT", QFile::encodeName(root));
    }
    ~RootForStore()
    {
        if (m_had)
            qputenv("ZANTH_KVD_ROOT", m_previous);
        else
            qunsetenv("ZANTH_KVD_ROOT");
    }

private:
    QByteArray m_previous;
    bool m_had;
};

// Moves the data file aside to the temporary file, replacing an older one. Reopening the
// data file afterwards is what tells whether the move worked; a rename that failed also
// stops here, so that a temporary file left by an interrupted deletion is never taken
// for this file's records. Paths go to the system as they are, never through a shell.
bool moveAside(const QString& data, const QString& temporary)
{
    const QByteArray from = QFile::encodeName(data);
    if (std::rename(from.constData(), QFile::encodeName(temporary).constData()) != 0)
        return false;
    std::FILE* still = std::fopen(QFile::encodeName(data).constData(), "r+b");
    if (still) {
        std::fclose(still);
        return false;
    }
    return true;
}

} // namespace

void QAKVD::RangeDeletion(int id)
{
    if (id == 0) {
        if (_iface)
            _iface->progressEnd();
        return;
    }
    KVDRangeSelect dialog(m_view.root, this, nullptr, 0);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString measure = dialog.measure;
    const int fields = dialog.fields;
    const QString user = CurrentUser;
    const QString data = KVDMeasureFile::path(m_view.root, measure, user, fields, ".kvd");
    const QString index = KVDMeasureFile::path(m_view.root, measure, user, fields, ".idx");
    const QString temporary = m_view.root + QDir::separator() + QLatin1String("KVD.tmp");

    QString error;
    if (!KVDMeasureFile::checkFieldCount(fields, &error)) {
        warningBox(error);
    } else {
        QFile::remove(index);
        if (!moveAside(data, temporary)) {
            warningBox(tr("Kavendi Request has failed\n"));
        } else {
            rewrite(temporary, measure, user, fields, tr("Stop Loading"),
                    tr("Kavendi Request has failed\n"), [&](const quint32* record) {
                        const QDateTime date =
                            QDateTime::fromSecsSinceEpoch(KVDMeasureFile::date(record));
                        return QDateTime(dialog.startDate, QTime(0, 0)) <= date &&
                               date <= QDateTime(dialog.endDate, QTime(0, 0));
                    });
        }
    }
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
    KVDCustomSelect dialog(m_view.root, this, nullptr, 0, true);
    if (dialog.exec() != QDialog::Accepted) {
        if (_iface)
            _iface->progressEnd();
        unsetCursor();
        return;
    }
    QTreeWidget* list = dialog.recordList();
    auto* first =
        list->topLevelItemCount() ? dynamic_cast<KVDCheckList*>(list->topLevelItem(0)) : nullptr;
    if (first) {
        // The row names the file it came from, custom or not.
        const QString measure = first->text(0);
        const QString user = first->text(1);
        const int fields = first->fieldCount;
        const QString data = KVDMeasureFile::path(m_view.root, measure, user, fields, ".kvd");
        const QString index = KVDMeasureFile::path(m_view.root, measure, user, fields, ".idx");
        const QString temporary = m_view.root + QDir::separator() + QLatin1String("KVD.tmp");
        const QString failure = tr("%1 %2 Kavendi Request has failed\n").arg(data, temporary);
        QFile::remove(index);
        if (!moveAside(data, temporary)) {
            warningBox(failure);
        } else {
            setCursor(Qt::WaitCursor);
            // Deliberately with the accelerator mark, unlike range deletion.
            rewrite(
                temporary, measure, user, fields, tr("&Stop Loading"), failure,
                [&](const quint32* record) { return InList(KVDMeasureFile::date(record), list); });
        }
    }
    rebuildView();
    setCursor(Qt::ArrowCursor);
}

void QAKVD::rewrite(const QString& temporary, const QString& measure, const QString& user,
                    int fields, const QString& cancelText, const QString& failure,
                    const std::function<bool(const quint32*)>& deleted)
{
    KVDMeasureFile file;
    QString error;
    if (!file.open(temporary, fields, &error)) {
        warningBox(failure);
        return;
    }
    if (_iface)
        _iface->progressStart(int(file.recordCount()), tr("KVD Processing..."), cancelText, this,
                              1);
    const RootForStore root(m_view.root);
    const QByteArray measureName = measure.toLocal8Bit();
    const QByteArray userName = user.toLocal8Bit();
    std::vector<uint32_t> values(size_t(qMax(fields, 1)));
    int done = 0;
    // The rewrite always runs to its end; the progress display's cancel is not asked.
    while (const quint32* record = file.next()) {
        if (!deleted(record)) {
            for (int k = 0; k < fields; ++k)
                values[size_t(k)] = KVDMeasureFile::value(record, k);
            // On this build the store appends only the first record of a new pair and
            // reports the others on standard error; the loop goes on regardless.
            Write_Measure(measureName.constData(), userName.constData(),
                          KVDMeasureFile::key(record), KVDMeasureFile::date(record), fields,
                          values.data());
        }
        if (_iface)
            _iface->progressStep(++done);
    }
    file.close();
    QFile::remove(temporary);
}

void QAKVD::rebuildView()
{
    if (QFile::exists(m_view.configPath()))
        storeView();
    clean();
    m_view.events.clear();
    reloadConfiguration();
    repaintChart();
    if (_iface)
        _iface->progressEnd();
}

void QAKVD::storeView()
{
    m_view.storeView();
}

// Start-up's configuration steps again, on a fresh configuration; their results are not
// checked here, their messages have been shown.
void QAKVD::reloadConfiguration()
{
    m_view.load(m_view.root, m_view.configPath(), true, false);
    if (m_toolTip)
        m_toolTip->setConfig(m_view.config);
}

void QAKVD::CreateCustomFile(QTreeWidget* list, const QString& user)
{
    const int rows = list->topLevelItemCount();
    auto* last = rows ? dynamic_cast<KVDCheckList*>(list->topLevelItem(rows - 1)) : nullptr;
    if (!last)
        return;
    const QString measure = last->text(0);
    const int fields = last->fieldCount;
    const QString target = m_view.root + QLatin1String("/Custom") + measure + QLatin1Char('.') +
                           user + QLatin1Char('.') + QString::number(fields) +
                           QLatin1String(".kvd");
    QString error;
    if (!KVDMeasureFile::checkFieldCount(fields, &error)) {
        warningBox(error);
        return;
    }
    std::FILE* custom = std::fopen(QFile::encodeName(target).constData(), "w+b");
    if (!custom) {
        warningBox(tr("Kavendi Request has failed\n"));
        return;
    }
    const int words = KVDMeasureFile::recordWords(fields);
    std::vector<uint32_t> record(static_cast<size_t>(words));
    for (int r = rows - 1; r >= 0; --r) {
        auto* row = dynamic_cast<KVDCheckList*>(list->topLevelItem(r));
        if (!row || row->checkState(0) != Qt::Checked)
            continue;
        const QString source = m_view.root + QLatin1Char('/') + row->secondText;
        std::FILE* in = std::fopen(QFile::encodeName(source).constData(), "r+b");
        if (!in)
            continue;
        if (fseeko(in, row->position, SEEK_SET) == 0 &&
            Endian_Read(record.data(), words, in) == words)
            Endian_Write(record.data(), words, custom);
        std::fclose(in);
    }
    std::fclose(custom);
}

void QAKVD::CustomCurveMenu(int id)
{
    if (id == 0) {
        repaintChart();
        return;
    }
    KVDCustomSelect dialog(m_view.root, this, nullptr, 0, false);
    if (dialog.exec() != QDialog::Accepted || dialog.recordList()->topLevelItemCount() == 0) {
        repaintChart();
        return;
    }
    if (QFile::exists(m_view.configPath()))
        storeView();
    CreateCustomFile(dialog.recordList(), CurrentUser);
    if (QFile::exists(m_view.configPath()))
        storeView();
    clean();
    m_view.events.clear();
    reloadConfiguration();
    repaintChart();
}
