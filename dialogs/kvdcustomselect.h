#ifndef KVDCUSTOMSELECT_H
#define KVDCUSTOMSELECT_H

#include "kvdrangeselect.h"

class QAListView;
class QTreeWidgetItem;

// Picks a measure file and a date range like KVDRangeSelect, then lists the file's
// records in that range as checkable rows so that single records can be chosen. The
// caller reads the checked rows of recordList() after exec() answered accepted.
class KVDCustomSelect : public KVDRangeSelect
{
    Q_OBJECT

public:
    // deletionMode: the list serves record-by-record deletion rather than a custom curve.
    KVDCustomSelect(const QString& dir, QWidget* parent, const char* name, int flags,
                    bool deletionMode);

    QAListView* recordList() const { return m_list; }
    bool deletionMode() const { return m_deletionMode; }
    bool customMeasure() const { return m_custom; }

    // Set while GetMeasure fills a list.
    static bool InProgress;

public slots:
    void GetMeasure(int index) override;
    void CustomOk() override;
    void PopUp(QTreeWidgetItem* item, const QPoint& pos, int column);
    void SelectAll(int id);
    void Reverse(int id);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QAListView* m_list = nullptr;
    bool m_deletionMode = false;
    bool m_custom = false;
};

#endif
