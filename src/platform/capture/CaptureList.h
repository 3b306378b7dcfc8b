#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/CaptureSource.h"
#include "platform/capture/CaptureChannel.h"
#include "platform/capture/CaptureThreads.h"

namespace tessaloom {

/// All capture drivers: cameras, streams and files by their addresses, and the test pattern.
class CaptureList final : public CaptureDrivers {
public:
    using LogLine = std::function<void(const std::string&)>;

    /// Both makers outlive this object, which outlives its windows. log: told when a source begins to
    /// deliver and when it is lost; hides the secrets that an address may hold.
    CaptureList(CaptureSources& cameras, CaptureSources& streams, LogLine log = {});
    ~CaptureList() override;

    std::unique_ptr<CaptureWindow> capCreateCaptureWindow(std::string_view windowName) override;
    std::optional<std::string> capGetDriverDescription(int driver) const override;
    void Refresh() override;
    int Find(std::string_view name) override;

private:
    class Window;

    /// A name that some feed asked for and that no present camera bears: an address, a file or a camera to
    /// come.
    struct Asked {
        std::string name;
        bool address;
    };

    int Place(std::string_view name) const;
    bool InUse(const std::string& name) const;
    void Arrange();
    std::unique_ptr<CaptureChannel> Open(const std::string& name);
    std::unique_ptr<CaptureSource> Source(const std::string& name);

    CaptureSources& cameras_;
    CaptureSources& streams_;
    LogLine log_;
    std::vector<std::string> present_;  ///< Cameras, bare names.
    std::vector<Asked> asked_;
    std::vector<std::string> list_;  ///< The bare names of all drivers.
    std::vector<Window*> windows_;
    bool looked_ = false;  ///< For cameras. Until then they are left alone.
    CaptureThreads threads_;
};

}  // namespace tessaloom
