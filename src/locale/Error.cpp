#include "locale/Error.h"

namespace tessaloom {

const char* DescriptionOf(ErrorNumber number) {
    switch (number) {
        case ErrorNumber::InvalidCall:
            return "Invalid procedure call or argument";
        case ErrorNumber::Overflow:
            return "Overflow";
        case ErrorNumber::OutOfMemory:
            return "Out of memory";
        case ErrorNumber::SubscriptOutOfRange:
            return "Subscript out of range";
        case ErrorNumber::DivisionByZero:
            return "Division by zero";
        case ErrorNumber::TypeMismatch:
            return "Type mismatch";
        case ErrorNumber::Internal:
            return "Internal error";
        case ErrorNumber::BadFileName:
            return "Bad file name or number";
        case ErrorNumber::FileNotFound:
            return "File not found";
        case ErrorNumber::DeviceIO:
            return "Device I/O error";
    }
    return "Application-defined error";
}

}  // namespace tessaloom
