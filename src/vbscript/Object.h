#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "vbscript/Value.h"

namespace tessaloom::vbscript {

struct Context;
class Object;

/// How a member is used.
enum class CallKind : std::uint8_t {
    Get,   ///< In an expression: a property's value or a method's result.
    Call,  ///< As a statement; the result is dropped.
    Let,   ///< Assigned to without Set.
    Set,   ///< Assigned to with Set.
};

/// What For Each walks along.
class Enumerator {
public:
    virtual ~Enumerator() = default;

    /// Puts the next one into `item`; false (and `item` untouched) at the end.
    virtual bool Next(Value& item) = 0;
};

/// The short ways to a member, for call sites that remember them: without arguments, assigned to, and with
/// one argument. Where a function is missing, `Invoke` has to be asked. `value` is no reference and no
/// object. None may run code of the script.
struct PlainMember {
    Value (*get)(Object& self, Context& context) = nullptr;
    void (*let)(Object& self, Context& context, const Value& value) = nullptr;
    Value (*item)(Object& self, Context& context, const Value& value) = nullptr;
};

/// Anything with members: script classes, the built-in objects, and those of the host.
///
/// Failures are thrown as RuntimeError. Held by counted references only.
class Object : public Counted {
public:
    static constexpr int DefaultMember = 0;  ///< What `obj(1)` and `x = obj` mean.
    static constexpr int UnknownMember = -1;

    virtual std::u16string_view TypeName() const = 0;

    /// The number of a member, whatever the case of `name`; `UnknownMember` when there is none.
    virtual int Find(std::u16string_view name) = 0;

    /// Uses a member. With Let and Set the new value comes last. No argument is a reference; what is written
    /// to one reaches the caller's variable, where it was passed by reference, if the object
    /// `WritesArguments`. An object without a default member throws 438 for it.
    virtual Value Invoke(Context& context, int member, CallKind kind, std::span<Value> arguments) = 0;

    const void* Shape() const { return shape_; }

    /// Whether members may write to their arguments: those that script code stands behind.
    virtual bool WritesArguments() const { return false; }

    /// The short way to a member of all objects of this shape; null when there is none.
    virtual const PlainMember* Plain(int /*member*/) const { return nullptr; }

    /// Null when it is no collection (error 451).
    virtual std::unique_ptr<Enumerator> Enumerate(Context&) { return nullptr; }

protected:
    /// Objects with the same shape have the same members under the same numbers, so that a call site may
    /// remember a number along with it. Null: nothing may be remembered.
    explicit Object(const void* shape = nullptr) : shape_(shape) {}

private:
    const void* const shape_;
};

inline Object* Value::AsObject() const { return static_cast<Object*>(CountedOrNull()); }

inline Object& Value::TheObject() const { return static_cast<Object&>(*shared_); }

inline Value Value::OfObject(Object* object) {
    Value result = Nothing();
    if (object) object->Retain();
    result.Hold(object);
    return result;
}

}  // namespace tessaloom::vbscript
