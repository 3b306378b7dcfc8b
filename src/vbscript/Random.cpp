#include "vbscript/Random.h"

#include <bit>

namespace tessaloom::vbscript {

namespace {

constexpr std::uint32_t Mask = 0xFFFFFF;

}  // namespace

float Random::Next() {
    state_ = (state_ * 0x43FD43FDu + 0xC39EC3u) & Mask;
    return Latest();
}

float Random::Latest() const { return static_cast<float>(state_) / 0x1000000; }

float Random::Restart(float number) {
    const auto bits = std::bit_cast<std::uint32_t>(number);
    state_ = (bits + (bits >> 24)) & Mask;
    return Next();
}

void Random::Seed(double number) {
    // the lowest byte of the state stays: kept, existing scripts rely on their sequences
    const auto upper = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(number) >> 32);
    state_ = (state_ & 0xFF) | (((upper & 0xFFFF) ^ (upper >> 16)) << 8);
}

}  // namespace tessaloom::vbscript
