#ifndef KVDWINDOWSHELL_H
#define KVDWINDOWSHELL_H

#include "kvdconfig.h"
#include "kvdshell.h"

#include <QMessageBox>

// The viewer window's side of the shell: messages are modal boxes on the host's main
// window with the host's title (parentless, titled "Kavendi", without a host), and the
// scan's questions are asked with the labelling question and the labels form.
class KVDWindowShell : public KVDShell
{
public:
    // The one shell of every viewer window of the process.
    static KVDWindowShell& instance();
    static KVDConfig::Questions questions();

    StudioInterface* studio() const override;
    void warning(const QString& text) override;
    void critical(const QString& text) override;
    QString currentUser() const override;

private:
    static void showBox(QMessageBox::Icon icon, const QString& text);
};

#endif
