#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// The fields of a weather record as UTF-8, numbered from 0, with one empty field more at the end.
///
/// `bytes`: one line of comma-separated fields, shorter than 1001 characters with its line end. Nothing when
/// it is longer, or when the number of fields does not belong to the version in field 1: 39 fields (0 .. 38)
/// for version 1, 41 (0 .. 40) for version 1.01. The empty field counts, so it is the one that the format
/// names as its last (39, 41): a station that writes a value there has written a field too many.
std::optional<std::vector<std::string>> SplitWeatherRecord(std::string_view bytes);

}  // namespace tessaloom
