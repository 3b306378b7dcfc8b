#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "core/modNumbers.h"

namespace tessaloom {

/// What is wrong with the text of a key.
enum class KeyFault { None, NotABoolean, NotANumber, NotAColour, NotATime, OutOfRange };

/// The words for a fault, for example "not a number".
std::string_view DescriptionOf(KeyFault fault);

/// The kinds of value that the documents hold. `Parse` always leaves something usable in `value`; `Same`
/// tells whether the owner took the value as it is.
struct KeyKind {
    static constexpr bool Acts = false;
    static constexpr bool Secret = false;

    template <typename Got, typename Asked>
    static bool Same(const Got& got, const Asked& asked) {
        return static_cast<Got>(asked) == got;
    }
};

/// "True" or "False".
struct Boolean : KeyKind {
    using Value = bool;
    static KeyFault Parse(const std::string& text, bool& value);
    static std::string Write(bool value) { return value ? "True" : "False"; }
};

/// A boolean that sets something going.
struct Switch : Boolean {
    static constexpr bool Acts = true;
};

/// Plain decimal digits.
struct Whole : KeyKind {
    using Value = int;
    static KeyFault Parse(const std::string& text, int& value);
    static std::string Write(int value) { return modNumbers::CStrNI(value); }
};

/// The state of a window: maximized (2) is stored as normal, which is no fault.
struct WindowStateNumber : Whole {
    static bool Same(int got, int asked) { return got == asked || asked == 2; }
};

/// The shortest decimal text, with a point.
struct Real : KeyKind {
    using Value = double;
    static KeyFault Parse(const std::string& text, double& value);
    static std::string Write(double value) { return modNumbers::CStrNI(value); }
};

/// The same for an owner that holds 32 bits.
struct Single : KeyKind {
    using Value = float;
    static KeyFault Parse(const std::string& text, float& value);
    static std::string Write(float value) { return modNumbers::CStrNI(value); }
};

/// Degrees; owners turn full circles, which is no fault.
struct Angle : Single {
    static bool Same(float got, float asked) { return std::remainder(got - asked, 360.0F) == 0; }
};

/// "&H" and six hexadecimal digits: blue, green, red.
struct Colour : KeyKind {
    using Value = int;
    static KeyFault Parse(const std::string& text, int& value);
    static std::string Write(int value);
};

/// "HH:MM:SS", held as whole seconds after midnight; hours may go beyond 23 where an owner allows that.
struct TimeOfDay : KeyKind {
    using Value = int;
    static KeyFault Parse(const std::string& text, int& value);
    static std::string Write(double seconds);
};

/// Any text.
struct Plain : KeyKind {
    using Value = std::string_view;
    static KeyFault Parse(const std::string& text, std::string_view& value) {
        value = text;
        return KeyFault::None;
    }
    static std::string Write(const std::string& value) { return value; }
    static bool Same(std::string_view, std::string_view) { return true; }
};

/// Text without the blanks around it.
struct Trimmed : Plain {
    static KeyFault Parse(const std::string& text, std::string_view& value);
};

struct Password : Plain {
    static constexpr bool Secret = true;
};

}  // namespace tessaloom
