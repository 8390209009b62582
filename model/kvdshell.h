#ifndef KVDSHELL_H
#define KVDSHELL_H

#include <QString>

class StudioInterface;

// What the code below the viewer window needs from whatever runs it: the viewer window
// inside the host, or the command-line tool, which shows nothing and asks nothing. The
// runner implements this and installs one shell for the process; code below the window
// reaches it only through the static shorthands, so it never depends on who runs it.
class KVDShell
{
public:
    virtual ~KVDShell() = default;

    // The host application (title, main window, data directory, progress display), or
    // null when there is none.
    virtual StudioInterface* studio() const = 0;
    // Shows an error; `critical` for a configuration step that failed. Returns once the
    // person, if any, has seen it.
    virtual void warning(const QString& text) = 0;
    virtual void critical(const QString& text) = 0;
    // The user whose measures are shown.
    virtual QString currentUser() const = 0;

    // The shell in use, or null. install() does not take ownership: the shell must be
    // uninstalled (install(nullptr), or another one installed) before it goes.
    static KVDShell* current();
    static void install(KVDShell* shell);

    // Through the installed shell; without one, messages go to standard error, there is
    // no host and the current user is empty.
    static void warningBox(const QString& text);
    static void criticalBox(const QString& text);
    static StudioInterface* host();
    static QString user();
};

#endif
