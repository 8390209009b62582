#include "kvddialogframe.h"
#include "getpix.h"
#include "kvdicons.h"
#include "kvdshell.h"
#include "studiointerface.h"

#include <QCoreApplication>
#include <QDialog>

void KVDDialogFrame(QDialog* dialog)
{
    dialog->setModal(true);
    dialog->setWindowIcon(GETPIX("kvdmini_xpm", kvdmini_xpm_data));
    if (StudioInterface* host = KVDShell::host())
        dialog->setWindowTitle(host->title());
    else
        dialog->setWindowTitle(
            QCoreApplication::translate("KVDDialogFrame", "Kavendi", "Default title of a dialog"));
}
