#pragma once

#include <cstdlib>

namespace tessaloom {

/// How often something is measured: `usual`, or `least` where TESSALOOM_BENCH_MOMENT is set. Such a run shows
/// that the benchmarks still work (`./check`); its figures mean nothing.
template <typename T>
T Effort(T usual, T least) {
    static const bool isForAMoment = std::getenv("TESSALOOM_BENCH_MOMENT") != nullptr;
    return isForAMoment ? least : usual;
}

}  // namespace tessaloom
