#include "qalistview.h"

#include <QMouseEvent>

QAListView::QAListView(QWidget* parent, const char* name) : QTreeWidget(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        const QList<QTreeWidgetItem*> items = selectedItems();
        emit selectionChanged(items.isEmpty() ? nullptr : items.first());
    });
}

void QAListView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) {
        const QPoint pos = event->position().toPoint();
        emit rightButtonPressed(itemAt(pos), event->globalPosition().toPoint(), columnAt(pos.x()));
        return;
    }
    QTreeWidget::mousePressEvent(event);
}
