#include "imaging/pixelops/Streams.h"

#include <hwy/cache_control.h>

namespace tessaloom::pixelops {

void FinishStreams() { hwy::FlushStream(); }

}  // namespace tessaloom::pixelops
