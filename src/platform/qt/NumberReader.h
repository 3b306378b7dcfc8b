#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tessaloom {

/// Reads the lists of numbers that attributes of vector pictures hold: blanks and commas between them may be
/// missing where the next sign or point tells where a number begins ("1-2.5.5").
class NumberReader {
public:
    explicit NumberReader(std::string_view text) : text_(text) {}

    /// The next number, -1e9 .. 1e9; nothing, and no step further, where none begins.
    std::optional<double> Next();

    /// A single digit, 0 or 1, as arcs have them without anything in between.
    std::optional<bool> NextFlag();

    /// The next character that separates no numbers, without a step; 0 at the end.
    char Peek();

    void Skip() { ++at_; }
    bool AtEnd() { return Peek() == 0; }
    std::string_view Rest() const { return text_.substr(at_); }

private:
    void SkipSeparators();

    std::string_view text_;
    std::size_t at_ = 0;
};

}  // namespace tessaloom
