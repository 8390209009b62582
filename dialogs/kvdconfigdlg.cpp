#include "kvdconfigdlg.h"
#include "kvddialogframe.h"

#include <QBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
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

KVDConfigDlg::KVDConfigDlg(QWidget* parent, int fields, QString metric) : QDialog(parent)
{
    KVDDialogFrame(this);
    m_rowCount = qMax(0, fields) + 1;

    auto* main = boxLayout<QVBoxLayout>(this);
    m_scroll = new QScrollArea(this);
    m_scroll->setObjectName(QStringLiteral("labelList"));
    // The rows follow the list's width, as they would in a list that resizes its one child.
    m_scroll->setWidgetResizable(true);
    main->addWidget(m_scroll);
    auto* content = new QWidget;
    auto* rows = boxLayout<QVBoxLayout>(content);

    for (int i = 0; i < m_rowCount; ++i) {
        const QString text =
            i == 0 ? tr("Enter a label for the %1 metric", "%1 is a metric name").arg(metric)
                   : tr("Enter a label for field %1 of %2 metric").arg(i).arg(metric);
        auto* label = new QLabel(text, content);
        label->setAlignment(Qt::AlignCenter);
        auto* edit = new QLineEdit(content);
        edit->setObjectName(QStringLiteral("label%1").arg(i));
        connect(edit, &QLineEdit::textChanged, this, &KVDConfigDlg::GetText);
        rows->addWidget(label);
        rows->addWidget(edit);
        rows->addWidget(new QLabel(content));
        m_rowLabels.append(label);
        m_edits.append(edit);
        m_labels.append(QString());
    }
    m_scroll->setWidget(content);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(5);
    main->addLayout(buttons);
    m_ok = new QPushButton(tr("OK"), this);
    m_ok->setEnabled(false);
    m_ok->setDefault(true);
    m_second = new QPushButton(tr("Ignore"), this);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_second);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_second, &QPushButton::clicked, this, &QDialog::reject);

    setFixedHeight(5 * m_edits.first()->sizeHint().height());
}

KVDConfigDlg::KVDConfigDlg(QWidget* parent, QString) : QDialog(parent)
{
    KVDDialogFrame(this);

    auto* main = boxLayout<QHBoxLayout>(this);
    auto* group = new QGroupBox(tr("Record Selection", "Group Box Title"), this);
    main->addWidget(group);
    auto* rows = boxLayout<QVBoxLayout>(group);

    auto* fromRow = boxLayout<QHBoxLayout>();
    rows->addLayout(fromRow);
    fromRow->addWidget(new QLabel(tr("From : "), group));
    m_from = KVDDateBoxes(group, QStringLiteral("from"));
    m_from.addTo(fromRow);

    auto* toRow = boxLayout<QHBoxLayout>();
    rows->addLayout(toRow);
    toRow->addWidget(new QLabel(tr("To: "), group));
    m_to = KVDDateBoxes(group, QStringLiteral("to"));
    m_to.addTo(toRow);

    m_start = QDate(2001, 1, 1);
    m_end = QDate(2001, 2, 1);
    m_from.setDate(m_start);
    m_to.setDate(m_end);
    m_rangeSet = true;

    for (QSpinBox* box : {m_from.day, m_from.month, m_from.year})
        connect(box, &QSpinBox::valueChanged, this, &KVDConfigDlg::ValidateStartYear);
    for (QSpinBox* box : {m_to.day, m_to.month, m_to.year})
        connect(box, &QSpinBox::valueChanged, this, &KVDConfigDlg::ValidateEndYear);

    auto* buttons = boxLayout<QVBoxLayout>();
    main->addLayout(buttons);
    m_ok = new QPushButton(tr("OK"), this);
    m_ok->setFixedWidth(70);
    m_ok->setDefault(true);
    m_second = new QPushButton(tr("Cancel"), this);
    m_second->setFixedWidth(70);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_second);
    buttons->addStretch();
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_second, &QPushButton::clicked, this, &QDialog::reject);
}

QString KVDConfigDlg::GetValue(int i) const
{
    return m_labels.value(i);
}

int KVDConfigDlg::listWidth() const
{
    if (!m_scroll || !m_scroll->widget())
        return 0;
    return m_scroll->widget()->sizeHint().width() + 2 * m_scroll->frameWidth();
}

void KVDConfigDlg::GetText()
{
    bool complete = true;
    for (int i = 0; i < m_edits.size(); ++i) {
        m_labels[i] = m_edits.at(i)->text();
        if (m_labels.at(i).isEmpty())
            complete = false;
    }
    m_ok->setEnabled(complete);
}

void KVDConfigDlg::ValidateStartYear()
{
    if (m_from.day)
        m_start = m_from.validate();
}

void KVDConfigDlg::ValidateEndYear()
{
    if (m_to.day)
        m_end = m_to.validate();
}
