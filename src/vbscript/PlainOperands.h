#pragma once

#include "vbscript/Conversions.h"

namespace tessaloom::vbscript {

/// The operands of an operator, objects replaced by the values of their default members.
class PlainOperands {
public:
    PlainOperands(Context& context, const Value& first, const Value& second)
        : a(PlainValue(context, second.Is(VarType::Object) ? firstScratch_ = first : first, firstScratch_)),
          b(PlainValue(context, second, secondScratch_)) {}
    PlainOperands(const PlainOperands&) = delete;
    PlainOperands& operator=(const PlainOperands&) = delete;

private:
    // before the references, which may refer to them; the first operand may be a variable that the second
    // one's default member changes, so it is kept then
    Value firstScratch_, secondScratch_;

public:
    const Value& a;
    const Value& b;
};

}  // namespace tessaloom::vbscript
