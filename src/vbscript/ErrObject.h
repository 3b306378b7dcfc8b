#pragma once

#include "vbscript/MemberTable.h"

namespace tessaloom::vbscript {

/// The object Err: the latest error that a script has had to do with.
class ErrObject final : public TableObject<ErrObject> {
public:
    static constexpr std::u16string_view Name = u"Object";
    static std::span<const Member<ErrObject>> Members();

    void Set(const RuntimeError& error) { latest_ = error; }
    void Clear() { latest_ = RuntimeError(0, {}, {}); }
    const RuntimeError& Latest() const { return latest_; }

private:
    template <std::u16string RuntimeError::*Text>
    static Value GetText(ErrObject& self, const Arguments& arguments);
    template <std::u16string RuntimeError::*Text>
    static Value LetText(ErrObject& self, const Arguments& arguments);
    template <int RuntimeError::*Number>
    static Value GetNumber(ErrObject& self, const Arguments& arguments);
    template <int RuntimeError::*Number>
    static Value LetNumber(ErrObject& self, const Arguments& arguments);
    static Value ClearAll(ErrObject& self, const Arguments& arguments);
    static Value Raise(ErrObject& self, const Arguments& arguments);

    RuntimeError latest_{0, {}, {}};
};

}  // namespace tessaloom::vbscript
