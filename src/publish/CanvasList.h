#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

class WebHost;

/// What a live page asks to find all canvases.
inline constexpr std::string_view CanvasListName = "canvases.json";

/// The published canvases as JSON: an array of {"file": request path, "name": canvas name}, by slot.
std::string CanvasList(WebHost& host);

}  // namespace tessaloom
