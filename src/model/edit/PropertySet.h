#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/KeyKinds.h"
#include "model/edit/LayerId.h"
#include "model/edit/Property.h"

namespace tessaloom {

class Portfolio;
class Schedule;

/// The properties of one thing of the open portfolio, or of several at once, read and written as text.
///
/// It names the thing by its slot and looks it up at each use, so it may outlive it: then `Exists` is false,
/// `Get` gives "" and `Set` does nothing. It must not outlive the portfolio.
class PropertySet {
public:
    virtual ~PropertySet() = default;

    virtual std::span<const Property> Properties() const = 0;
    virtual bool Exists() const = 0;

    /// row: an index of `Properties`. Of several things that differ, the value of the one named last.
    virtual std::string Get(std::size_t row) const = 0;

    /// Several things have different values.
    virtual bool Mixed(std::size_t) const { return false; }

    /// Takes effect at once. `NotANumber` and the like: nothing was set. `OutOfRange`: the nearest allowed
    /// value was.
    virtual KeyFault Set(std::size_t row, const std::string& text) = 0;

    /// Sets the default.
    virtual KeyFault Reset(std::size_t row);
    virtual bool IsDefault(std::size_t row) const;

    /// By its `relevantIf`; of several things, for any of them.
    virtual bool Relevant(std::size_t row) const;

    /// The canvas whose history records changes; 0 for what no canvas owns.
    virtual int CanvasSlot() const { return 0; }

    /// The daily window behind the row of kind `Schedule`; null without one, or when the thing is gone.
    virtual Schedule* ScheduleOf(std::size_t row) const = 0;

    /// The layers whose properties these are, but for those that have gone; empty for other things.
    virtual std::vector<LayerId> Layers() const { return {}; }

    /// The row of that name; nothing when there is none.
    std::optional<std::size_t> Find(std::string_view name) const;
};

/// The sets, each with its table of descriptions. Slots as in `Portfolio` and `Canvas`.
namespace PropertySets {

std::unique_ptr<PropertySet> Layer(Portfolio& portfolio, int canvas, LayerId layer);

/// What all of the layers have, at least one; what is set is set in each of them.
std::unique_ptr<PropertySet> Layers(Portfolio& portfolio, int canvas, std::span<const LayerId> layers);

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
