#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

class CanvasWebServer;

/// What the web server asks of the document that owns it. Canvases are slots 1 .. 20.
class WebHost {
public:
    static constexpr int Slots = 20;

    virtual ~WebHost() = default;

    /// How canvas `slot` is published; null when it is not: no open canvas, or its page is switched off.
    virtual CanvasWebServer* PublishedCanvas(int slot) = 0;

    /// The canvas's own name, of a slot that is published.
    virtual std::string CanvasName(int slot) const = 0;

    /// Tells the script, if it wants to know. It may do anything, closing connections and the server
    /// included.
    virtual void WebRequest(std::string_view ipAddress, std::string_view path) = 0;

    /// The folder of the document's file, without a trailing separator; may be empty.
    virtual std::string Folder() const = 0;
};

}  // namespace tessaloom
