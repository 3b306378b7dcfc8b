#pragma once

#include <string>

namespace tessaloom {

struct Platform;

/// The exit statuses of the program.
namespace ExitStatus {
inline constexpr int Success = 0;
inline constexpr int Failure = 1;
inline constexpr int BadArguments = 2;
inline constexpr int UnusableDocument = 78;
}  // namespace ExitStatus

/// Composes the canvas file `canvas` and writes its picture to `out`, at the quality of its fixed save.
/// Nothing else is written. Returns an exit status.
int RenderCanvas(Platform& platform, const std::string& canvas, const std::string& out);

/// Prints, a line each, what is wrong with the portfolio or canvas file `file`. Returns an exit status:
/// success when nothing is.
int CheckDocumentFile(Platform& platform, const std::string& file);

/// Prints the names that a feed may bear, a line each: the cameras of this machine and the test pattern.
int ListDevices(Platform& platform);

}  // namespace tessaloom
