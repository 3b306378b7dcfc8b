#include "vbscript/Value.h"

#include "vbscript/Array.h"

namespace tessaloom::vbscript {

Value Value::AssignedArray() const {
    const Array& array = *AsArray();
    return array.IsFixed() || array.IsLocked() ? OfArray(array.Clone()) : *this;
}

void Value::AppendText(const void* bytes, std::size_t count) {
    String text = String::Adopt(Content());
    // the text goes back into its place even when it cannot grow
    struct Return {
        Value& owner;
        String& text;
        ~Return() {
            owner.shared_ = text.Detach();
            owner.counted_ = owner.shared_ != nullptr;
        }
    } const back{*this, text};
    text.AppendBytes(bytes, count);
}

}  // namespace tessaloom::vbscript
