#ifndef KVDMENU_H
#define KVDMENU_H

#include <QString>

class KVDView;
class QAction;
class QAKVD;
class QMenu;

// The "&Kavendi" menu a viewer window puts into the host's menu bar: "Monitoring" with a
// submenu of fields per measure of the current user, "Custom Curves", "Scale", "Events",
// "Delete Record" and "Export". Items keep an int id (QAction::setData), as the window's
// slots take one.
class KVDMenu
{
public:
    KVDMenu() = default;
    ~KVDMenu();
    KVDMenu(const KVDMenu&) = delete;
    KVDMenu& operator=(const KVDMenu&) = delete;

    // Builds the menu anew for user, wired to window's slots, and inserts it into the
    // host's menu bar. False without a host or configuration, while the menu is inserted
    // already, or (after a warning) when user has no measures.
    bool build(QAKVD* window, const KVDView& view, const QString& user);
    // Takes the menu out of the host's menu bar and empties it.
    void remove();

    // The item carrying id, searched through the menu and its submenus; null when none.
    QAction* item(int id) const;
    // Moves the check mark of the scale entries to id, as every scale slot does.
    void checkScale(int id);
    void setExportEnabled(bool enabled);

    QMenu* menu() const { return m_menu; }
    int hostMenuId() const { return m_menuId; }
    int checkedScale() const { return m_checkedScale; }
    int exportId() const { return m_exportId; }

private:
    int newMenuId() { return m_nextMenuId--; }

    QMenu* m_menu = nullptr; // parented to the host's main window, deleted with this
    int m_menuId = -1;       // the host's id of the inserted menu, -1 when not inserted
    int m_exportId = 0;
    int m_checkedScale = 0;
    int m_nextMenuId = -2;
};

#endif
