#include "testenv.h"

#include <QLocale>

#include <cstdlib>
#include <ctime>

namespace TestEnv {

void pin()
{
    if (!std::getenv("TZ"))
        qputenv("TZ", "UTC");
    tzset();
    QLocale::setDefault(QLocale::c());
}

QString dataFile(const QString& name)
{
    return QStringLiteral(KVD_TEST_DATA "/") + name;
}

QString built(const QString& relative)
{
    return QStringLiteral(KVD_BINARY_DIR "/") + relative;
}

} // namespace TestEnv
