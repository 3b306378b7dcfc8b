#include "vbscript/Value.h"

#include "vbscript/Array.h"

namespace tessaloom::vbscript {

Value Value::AssignedArray() const {
    const Array& array = *AsArray();
    return array.IsFixed() || array.IsLocked() ? OfArray(array.Clone()) : *this;
}

/// Calls `change` with the text while this value has no hold on it, so that it may be nobody else's.
template <typename Change>
void Value::ChangeText(Change change) {
    String text = String::Adopt(Content());
    // the text goes back into its place even when it cannot grow
    struct Return {
        Value& owner;
        String& text;
        ~Return() { owner.Hold(text.Detach()); }
    } const back{*this, text};
    change(text);
}

void Value::AppendText(const void* bytes, std::size_t count) {
    ChangeText([&](String& text) { text.AppendBytes(bytes, count); });
}

void Value::AppendTexts(std::span<const Value> tail) {
    ChangeText([&](String& text) {
        std::size_t bytes = text.ByteLength();
        for (const Value& part : tail) bytes += part.AsString().ByteLength();
        text.Reserve(bytes);
        for (const Value& part : tail) text.Append(part.AsString());
    });
}

}  // namespace tessaloom::vbscript
