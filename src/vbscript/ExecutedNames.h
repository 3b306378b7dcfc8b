#pragma once

#include <deque>

#include "vbscript/Names.h"
#include "vbscript/Value.h"

namespace tessaloom::vbscript {

/// The variables that texts executed in a running procedure have declared there; those executed later see
/// them.
class ExecutedNames {
public:
    /// Null when there is none of that name. A variable keeps its place.
    Value* Find(NameId name) {
        for (Variable& variable : variables_)
            if (variable.name == name) return &variable.value;
        return nullptr;
    }

    Value& Add(NameId name) { return variables_.emplace_back(Variable{name, Value()}).value; }

private:
    struct Variable {
        NameId name;
        Value value;
    };
    std::deque<Variable> variables_;
};

}  // namespace tessaloom::vbscript
