#ifndef KVDDIALOGFRAME_H
#define KVDDIALOGFRAME_H

class QDialog;

// The frame every property dialog shares: modal, the viewer's small icon, and the host's
// title as caption ("Kavendi" without a host).
void KVDDialogFrame(QDialog* dialog);

#endif
