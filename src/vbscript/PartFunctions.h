#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>

#include "vbscript/Arguments.h"

namespace tessaloom::vbscript {

/// The functions that measure a text and take parts of it, for one way to count it: `Measure::Length(text)`,
/// and `Measure::Part(text, start, count)`, which is cut where the text ends.
template <typename Measure>
struct PartFunctions {
    static Value Len(Context& context, std::span<Value> values) {
        const Arguments of(context, values);
        if (of.IsNull(0)) return Value::Null();
        return Value::OfLong(static_cast<int>(Measure::Length(of.Text(0))));
    }

    static Value Left(Context& context, std::span<Value> values) {
        const Arguments of(context, values);
        const std::size_t count = of.Length(1);
        return of.IsNull(0) ? Value::Null() : Measure::Part(of.Text(0), 0, count);
    }

    static Value Right(Context& context, std::span<Value> values) {
        const Arguments of(context, values);
        const std::size_t count = of.Length(1);
        if (of.IsNull(0)) return Value::Null();
        const String text = of.Text(0);
        return Measure::Part(text, Measure::Length(text) - std::min(count, Measure::Length(text)), count);
    }

    static Value Mid(Context& context, std::span<Value> values) {
        const Arguments of(context, values);
        const int start = of.Long(1);
        const std::size_t count = of.Has(2) ? of.Length(2) : std::numeric_limits<std::size_t>::max();
        if (start < 1) Fail(ErrorCode::InvalidCall);
        if (of.IsNull(0)) return Value::Null();
        return Measure::Part(of.Text(0), static_cast<std::size_t>(start) - 1, count);
    }
};

}  // namespace tessaloom::vbscript
