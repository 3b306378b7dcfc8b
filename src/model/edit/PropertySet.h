#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "model/KeyKinds.h"
#include "model/edit/LayerId.h"
#include "model/edit/Property.h"

namespace tessaloom {

class Portfolio;
class Schedule;

/// The properties of one thing of the open portfolio, read and written as text.
///
/// It names the thing by its slot and looks it up at each use, so it may outlive it: then `Exists` is false,
/// `Get` gives "" and `Set` does nothing. It must not outlive the portfolio.
class PropertySet {
public:
    virtual ~PropertySet() = default;

    virtual std::span<const Property> Properties() const = 0;
    virtual bool Exists() const = 0;

    /// row: an index of `Properties`.
    virtual std::string Get(std::size_t row) const = 0;

    /// Takes effect at once. `NotANumber` and the like: nothing was set. `OutOfRange`: the nearest allowed
    /// value was.
    virtual KeyFault Set(std::size_t row, const std::string& text) = 0;

    /// The canvas whose history records changes; 0 for what no canvas owns.
    virtual int CanvasSlot() const { return 0; }

    /// The daily window behind the row of kind `Schedule`; null without one, or when the thing is gone.
    virtual Schedule* ScheduleOf(std::size_t row) const = 0;

    /// The layer whose properties these are; none for others.
    virtual std::optional<LayerId> Layer() const { return std::nullopt; }

    /// The row of that name; nothing when there is none.
    std::optional<std::size_t> Find(std::string_view name) const;
};

/// The sets, each with its table of descriptions. Slots as in `Portfolio` and `Canvas`.
namespace PropertySets {

std::unique_ptr<PropertySet> Layer(Portfolio& portfolio, int canvas, LayerId layer);

std::unique_ptr<PropertySet> CanvasGeneral(Portfolio& portfolio, int canvas);  ///< Name, size, background.
std::unique_ptr<PropertySet> FixedSave(Portfolio& portfolio, int canvas);      ///< With cascade.
std::unique_ptr<PropertySet> SequentialSave(Portfolio& portfolio, int canvas);
std::unique_ptr<PropertySet> Wallpaper(Portfolio& portfolio, int canvas);
std::unique_ptr<PropertySet> FTPUpload(Portfolio& portfolio, int canvas);
std::unique_ptr<PropertySet> WebPicture(Portfolio& portfolio, int canvas);

std::unique_ptr<PropertySet> Feed(Portfolio& portfolio, int feed);
std::unique_ptr<PropertySet> Motion(Portfolio& portfolio, int feed);
std::unique_ptr<PropertySet> Web(Portfolio& portfolio);
std::unique_ptr<PropertySet> Weather(Portfolio& portfolio);
std::unique_ptr<PropertySet> Scripting(Portfolio& portfolio);

}  // namespace PropertySets

}  // namespace tessaloom
