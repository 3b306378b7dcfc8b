#pragma once

#include <hwy/targets.h>

#include "support/Testing.h"

namespace tessaloom::testing {

/// Runs `check` once with each kind of vector instructions that this machine has, the plain code included.
template <typename Check>
void OnEachTarget(Check check) {
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(target);
        check();
        if (::testing::Test::HasFatalFailure()) break;
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

/// Bytes at an address of which nothing is known, in a block that ends where they end, so that sanitizers
/// notice what lies outside.
class Bytes {
public:
    explicit Bytes(std::size_t count, std::size_t offset = 0) : block_(offset + count), offset_(offset) {}

    std::uint8_t* Data() { return block_.data() + offset_; }
    std::size_t Size() const { return block_.size() - offset_; }
    bool operator==(const Bytes&) const = default;

private:
    std::vector<std::uint8_t> block_;
    std::size_t offset_;
};

/// Random bytes with stretches of 0 and of 255, on which kernels take their short cuts.
class RandomBytes {
public:
    explicit RandomBytes(unsigned seed) : random_(seed) {}

    std::size_t Below(std::size_t limit) { return random_() % limit; }

    Bytes operator()(std::size_t count) {
        Bytes bytes(count, Below(5));
        for (std::size_t i = 0; i < count;) {
            const std::size_t kind = Below(4), end = std::min(count, i + 1 + Below(150));
            for (; i < end; ++i)
                bytes.Data()[i] = static_cast<std::uint8_t>(kind == 0   ? 0
                                                            : kind == 1 ? 255
                                                                        : random_() & 0xFF);
        }
        return bytes;
    }

private:
    std::mt19937 random_;
};

/// All counts up to several vectors, then some of whole rows.
inline std::vector<std::size_t> RowLengths() {
    std::vector<std::size_t> lengths;
    for (std::size_t i = 0; i <= 300; ++i) lengths.push_back(i);
    for (const std::size_t length : {767, 768, 769, 1536, 1539, 3072, 4094, 5760, 5763})
        lengths.push_back(length);
    return lengths;
}

/// The same with each of these counts and random bytes.
template <typename Check>
void OnEachLength(unsigned seed, Check check) {
    OnEachTarget([&] {
        RandomBytes random(seed);
        for (const std::size_t count : RowLengths()) {
            check(random, count);
            if (::testing::Test::HasFatalFailure()) return;
        }
    });
}

}  // namespace tessaloom::testing
