#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory_resource>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vbscript/TimeLimit.h"

namespace tessaloom::vbscript {

/// How many bytes all scripts on this thread may take: texts, arrays, objects, compiled code, and what
/// functions gather before it becomes one of these.
///
/// Whoever allocates on behalf of a script charges first and gives back when it frees. Going above the limit
/// is run-time error 7, "Out of memory". A charge is also a poll of the time limit: most work that grows
/// takes memory.
class MemoryBudget {
public:
    /// A script that lives for months may not eat the machine.
    static constexpr std::size_t DefaultLimit = std::size_t{256} << 20;

    /// Throws RuntimeError 7, leaving the sum as it was, when `bytes` more would exceed the limit.
    static void Charge(std::size_t bytes) {
        TimeLimit::Poll();
        if (bytes > limit_ || used_ > limit_ - bytes) Exceeded();
        used_ += bytes;
    }

    static void GiveBack(std::size_t bytes) { used_ -= bytes; }

    /// @name Charged blocks
    /// `Free` wants the size that was asked for. Blocks come from the C library's heap.
    /// @{
    static void* Allocate(std::size_t bytes) {  ///< Throws RuntimeError 7.
        const std::size_t charge = BlockBytes(bytes);
        Charge(charge);
        if (void* const block = std::malloc(bytes)) [[likely]]
            return block;
        GiveBack(charge);
        Exceeded();
    }
    static void Free(void* block, std::size_t bytes) noexcept;

    /// What a block takes there: its head, and that sizes are multiples of 16.
    static constexpr std::size_t BlockBytes(std::size_t bytes) {
        constexpr std::size_t Head = 8, Multiple = 16, Least = 32;
        const std::size_t rounded = (bytes + Head + Multiple - 1) / Multiple * Multiple;
        return rounded < Least ? Least : rounded;
    }
    /// @}

    static std::size_t Used() { return used_; }
    static std::size_t Limit() { return limit_; }
    static void SetLimit(std::size_t bytes) { limit_ = bytes; }

private:
    [[noreturn]] static void Exceeded();

    static inline thread_local constinit std::size_t used_ = 0;
    static inline thread_local constinit std::size_t limit_ = DefaultLimit;
};

/// For containers whose content is charged, room for growth included.
template <typename T>
struct BudgetAllocator {
    using value_type = T;

    BudgetAllocator() = default;
    template <typename U>
    BudgetAllocator(const BudgetAllocator<U>&) {}

    T* allocate(std::size_t count) {
        return static_cast<T*>(MemoryBudget::Allocate(count * sizeof(T)));  // containers check the product
    }
    void deallocate(T* block, std::size_t count) noexcept { MemoryBudget::Free(block, count * sizeof(T)); }

    friend bool operator==(const BudgetAllocator&, const BudgetAllocator&) { return true; }
};

template <typename T>
using BudgetVector = std::vector<T, BudgetAllocator<T>>;
using BudgetBytes = std::basic_string<char, std::char_traits<char>, BudgetAllocator<char>>;
using BudgetUnits = std::basic_string<char16_t, std::char_traits<char16_t>, BudgetAllocator<char16_t>>;

template <typename Key, typename T>
using BudgetMap =
    std::unordered_map<Key, T, std::hash<Key>, std::equal_to<Key>, BudgetAllocator<std::pair<const Key, T>>>;

/// The same for containers with a memory resource.
class BudgetResource final : public std::pmr::memory_resource {
    void* do_allocate(std::size_t bytes, std::size_t) override { return MemoryBudget::Allocate(bytes); }
    void do_deallocate(void* block, std::size_t bytes, std::size_t) override {
        MemoryBudget::Free(block, bytes);
    }
    bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }
};

/// What lies outside of charged containers: given back at its end.
class MemoryCharge {
public:
    MemoryCharge() = default;
    explicit MemoryCharge(std::size_t bytes) { Take(bytes); }
    ~MemoryCharge() { MemoryBudget::GiveBack(bytes_); }
    MemoryCharge(const MemoryCharge&) = delete;
    MemoryCharge& operator=(const MemoryCharge&) = delete;

    /// More of it. Throws RuntimeError 7.
    void Take(std::size_t bytes) {
        MemoryBudget::Charge(bytes);
        bytes_ += bytes;
    }

    void GiveBack() { MemoryBudget::GiveBack(std::exchange(bytes_, 0)); }

private:
    std::size_t bytes_ = 0;
};

}  // namespace tessaloom::vbscript
