#ifndef KVDCONFIGMSG_H
#define KVDCONFIGMSG_H

#include <QMessageBox>

class QPushButton;

// Asks whether newly found metrics should be given labels now.
class KVDConfigMsg : public QMessageBox
{
    Q_OBJECT

public:
    explicit KVDConfigMsg(QWidget* parent);

    // 1 when the user chose "OK"; 0 for "Ignore" or a box closed otherwise.
    int exec() override;

private:
    QPushButton* m_ok = nullptr;
};

#endif
