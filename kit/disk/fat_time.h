// Times of the host and of a directory entry, which holds local time in steps of two seconds.
#pragma once

#include "disk/disk_image.h"

#include <ctime>
#include <optional>

namespace disk {

/// Times outside 1980 to 2107 become the nearest that a directory can hold.
FatTime fatTimeOf(std::time_t time);

/// Nothing when the fields are not those of a date and time.
std::optional<std::time_t> hostTimeOf(const FatTime& written);

/// "2024-05-06 12:34:56"; fields that make no sense are shown all the same.
std::string textOf(const FatTime& written);

} // namespace disk
