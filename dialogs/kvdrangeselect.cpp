#include "kvdrangeselect.h"
#include "getpix.h"
#include "kvdicons.h"
#include "kvdmeasurefile.h"
#include "qakvd.h"
#include "studiointerface.h"

#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {

QSpinBox* spinBox(QWidget* parent, QHBoxLayout* layout, int minimum, int maximum, int value)
{
    auto* box = new QSpinBox(parent);
    box->setRange(minimum, maximum);
    box->setSingleStep(1);
    box->setValue(value);
    layout->addWidget(box);
    return box;
}

} // namespace

KVDRangeSelect::KVDRangeSelect(const QString& dir, QWidget* parent, const char* name, int)
    : QDialog(parent), m_dir(dir)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    setModal(true);
    setWindowIcon(GETPIX("kvdmini_xpm", kvdmini_xpm_data));
    setWindowTitle(QAKVD::iface() ? QAKVD::iface()->title() : tr("Kavendi"));
    startDate = QDate(2001, 1, 1);
    endDate = QDate(2001, 2, 1);

    auto* main = new QVBoxLayout(this);
    main->setContentsMargins(10, 10, 10, 10);
    main->setSpacing(5);
    auto* first = new QHBoxLayout;
    first->setSpacing(5);
    main->addLayout(first);

    auto* group = new QGroupBox(tr("Record Selection"), this);
    auto* row = new QHBoxLayout(group);
    row->setContentsMargins(10, 10, 10, 10);
    row->setSpacing(5);
    m_combo = new QComboBox(group);
    row->addWidget(m_combo);
    row->addWidget(new QLabel(tr("From : "), group));
    m_startDay = spinBox(group, row, 1, 31, 1);
    m_startMonth = spinBox(group, row, 1, 12, 1);
    m_startYear = spinBox(group, row, 2001, 2050, 2001);
    row->addWidget(new QLabel(tr("To: "), group));
    m_endDay = spinBox(group, row, 1, 31, 1);
    m_endMonth = spinBox(group, row, 1, 12, 2);
    m_endYear = spinBox(group, row, 2001, 2050, 2001);
    first->addWidget(group);

    auto* buttons = new QVBoxLayout;
    buttons->setContentsMargins(10, 10, 10, 10);
    buttons->setSpacing(5);
    auto* ok = new QPushButton(tr("OK"), this);
    ok->setFixedWidth(70);
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setFixedWidth(70);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    first->addLayout(buttons);

    m_secondRow = new QHBoxLayout;
    m_secondRow->setSpacing(5);
    main->addLayout(m_secondRow);

    for (const QString& entry : entries(dir))
        m_combo->addItem(entry.section(QLatin1Char('.'), 0, 0));

    connect(m_combo, &QComboBox::activated, this, &KVDRangeSelect::GetMeasure);
    for (QSpinBox* box : {m_startDay, m_startMonth, m_startYear})
        connect(box, &QSpinBox::valueChanged, this, &KVDRangeSelect::ValidateStartYear);
    for (QSpinBox* box : {m_endDay, m_endMonth, m_endYear})
        connect(box, &QSpinBox::valueChanged, this, &KVDRangeSelect::ValidateEndYear);
    connect(ok, &QPushButton::clicked, this, &KVDRangeSelect::CustomOk);
    connect(cancel, &QPushButton::clicked, this, &KVDRangeSelect::CustomCancel);
    ready = true;
}

QStringList KVDRangeSelect::entries(const QString& dir)
{
    const QString filter = QLatin1Char('*') + QAKVD::GetCurrentUser() + QLatin1String("*.kvd");
    return QDir(dir).entryList({filter}, QDir::Files | QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot,
                               QDir::Name | QDir::IgnoreCase);
}

bool KVDRangeSelect::takeEntry(int index)
{
    const QStringList list = entries(m_dir);
    if (index < 0 || index >= list.size())
        return false;
    fileName = list[index];
    const KVDMeasureFile::Name parts = KVDMeasureFile::splitName(fileName);
    measure = parts.measure;
    user = parts.user;
    fields = parts.fieldCount;
    return true;
}

void KVDRangeSelect::GetMeasure(int index)
{
    takeEntry(index);
}

void KVDRangeSelect::validate(QSpinBox* day, QSpinBox* month, QSpinBox* year, QDate* date)
{
    const QDate firstDay(year->value(), month->value(), 1);
    const int days = firstDay.daysInMonth();
    // Setting the maximum clamps the day shown; its signal comes back here harmlessly.
    day->setMaximum(days);
    if (day->value() > days)
        day->setValue(days);
    *date = QDate(year->value(), month->value(), day->value());
    GetMeasure(m_combo->currentIndex());
}

void KVDRangeSelect::ValidateStartYear()
{
    validate(m_startDay, m_startMonth, m_startYear, &startDate);
}

void KVDRangeSelect::ValidateEndYear()
{
    validate(m_endDay, m_endMonth, m_endYear, &endDate);
}

void KVDRangeSelect::CustomOk()
{
    if (!ready)
        return;
    GetMeasure(m_combo->currentIndex());
    done(1);
}

void KVDRangeSelect::CustomCancel()
{
    done(0);
}
