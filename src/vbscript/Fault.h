#pragma once

#include <string>

namespace tessaloom::vbscript {

/// Why a script ended early, for those outside of the language: UTF-8, line and column count from 1 in the
/// text given to `AddCode` (0: unknown). The column of a run-time error is where the failing statement
/// starts.
struct Fault {
    int number = 0;
    std::string source;
    std::string description;
    int line = 0;
    int column = 0;
};

}  // namespace tessaloom::vbscript
