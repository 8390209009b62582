#include "kvddateboxes.h"

#include <QBoxLayout>
#include <QSpinBox>

namespace {

QSpinBox* makeBox(QWidget* parent, const QString& name, int low, int high)
{
    auto* box = new QSpinBox(parent);
    box->setObjectName(name);
    box->setRange(low, high);
    return box;
}

} // namespace

KVDDateBoxes::KVDDateBoxes(QWidget* parent, const QString& prefix)
    : day(makeBox(parent, prefix + QLatin1String("Day"), 1, 31)),
      month(makeBox(parent, prefix + QLatin1String("Month"), 1, 12)),
      year(makeBox(parent, prefix + QLatin1String("Year"), 2001, 2050))
{
}

void KVDDateBoxes::addTo(QBoxLayout* row) const
{
    row->addWidget(day);
    row->addWidget(month);
    row->addWidget(year);
}

void KVDDateBoxes::setDate(const QDate& date)
{
    year->setValue(date.year());
    month->setValue(date.month());
    day->setMaximum(31);
    day->setValue(date.day());
}

QDate KVDDateBoxes::validate()
{
    const int days = QDate(year->value(), month->value(), 1).daysInMonth();
    // Lowering the maximum also lowers a day shown past it.
    day->setMaximum(days);
    if (day->value() > days)
        day->setValue(days);
    return QDate(year->value(), month->value(), day->value());
}
