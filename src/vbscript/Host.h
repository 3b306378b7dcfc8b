#pragma once

#include <string>
#include <string_view>

#include "locale/Conversion.h"
#include "vbscript/Object.h"

namespace tessaloom {
class Alarm;
}

namespace tessaloom::vbscript {

/// What a script asks of the outside. Texts are UTF-8. What cannot be done is thrown as RuntimeError.
class Host {
public:
    virtual ~Host() = default;

    virtual double Now() = 0;    ///< The local moment as a day number.
    virtual double Timer() = 0;  ///< Seconds since midnight.

    /// @name For the time limit
    /// @{
    virtual double SteadySeconds() = 0;  ///< From any start, never going back.
    virtual Alarm& TimeAlarm() = 0;      ///< By that clock; nobody else's.
    /// @}

    virtual const UserLocale& Locale() = 0;
    virtual int LocaleId() { return 1033; }  ///< The Windows number of that locale.

    /// The answer: vbOK (1) .. vbNo (7). `buttons` as in the language's MsgBox.
    virtual int MsgBox(const std::string& prompt, int buttons, const std::string& title) = 0;

    /// The text entered; empty when cancelled.
    virtual std::string InputBox(const std::string& prompt, const std::string& title,
                                 const std::string& initial) = 0;

    /// A new object; null when there is no such class (error 429).
    virtual Ref<Object> CreateObject(std::string_view programId) = 0;

    /// An existing object by path, class or both; null: error 429.
    virtual Ref<Object> GetObject(std::string_view /*path*/, std::string_view /*programId*/) { return {}; }
};

}  // namespace tessaloom::vbscript
