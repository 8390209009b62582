#include "kvdconfigmsg.h"
#include "getpix.h"
#include "kvdicons.h"

#include <QPushButton>

KVDConfigMsg::KVDConfigMsg(QWidget* parent) : QMessageBox(parent)
{
    setModal(true);
    setWindowIcon(GETPIX("kvdmini_xpm", kvdmini_xpm_data));
    setWindowTitle(tr("Kavendi Configuration", "Message box title"));
    setText(tr("Metric detected.\nDo you want to configure it?", "Used in a message box"));
    setIcon(QMessageBox::Information);
    m_ok = addButton(tr("OK"), QMessageBox::AcceptRole);
    QAbstractButton* ignore = addButton(tr("Ignore"), QMessageBox::RejectRole);
    setDefaultButton(m_ok);
    setEscapeButton(ignore);
}

int KVDConfigMsg::exec()
{
    QMessageBox::exec();
    return clickedButton() == m_ok ? 1 : 0;
}
