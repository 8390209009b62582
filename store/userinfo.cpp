#include "userinfo.h"

#include <QCoreApplication>

#include <cstdio>

void user_info(const QString& message)
{
    const QString text =
        QCoreApplication::translate("Display Info", "Quillon - Kavendi: %1\n", "%1 is the message")
            .arg(message);
    const QByteArray bytes = text.toLocal8Bit();
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
    std::fprintf(stderr, bytes.constData());
#pragma GCC diagnostic pop
}
