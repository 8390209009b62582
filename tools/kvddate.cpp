#include "kvddate.h"

#include <algorithm>

namespace KvdDate {
namespace {

constexpr std::int64_t Last = 0xFFFFFFFF;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexDigit(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The count decimal digits of text from at on, as a number; false unless all are there.
bool digits(std::string_view text, size_t at, size_t count, int* value)
{
    if (at > text.size() || count > text.size() - at)
        return false;
    int v = 0;
    for (size_t i = at; i < at + count; ++i) {
        if (!isDigit(text[i]))
            return false;
        v = v * 10 + (text[i] - '0');
    }
    *value = v;
    return true;
}

bool isLeap(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysIn(int year, int month)
{
    static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month - 1];
}

// Days from 1970-01-01 to a valid Gregorian date of a year 0 to 9999: whole 400-year
// cycles of 146097 days, then the day of the cycle counted from 1 March, so that the leap
// day comes last.
std::int64_t daysSinceEpoch(int year, int month, int day)
{
    const int y = year - (month <= 2 ? 1 : 0) + 400; // + 400 keeps year 0's cycle positive
    const int era = y / 400;
    const int yearOfEra = y - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return std::int64_t(era - 1) * 146097 + dayOfEra - 719468;
}

// Seconds in decimal or 0x hexadecimal. Values past 32 bits stop growing just past the
// limit, which tells them from text that is no number at all.
Status seconds(std::string_view text, std::uint32_t* out)
{
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const std::string_view body = hex ? text.substr(2) : text;
    if (body.empty())
        return Status::Malformed;
    std::int64_t value = 0;
    for (char c : body) {
        const int digit = hex ? hexDigit(c) : isDigit(c) ? c - '0' : -1;
        if (digit < 0)
            return Status::Malformed;
        value = std::min(value * (hex ? 16 : 10) + digit, Last + 1);
    }
    if (value < 1 || value > Last)
        return Status::OutOfRange;
    *out = std::uint32_t(value);
    return Status::Ok;
}

// "+HH:MM" or "-HH:MM" as seconds east of UTC.
bool offset(std::string_view text, int* east)
{
    int hours = 0;
    int minutes = 0;
    if (text.size() != 6 || (text[0] != '+' && text[0] != '-') || !digits(text, 1, 2, &hours) ||
        text[3] != ':' || !digits(text, 4, 2, &minutes) || hours > 23 || minutes > 59)
        return false;
    *east = (text[0] == '-' ? -1 : 1) * (hours * 3600 + minutes * 60);
    return true;
}

} // namespace

Status parse(std::string_view text, std::uint32_t* out)
{
    if (text == "0") {
        *out = 0;
        return Status::Ok;
    }
    if (text.size() < 10 || text[4] != '-')
        return seconds(text, out);

    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, east = 0;
    if (!digits(text, 0, 4, &year) || !digits(text, 5, 2, &month) || text[7] != '-' ||
        !digits(text, 8, 2, &day))
        return Status::Malformed;
    std::string_view rest = text.substr(10);
    if (!rest.empty()) {
        if (rest.size() < 9 || rest[0] != 'T' || !digits(rest, 1, 2, &hour) || rest[3] != ':' ||
            !digits(rest, 4, 2, &minute) || rest[6] != ':' || !digits(rest, 7, 2, &second))
            return Status::Malformed;
        rest = rest.substr(9);
        if (!rest.empty() && rest != "Z" && !offset(rest, &east))
            return Status::Malformed;
    }
    if (month < 1 || month > 12 || day < 1 || day > daysIn(year, month) || hour > 23 ||
        minute > 59 || second > 59)
        return Status::Malformed;

    const std::int64_t instant =
        daysSinceEpoch(year, month, day) * 86400 + hour * 3600 + minute * 60 + second - east;
    if (instant < 1 || instant > Last)
        return Status::OutOfRange;
    *out = std::uint32_t(instant);
    return Status::Ok;
}

} // namespace KvdDate
