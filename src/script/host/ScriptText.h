#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// The lines of a script file, without leading tabs and without blanks at either end, as UTF-8.
///
/// Lines end with CR LF, LF or CR; a line end at the end of the file begins no further line. A file that is
/// no valid UTF-8 is taken as Windows-1252; a byte order mark is dropped.
std::vector<std::string> StrippedLines(std::string_view content);

}  // namespace tessaloom
