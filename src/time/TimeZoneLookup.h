#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

/// What the user wants zone names to be called: pairs of a name and its value, in the order of their file.
class TimeZoneLookup {
public:
    static constexpr std::string_view FileName = "timezone.txt";

    /// Replaces the table by the lines of a file, "name, value" each, spaces around both dropped. A line
    /// without a comma is skipped; the value begins after the first one.
    void Load(std::string_view bytes);

    /// The value of the first pair with that name, whatever its case; null without one.
    const std::string* Find(std::string_view name) const;

private:
    struct Pair {
        std::string name, value;
    };
    std::vector<Pair> pairs_;
};

}  // namespace tessaloom
