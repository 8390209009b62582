#ifndef QALISTVIEW_H
#define QALISTVIEW_H

#include <QTreeWidget>

class QTreeWidgetItem;

// The host's list view: a tree widget that also reports the item a selection lands on
// and right-button presses with their global position and column.
class QAListView : public QTreeWidget
{
    Q_OBJECT

public:
    explicit QAListView(QWidget* parent = nullptr, const char* name = nullptr);

signals:
    void selectionChanged(QTreeWidgetItem* item);
    void rightButtonPressed(QTreeWidgetItem* item, const QPoint& globalPos, int column);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};

#endif
