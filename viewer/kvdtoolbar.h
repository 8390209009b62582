#ifndef KVDTOOLBAR_H
#define KVDTOOLBAR_H

class QAKVD;
class QMainWindow;
class QToolBar;

// The tool bar every viewer window shares in the host's main window: "Clear", "Hide
// Events" and the "Floating Schedule" toggle. It goes with the main window.
class KVDToolBar
{
public:
    // Creates the bar in mainWindow with a disabled set of buttons.
    static void create(QMainWindow* mainWindow);
    // Adds a disabled set of buttons to the bar, if there is one.
    static void reset();
    // Replaces the buttons with a set wired to window and enables the bar.
    static void attach(QAKVD* window);
    static void setEnabled(bool enabled);
    // Null until created, and once the main window has gone.
    static QToolBar* bar();
};

#endif
