#ifndef KVDCUSTOMCURVES_H
#define KVDCUSTOMCURVES_H

#include <QString>

class KVDView;
class QTreeWidget;
class QWidget;

// Custom curves: records picked one by one in the custom dialog are copied into the
// custom measure file Custom<M>.<user>.<N>.kvd of the view's repository, which the
// repository scan then offers as a measure of its own.
class KVDCustomCurves
{
public:
    // The dialog opens over window.
    KVDCustomCurves(KVDView& view, QWidget* window);

    // Asks for records with the custom dialog and writes the custom file of user, the
    // view file stored first. False when the dialog was cancelled or no row was checked;
    // otherwise the window rebuilds its view.
    bool choose(const QString& user);
    // Writes the checked rows of list, last row first, into the custom measure file of
    // the measure named by the last row and of `user`. No index file is written for it.
    void CreateCustomFile(QTreeWidget* list, const QString& user);

private:
    KVDView& m_view;
    QWidget* m_window = nullptr;
};

#endif
