#include "vbscript/Names.h"

#include "vbscript/String.h"
#include "vbscript/Token.h"

namespace tessaloom::vbscript {

namespace {

char16_t Folded(char16_t unit) {
    if (unit < 128) return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    return LowerOf(unit);
}

bool SameFolded(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i] && Folded(a[i]) != Folded(b[i])) return false;
    return true;
}

}  // namespace

Names::Names() : table_(1024, NoName) {
    for (const std::u16string_view keyword : Keywords) Intern(keyword);
}

std::size_t Names::HashOf(std::u16string_view name) {
    std::uint64_t hash = 0xcbf29ce484222325;  // FNV-1a
    for (const char16_t unit : name) hash = (hash ^ Folded(unit)) * 0x100000001b3;
    return hash ^ (hash >> 29);
}

std::size_t Names::PlaceOf(std::u16string_view name, std::size_t hash) const {
    const std::size_t mask = table_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        const NameId id = table_[place];
        if (id == NoName || (entries_[id].hash == hash && SameFolded(entries_[id].spelling, name)))
            return place;
    }
}

NameId Names::Intern(std::u16string_view name) {
    const std::size_t hash = HashOf(name);
    std::size_t place = PlaceOf(name, hash);
    if (table_[place] != NoName) return table_[place];
    if (entries_.size() * 2 >= table_.size()) {
        Grow();
        place = PlaceOf(name, hash);
    }
    const NameId id = static_cast<NameId>(entries_.size());
    entries_.push_back({BudgetUnits(name), hash});
    return table_[place] = id;
}

NameId Names::Find(std::u16string_view name) const {
    return name.size() > Longest ? NoName : table_[PlaceOf(name, HashOf(name))];
}

void Names::Grow() {
    table_.assign(table_.size() * 2, NoName);
    for (NameId id = 0; id < entries_.size(); ++id)
        table_[PlaceOf(entries_[id].spelling, entries_[id].hash)] = id;
}

}  // namespace tessaloom::vbscript
