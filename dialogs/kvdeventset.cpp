#include "kvdeventset.h"
#include "kvddialogframe.h"

#include <QBoxLayout>
#include <QDateTime>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {

template <typename Layout> Layout* boxLayout(QWidget* owner = nullptr)
{
    auto* layout = new Layout(owner);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(5);
    return layout;
}

} // namespace

KVDEventSet::KVDEventSet(QWidget* parent, const char* name, int, unsigned int time)
    : QDialog(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    KVDDialogFrame(this);

    auto* main = boxLayout<QHBoxLayout>(this);
    // The title is deliberately the one of the record dialogs.
    auto* group = new QGroupBox(tr("Record Selection", "Title of a Group Box"), this);
    main->addWidget(group);
    auto* rows = boxLayout<QVBoxLayout>(group);

    auto* dateRow = boxLayout<QHBoxLayout>();
    rows->addLayout(dateRow);
    dateRow->addWidget(new QLabel(tr("Event date: "), group));
    m_boxes = KVDDateBoxes(group, QStringLiteral("event"));
    m_boxes.addTo(dateRow);

    auto* textRow = boxLayout<QHBoxLayout>();
    rows->addLayout(textRow);
    textRow->addWidget(new QLabel(tr("Label: "), group));
    m_text = new QLineEdit(group);
    m_text->setObjectName(QStringLiteral("eventLabel"));
    textRow->addWidget(m_text);

    auto* buttons = boxLayout<QVBoxLayout>();
    main->addLayout(buttons);
    m_ok = new QPushButton(tr("OK"), this);
    m_ok->setFixedWidth(70);
    m_ok->setDefault(true);
    m_cancel = new QPushButton(tr("Cancel"), this);
    m_cancel->setFixedWidth(70);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    buttons->addStretch();

    const QDate first =
        time ? QDateTime::fromSecsSinceEpoch(qint64(time)).date() : QDate::currentDate();
    m_boxes.setDate(first);
    ValidateStartYear();

    for (QSpinBox* box : {m_boxes.day, m_boxes.month, m_boxes.year})
        connect(box, &QSpinBox::valueChanged, this, &KVDEventSet::ValidateStartYear);
    connect(m_text, &QLineEdit::textChanged, this, &KVDEventSet::ValidateText);
    connect(m_ok, &QPushButton::clicked, this, &KVDEventSet::CustomOk);
    connect(m_cancel, &QPushButton::clicked, this, &KVDEventSet::CustomCancel);
}

void KVDEventSet::ValidateStartYear()
{
    m_date = m_boxes.validate();
}

void KVDEventSet::ValidateText()
{
    // Emptying the line deliberately keeps the label typed before: "OK" stays possible.
    const QString text = m_text->text();
    if (!text.isEmpty()) {
        m_labelGiven = true;
        m_label = text;
    }
}

void KVDEventSet::CustomOk()
{
    if (m_labelGiven)
        done(1);
}

void KVDEventSet::CustomCancel()
{
    done(0);
}
