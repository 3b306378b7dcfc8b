#pragma once

#include <cstddef>
#include <cstdint>

#include "vbscript/MemoryBudget.h"
#include "vbscript/Value.h"

namespace tessaloom::library {

/// Pairs of keys and items in the order of adding, found by hash.
///
/// What is removed or replaced is handed out, never released here: its end may run script code that comes
/// back. Keys are compared as `Dictionary.h` says. Throws RuntimeError 5 for a key that cannot be one.
class KeyTable {
public:
    struct Pair {
        vbscript::Value key, item;
        std::uint32_t hash = 0;
        bool used = true;  ///< False: removed.
    };

    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    KeyTable() = default;
    KeyTable(KeyTable&& other) noexcept { Swap(other); }
    KeyTable& operator=(KeyTable&& other) noexcept {
        Swap(other);
        return *this;
    }
    std::size_t Count() const { return count_; }

    bool ignoreCase = false;  ///< To be changed only while it is empty.

    /// The place of a key; `None` when it is not there. A place holds until the next `Add` or `Remove`.
    std::size_t Find(const vbscript::Value& key) const { return FindHashed(key, HashOf(key)); }

    /// The place of a key, which is added with an Empty item when missing.
    std::size_t FindOrAdd(const vbscript::Value& key);

    Pair& At(std::size_t place) { return pairs_[place]; }

    Pair Remove(std::size_t place);

    /// Gives the pair of `key`, which is in the table, another key, which is not; its place in the order
    /// stays. The old key.
    vbscript::Value ChangeKey(const vbscript::Value& key, const vbscript::Value& newKey);

    /// In the order of adding.
    template <typename Visit>
    void ForEach(Visit&& visit) const {
        for (const Pair& pair : pairs_)
            if (pair.used) visit(pair);
    }

private:
    struct Slot {
        std::uint32_t hash;
        std::uint32_t place;  ///< Plus 1; 0: never used.
    };

    void Swap(KeyTable& other) noexcept;
    std::uint32_t HashOf(const vbscript::Value& key) const;
    std::size_t FindHashed(const vbscript::Value& key, std::uint32_t hash) const;
    bool Same(const vbscript::Value& a, const vbscript::Value& b) const;
    void MakeRoom();
    void Rebuild();
    void Enter(std::uint32_t hash, std::size_t place);

    vbscript::BudgetVector<Pair> pairs_;
    vbscript::BudgetVector<Slot> slots_;  ///< A power of two; at least a third of them was never used.
    std::size_t entered_ = 0;             ///< Slots in use.
    std::size_t count_ = 0;
};

}  // namespace tessaloom::library
