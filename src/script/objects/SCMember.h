#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "locale/Error.h"
#include "script/objects/SCModel.h"

/// Rows of the member table, made from the members of the model classes.
///
/// A row's functions may be: a member function of a model class, whose object is looked up by the place of
/// the wrapper; a function of the wrapper with converted arguments; or one that takes the arguments as they
/// came. Arguments convert as the language has it; a std::optional may be left out.
namespace tessaloom {

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
T Converted(vbscript::Context& context, const Value& value) {
    if constexpr (std::is_same_v<T, bool>)
        return vbscript::ToBoolean(context, value);
    else if constexpr (std::is_same_v<T, int>)
        return vbscript::ToIndex(context, value);
    else if constexpr (std::is_same_v<T, float>)
        return vbscript::ToSingle(context, value);
    else if constexpr (std::is_same_v<T, double>)
        return vbscript::ToDouble(context, value);
    else
        return vbscript::ToText(context, value).ToUtf8();
}

template <typename T>
T Argument(const Arguments& arguments, std::size_t index) {
    if constexpr (IsOptional<T>) {
        if (!arguments.Has(index)) return std::nullopt;
        return Converted<typename T::value_type>(arguments.GetContext(), arguments[index]);
    } else {
        return Converted<T>(arguments.GetContext(), arguments[index]);
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

/// What a function takes.
template <typename... P>
struct Parameters {
    static constexpr int most = sizeof...(P);
    static constexpr int least = (0 + ... + (IsOptional<Stored<P>> ? 0 : 1));

    /// Conversions come first: the default member of an object may be script code that changes anything.
    template <typename Call>
    static Value Run(const Arguments& arguments, Call call) {
        return [&]<std::size_t... i>(std::index_sequence<i...>) {
            const std::tuple<Stored<P>...> values{Argument<Stored<P>>(arguments, i)...};
            return ResultOf([&]() -> decltype(auto) { return call(std::get<i>(values)...); });
        }
        (std::index_sequence_for<P...>());
    }

    /// The same with the one value that the short way has.
    template <typename Call>
    static Value RunPlain(vbscript::Context& context, const Value& value, Call call) {
        const std::tuple<Stored<P>...> values{Converted<Stored<P>>(context, value)...};
        return ResultOf([&]() -> decltype(auto) { return call(std::get<0>(values)); });
    }
};

/// How a function is called for a wrapper.
template <typename Function>
struct Use;

template <typename R, typename Model, typename... P>
struct Use<R (Model::*)(P...)> : Parameters<P...> {
    template <auto Function, typename... Values>
    static R Apply(SCObject& self, const Values&... values) {
        return (ModelAt<Model>(self.Place()).*Function)(values...);
    }
};

template <typename R, typename Model, typename... P>
struct Use<R (Model::*)(P...) const> : Use<R (Model::*)(P...)> {};

template <typename R, typename... P>
struct Use<R (*)(SCObject&, P...)> : Parameters<P...> {
    template <auto Function, typename... Values>
    static R Apply(SCObject& self, const Values&... values) {
        return Function(self, values...);
    }
};

template <auto Function>
using UseOf = Use<decltype(Function)>;

template <auto Function>
Value Call(SCObject& self, const Arguments& arguments) {
    return UseOf<Function>::Run(arguments, [&](const auto&... values) -> decltype(auto) {
        return UseOf<Function>::template Apply<Function>(self, values...);
    });
}

/// Errors of the model become errors of the script.
template <typename Call>
Value AsScriptErrors(Call call) {
    try {
        return call();
    } catch (const Error& error) {
        throw vbscript::RuntimeError(static_cast<int>(error.Number()));
    }
}

// The short ways.

template <auto Get>
Value PlainGet(vbscript::Object& self, vbscript::Context&) {
    return AsScriptErrors([&] {
        return ResultOf([&]() -> decltype(auto) {
            return UseOf<Get>::template Apply<Get>(static_cast<SCObject&>(self));
        });
    });
}

template <auto Function>
Value PlainItem(vbscript::Object& self, vbscript::Context& context, const Value& value) {
    return AsScriptErrors([&] {
        return UseOf<Function>::RunPlain(context, value, [&](const auto& converted) -> decltype(auto) {
            return UseOf<Function>::template Apply<Function>(static_cast<SCObject&>(self), converted);
        });
    });
}

template <auto Set>
void PlainLet(vbscript::Object& self, vbscript::Context& context, const Value& value) {
    PlainItem<Set>(self, context, value);
}

template <auto Get>
constexpr vbscript::PlainMember PlainOf() {
    vbscript::PlainMember plain;
    if constexpr (UseOf<Get>::most == 0) plain.get = PlainGet<Get>;
    if constexpr (UseOf<Get>::most == 1 && UseOf<Get>::least == 1) plain.item = PlainItem<Get>;
    return plain;
}

}  // namespace sc

/// A property to be read and assigned to. An indexed one takes its index before the new value.
template <auto Get, auto Set>
constexpr SCMember Property(std::u16string_view name) {
    using Getter = sc::UseOf<Get>;
    static_assert(Getter::most + 1 == sc::UseOf<Set>::most, "the setter takes one argument more");
    SCMember row{name, Getter::least, Getter::most, sc::Call<Get>, sc::Call<Set>};
    row.plain = sc::PlainOf<Get>();
    if constexpr (Getter::most == 0) row.plain.let = sc::PlainLet<Set>;
    return row;
}

/// A property to be read, or a method.
template <auto Get>
constexpr SCMember ReadOnly(std::u16string_view name) {
    SCMember row{name, sc::UseOf<Get>::least, sc::UseOf<Get>::most, sc::Call<Get>};
    row.plain = sc::PlainOf<Get>();
    return row;
}
template <auto Function>
constexpr SCMember Method(std::u16string_view name) {
    return ReadOnly<Function>(name);
}

/// A property to be assigned to only.
template <auto Set>
constexpr SCMember WriteOnly(std::u16string_view name) {
    return {name, 0, 0, nullptr, sc::Call<Set>};
}

}  // namespace tessaloom
