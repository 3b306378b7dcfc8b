#include "imaging/AreaList.h"

namespace tessaloom {

namespace {

/// So many pixels cost as much to draw as beginning another area does.
constexpr std::int64_t WorthOfAnArea = 1000;

/// Pixels that one area for both holds beyond them.
std::int64_t Waste(const PixelArea& a, const PixelArea& b) {
    PixelArea both = a;
    both.Include(b);
    return both.Pixels() - a.Pixels() - b.Pixels();
}

bool BecomeOne(const PixelArea& a, const PixelArea& b) {
    return !a.Common(b).Empty() || Waste(a, b) <= WorthOfAnArea;
}

}  // namespace

void AreaList::Add(PixelArea area) {
    if (area.Empty()) return;
    for (std::size_t i = 0; i < count_;) {
        if (BecomeOne(areas_[i], area)) {
            area.Include(Take(i));
            i = 0;
        } else {
            ++i;
        }
    }
    if (count_ == Most) {
        area.Include(Take(NearestTo(area)));
        Add(area);
        return;
    }
    areas_[count_++] = area;
}

std::int64_t AreaList::Pixels() const {
    std::int64_t pixels = 0;
    for (const PixelArea& area : *this) pixels += area.Pixels();
    return pixels;
}

PixelArea AreaList::Take(std::size_t i) {
    const PixelArea taken = areas_[i];
    areas_[i] = areas_[--count_];
    return taken;
}

std::size_t AreaList::NearestTo(const PixelArea& area) const {
    std::size_t nearest = 0;
    for (std::size_t i = 1; i < count_; ++i)
        if (Waste(areas_[i], area) < Waste(areas_[nearest], area)) nearest = i;
    return nearest;
}

}  // namespace tessaloom
