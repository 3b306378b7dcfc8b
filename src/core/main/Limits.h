#pragma once

namespace tessaloom {

class INI;
struct Platform;

/// Passes on what section "X-Limits" of the settings file allows pictures to take: "PictureMegapixels"
/// (1 .. 2000), "DownloadMegabytes" (1 .. 2000, of one response; all together four times that) and
/// "DownloadSeconds" (1 .. 3600); the latter two hold for scripts as well, from when they are loaded. A key
/// that is missing, or no number, leaves the limit as it is by default.
void LoadLimits(const Platform& platform, INI& settings);

}  // namespace tessaloom
