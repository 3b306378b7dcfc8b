#pragma once

#include <string>
#include <string_view>

namespace tessaloom::vbscript {

/// The numbers of the errors that the language itself raises; `DescriptionOf` knows more.
enum class ErrorCode : int {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    ArrayLocked = 10,
    DivisionByZero = 11,
    TypeMismatch = 13,
    OutOfStackSpace = 28,
    ProcedureNotDefined = 35,
    Internal = 51,
    ObjectNotSet = 91,
    ForNotInitialized = 92,
    InvalidUseOfNull = 94,
    ObjectRequired = 424,
    CannotCreateObject = 429,
    ClassNotFound = 432,
    NoSuchMember = 438,
    ActionNotSupported = 445,
    LocaleNotSupported = 447,
    ArgumentNotOptional = 449,
    WrongArgumentCount = 450,
    NotACollection = 451,
    InvalidPicture = 481,
    VariableUndefined = 500,
    IllegalAssignment = 501,
    InvalidReference = 505,
    ClassNotDefined = 506,
};

inline constexpr std::u16string_view RuntimeSource = u"Microsoft VBScript runtime error";
inline constexpr std::u16string_view CompilationSource = u"Microsoft VBScript compilation error";

/// The English description of a run-time or compilation error; "Unknown runtime error" for other numbers.
std::u16string_view DescriptionOf(int number);

/// A run-time error on its way to the handler of the script. Thrown inside the engine only.
///
/// The machine fills in the position, which counts from 1 (0: not known yet).
struct RuntimeError {
    explicit RuntimeError(ErrorCode code);
    explicit RuntimeError(int errorNumber);
    RuntimeError(int errorNumber, std::u16string errorDescription, std::u16string errorSource)
        : number(errorNumber), description(std::move(errorDescription)), source(std::move(errorSource)) {}

    int number;
    std::u16string description;
    std::u16string source;
    std::u16string subject;  ///< What it was about, for the report of an error that nobody handled.
    std::u16string helpFile;
    int helpContext = 0;
    int line = 0;
    int column = 0;
};

/// Why a program text cannot be compiled. Line and column count from 1.
struct SyntaxError {
    SyntaxError(int errorNumber, int errorLine, int errorColumn);

    int number;
    std::u16string description;
    int line;
    int column;
};

/// Throws; kept out of line so that the callers stay small.
[[noreturn]] void Fail(ErrorCode code);

/// The same, about `name`.
[[noreturn]] void FailNaming(ErrorCode code, std::u16string_view name);

}  // namespace tessaloom::vbscript
