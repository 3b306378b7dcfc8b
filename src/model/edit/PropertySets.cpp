#include "model/edit/PropertySet.h"

#include "model/Portfolio.h"

namespace tessaloom::PropertySets {

namespace {

class EmptySet : public PropertySet {
public:
    std::span<const Property> Properties() const override { return {}; }
    bool Exists() const override { return false; }
    std::string Get(std::size_t) const override { return {}; }
    KeyFault Set(std::size_t, const std::string&) override { return KeyFault::None; }
    Schedule* ScheduleOf(std::size_t) const override { return nullptr; }
};

}  // namespace

std::unique_ptr<PropertySet> Layer(Portfolio&, int, LayerId) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> CanvasGeneral(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> FixedSave(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> SequentialSave(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> Wallpaper(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> FTPUpload(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> WebPicture(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> Feed(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> Motion(Portfolio&, int) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> Web(Portfolio&) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> Weather(Portfolio&) { return std::make_unique<EmptySet>(); }
std::unique_ptr<PropertySet> Scripting(Portfolio&) { return std::make_unique<EmptySet>(); }

}  // namespace tessaloom::PropertySets
