#pragma once

namespace tessaloom {

class Portfolio;

/// Canvases whose outputs get in each other's way. Each gives the slot of another open canvas whose output of
/// that kind is switched on, 0 when there is none; what is asked about need not be switched on itself.
namespace Conflicts {

/// Writes the same fixed file.
int FixedFile(const Portfolio& portfolio, int canvas);

/// Writes files of like names into the same folder.
int SequentialFiles(const Portfolio& portfolio, int canvas);

/// Changes the wallpaper.
int Wallpaper(const Portfolio& portfolio, int canvas);

/// Uploads to the same file of the same server.
int Upload(const Portfolio& portfolio, int canvas);

/// Is served under the same name. Of several canvases the lowest slot is the one that visitors see.
int WebName(const Portfolio& portfolio, int canvas);

}  // namespace Conflicts
}  // namespace tessaloom
