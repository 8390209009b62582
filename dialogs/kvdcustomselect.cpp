#include "kvdcustomselect.h"
#include "kvdchecklist.h"
#include "kvdmeasurefile.h"
#include "kvdshell.h"
#include "qalistview.h"

#include <QComboBox>
#include <QDateTime>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QResizeEvent>
#include <QTreeWidgetItemIterator>

bool KVDCustomSelect::InProgress = false;

KVDCustomSelect::KVDCustomSelect(const QString& dir, QWidget* parent, const char* name, int flags,
                                 bool deletionMode)
    : KVDRangeSelect(dir, parent, name, flags), m_deletionMode(deletionMode)
{
    // The base class finished first; the list is not ready until this constructor ends.
    ready = false;
    m_list = new QAListView(this);
    // Every column keeps the width it is given; none stretches into the free space.
    m_list->header()->setStretchLastSection(false);
    secondRow()->addWidget(m_list);
    connect(m_list, &QAListView::rightButtonPressed, this, &KVDCustomSelect::PopUp);
    // The columns of the first file; its records are listed once a file or date is chosen.
    GetMeasure(combo()->currentIndex());
    ready = true;
}

void KVDCustomSelect::GetMeasure(int index)
{
    InProgress = true;
    m_list->clear();
    const bool known = takeEntry(index);
    const int n = known ? qMax(fields, 0) : 0;
    QStringList titles{tr("Measure"), tr("User"), tr("Date"), tr("FileId")};
    for (int k = 1; k <= n && k <= KVDMeasureFile::MaxFields; ++k)
        titles << tr("Field %1").arg(k);
    m_list->setColumnCount(int(titles.size()));
    m_list->setHeaderLabels(titles);
    for (int c = 0; c < titles.size(); ++c)
        m_list->headerItem()->setTextAlignment(c, Qt::AlignCenter);
    m_list->setColumnWidth(0, 100);
    m_list->setColumnWidth(1, 100);
    m_list->setColumnWidth(2, 200);
    m_list->setColumnWidth(3, 200);
    for (int k = 0; k < n; ++k)
        m_list->setColumnWidth(4 + k, qMax(100, (m_list->width() - 600) / n));
    if (!ready || !known) {
        InProgress = false;
        return;
    }

    m_custom = fileName.startsWith(QLatin1String("Custom"));
    // The entry names the file itself, custom or not, in deletion mode too.
    const QString path = m_dir + QDir::separator() + fileName;
    KVDMeasureFile file;
    QString error;
    if (!file.open(path, fields, &error, KVDMeasureFile::Access::ReadWrite)) {
        KVDShell::warningBox(tr("Kavendi Request has failed\n"));
        InProgress = false;
        return;
    }
    const QDateTime from(startDate, QTime(0, 0));
    const QDateTime to(endDate, QTime(0, 0));
    const int words = KVDMeasureFile::recordWords(fields);
    while (const quint32* record = file.next()) {
        const QDateTime date = QDateTime::fromSecsSinceEpoch(KVDMeasureFile::date(record));
        if (date < from || date > to)
            continue;
        QStringList texts{measure, user, date.toString(),
                          QString::number(KVDMeasureFile::key(record))};
        for (int w = 2; w < words; ++w)
            texts << QString::number(record[w]);
        auto* row = new KVDCheckList(m_dir, m_list, texts);
        row->measureKey = fileName;
        row->position = file.offset();
        row->fieldCount = fields;
        row->secondText = fileName;
        for (int c = 0; c < m_list->columnCount(); ++c)
            row->setTextAlignment(c, Qt::AlignCenter);
    }
    InProgress = false;
}

void KVDCustomSelect::CustomOk()
{
    if (ready)
        done(1);
}

void KVDCustomSelect::PopUp(QTreeWidgetItem*, const QPoint& pos, int)
{
    QMenu menu(this);
    QAction* all = menu.addAction(tr("Select All"));
    QAction* invert = menu.addAction(tr("Invert Selection"));
    const bool rows = m_list->topLevelItemCount() > 0;
    all->setEnabled(rows);
    invert->setEnabled(rows);
    connect(all, &QAction::triggered, this, [this] { SelectAll(1); });
    connect(invert, &QAction::triggered, this, [this] { Reverse(1); });
    menu.exec(pos);
}

void KVDCustomSelect::SelectAll(int)
{
    for (QTreeWidgetItemIterator it(m_list); *it; ++it)
        (*it)->setCheckState(0, Qt::Checked);
}

void KVDCustomSelect::Reverse(int)
{
    for (QTreeWidgetItemIterator it(m_list); *it; ++it)
        (*it)->setCheckState(0, (*it)->checkState(0) == Qt::Checked ? Qt::Unchecked : Qt::Checked);
}

// With six or more columns the widths are deliberately left alone.
void KVDCustomSelect::resizeEvent(QResizeEvent* event)
{
    KVDRangeSelect::resizeEvent(event);
    const int columns = m_list ? m_list->columnCount() : 0;
    if (columns >= 1 && columns <= 5)
        for (int c = 0; c < columns; ++c)
            m_list->setColumnWidth(c, event->size().width() / columns);
}
