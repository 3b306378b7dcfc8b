#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// The fields of a weather record, numbered from 0, with one empty field at the end.
///
/// `text`: one line of comma-separated fields, shorter than 1001 bytes. Nothing when it is longer, or when
/// the number of fields does not belong to the version in field 1.
std::optional<std::vector<std::string>> SplitWeatherRecord(std::string_view text);

}  // namespace tessaloom
