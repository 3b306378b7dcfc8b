#include "vbscript/ErrObject.h"

namespace tessaloom::vbscript {

namespace {

std::u16string TextAt(const Arguments& arguments, std::size_t index) {
    return arguments.Has(index) ? std::u16string(arguments.Text(index).ViewForOutside()) : std::u16string();
}

}  // namespace

Value ErrObject::Raise(ErrObject&, const Arguments& arguments) {
    const int number = arguments.Long(0);
    if (number == 0) Fail(ErrorCode::InvalidCall);
    RuntimeError error(number);
    if (arguments.Has(1)) error.source = TextAt(arguments, 1);
    if (arguments.Has(2)) error.description = TextAt(arguments, 2);
    error.helpFile = TextAt(arguments, 3);
    error.helpContext = arguments.LongOr(4, 0);
    throw error;
}

template <std::u16string RuntimeError::*Text>
Value ErrObject::GetText(ErrObject& self, const Arguments&) {
    return Value::OfText(self.latest_.*Text);
}

template <std::u16string RuntimeError::*Text>
Value ErrObject::LetText(ErrObject& self, const Arguments& arguments) {
    self.latest_.*Text = ToText(arguments.GetContext(), arguments.NewValue()).ViewForOutside();
    return {};
}

template <int RuntimeError::*Number>
Value ErrObject::GetNumber(ErrObject& self, const Arguments&) {
    return Value::OfLong(self.latest_.*Number);
}

template <int RuntimeError::*Number>
Value ErrObject::LetNumber(ErrObject& self, const Arguments& arguments) {
    self.latest_.*Number = ToLong(arguments.GetContext(), arguments.NewValue());
    return {};
}

Value ErrObject::ClearAll(ErrObject& self, const Arguments&) {
    self.Clear();
    return {};
}

std::span<const Member<ErrObject>> ErrObject::Members() {
    using Error = RuntimeError;
    // clang-format off
    static constexpr auto Table = std::to_array<Member<ErrObject>>({
        {u"Number",      0, 0, GetNumber<&Error::number>, LetNumber<&Error::number>, nullptr, IsDefault::Yes},
        {u"Description", 0, 0, GetText<&Error::description>, LetText<&Error::description>},
        {u"Source",      0, 0, GetText<&Error::source>, LetText<&Error::source>},
        {u"HelpFile",    0, 0, GetText<&Error::helpFile>, LetText<&Error::helpFile>},
        {u"HelpContext", 0, 0, GetNumber<&Error::helpContext>, LetNumber<&Error::helpContext>},
        {u"Clear",       0, 0, ClearAll},
        {u"Raise",       1, 5, Raise},
    });
    // clang-format on
    return Table;
}

}  // namespace tessaloom::vbscript
