#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "vbscript/Counted.h"

namespace tessaloom::vbscript {

/// The shared part of a string: its head, followed in the same block by the UTF-16 units.
///
/// The length is in bytes, because ChrB and its kin make strings of an odd number of them; all other
/// functions see whole units only.
class StringData final : public Counted {
public:
    /// With room for `capacity` bytes. Throws RuntimeError 7.
    static StringData* Allocate(std::size_t capacity);

    const char16_t* Units() const { return reinterpret_cast<const char16_t*>(this + 1); }
    char16_t* Units() { return reinterpret_cast<char16_t*>(this + 1); }
    std::u16string_view View() const { return {Units(), bytes / sizeof(char16_t)}; }

    std::uint32_t bytes = 0;
    std::uint32_t capacity = 0;  ///< In bytes.

private:
    StringData() = default;
    ~StringData() override = default;
    void Dispose() override;
};

/// A string of the language: UTF-16, shared when copied, with room to grow when appended to.
///
/// Appending to a string that nobody shares is amortised constant time. Throws RuntimeError 7 above the
/// memory budget and for a text longer than `MaxBytes`.
class String {
public:
    static constexpr std::size_t MaxBytes = std::size_t{1} << 31;
    static constexpr std::size_t MostUnitsOutside = std::size_t{1} << 16;

    constexpr String() = default;
    explicit String(std::u16string_view text);
    explicit String(StringData* data) : data_(data) {
        if (data_) data_->Retain();
    }
    String(const String& other) : String(other.data_) {}
    String(String&& other) noexcept : data_(std::exchange(other.data_, nullptr)) {}
    ~String() {
        if (data_) data_->Release();
    }
    String& operator=(String other) noexcept {
        std::swap(data_, other.data_);
        return *this;
    }

    /// Takes over one reference that the caller holds.
    static String Adopt(StringData* data) {
        String result;
        result.data_ = data;
        return result;
    }

    /// Of bytes that are units each (ASCII or Latin-1).
    static String OfLatin(std::string_view text);

    /// Malformed sequences become U+FFFD.
    static String OfUtf8(std::string_view text);

    /// `units` units, to be filled through `Units()`.
    static String OfLength(std::size_t units);

    static String OfBytes(const void* bytes, std::size_t count);

    /// Both, in one allocation.
    static String Joined(const String& first, const String& second);
    static String JoinedLatin(const String& first, std::string_view second);

    std::u16string_view View() const { return data_ ? data_->View() : std::u16string_view(); }
    std::size_t Length() const { return data_ ? data_->bytes / sizeof(char16_t) : 0; }
    std::size_t ByteLength() const { return data_ ? data_->bytes : 0; }
    const unsigned char* Bytes() const {
        return data_ ? reinterpret_cast<const unsigned char*>(data_->Units()) : nullptr;
    }
    bool IsEmpty() const { return ByteLength() == 0; }

    /// What the program around gets: names, paths, captions, reasons. Throws RuntimeError 7 for a text of
    /// more than `MostUnitsOutside`; what such a text would take there, no script answers for.
    std::string ToUtf8() const;
    std::u16string_view ViewForOutside() const;

    /// Only of a string that `OfLength` has just made.
    char16_t* Units() { return data_ ? data_->Units() : nullptr; }

    /// `tail` may be a part of this string.
    void Append(std::u16string_view tail) {
        if (!tail.empty()) AppendBytes(tail.data(), tail.size() * sizeof(char16_t));
    }
    void Append(const String& tail) { AppendBytes(tail.Bytes(), tail.ByteLength()); }
    void AppendBytes(const void* bytes, std::size_t count);

    /// Makes room for a text of so many bytes: until then appending cannot fail.
    void Reserve(std::size_t bytes);

    StringData* Data() const { return data_; }

    /// Gives the reference away.
    StringData* Detach() { return std::exchange(data_, nullptr); }

private:
    static std::size_t UnitsOfUtf8(std::string_view text);
    static void WriteUtf16(std::string_view text, char16_t* units);
    bool HasRoom(std::size_t bytes) const {
        return data_ && data_->References() == 1 && data_->capacity >= bytes;
    }
    String Grown(std::size_t bytes) const;

    StringData* data_ = nullptr;  ///< Null is the empty string.
};

/// @name Text of the outside
/// UTF-8 there, UTF-16 here. Malformed parts (also single surrogates) become U+FFFD.
/// @{
std::string Utf8Of(std::u16string_view text);
std::u16string Utf16Of(std::string_view text);

/// The first units of `text`, some `TimeLimit::UnitsBetweenPolls`, no surrogate pair cut apart; taken off it.
/// What makes a long text into something else polls between such pieces.
std::u16string_view TakePiece(std::u16string_view& text);
/// @}

/// Equal but for the case of letters (of any script); how names are compared.
bool SameName(std::u16string_view a, std::u16string_view b);

/// -1, 0 or 1: by the units, or (`ignoreCase`) as a dictionary sorts them: signs, digits, letters, an
/// accented letter beside the plain one. 0 means the same but for case.
int CompareText(std::u16string_view a, std::u16string_view b, bool ignoreCase);

/// The order of table look-ups by name: that of the lower-case units.
bool NameComesBefore(std::u16string_view a, std::u16string_view b);

namespace slow {

char16_t LowerOf(char16_t unit);
char16_t UpperOf(char16_t unit);

}  // namespace slow

/// @name The other case of a letter of any script
/// @{
inline char16_t LowerOf(char16_t unit) {
    if (unit >= 0x80) return slow::LowerOf(unit);
    return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + 32) : unit;
}
inline char16_t UpperOf(char16_t unit) {
    if (unit >= 0x80) return slow::UpperOf(unit);
    return unit >= 'a' && unit <= 'z' ? static_cast<char16_t>(unit - 32) : unit;
}
/// @}

}  // namespace tessaloom::vbscript
