#pragma once

#include <stdexcept>
#include <string>

namespace tessaloom {

/// Numbers that the conversions and the common error report share with the script language.
enum class ErrorNumber {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    Internal = 51,
    BadFileName = 52,
    FileNotFound = 53,
    DeviceIO = 57,
};

/// The English description of `number`, for example "Type mismatch".
const char* DescriptionOf(ErrorNumber number);

/// A run-time error with its number. What its text says goes to the common error report.
class Error : public std::runtime_error {
public:
    explicit Error(ErrorNumber number) : Error(number, DescriptionOf(number)) {}
    Error(ErrorNumber number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    ErrorNumber Number() const { return number_; }

private:
    ErrorNumber number_;
};

}  // namespace tessaloom
