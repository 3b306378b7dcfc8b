#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "vbscript/MemberTable.h"

namespace tessaloom {

/// The classes of the object tree that scripts see; `TypeName` gives their names with "SC" before them.
enum class SCKind {
    Main,
    Portfolio,
    Canvas,
    Text,
    Graphic,
    VideoFeed,
    MotionDetect,
    VWS,
    WebServer,
    FTPPush,
    CanvasWebServer,
    Wallpaper,
    AutoSave,
    Schedule,
};

class SCObject;

using SCMember = vbscript::Member<SCObject>;

/// What all objects of one kind have in common: their name and their members (numbered from 1).
struct SCClass {
    std::u16string_view name;
    std::span<const SCMember> members;
};

/// The one table of classes and members.
const SCClass& ClassOf(SCKind kind);

/// Where in the open portfolio an object's model lies: numbers only, so that nothing dangles when it goes.
struct SCPlace {
    int canvas = 0;               ///< Slot 1 .. 20.
    int index = 0;                ///< Of a layer: its slot 1 .. 100; of a feed: its slot + 1.
    SCKind owner = SCKind::Main;  ///< Of a schedule: whose it is,
    int part = 0;                 ///< and which one of that owner.
};

/// One object of the tree that scripts see: a thin wrapper of something in the open portfolio.
///
/// Every use looks its model up anew: a slot that has become empty is error 91, as Nothing is. The parts of
/// an object are made when they are first asked for, and stay the same from then on.
class SCObject final : public vbscript::Object {
public:
    explicit SCObject(SCKind kind, SCPlace place = {})
        : Object(&ClassOf(kind)), class_(ClassOf(kind)), kind_(kind), place_(place) {}

    SCKind Kind() const { return kind_; }
    const SCPlace& Place() const { return place_; }
    void SetPlace(const SCPlace& place) { place_ = place; }

    /// The part in `slot` (any numbering from 0), made at `place` when it is asked for first.
    vbscript::Value Part(std::size_t slot, SCKind kind, const SCPlace& place) {
        const bool isThere = slot < parts_.size() && parts_[slot];
        return vbscript::Value::OfObject(isThere ? parts_[slot].Get() : MakePart(slot, kind, place));
    }

    // Object

    std::u16string_view TypeName() const override { return class_.name; }
    int Find(std::u16string_view name) override;
    vbscript::Value Invoke(vbscript::Context& context, int member, vbscript::CallKind kind,
                           std::span<vbscript::Value> arguments) override;
    const vbscript::PlainMember* Plain(int member) const override;

private:
    SCObject* MakePart(std::size_t slot, SCKind kind, const SCPlace& place);

    const SCClass& class_;
    const SCKind kind_;
    SCPlace place_;
    std::vector<vbscript::Ref<SCObject>> parts_;
};

}  // namespace tessaloom
