#ifndef KVDRECORDDELETION_H
#define KVDRECORDDELETION_H

#include <QString>

#include <functional>

class KVDView;
class QTreeWidget;
class QWidget;

// Deletes chosen records from a measure file pair of the view's repository: the index
// file is removed, the data file moved aside to KVD.tmp, and every record that was not
// chosen is appended again through the measure store, which writes a new pair. The
// window rebuilds its view afterwards, whatever the outcome, unless the person cancelled.
class KVDRecordDeletion
{
public:
    // Dialogs open over window, which also parents the progress display and shows the
    // wait cursor while records are rewritten.
    KVDRecordDeletion(KVDView& view, QWidget* window);

    // Deletes the records of one of user's files whose date lies in a range, both asked
    // for with the range dialog. False when the dialog was cancelled.
    bool range(const QString& user);
    // Deletes the records checked in the custom dialog; on cancel ends the progress
    // display and resets the cursor, and answers false.
    bool custom();

    // Whether a checked row of list (column 2) shows the date-time of Unix time `time`.
    static bool InList(unsigned int time, QTreeWidget* list);

private:
    // Appends again, through the store, every record of the temporary file that
    // `deleted` does not claim, then removes the temporary file.
    void rewrite(const QString& temporary, const QString& measure, const QString& user, int fields,
                 const QString& cancelText, const QString& failure,
                 const std::function<bool(const quint32*)>& deleted);

    KVDView& m_view;
    QWidget* m_window = nullptr;
};

#endif
