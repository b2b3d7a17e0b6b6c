#include "disk/fat_time.h"

#include <array>
#include <cstdio>

namespace disk {

namespace {

constexpr int firstYear = 1980;
constexpr int lastYear = firstYear + 127;

std::tm fieldsOf(const FatTime& written) {
    std::tm fields = {};
    fields.tm_year = (written.date >> 9) + firstYear - 1900;
    fields.tm_mon = (written.date >> 5 & 15) - 1;
    fields.tm_mday = written.date & 31;
    fields.tm_hour = written.time >> 11;
    fields.tm_min = written.time >> 5 & 63;
    fields.tm_sec = (written.time & 31) * 2;
    fields.tm_isdst = -1;
    return fields;
}

FatTime fromFields(int year, int month, int day, int hour, int minute, int second) {
    FatTime written;
    written.date = static_cast<std::uint16_t>((year - firstYear) << 9 | month << 5 | day);
    written.time = static_cast<std::uint16_t>(hour << 11 | minute << 5 | second / 2);
    return written;
}

} // namespace

FatTime fatTimeOf(std::time_t time) {
    std::tm local = {};
#ifdef _WIN32
    const bool known = localtime_s(&local, &time) == 0;
#else
    const bool known = localtime_r(&time, &local) != nullptr;
#endif
    const int year = local.tm_year + 1900;
    if (!known || year < firstYear)
        return fromFields(firstYear, 1, 1, 0, 0, 0);
    if (year > lastYear)
        return fromFields(lastYear, 12, 31, 23, 59, 58);
    const int second = local.tm_sec < 60 ? local.tm_sec : 59; // a leap second
    return fromFields(year, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, second);
}

std::optional<std::time_t> hostTimeOf(const FatTime& written) {
    std::tm fields = fieldsOf(written);
    if (fields.tm_mon < 0 || fields.tm_mon > 11 || fields.tm_mday < 1 || fields.tm_hour > 23 ||
        fields.tm_min > 59 || fields.tm_sec > 59)
        return std::nullopt;
    const int day = fields.tm_mday;
    const std::time_t time = std::mktime(&fields);
    if (time == std::time_t{-1} || fields.tm_mday != day) // the 31st of a shorter month
        return std::nullopt;
    return time;
}

std::string textOf(const FatTime& written) {
    const std::tm fields = fieldsOf(written);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", fields.tm_year + 1900,
                  fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
    return text.data();
}

} // namespace disk
