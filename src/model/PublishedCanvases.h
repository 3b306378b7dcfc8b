#pragma once

#include "publish/WebHost.h"

namespace tessaloom {

class Portfolio;

/// The canvases of a portfolio, and its script, as its web server sees them.
class PublishedCanvases final : public WebHost {
public:
    explicit PublishedCanvases(Portfolio& portfolio) : portfolio_(portfolio) {}

    CanvasWebServer* PublishedCanvas(int slot) override;
    std::string CanvasName(int slot) const override;
    void WebRequest(std::string_view ipAddress, std::string_view path) override;
    std::string Folder() const override;

private:
    Portfolio& portfolio_;
};

}  // namespace tessaloom
