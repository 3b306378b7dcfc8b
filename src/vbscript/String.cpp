#include "vbscript/String.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "vbscript/Error.h"
#include "vbscript/MemoryBudget.h"

namespace tessaloom::vbscript {

namespace {

char16_t UnitOfLatin(char c) { return static_cast<unsigned char>(c); }

StringData* AllocateRetained(std::size_t capacity) {
    StringData* const data = StringData::Allocate(capacity);
    data->Retain();
    return data;
}

}  // namespace

StringData* StringData::Allocate(std::size_t capacity) {
    if (capacity > String::MaxBytes) Fail(ErrorCode::OutOfMemory);
    StringData* const data = ::new (MemoryBudget::Allocate(sizeof(StringData) + capacity)) StringData;
    data->capacity = static_cast<std::uint32_t>(capacity);
    return data;
}

void StringData::Dispose() {
    const std::size_t blockBytes = sizeof(StringData) + capacity;
    this->~StringData();
    MemoryBudget::Free(this, blockBytes);
}

String::String(std::u16string_view text) : String(OfBytes(text.data(), text.size() * sizeof(char16_t))) {}

String String::OfLatin(std::string_view text) {
    String result = OfLength(text.size());
    InStretches(text.size(), [&](std::size_t begin, std::size_t end) {
        std::transform(text.begin() + begin, text.begin() + end, result.Units() + begin, UnitOfLatin);
    });
    return result;
}

String String::OfUtf8(std::string_view text) {
    const bool isPlain =
        std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (isPlain) return OfLatin(text);
    String result = OfLength(UnitsOfUtf8(text));
    WriteUtf16(text, result.Units());
    return result;
}

String String::OfLength(std::size_t units) {
    if (units == 0) return {};
    if (units > MaxBytes / sizeof(char16_t)) Fail(ErrorCode::OutOfMemory);
    StringData* const data = AllocateRetained(units * sizeof(char16_t));
    data->bytes = data->capacity;
    return Adopt(data);
}

String String::OfBytes(const void* bytes, std::size_t count) {
    if (count == 0) return {};
    StringData* const data = AllocateRetained(count);
    std::memcpy(data->Units(), bytes, count);
    data->bytes = data->capacity;
    return Adopt(data);
}

String String::Joined(const String& first, const String& second) {
    if (second.IsEmpty()) return first;
    if (first.IsEmpty()) return second;
    StringData* const data = AllocateRetained(first.ByteLength() + second.ByteLength());
    const auto end = reinterpret_cast<unsigned char*>(data->Units());
    std::memcpy(end, first.Bytes(), first.ByteLength());
    std::memcpy(end + first.ByteLength(), second.Bytes(), second.ByteLength());
    data->bytes = data->capacity;
    return Adopt(data);
}

String String::JoinedLatin(const String& first, std::string_view second) {
    if (first.ByteLength() % sizeof(char16_t) != 0) return Joined(first, OfLatin(second));
    String result = OfLength(first.Length() + second.size());
    char16_t* const end = std::ranges::copy(first.View(), result.Units()).out;
    std::transform(second.begin(), second.end(), end, UnitOfLatin);
    return result;
}

std::string String::ToUtf8() const { return Utf8Of(ViewForOutside()); }

std::u16string_view String::ViewForOutside() const {
    if (Length() > MostUnitsOutside) Fail(ErrorCode::OutOfMemory);
    return View();
}

/// A copy with room for `bytes` and more: by half, but never past the limit when the text itself still fits.
String String::Grown(std::size_t bytes) const {
    const std::size_t roomy = std::max<std::size_t>(bytes + bytes / 2, 32);
    String grown = Adopt(AllocateRetained(bytes <= MaxBytes ? std::min(roomy, MaxBytes) : bytes));
    if (data_) std::memcpy(grown.data_->Units(), data_->Units(), data_->bytes);
    grown.data_->bytes = static_cast<std::uint32_t>(ByteLength());
    return grown;
}

void String::Reserve(std::size_t bytes) {
    if (bytes > 0 && !HasRoom(bytes)) *this = Grown(bytes);
}

void String::AppendBytes(const void* bytes, std::size_t count) {
    if (count == 0) return;
    const std::size_t before = ByteLength(), after = before + count;
    const String old = HasRoom(after) ? String() : std::exchange(*this, Grown(after));  // may hold `bytes`
    std::memcpy(reinterpret_cast<unsigned char*>(data_->Units()) + before, bytes, count);
    data_->bytes = static_cast<std::uint32_t>(after);
}

}  // namespace tessaloom::vbscript
