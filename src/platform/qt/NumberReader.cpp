#include "platform/qt/NumberReader.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace tessaloom {

namespace {

constexpr double Largest = 1e9;  // beyond any picture; sums and products of some of them stay finite

bool BeginsNumber(std::string_view text) {
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
    if (!text.empty() && text[0] == '.') text.remove_prefix(1);
    return !text.empty() && text[0] >= '0' && text[0] <= '9';
}

}  // namespace

void NumberReader::SkipSeparators() {
    at_ = std::min(text_.find_first_not_of(" \t\r\n,", at_), text_.size());
}

char NumberReader::Peek() {
    SkipSeparators();
    return at_ < text_.size() ? text_[at_] : '\0';
}

std::optional<double> NumberReader::Next() {
    SkipSeparators();
    std::string_view rest = text_.substr(at_);
    if (!BeginsNumber(rest)) return std::nullopt;
    if (rest[0] == '+') rest.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    // Where the toolkit cuts a long one in two is its own affair.
    constexpr std::ptrdiff_t Longest = 64;
    if (end - rest.data() > Longest) return std::nullopt;
    if (error == std::errc::result_out_of_range) value = Largest;  // or next to nothing: that is no matter
    at_ = static_cast<std::size_t>(end - text_.data());
    return std::clamp(value, -Largest, Largest);
}

std::optional<bool> NumberReader::NextFlag() {
    const char digit = Peek();
    if (digit != '0' && digit != '1') return std::nullopt;
    ++at_;
    return digit == '1';
}

}  // namespace tessaloom
