#include "script/objects/SCObject.h"

#include <algorithm>

#include "script/objects/SCMember.h"

namespace tessaloom {

using namespace vbscript;

SCObject* SCObject::MakePart(std::size_t slot, SCKind kind, const SCPlace& place) {
    if (parts_.size() <= slot) parts_.resize(slot + 1);
    parts_[slot] = Make<SCObject>(kind, place);
    return parts_[slot].Get();
}

int SCObject::Find(std::u16string_view name) {
    const auto found = std::ranges::find_if(
        class_.members, [name](const auto& member) { return SameName(member.name, name); });
    if (found == class_.members.end()) return UnknownMember;
    return static_cast<int>(found - class_.members.begin()) + 1;
}

const PlainMember* SCObject::Plain(int member) const {
    return &class_.members[static_cast<std::size_t>(member) - 1].plain;
}

Value SCObject::Invoke(Context& context, int member, CallKind kind, std::span<Value> arguments) {
    const auto row = static_cast<std::size_t>(member) - 1;
    if (row >= class_.members.size()) vbscript::Fail(ErrorCode::NoSuchMember);
    const SCMember& use = class_.members[row];
    const bool assigns = kind == CallKind::Let || kind == CallKind::Set;
    const auto function = !assigns ? use.get : kind == CallKind::Let ? use.let : use.set;
    if (!function) vbscript::Fail(ErrorCode::NoSuchMember);
    const int count = static_cast<int>(arguments.size()) - (assigns ? 1 : 0);
    if (count < use.minArguments || count > use.maxArguments) [[unlikely]]
        vbscript::Fail(ErrorCode::WrongArgumentCount);
    return sc::AsScriptErrors([&] { return function(*this, Arguments(context, arguments, kind)); });
}

}  // namespace tessaloom
