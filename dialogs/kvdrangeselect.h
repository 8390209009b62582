#ifndef KVDRANGESELECT_H
#define KVDRANGESELECT_H

#include "kvddateboxes.h"

#include <QDate>
#include <QDialog>
#include <QString>

class QComboBox;
class QHBoxLayout;

// Picks one of the current user's measure files and a date range. Changes no file: the
// caller reads the result members after exec() answered accepted.
class KVDRangeSelect : public QDialog
{
    Q_OBJECT

public:
    KVDRangeSelect(const QString& dir, QWidget* parent, const char* name, int flags);

    QString fileName; // M.U.N.kvd, an entry of the repository directory
    QString measure;  // M
    QString user;     // U
    int fields = 0;   // N
    QDate startDate;  // both taken at 00:00:00 by the callers
    QDate endDate;
    bool ready = false; // OK does nothing until construction has finished

    // The current user's data files of dir, as the combo box lists them.
    static QStringList entries(const QString& dir);

public slots:
    virtual void GetMeasure(int index);
    void ValidateStartYear();
    void ValidateEndYear();
    virtual void CustomOk();
    void CustomCancel();

protected:
    // Fills the result members from entry `index`; false when there is no such entry.
    bool takeEntry(int index);
    QComboBox* combo() const { return m_combo; }
    // The row under the selection group, empty here.
    QHBoxLayout* secondRow() const { return m_secondRow; }
    QString m_dir;

private:
    void validate(KVDDateBoxes& boxes, QDate* date);

    QComboBox* m_combo = nullptr;
    KVDDateBoxes m_from; // boxes named fromDay, fromMonth, fromYear
    KVDDateBoxes m_to;   // toDay, toMonth, toYear
    QHBoxLayout* m_secondRow = nullptr;
};

#endif
