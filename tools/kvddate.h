#ifndef KVDDATE_H
#define KVDDATE_H

#include <cstdint>
#include <string_view>

// The DATE argument of kvd write: text to the date word of a record, seconds since
// 1970-01-01T00:00:00Z in 32 bits. Pure: no clock, no time zone, no locale, no allocation,
// any bytes in.
namespace KvdDate {

enum class Status {
    Ok,         // *seconds is set
    OutOfRange, // well formed, but not an instant the store can hold
    Malformed,  // none of the accepted forms
};

// The accepted forms, all ASCII, nothing before or after:
//   0                          the store's "now": *seconds = 0
//   DIGITS, 0xHEX              seconds themselves (hexadecimal digits in either case)
//   YYYY-MM-DD                 midnight UTC of that day
//   YYYY-MM-DDTHH:MM:SS        that time in UTC
//   YYYY-MM-DDTHH:MM:SSZ       the same
//   YYYY-MM-DDTHH:MM:SS+HH:MM  a local time ahead of UTC by the offset ("-" behind); the
//                              instant is the local time minus the offset
// Dates are Gregorian with four-digit years; hours 00 to 23, minutes and seconds 00 to
// 59, offsets up to 23:59. Every instant but "0" must lie in 1 .. 4294967295, that is
// 1970-01-01T00:00:01Z .. 2106-02-07T06:28:15Z: the store reads a date word of 0 as
// "now", so an instant that comes to 0 any other way (00, 0x0, 1970-01-01) is OutOfRange,
// as is one past 32 bits. *seconds is left alone unless Ok is answered.
Status parse(std::string_view text, std::uint32_t* seconds);

} // namespace KvdDate

#endif
