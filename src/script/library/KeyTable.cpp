#include "script/library/KeyTable.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <utility>

#include "vbscript/Error.h"
#include "vbscript/Object.h"

namespace tessaloom::library {

using vbscript::Value;
using vbscript::VarType;

namespace {

constexpr std::uint64_t Odd = 0x9E3779B97F4A7C15;  // 2^64 over the golden ratio

std::uint64_t Mixed(std::uint64_t bits) {
    bits *= Odd;
    return (bits ^ bits >> 32) * Odd;
}

std::uint32_t Folded(std::uint64_t bits) { return static_cast<std::uint32_t>(bits >> 32); }

/// Numbers of all kinds, Boolean and Date among them.
std::optional<double> NumberOf(const Value& key) {
    switch (key.Type()) {
        case VarType::Integer:
        case VarType::Long:
        case VarType::Byte:
        case VarType::Boolean:
            return key.Whole();
        case VarType::Single:
        case VarType::Double:
        case VarType::Date:
            return key.Real();
        case VarType::Currency:
            return static_cast<double>(key.Currency()) / 10000;
        default:
            return std::nullopt;
    }
}

std::uint32_t HashOfText(std::u16string_view text) {
    constexpr std::size_t Together = sizeof(std::uint64_t) / sizeof(char16_t);
    std::uint64_t hash = text.size();
    if (text.size() < Together) {
        for (const char16_t unit : text) hash = hash << 16 | unit;
        return Folded(Mixed(hash));
    }
    const auto four = [](const char16_t* units) {
        std::uint64_t bits;
        std::memcpy(&bits, units, sizeof bits);
        return bits;
    };
    // the last four overlap those before them
    const char16_t *part = text.data(), *const last = part + text.size() - Together;
    for (; part < last; part += Together) hash = std::rotl((hash ^ four(part)) * Odd, 29);
    return Folded(Mixed(hash ^ four(last)));
}

bool SameText(std::u16string_view a, std::u16string_view b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(char16_t)) == 0);
}

/// Keys that are looked up are often the very texts or numbers that were added.
bool AreOne(const Value& a, const Value& b) { return a.Type() == b.Type() && a.Currency() == b.Currency(); }

std::uint32_t HashIgnoringCase(std::u16string_view text) {
    std::uint64_t hash = text.size();
    vbscript::InStretches(text.size(), [&](std::size_t begin, std::size_t end) {
        for (const char16_t unit : text.substr(begin, end - begin))
            hash = std::rotl((hash ^ vbscript::LowerOf(unit)) * Odd, 29);
    });
    return Folded(Mixed(hash));
}

}  // namespace

std::size_t KeyTable::FindOrAdd(const Value& key) {
    const std::uint32_t hash = HashOf(key);
    const std::size_t found = FindHashed(key, hash);
    if (found != None) return found;
    MakeRoom();
    pairs_.push_back({key, Value(), hash});
    Enter(hash, pairs_.size() - 1);
    ++count_;
    return pairs_.size() - 1;
}

KeyTable::Pair KeyTable::Remove(std::size_t place) {
    Pair removed;
    std::swap(removed, pairs_[place]);
    pairs_[place].used = false;
    --count_;
    return removed;
}

Value KeyTable::ChangeKey(const Value& key, const Value& newKey) {
    const std::uint32_t hash = HashOf(newKey);
    MakeRoom();
    const std::size_t place = Find(key);
    // The slot of the old key stays: it leads to a pair with another key, and is passed over.
    Enter(hash, place);
    pairs_[place].hash = hash;
    return std::exchange(pairs_[place].key, newKey);
}

void KeyTable::Swap(KeyTable& other) noexcept {
    std::swap(ignoreCase, other.ignoreCase);
    std::swap(pairs_, other.pairs_);
    std::swap(slots_, other.slots_);
    std::swap(entered_, other.entered_);
    std::swap(count_, other.count_);
}

std::uint32_t KeyTable::HashOf(const Value& key) const {
    if (key.Is(VarType::String)) return ignoreCase ? HashIgnoringCase(key.Text()) : HashOfText(key.Text());
    // Adding 0 makes one zero of two.
    if (const auto number = NumberOf(key)) return Folded(Mixed(std::bit_cast<std::uint64_t>(*number + 0.0)));
    if (key.Is(VarType::Object)) return Folded(Mixed(reinterpret_cast<std::uintptr_t>(key.AsObject())));
    if (key.Is(VarType::Empty) || key.Is(VarType::Null)) return static_cast<std::uint32_t>(key.Type());
    vbscript::Fail(vbscript::ErrorCode::InvalidCall);
}

std::size_t KeyTable::FindHashed(const Value& key, std::uint32_t hash) const {
    if (slots_.empty()) return None;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask; slots_[i].place != 0; i = (i + 1) & mask) {
        if (slots_[i].hash != hash) continue;
        const Pair& pair = pairs_[slots_[i].place - 1];
        if (pair.used && (AreOne(pair.key, key) || Same(pair.key, key))) return slots_[i].place - 1;
    }
    return None;
}

bool KeyTable::Same(const Value& a, const Value& b) const {
    if (a.Is(VarType::String) && b.Is(VarType::String))
        return ignoreCase ? vbscript::SameName(a.Text(), b.Text()) : SameText(a.Text(), b.Text());
    const auto number = NumberOf(a);
    if (number) return number == NumberOf(b);
    return a.Type() == b.Type() && (!a.Is(VarType::Object) || a.AsObject() == b.AsObject());
}

void KeyTable::MakeRoom() {
    if (slots_.size() * 2 < (entered_ + 1) * 3) Rebuild();
}

/// With room for as many again, and without what was removed.
void KeyTable::Rebuild() {
    const std::size_t slots = std::bit_ceil(std::max<std::size_t>(16, (count_ + 1) * 2));
    vbscript::BudgetVector<Slot> fresh(slots);  // all that may throw comes first
    std::erase_if(pairs_, [](const Pair& pair) { return !pair.used; });
    slots_ = std::move(fresh);
    entered_ = 0;
    for (std::size_t place = 0; place < pairs_.size(); ++place) Enter(pairs_[place].hash, place);
}

void KeyTable::Enter(std::uint32_t hash, std::size_t place) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t i = hash & mask;
    while (slots_[i].place != 0) i = (i + 1) & mask;
    slots_[i] = {hash, static_cast<std::uint32_t>(place) + 1};
    ++entered_;
}

}  // namespace tessaloom::library
