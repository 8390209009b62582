#ifndef KVDDATEBOXES_H
#define KVDDATEBOXES_H

#include <QDate>
#include <QString>

class QBoxLayout;
class QSpinBox;
class QWidget;

// Day (1..31), month (1..12) and year (2001..2050) spin boxes that together show one
// date. The boxes belong to parent; names are prefix + "Day", "Month", "Year" so that
// a date row can be found by name.
// A plain value: copying it copies the three pointers, not the boxes.
class KVDDateBoxes
{
public:
    KVDDateBoxes() = default;
    KVDDateBoxes(QWidget* parent, const QString& prefix);

    void addTo(QBoxLayout* row) const;
    // Shows date; a year outside the boxes' range shows as the nearest year allowed.
    void setDate(const QDate& date);
    // Limits the day box to the days of the shown month, lowering the day shown when it
    // is past the month's end, and answers the shown date.
    QDate validate();

    QSpinBox* day = nullptr;
    QSpinBox* month = nullptr;
    QSpinBox* year = nullptr;
};

#endif
