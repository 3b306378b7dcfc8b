#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "imaging/PixelArea.h"

namespace tessaloom {

/// A few areas, none of which meets another, that together hold all that was added. Areas that overlap or
/// nearly touch become one. It never allocates.
class AreaList {
public:
    void Add(PixelArea area);
    void Clear() { count_ = 0; }

    bool Empty() const { return count_ == 0; }
    std::int64_t Pixels() const;

    const PixelArea* begin() const { return areas_.data(); }
    const PixelArea* end() const { return areas_.data() + count_; }

private:
    static constexpr std::size_t Most = 24;  ///< More than the lines of a text board.

    PixelArea Take(std::size_t i);
    std::size_t NearestTo(const PixelArea& area) const;

    std::array<PixelArea, Most> areas_;
    std::size_t count_ = 0;
};

}  // namespace tessaloom
