#include "model/edit/Feeds.h"

#include <memory>

#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/PropertySet.h"
#include "video/VideoFeed.h"

namespace tessaloom::Feeds {

namespace {

void ResetToDefaults(PropertySet& set) {
    const auto properties = set.Properties();
    for (std::size_t row = 0; row < properties.size(); ++row)
        set.Set(row, std::string(properties[row].fallback));
}

/// Layers whose feed was missing when their canvas was read.
void ShowIn(Canvas& canvas, int feed, std::string_view source) {
    for (int slot = 1; slot <= Canvas::MaxGraphic; ++slot)
        if (Graphic* graphic = canvas.Graphic(slot); graphic &&
                                                     graphic->SourceVideoFeed() == Graphic::NoFeed &&
                                                     graphic->SourceVideoFeedName() == source)
            graphic->SetSourceVideoFeed(feed);
}

}  // namespace

bool IsFree(const Portfolio& portfolio, int feed) {
    const VideoFeed& at = portfolio.VideoFeed(feed);
    return at.FeedName().empty() && at.VfWInput() == VideoFeed::NoInput;
}

int Add(Portfolio& portfolio, std::string_view source) {
    if (source.empty()) return -1;
    for (int feed = 0; feed < Portfolio::MaxFeed; ++feed) {
        if (!IsFree(portfolio, feed)) continue;
        portfolio.VideoFeed(feed).SetFeedName(source);
        portfolio.VideoFeed(feed).SetEnabled(true);
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) ShowIn(portfolio.Canvas(slot), feed, source);
        return feed;
    }
    return -1;
}

void Remove(Portfolio& portfolio, int feed) {
    ResetToDefaults(*PropertySets::Feed(portfolio, feed));
    ResetToDefaults(*PropertySets::Motion(portfolio, feed));
    portfolio.VideoFeed(feed).MotionDetect().CloseDiffFrame();
    portfolio.VideoFeed(feed).CloseFeed();
}

}  // namespace tessaloom::Feeds
