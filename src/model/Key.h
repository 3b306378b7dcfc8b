#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "model/KeyKinds.h"

namespace tessaloom {

/// One key of a document file: its name, its default as the file shows it, and how its owner reads and writes
/// it.
///
/// Tables of these serve loading, saving and checking alike.
template <typename Owner>
struct Key {
    std::string_view name;
    std::string_view fallback;
    bool acts;    ///< Reading it may set something going (a server, a script): not done while only checking.
    bool secret;  ///< The value is never shown.
    KeyFault (*read)(Owner&, const std::string& text);
    KeyFault (*judge)(const std::string& text);  ///< What `read` would find wrong with the text alone.
    std::string (*write)(const Owner&);
};

namespace detail {

template <typename Member>
struct OwnerOf;
template <typename Result, typename Class>
struct OwnerOf<Result (Class::*)() const> {
    using Type = Class;
};

template <typename Kind, auto Getter, auto Setter, typename Owner>
KeyFault Read(Owner& owner, const std::string& text) {
    typename Kind::Value value{};
    const KeyFault fault = Kind::Parse(text, value);
    (owner.*Setter)(static_cast<typename Kind::Value>(value));
    if (fault != KeyFault::None) return fault;
    return Kind::Same((owner.*Getter)(), value) ? KeyFault::None : KeyFault::OutOfRange;
}

template <typename Kind>
KeyFault Judge(const std::string& text) {
    typename Kind::Value value{};
    return Kind::Parse(text, value);
}

template <typename Kind, auto Getter, typename Owner>
std::string Write(const Owner& owner) {
    return Kind::Write((owner.*Getter)());
}

}  // namespace detail

/// A row: `Entry<Real, &Text::Rate, &Text::SetRate>("Interval", "1")`. Getter and setter may be a base's.
template <typename Kind, auto Getter, auto Setter,
          typename Owner = typename detail::OwnerOf<decltype(Getter)>::Type>
constexpr Key<Owner> Entry(std::string_view name, std::string_view fallback) {
    return {name,
            fallback,
            Kind::Acts,
            Kind::Secret,
            &detail::Read<Kind, Getter, Setter, Owner>,
            &detail::Judge<Kind>,
            &detail::Write<Kind, Getter, Owner>};
}

}  // namespace tessaloom
