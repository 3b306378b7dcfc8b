#include "core/RunFlags.h"

namespace tessaloom {

RunFlags& Flags() {
    static RunFlags flags;
    return flags;
}

}  // namespace tessaloom
