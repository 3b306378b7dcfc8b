#pragma once

#include <memory>
#include <string>

#include "platform/UrlTransfer.h"

namespace tessaloom {

class CurlMulti;

/// Transfers by libcurl, all on the thread that polls.
///
/// Proxies and settings from the environment or from files are not heeded; redirects stay within http and
/// https and take no password to another host; certificates are verified.
class CurlTransfers final : public UrlTransfers {
public:
    /// certificateFile: the authorities to trust, in place of the system's.
    explicit CurlTransfers(std::string certificateFile = "");
    ~CurlTransfers() override;
    CurlTransfers(const CurlTransfers&) = delete;
    CurlTransfers& operator=(const CurlTransfers&) = delete;

    void SetLimits(const TransferLimits& limits) override;
    const TransferLimits& Limits() const override;
    std::unique_ptr<UrlTransfer> MakeTransfer() override;
    void Poll() override;
    void Wait(int milliseconds) override;

private:
    std::unique_ptr<CurlMulti> multi_;
};

}  // namespace tessaloom
