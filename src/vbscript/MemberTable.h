#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "vbscript/Arguments.h"
#include "vbscript/Error.h"
#include "vbscript/Object.h"

namespace tessaloom::vbscript {

enum class IsDefault : bool { No, Yes };

/// One member of a class T. A method has `get` alone. The argument counts are those of `get`; an assignment
/// has one more, the new value. A missing `let` or `set` makes it read-only (438); a `set` that takes
/// objects only may be the same function as `let`.
template <typename T>
struct Member {
    using Function = Value (*)(T& self, const Arguments& arguments);

    std::u16string_view name;
    int minArguments;
    int maxArguments;
    Function get;
    Function let = nullptr;
    Function set = nullptr;
    IsDefault isDefault = IsDefault::No;
    PlainMember plain = {};
};

/// An object whose members are a table: `class RegExp : public TableObject<RegExp>` has
///     static constexpr std::u16string_view Name = u"RegExp";
///     static std::span<const Member<RegExp>> Members();
template <typename T>
class TableObject : public Object {
public:
    std::u16string_view TypeName() const override { return T::Name; }

    int Find(std::u16string_view name) override {
        const auto members = T::Members();
        for (std::size_t i = 0; i < members.size(); ++i)
            if (SameName(members[i].name, name)) return static_cast<int>(i) + 1;
        return UnknownMember;
    }

    Value Invoke(Context& context, int member, CallKind kind, std::span<Value> values) override {
        const Member<T>* const row = RowOf(member);
        if (!row) Fail(ErrorCode::NoSuchMember);
        const bool assigns = kind == CallKind::Let || kind == CallKind::Set;
        const auto function = kind == CallKind::Let ? row->let : kind == CallKind::Set ? row->set : row->get;
        if (!function) Fail(ErrorCode::NoSuchMember);
        const int count = static_cast<int>(values.size()) - (assigns ? 1 : 0);
        if (count > 0 && row->maxArguments == 0 && !assigns) return ItemOf(context, *row, values);
        if (count < row->minArguments || count > row->maxArguments) Fail(ErrorCode::WrongArgumentCount);
        return function(static_cast<T&>(*this), Arguments(context, values, kind));
    }

    const PlainMember* Plain(int member) const override {
        const Member<T>* const row = RowOf(member);
        return row ? &row->plain : nullptr;
    }

protected:
    /// The table's own address is unique to the class.
    TableObject() : Object(T::Members().data()) {}

private:
    /// The arguments of a member that takes none are meant for the default member of the object it gives.
    Value ItemOf(Context& context, const Member<T>& row, std::span<Value> values) {
        const Value object = row.get(static_cast<T&>(*this), Arguments(context, {}));
        if (!object.Is(VarType::Object) || object.IsNothing()) Fail(ErrorCode::WrongArgumentCount);
        return object.AsObject()->Invoke(context, DefaultMember, CallKind::Get, values);
    }

    static const Member<T>* RowOf(int member) {
        const auto members = T::Members();
        if (member > 0 && static_cast<std::size_t>(member) <= members.size())
            return &members[static_cast<std::size_t>(member) - 1];
        if (member != DefaultMember) return nullptr;
        for (const auto& row : members)
            if (row.isDefault == IsDefault::Yes) return &row;
        return nullptr;
    }
};

}  // namespace tessaloom::vbscript
