#include "getpix.h"

#include <QHash>
#include <QString>

QPixmap GETPIX(const char* name, const char* const* xpm)
{
    static QHash<QString, QPixmap> cache;
    const QString key = QString::fromLatin1(name);
    auto found = cache.constFind(key);
    if (found != cache.constEnd())
        return *found;
    QPixmap pixmap(xpm);
    cache.insert(key, pixmap);
    return pixmap;
}
