#pragma once

#include <cstdint>

namespace tessaloom::vbscript {

/// The language's sequence of random numbers: a linear congruential generator of 24 bits.
class Random {
public:
    /// Rnd without an argument or with one above 0.
    float Next();

    /// Rnd(0): the latest number again.
    float Latest() const;

    /// Rnd of a negative number: the same number begins the same sequence.
    float Restart(float number);

    /// Randomize: mixes the upper bits of `number` into the state.
    void Seed(double number);

private:
    std::uint32_t state_ = 0x50000;
};

}  // namespace tessaloom::vbscript
