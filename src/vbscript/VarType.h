#pragma once

#include <cstdint>

namespace tessaloom::vbscript {

/// The kinds of values, with the numbers that the language shows through `VarType`.
enum class VarType : std::uint16_t {
    Empty = 0,
    Null = 1,
    Integer = 2,  ///< 16 bits, signed
    Long = 3,     ///< 32 bits, signed
    Single = 4,
    Double = 5,
    Currency = 6,  ///< 64 bits in ten-thousandths
    Date = 7,      ///< A local day number (days since 30 December 1899).
    String = 8,
    Object = 9,  ///< Also Nothing.
    Error = 10,  ///< What an omitted argument holds.
    Boolean = 11,
    Byte = 17,  ///< 8 bits, unsigned
    Array = 0x200C,

    /// Internal: a parameter passed by reference, only ever in a procedure's slots.
    Reference = 0x4000,
};

}  // namespace tessaloom::vbscript
