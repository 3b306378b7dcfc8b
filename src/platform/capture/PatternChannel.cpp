#include "platform/capture/PatternChannel.h"

namespace tessaloom {

PatternChannel::PatternChannel(const TestPattern::Format& format, TimeFunction now)
    : pattern_(format), now_(now), start_(now()) {}

const CapturedFrame* PatternChannel::Take() {
    if (!request_) return nullptr;
    const auto& shape = pattern_.Shape();
    const std::chrono::duration<double> age = now_() - start_;
    const auto number = static_cast<std::int64_t>(age.count() * shape.rate);
    if (number == shown_) return nullptr;
    const bool first = shown_ < 0;
    shown_ = number;
    request_ = false;
    const auto bytes = pattern_.Frame(number);
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(age);
    frame_ = {
        .format = {.width = shape.width, .height = shape.height, .sizeImage = static_cast<int>(bytes.size())},
        .bytes = bytes,
        .time = static_cast<std::uint32_t>(milliseconds.count()),
        .first = first
    };
    return &frame_;
}

}  // namespace tessaloom
