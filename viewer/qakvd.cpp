#include "qakvd.h"
#include "getpix.h"
#include "kvdconfig.h"
#include "kvdcurve.h"
#include "kvdevent.h"
#include "kvdicons.h"
#include "qalistview.h"
#include "studiointerface.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QWheelEvent>

#include <cstdlib>

StudioInterface* QAKVD::_iface = nullptr;
bool QAKVD::Started = false;
QToolBar* QAKVD::ToolBar = nullptr;
QString QAKVD::CurrentUser;

namespace {

const QLatin1String EditedMetric("_EDITED_METRIC_");

// The colour that follows `colour` in the cycle of new curves; anything outside the
// cycle, and yellow, is followed by red.
QColor nextColor(const QColor& colour)
{
    static const QColor cycle[] = {Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta, Qt::yellow};
    for (int k = 0; k < 5; ++k)
        if (colour == cycle[k])
            return cycle[k + 1];
    return Qt::red;
}

// Moves every point of every curve left by `seconds` and gives each the view's dates.
void shiftCurves(QList<KVDCurve*>& curves, qint64 seconds, const QDateTime& start, const QDateTime& end)
{
    for (KVDCurve* curve : curves) {
        if (curve->points)
            for (QPoint& point : *curve->points)
                point.rx() -= int(seconds);
        curve->firstDate = start;
        curve->endDate = end;
    }
}

struct ToolButtonSpec
{
    const char* icon;
    const char* const* const* xpm;
    const char* tip;
    const char* whatsThis;
    bool toggle;
};

const ToolButtonSpec ToolButtons[] = {
    {"kvd_clear_xpm", &kvd_clear_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Clear"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Clear </b><br>Clears all graphics from the viewer window"), false},
    {"kvd_hide_xpm", &kvd_hide_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Hide Events"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Hide Events </b><br>Hides all events markers in the viewer window"),
     false},
    {"kvd_float_xpm", &kvd_float_xpm_data, QT_TRANSLATE_NOOP("QAKVD", "Floating Schedule"),
     QT_TRANSLATE_NOOP("QAKVD", "<b> Floating Schedule </b><br>Toggles positioning of the calendar "
                                "depending on displayed values"),
     true},
};

QToolButton* addToolButton(QToolBar* bar, const ToolButtonSpec& spec)
{
    auto* button = new QToolButton(bar);
    button->setIcon(GETPIX(spec.icon, *spec.xpm));
    button->setToolTip(QAKVD::tr(spec.tip));
    button->setWhatsThis(QAKVD::tr(spec.whatsThis));
    button->setCheckable(spec.toggle);
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
    // All drawing happens in the viewer's pass; the paper only shows its picture, asking
    // for a new one when its size no longer matches.
    if (m_owner->m_picture.size() != size())
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

    const bool started = Start();
    if (started) {
        if (m_viewMode == 0) {
            CurrentUser = QStringLiteral("toto");
            if (!CreateToolMenu())
                close();
            else
                showMaximized();
        } else {
            showMaximized();
        }
        if (ToolBar) {
            ToolBar->clear();
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
    if (Started && m_config)
        m_config->StoreConfig(m_root, &m_curves, m_start, m_end, m_zoom, m_firstScale, m_secondScale,
                              &m_events);
    Started = false;
    delete m_config;
    m_config = nullptr;
    qDeleteAll(m_curves);
    m_curves.clear();
    qDeleteAll(m_events);
    m_events.clear();
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
    if (!ToolBar && iface && iface->mainWindow())
        CreateToolBar(iface->mainWindow());
}

void QAKVD::warningBox(const QString& text)
{
    if (_iface)
        QMessageBox::warning(_iface->mainWindow(), _iface->title(), text);
    else
        QMessageBox::warning(nullptr, tr("Kavendi", "Default title for message box"), text);
}

bool QAKVD::Launched()
{
    return Started;
}

QString QAKVD::GetCurrentUser()
{
    return CurrentUser;
}

QString QAKVD::configPath() const
{
    if (m_viewMode == 1)
        return m_root + QDir::separator() + QLatin1String("KVD.cfg");
    return m_root + QDir::separator() + QLatin1String("KVD") + CurrentUser + QLatin1String(".cfg");
}

bool QAKVD::Start()
{
    m_config = nullptr;
    ProjectInterface* project = nullptr;
    if (_iface) {
        QUnknownInterface* answer = nullptr;
        _iface->queryObject(QStringLiteral("Project"), IID_ProjectInterface, &answer);
        project = static_cast<ProjectInterface*>(answer);
    }

    if (project && project->isOpen())
        m_root = project->directory();
    else if (m_viewMode == 0)
        m_root = QString();
    if (!m_root.isNull()) {
        KVDConfig probe(this);
        if (!probe.ScanRepository(m_root, false))
            m_root = QString();
    }

    if (m_root.isNull()) {
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
        m_root = QDir::cleanPath(value);
    }
    return loadConfiguration();
}

// Steps shared by start-up and the rebuilds after a deletion or a custom curve: read the
// saved view when there is one, rescan, and store the view back.
bool QAKVD::loadConfiguration()
{
    m_config = new KVDConfig(this);
    if (QFile::exists(configPath())) {
        if (!m_config->ReadConfigBuiltIn() ||
            !m_config->ReadConfig(m_root, &m_curves, &m_start, &m_end, &m_zoom, &m_firstScale,
                                  &m_secondScale, &m_events) ||
            !m_config->ScanRepository(m_root, true) ||
            !m_config->StoreConfig(m_root, &m_curves, m_start, m_end, m_zoom, m_firstScale,
                                   m_secondScale, &m_events))
            return false;
        m_lastColor = m_config->color;
    } else if (!m_config->ReadConfigBuiltIn() || !m_config->ScanRepository(m_root, true) ||
               !m_config->StoreConfig(m_root, &m_curves, m_start, m_end, m_zoom, m_firstScale,
                                      m_secondScale, &m_events)) {
        return false;
    }

    if (m_viewMode == 1) {
        CreateTree();
    } else if (!m_config->users.contains(CurrentUser)) {
        warningBox(tr("Nothing to display for user %1\n").arg(CurrentUser));
        return false;
    }
    m_datesSet = !m_curves.isEmpty();
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
    qDeleteAll(m_curves);
    m_curves.clear();
    m_datesSet = false;
    m_zoom = 0;
    m_end = QDateTime::currentDateTime();
    m_start = m_end.addSecs(-30 * 86400);
    // Deliberately set again: the emptied view keeps a 30-day range.
    m_datesSet = true;
    m_firstScale = nullptr;
    m_secondScale = nullptr;
    if (QAction* exportItem = menuItem(m_exportId))
        exportItem->setEnabled(false);
    repaintChart();
}

bool QAKVD::canClose()
{
    if (Started && m_config)
        m_config->StoreConfig(m_root, &m_curves, m_start, m_end, m_zoom, m_firstScale, m_secondScale,
                              &m_events);
    return true;
}

void QAKVD::FloatSc()
{
    m_floating = !m_floating;
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
    if (m_config) {
        for (const QString& user : m_config->users.uniqueKeys()) {
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
    QAction* item = menuItem(id);
    if (!item || !m_config)
        return;
    const QString text = item->text();
    // The last match in iteration order wins, whichever entry matched.
    for (auto it = m_config->definitions.cbegin(); it != m_config->definitions.cend(); ++it) {
        for (const QString& entry : it.value()) {
            if (entry == text) {
                m_selectedMeasure = it.key();
                m_fieldCount = int(it.value().size()) - 1;
            }
        }
    }
}

void QAKVD::SelectMeasure(int id)
{
    QDateTime rememberedStart = m_start;
    QDateTime rememberedEnd = m_end;
    if (id == 0)
        return;
    if (!m_datesSet) {
        m_end = QDateTime::currentDateTime();
        m_start = m_end.addSecs(-30 * 86400);
        m_datesSet = true;
        rememberedStart = m_start;
        rememberedEnd = m_end;
    }
    m_selectedField = id;

    // The user name is deliberately not compared: a field shown for one user is not added
    // again for another.
    bool duplicate = false;
    for (KVDCurve* curve : std::as_const(m_curves))
        if (curve->name == m_selectedMeasure && curve->valueCount == m_fieldCount &&
            curve->field == m_selectedField && !curve->user.isNull())
            duplicate = true;

    KVDCurve* curve = nullptr;
    if (!duplicate) {
        if (m_selectedMeasure.size() > EditedMetric.size() && m_selectedMeasure.startsWith(EditedMetric)) {
            m_selectedMeasure = m_selectedMeasure.mid(EditedMetric.size());
            const QString fileKey = m_config->definitions.value(m_selectedMeasure).value(0);
            curve = new KVDCurve(m_root, fileKey, m_selectedField, 2 * m_fieldCount, CurrentUser, m_start,
                                 m_end);
            KVDCurve denominator(m_root, fileKey, m_selectedField + m_fieldCount, 2 * m_fieldCount,
                                 CurrentUser, m_start, m_end);
            curve->DIV(denominator);
            curve->fixedScale = true;
        } else {
            curve = new KVDCurve(m_root, m_selectedMeasure, m_selectedField, m_fieldCount, CurrentUser,
                                 m_start, m_end);
        }
        curve->hasColor = true;
        curve->color = nextColor(m_lastColor);
        m_lastColor = curve->color;
        if (curve->points && !curve->points->isEmpty())
            m_firstScale = curve;
    }

    m_timeOffset = int(rememberedStart.secsTo(m_start));
    shiftCurves(m_curves, m_timeOffset, m_start, m_end);

    if (curve && curve->points && !curve->points->isEmpty()) {
        m_curves.append(curve);
        if (QAction* exportItem = menuItem(m_exportId))
            exportItem->setEnabled(true);
    } else {
        if (m_firstScale == curve)
            m_firstScale = nullptr;
        delete curve;
    }

    if (m_floating) {
        const qint64 d = rememberedStart.secsTo(m_start);
        m_start = rememberedStart;
        m_end = rememberedEnd;
        const double span = double(m_start.secsTo(m_end));
        for (KVDCurve* c : std::as_const(m_curves)) {
            if (c->points)
                for (QPoint& point : *c->points)
                    point.rx() += int(d);
            c->firstDate = m_start;
            c->endDate = m_end;
            c->span = span;
        }
    }
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

void QAKVD::ResetToolBar()
{
    if (!ToolBar)
        return;
    for (const ToolButtonSpec& spec : ToolButtons)
        addToolButton(ToolBar, spec)->setEnabled(false);
}

bool QAKVD::CreateToolMenu()
{
    if (!_iface || m_menuId != -1 || !m_config)
        return false;
    QMainWindow* main = _iface->mainWindow();
    if (!m_menu)
        m_menu = new QMenu(main);
    m_menu->clear();
    m_menuId = _iface->insertMenu(tr("&Kavendi", "Menu Item"), m_menu);

    // "Monitoring": one submenu per measure the current user may see.
    auto* monitoring = new QMenu(tr("Monitoring", "Menu Item"), m_menu);
    const auto userIt = m_config->users.constFind(CurrentUser);
    QString previousTitle;
    int measures = 0;
    for (auto it = m_config->definitions.cbegin(); it != m_config->definitions.cend(); ++it) {
        if (userIt == m_config->users.constEnd()) {
            warningBox(tr("Nothing to display for user %1\n").arg(CurrentUser));
            delete monitoring;
            return false;
        }
        const QStringList* userMeasures = &userIt.value();
        const QString& key = it.key();
        bool visible = userMeasures->contains(key);
        if (key.left(EditedMetric.size()) == EditedMetric && userMeasures->contains(key.mid(EditedMetric.size())))
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
        entry->setCheckable(true);
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
    connect(custom, &QAction::triggered, this, [this, custom] { CustomCurveMenu(custom->data().toInt()); });

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
    connect(events, &QAction::triggered, this, [this, events] { CallCreateEvent(events->data().toInt()); });

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
    exportItem->setEnabled(!m_curves.isEmpty());
    connect(exportItem, &QAction::triggered, this, [this] { ImportFile(m_exportId); });

    // "Month" is checked on insertion; the span of the view then decides.
    month->setChecked(true);
    QAction* checked = month;
    if (m_start.isValid() && m_end.isValid()) {
        const qint64 span = m_start.secsTo(m_end);
        checked = span == 31536000 ? year : span == 2592000 ? month : span == 100800 ? hour : customize;
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

void QAKVD::ScaleYear(int) {}
void QAKVD::ScaleMonth(int) {}
void QAKVD::ScaleHour(int) {}
void QAKVD::ScaleCustom(int) {}
void QAKVD::CustomCurveMenu(int) {}
void QAKVD::CustomDeletion(int) {}
void QAKVD::RangeDeletion(int) {}
void QAKVD::CallCreateEvent(int) {}
void QAKVD::EventHide() {}
void QAKVD::ImportFile(int) {}

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
    const QSize size = m_paper->size().expandedTo(QSize(400, 200));
    m_picture = QPixmap(size);
    m_picture.fill(Qt::white);
    m_paper->update();
}

bool QAKVD::InList(unsigned int time, QTreeWidget* list)
{
    const QString text = QDateTime::fromSecsSinceEpoch(time).toString();
    for (QTreeWidgetItemIterator it(list); *it; ++it)
        if ((*it)->checkState(0) == Qt::Checked && (*it)->text(2) == text)
            return true;
    return false;
}
