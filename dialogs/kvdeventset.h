#ifndef KVDEVENTSET_H
#define KVDEVENTSET_H

#include "kvddateboxes.h"

#include <QDate>
#include <QDialog>
#include <QString>

class QLineEdit;
class QPushButton;

// Asks for an event's day and label. Run with exec(): 1 once "OK" was pressed with a
// label typed, 0 for "Cancel"; then eventDate() and label() hold the answer.
class KVDEventSet : public QDialog
{
    Q_OBJECT

public:
    // The day shown first is the local date of the Unix time `time`, today when it is 0;
    // the int argument is accepted for callers and not used.
    KVDEventSet(QWidget* parent, const char* name, int, unsigned int time);

    QDate eventDate() const { return m_date; }
    // Null until some text was typed.
    QString label() const { return m_label; }
    bool labelGiven() const { return m_labelGiven; }

public slots:
    void ValidateStartYear();
    void ValidateText();
    void CustomOk();
    void CustomCancel();

private:
    QDate m_date;
    QString m_label;
    bool m_labelGiven = false;
    KVDDateBoxes m_boxes;
    QLineEdit* m_text = nullptr;
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
};

#endif
