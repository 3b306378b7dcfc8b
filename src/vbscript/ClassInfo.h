#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "vbscript/Counted.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/Names.h"
#include "vbscript/Routine.h"

namespace tessaloom::vbscript {

/// A class of a script: its fields and members. Member 0 is the default one (perhaps without any routine).
class ClassInfo final : public Counted {
public:
    struct Field {
        bool isArray = false;
        std::vector<int> bounds;
    };

    /// A field, or up to three routines that share a name.
    struct Member {
        NameId name = NoName;
        int field = -1;
        bool isPrivate = false;        ///< Of a field, or of `get`.
        const Routine* get = nullptr;  ///< A property's reading part, or a method.
        const Routine* let = nullptr;
        const Routine* set = nullptr;
    };

    /// What its objects have as their shape. It never comes back, as the place in memory of a class that has
    /// been replaced may.
    const void* Shape() const { return reinterpret_cast<const void*>(serial_); }

    /// The member's number; -1 for none.
    int Find(NameId memberName) const {
        const auto found = numbers.find(memberName);
        return found == numbers.end() ? -1 : found->second;
    }

    std::u16string name;
    BudgetVector<Field> fields;
    BudgetVector<Member> members = BudgetVector<Member>(1);
    BudgetMap<NameId, int> numbers;  ///< By name.
    std::deque<Routine, BudgetAllocator<Routine>> routines;
    const Routine* initialize = nullptr;
    const Routine* terminate = nullptr;

private:
    static inline thread_local constinit std::uintptr_t latestSerial_ = 0;
    const std::uintptr_t serial_ = ++latestSerial_;
};

}  // namespace tessaloom::vbscript
