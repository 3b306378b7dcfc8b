#pragma once

#include <string_view>

/// Operations on the video feeds of a portfolio, as people ask for them.
namespace tessaloom {

class Portfolio;

namespace Feeds {

/// The slot holds no source.
bool IsFree(const Portfolio& portfolio, int feed);

/// Takes a source into use in the lowest free slot: a camera's name, an address or a file. Layers that name
/// it and had no feed show it from now on. The slot, 0 .. 9; -1 when all are taken, or `source` is "".
int Add(Portfolio& portfolio, std::string_view source);

/// Frees a slot: every setting of the feed and its motion detection goes back to its default. Layers keep the
/// picture that they have, and the name of the feed.
void Remove(Portfolio& portfolio, int feed);

}  // namespace Feeds
}  // namespace tessaloom
