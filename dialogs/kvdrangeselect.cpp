#include "kvdrangeselect.h"
#include "kvddialogframe.h"
#include "kvdmeasurefile.h"
#include "kvdshell.h"

#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

KVDRangeSelect::KVDRangeSelect(const QString& dir, QWidget* parent, const char* name, int)
    : QDialog(parent), m_dir(dir)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    KVDDialogFrame(this);
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
    m_from = KVDDateBoxes(group, QStringLiteral("from"));
    m_from.setDate(startDate);
    m_from.addTo(row);
    row->addWidget(new QLabel(tr("To: "), group));
    m_to = KVDDateBoxes(group, QStringLiteral("to"));
    m_to.setDate(endDate);
    m_to.addTo(row);
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
    for (QSpinBox* box : {m_from.day, m_from.month, m_from.year})
        connect(box, &QSpinBox::valueChanged, this, &KVDRangeSelect::ValidateStartYear);
    for (QSpinBox* box : {m_to.day, m_to.month, m_to.year})
        connect(box, &QSpinBox::valueChanged, this, &KVDRangeSelect::ValidateEndYear);
    connect(ok, &QPushButton::clicked, this, &KVDRangeSelect::CustomOk);
    connect(cancel, &QPushButton::clicked, this, &KVDRangeSelect::CustomCancel);
    ready = true;
}

QStringList KVDRangeSelect::entries(const QString& dir)
{
    const QString filter = QLatin1Char('*') + KVDShell::user() + QLatin1String("*.kvd");
    return QDir(dir).entryList({filter},
                               QDir::Files | QDir::Dirs | QDir::Drives | QDir::NoDotAndDotDot |
                                   QDir::CaseSensitive,
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

void KVDRangeSelect::validate(KVDDateBoxes& boxes, QDate* date)
{
    {
        // Lowering the day shown to the month's last day must not list the file twice.
        const QSignalBlocker blocker(boxes.day);
        *date = boxes.validate();
    }
    GetMeasure(m_combo->currentIndex());
}

void KVDRangeSelect::ValidateStartYear()
{
    validate(m_from, &startDate);
}

void KVDRangeSelect::ValidateEndYear()
{
    validate(m_to, &endDate);
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
