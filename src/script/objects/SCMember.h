#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "script/objects/SCModel.h"

/// Rows of the member table, made from the members of the model classes.
///
/// A row's functions may be: a member function of a model class, whose object is looked up by the place of
/// the wrapper; a function of the wrapper with converted arguments; or one that takes the arguments as they
/// came. Arguments convert as the language has it; a std::optional may be left out.
namespace tessaloom {

using SCRow = vbscript::Member<SCObject>;

namespace sc {

using vbscript::Arguments;
using vbscript::Value;

// What a parameter is kept as while the call is made.
template <typename Parameter>
struct StoredAs {
    using Type = std::decay_t<Parameter>;
};
template <>
struct StoredAs<std::string_view> {
    using Type = std::string;
};
template <typename Parameter>
using Stored = typename StoredAs<std::decay_t<Parameter>>::Type;

template <typename T>
inline constexpr bool IsOptional = false;
template <typename T>
inline constexpr bool IsOptional<std::optional<T>> = true;

template <typename T>
T Converted(const Arguments& arguments, std::size_t index) {
    if constexpr (IsOptional<T>) {
        if (!arguments.Has(index)) return std::nullopt;
        return Converted<typename T::value_type>(arguments, index);
    } else if constexpr (std::is_same_v<T, bool>) {
        return arguments.Boolean(index);
    } else if constexpr (std::is_same_v<T, int>) {
        return vbscript::ToIndex(arguments.GetContext(), arguments[index]);
    } else if constexpr (std::is_same_v<T, float>) {
        return vbscript::ToSingle(arguments.GetContext(), arguments[index]);
    } else if constexpr (std::is_same_v<T, double>) {
        return arguments.Double(index);
    } else {
        static_assert(std::is_same_v<T, std::string>);
        return arguments.Text(index).ToUtf8();
    }
}

inline Value ValueOf(bool truth) { return Value::OfBoolean(truth); }
inline Value ValueOf(int whole) { return Value::OfLong(whole); }
inline Value ValueOf(float real) { return Value::OfSingle(real); }
inline Value ValueOf(double real) { return Value::OfDouble(real); }
inline Value ValueOf(std::string_view text) { return Value::OfUtf8(text); }
inline Value ValueOf(const std::string& text) { return Value::OfUtf8(text); }
inline Value ValueOf(Value value) { return value; }

template <typename Call>
Value ResultOf(Call call) {
    if constexpr (std::is_void_v<decltype(call())>) {
        call();
        return {};
    } else {
        return ValueOf(call());
    }
}

/// Takes a function apart: how it is called, and with how many arguments.
template <typename Function>
struct Use;

template <typename R, typename... P>
struct UseWith {
    static constexpr int most = sizeof...(P);
    static constexpr int least = (0 + ... + (IsOptional<Stored<P>> ? 0 : 1));

    /// Conversions come first: the default member of an object may be script code that changes anything.
    template <typename Call>
    static Value Run(const Arguments& arguments, Call call) {
        return [&]<std::size_t... i>(std::index_sequence<i...>) {
            const std::tuple<Stored<P>...> values{Converted<Stored<P>>(arguments, i)...};
            return ResultOf([&]() -> decltype(auto) { return call(std::get<i>(values)...); });
        }
        (std::index_sequence_for<P...>());
    }
};

template <typename R, typename Model, typename... P>
struct Use<R (Model::*)(P...)> : UseWith<R, P...> {
    template <auto Function>
    static Value Call(SCObject& self, const Arguments& arguments) {
        return UseWith<R, P...>::Run(arguments, [&](const auto&... values) -> decltype(auto) {
            return (ModelAt<Model>(self.Place()).*Function)(values...);
        });
    }
};

template <typename R, typename Model, typename... P>
struct Use<R (Model::*)(P...) const> : Use<R (Model::*)(P...)> {};

template <typename R, typename... P>
struct Use<R (*)(SCObject&, P...)> : UseWith<R, P...> {
    template <auto Function>
    static Value Call(SCObject& self, const Arguments& arguments) {
        return UseWith<R, P...>::Run(
            arguments, [&](const auto&... values) -> decltype(auto) { return Function(self, values...); });
    }
};

template <auto Function>
using UseOf = Use<decltype(Function)>;
template <auto Function>
inline constexpr SCRow::Function Called = &UseOf<Function>::template Call<Function>;

}  // namespace sc

/// A property to be read and assigned to. An indexed one takes its index before the new value.
template <auto Get, auto Set>
constexpr SCRow Property(std::u16string_view name) {
    using Getter = sc::UseOf<Get>;
    static_assert(Getter::most + 1 == sc::UseOf<Set>::most, "the setter takes one argument more");
    return {name, Getter::least, Getter::most, sc::Called<Get>, sc::Called<Set>};
}

/// A property to be read, or a method.
template <auto Get>
constexpr SCRow ReadOnly(std::u16string_view name) {
    return {name, sc::UseOf<Get>::least, sc::UseOf<Get>::most, sc::Called<Get>};
}
template <auto Function>
constexpr SCRow Method(std::u16string_view name) {
    return ReadOnly<Function>(name);
}

/// A property to be assigned to only.
template <auto Set>
constexpr SCRow WriteOnly(std::u16string_view name) {
    return {name, 0, 0, nullptr, sc::Called<Set>};
}

}  // namespace tessaloom
