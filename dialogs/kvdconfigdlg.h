#ifndef KVDCONFIGDLG_H
#define KVDCONFIGDLG_H

#include "kvddateboxes.h"

#include <QDate>
#include <QDialog>
#include <QList>
#include <QString>
#include <QStringList>

class QLabel;
class QLineEdit;
class QPushButton;
class QScrollArea;

// Two dialogs in one class, each run with exec() (non-zero when accepted):
// - the labels form asks for a display label of a newly found metric (row 0) and of
//   each of its fields (rows 1..fields); "OK" is possible only while every row has text;
// - the date-range form asks for a custom range, From and To, in 2001..2050.
class KVDConfigDlg : public QDialog
{
    Q_OBJECT

public:
    // Labels form for `fields` fields of `metric` (a negative count is taken as 0).
    KVDConfigDlg(QWidget* parent, int fields, QString metric);
    // Date-range form; the text is accepted for callers and not shown.
    KVDConfigDlg(QWidget* parent, QString);

    // Labels form: the text of row i as last typed; null for a row that does not exist.
    QString GetValue(int i) const;
    // Date-range form: the dates shown in the From and To rows.
    QDate GetStart() const { return m_start; }
    QDate GetEnd() const { return m_end; }
    bool rangeSet() const { return m_rangeSet; }

    // Labels form: the list of rows, and the width it needs to show the rows without a
    // horizontal scroll bar.
    QScrollArea* scrollView() const { return m_scroll; }
    int listWidth() const;

public slots:
    void GetText();
    void ValidateStartYear();
    void ValidateEndYear();

private:
    int m_rowCount = 0;
    QStringList m_labels;
    QList<QLabel*> m_rowLabels;
    QList<QLineEdit*> m_edits;
    QPushButton* m_ok = nullptr;
    QPushButton* m_second = nullptr;
    QScrollArea* m_scroll = nullptr;
    QDate m_start;
    QDate m_end;
    KVDDateBoxes m_from;
    KVDDateBoxes m_to;
    bool m_rangeSet = false;
};

#endif
