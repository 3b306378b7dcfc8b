#pragma once

#include <cstddef>

namespace tessaloom::vbscript {

/// How many bytes the strings, arrays and objects of all scripts on this thread may take.
///
/// Whoever allocates on behalf of a script charges first and gives back when it frees. Going above the limit
/// is run-time error 7, "Out of memory".
class MemoryBudget {
public:
    static constexpr std::size_t DefaultLimit = std::size_t{1} << 30;

    /// Throws RuntimeError 7, leaving the sum as it was, when `bytes` more would exceed the limit.
    static void Charge(std::size_t bytes) {
        if (bytes > limit_ || used_ > limit_ - bytes) Exceeded();
        used_ += bytes;
    }

    static void GiveBack(std::size_t bytes) { used_ -= bytes; }

    static std::size_t Used() { return used_; }
    static std::size_t Limit() { return limit_; }
    static void SetLimit(std::size_t bytes) { limit_ = bytes; }

private:
    [[noreturn]] static void Exceeded();

    static inline thread_local constinit std::size_t used_ = 0;
    static inline thread_local constinit std::size_t limit_ = DefaultLimit;
};

/// What one thing has been charged; given back at its end.
class MemoryCharge {
public:
    MemoryCharge() = default;
    ~MemoryCharge() { MemoryBudget::GiveBack(bytes_); }
    MemoryCharge(const MemoryCharge&) = delete;
    MemoryCharge& operator=(const MemoryCharge&) = delete;

    /// Once. Throws RuntimeError 7.
    void Take(std::size_t bytes) {
        MemoryBudget::Charge(bytes);
        bytes_ = bytes;
    }

private:
    std::size_t bytes_ = 0;
};

}  // namespace tessaloom::vbscript
