#pragma once

#include <cstdint>

#include "vbscript/MemoryBudget.h"
#include "vbscript/Names.h"
#include "vbscript/Object.h"

namespace tessaloom::vbscript {

struct Routine;
class ClassInfo;

enum class SymbolKind : std::uint8_t {
    Unknown,  ///< Used somewhere, defined nowhere (yet).
    Variable,
    Constant,  ///< Also the objects that the host adds.
    Routine,
    Class,
    HostMember,
};

/// What a name means at the outermost level. Values of variables and constants lie in the machine's stack,
/// under the symbol's number.
struct Symbol {
    NameId name = NoName;
    SymbolKind kind = SymbolKind::Unknown;
    const Routine* routine = nullptr;
    ClassInfo* type = nullptr;
    Ref<Object> host;  ///< Whose member it is.
    int member = 0;
    PlainMember plain = {};  ///< The short ways to it.
};

class Symbols {
public:
    /// The number of a name, made when it has none yet.
    int Of(NameId name) {
        if (name >= numbers_.size()) numbers_.resize(name + name / 2 + 64, -1);
        if (numbers_[name] < 0) {
            symbols_.emplace_back().name = name;  // first: there may be no memory for it
            numbers_[name] = static_cast<int>(symbols_.size()) - 1;
        }
        return numbers_[name];
    }
    int Find(NameId name) const { return name < numbers_.size() ? numbers_[name] : -1; }
    Symbol& operator[](std::size_t number) { return symbols_[number]; }
    const Symbol& operator[](std::size_t number) const { return symbols_[number]; }
    std::size_t Count() const { return symbols_.size(); }
    void Clear() { numbers_.clear(), symbols_.clear(); }

private:
    BudgetVector<int> numbers_;
    BudgetVector<Symbol> symbols_;
};

}  // namespace tessaloom::vbscript
