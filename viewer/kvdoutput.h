#ifndef KVDOUTPUT_H
#define KVDOUTPUT_H

#include <QSize>

class KVDView;
class QPrinter;
class QWidget;

// What leaves the window: the printed chart and the CSV export of the shown curves.
class KVDOutput
{
public:
    // Dialogs open over window.
    KVDOutput(KVDView& view, QWidget* window);

    // Asks for a printer with the print dialog and prints the chart on it; answers as
    // printChart(), or an invalid size when the dialog was cancelled.
    QSize print();
    // The printing pass onto an accepted printer; answers the page size drawn, or an
    // invalid size when the printer could not be started. A paint may drop a scale curve.
    QSize printChart(QPrinter* printer);
    // Asks for a file name and exports the shown curves there; nothing without curves. A
    // file that cannot be created ends the export quietly.
    void exportCsv();

private:
    KVDView& m_view;
    QWidget* m_window = nullptr;
};

#endif
