#include "platform/curl/CurlTransfers.h"

#include <utility>

#include "platform/curl/CurlMulti.h"
#include "platform/curl/CurlTransfer.h"

namespace tessaloom {

CurlTransfers::CurlTransfers(std::string certificateFile)
    : multi_(std::make_unique<CurlMulti>(std::move(certificateFile))) {}

CurlTransfers::~CurlTransfers() = default;

void CurlTransfers::SetLimits(const TransferLimits& limits) { multi_->limits = limits; }

const TransferLimits& CurlTransfers::Limits() const { return multi_->limits; }

std::unique_ptr<UrlTransfer> CurlTransfers::MakeTransfer() { return std::make_unique<CurlTransfer>(*multi_); }

void CurlTransfers::Poll() { multi_->Poll(); }

void CurlTransfers::Wait(int milliseconds) { multi_->Wait(milliseconds); }

}  // namespace tessaloom
