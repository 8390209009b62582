// Feeds kvd write's date parser arbitrary text and checks each instant it accepts against
// Qt's own reading of the same text.
#include "kvddate.h"

#include <QDateTime>
#include <QTimeZone>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::uint32_t seconds = 0xDEADBEEF;
    const KvdDate::Status status = KvdDate::parse(text, &seconds);
    if (status != KvdDate::Status::Ok) {
        if (seconds != 0xDEADBEEF) {
            std::fprintf(stderr, "fuzz_kvddate: a refusal changed its result\n");
            std::abort();
        }
        return 0;
    }
    const QString string = QString::fromLatin1(text.data(), qsizetype(text.size()));
    // Dates are the only forms with a dash in the fifth place; the rest are numbers.
    if (text.size() >= 10 && text[4] == '-') {
        QDateTime qt = QDateTime::fromString(string, Qt::ISODate);
        if (text.size() == 10 || text.size() == 19)
            qt.setTimeZone(QTimeZone::utc());
        if (!qt.isValid() || qt.toSecsSinceEpoch() != qint64(seconds)) {
            std::fprintf(stderr, "fuzz_kvddate: %s read as %u, Qt says %lld\n",
                         string.toLatin1().constData(), seconds,
                         qt.isValid() ? qt.toSecsSinceEpoch() : -1LL);
            std::abort();
        }
    } else {
        bool ok = false;
        const qulonglong number = string.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)
                                      ? string.mid(2).toULongLong(&ok, 16)
                                      : string.toULongLong(&ok, 10);
        if (!ok || number != seconds) {
            std::fprintf(stderr, "fuzz_kvddate: %s read as %u\n", string.toLatin1().constData(),
                         seconds);
            std::abort();
        }
    }
    return 0;
}
