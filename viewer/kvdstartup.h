#ifndef KVDSTARTUP_H
#define KVDSTARTUP_H

class KVDView;
class QWidget;

// Finds the repository a viewer window shows and loads it into the window's view: the
// host's open project, else ZANTH_KVD_ROOT, else a directory the person picks, which then
// stands in the environment until this object goes.
class KVDStartup
{
public:
    // The directory dialog opens over window.
    KVDStartup(KVDView& view, QWidget* window);
    ~KVDStartup();
    KVDStartup(const KVDStartup&) = delete;
    KVDStartup& operator=(const KVDStartup&) = delete;

    // Locates the repository and loads the built-in definitions, the saved view and the
    // scan, then stores the view. False after the failing step has shown its message, or
    // when the person cancelled the directory dialog.
    bool load();
    // The configuration steps again on a fresh configuration, after the repository's
    // files changed; their results are not checked, their messages have been shown.
    void reload();

private:
    KVDView& m_view;
    QWidget* m_window = nullptr;
    bool m_rootFromDialog = false;
};

#endif
