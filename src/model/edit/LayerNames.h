#pragma once

#include <map>

#include "model/edit/LayerId.h"

namespace tessaloom {

/// What layers are called now, by what they were called before. Changing the order of layers exchanges their
/// names; those that are not in it kept theirs.
using LayerNames = std::map<LayerId, LayerId>;

/// The layer's name now.
inline LayerId NameNow(const LayerNames& names, LayerId before) {
    const auto found = names.find(before);
    return found == names.end() ? before : found->second;
}

}  // namespace tessaloom
