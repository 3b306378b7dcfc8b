#pragma once

#include <deque>

#include "vbscript/Names.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

/// The variables that texts executed in a running procedure have declared there; those executed later see
/// them. A variable keeps its place.
class ExecutedNames {
public:
    /// Null when no text has declared that name.
    Value* Find(NameId name) {
        Variable* const variable = Entry(name);
        return variable && variable->isDeclared ? &variable->value : nullptr;
    }

    Value& Declare(NameId name) {
        Variable& variable = EntryOrNew(name);
        variable.isDeclared = true;
        return variable.value;
    }

    /// What a name stands for that a text has only read so far: the variable that it becomes once a text
    /// declares it.
    Value& StandIn(NameId name) { return EntryOrNew(name).value; }

private:
    struct Variable {
        NameId name;
        bool isDeclared = false;
        Value value{};
    };

    Variable* Entry(NameId name) {
        for (Variable& variable : variables_)
            if (variable.name == name) return &variable;
        return nullptr;
    }
    Variable& EntryOrNew(NameId name) {
        Variable* const variable = Entry(name);
        return variable ? *variable : variables_.emplace_back(Variable{.name = name});
    }

    std::deque<Variable, BudgetAllocator<Variable>> variables_;
};

}  // namespace tessaloom::vbscript
