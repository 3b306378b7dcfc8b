#include "vbscript/ErrObject.h"

namespace tessaloom::vbscript {

namespace {

std::u16string TextAt(const Arguments& arguments, std::size_t index) {
    return arguments.Has(index) ? std::u16string(arguments.Text(index).View()) : std::u16string();
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

std::span<const Member<ErrObject>> ErrObject::Members() {
    using Self = ErrObject;
    static constexpr auto Table = std::to_array<Member<ErrObject>>({
        {u"Number",                                                           0,  0,                                                [](Self& self, const Arguments&) { return Value::OfLong(self.latest_.number); },
         [](Self& self, const Arguments& arguments) {
             self.latest_.number = ToLong(arguments.GetContext(), arguments.NewValue());
             return Value();
         }, nullptr, IsDefault::Yes},
        {u"Description",                                                       0,                                                0,
         [](Self& self,                                                                                        const Arguments&) { return Value::OfText(self.latest_.description); },
         [](Self& self, const Arguments& arguments) {
             self.latest_.description = ToText(arguments.GetContext(), arguments.NewValue()).View();
             return Value();
         }},
        {u"Source",                                                      0, 0, [](Self& self,                                                                                                                            const Arguments&) { return Value::OfText(self.latest_.source); },
         [](Self& self, const Arguments& arguments) {
             self.latest_.source = ToText(arguments.GetContext(), arguments.NewValue()).View();
             return Value();
         }},
        {u"HelpFile",                                                       0,                                                0,                                                                                                [](Self& self,                                                                                                     const Arguments&) { return Value::OfText(self.latest_.helpFile); },
         [](Self& self, const Arguments& arguments) {
             self.latest_.helpFile = ToText(arguments.GetContext(), arguments.NewValue()).View();
             return Value();
         }},
        {u"HelpContext",                                                                  0,                                                       0,
         [](Self& self,                                                                                                                            const Arguments&) { return Value::OfLong(self.latest_.helpContext); },
         [](Self& self, const Arguments& arguments) {
             self.latest_.helpContext = ToLong(arguments.GetContext(), arguments.NewValue());
             return Value();
         }},
        {u"Clear",                                                                   0,                                                           0,
         [](Self& self,                 const Arguments&) {
             self.Clear();
             return Value();
         }},
        {u"Raise", 1,                                                           5,                                                                                                  &ErrObject::Raise                                                                                                              },
    });
    return Table;
}

}  // namespace tessaloom::vbscript
