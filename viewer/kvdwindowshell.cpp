#include "kvdwindowshell.h"
#include "kvdconfigdlg.h"
#include "kvdconfigmsg.h"
#include "qakvd.h"
#include "studiointerface.h"

#include <QCoreApplication>
#include <QLayout>
#include <QMainWindow>
#include <QScrollArea>
#include <QScrollBar>

namespace {

QWidget* hostWindow()
{
    StudioInterface* host = QAKVD::iface();
    return host ? host->mainWindow() : nullptr;
}

} // namespace

KVDWindowShell& KVDWindowShell::instance()
{
    static KVDWindowShell shell;
    return shell;
}

KVDConfig::Questions KVDWindowShell::questions()
{
    KVDConfig::Questions asked;
    asked.configure = [] { return KVDConfigMsg(hostWindow()).exec() == 1; };
    asked.labels = [](const QString& measure, int count, KVDDefinition* labels) {
        KVDConfigDlg dialog(hostWindow(), count, measure);
        // Wide enough for every column, and for the scroll bar beside them.
        dialog.setFixedWidth(
            dialog.listWidth() + dialog.scrollView()->verticalScrollBar()->sizeHint().width() + 2 +
            dialog.layout()->contentsMargins().left() + dialog.layout()->contentsMargins().right());
        if (!dialog.exec())
            return false;
        for (int i = 0; i <= count; ++i)
            labels->insert(i, dialog.GetValue(i));
        return true;
    };
    return asked;
}

StudioInterface* KVDWindowShell::studio() const
{
    return QAKVD::iface();
}

void KVDWindowShell::warning(const QString& text)
{
    showBox(QMessageBox::Warning, text);
}

void KVDWindowShell::critical(const QString& text)
{
    showBox(QMessageBox::Critical, text);
}

QString KVDWindowShell::currentUser() const
{
    return QAKVD::GetCurrentUser();
}

void KVDWindowShell::showBox(QMessageBox::Icon icon, const QString& text)
{
    StudioInterface* host = QAKVD::iface();
    const QString title =
        host ? host->title()
             : QCoreApplication::translate("QAKVD", "Kavendi", "Default title for message box");
    QMessageBox box(icon, title, text, QMessageBox::Ok, host ? host->mainWindow() : nullptr);
    box.exec();
}
