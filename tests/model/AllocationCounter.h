#pragma once

namespace tessaloom::testing {

/// How often this program has asked for memory so far.
long Allocations();

}  // namespace tessaloom::testing
