#pragma once

#include <curl/curl.h>

#include <cstddef>
#include <string>
#include <vector>

#include "platform/UrlTransfer.h"

namespace tessaloom {

class CurlTransfer;

/// The transfers under way and what they share: connections, limits, the memory for responses.
class CurlMulti {
public:
    explicit CurlMulti(std::string certificateFile);
    ~CurlMulti();
    CurlMulti(const CurlMulti&) = delete;
    CurlMulti& operator=(const CurlMulti&) = delete;

    void Poll();
    void Wait(int milliseconds);

    /// Sets `transfer` going by its handle; false when that cannot be.
    bool Start(CurlTransfer& transfer, CURL* handle);

    /// From now on nothing is done for, or told by, `transfer`.
    void Remove(CurlTransfer& transfer, CURL* handle);

    /// Counts `transfer`'s listener among those to be told at the end of the present, or the next, poll.
    void TellLater(CurlTransfer& transfer);

    /// Whether `transfer` may take that many more bytes in this poll; if not, the next one resumes it.
    bool MayTake(CurlTransfer& transfer, std::size_t bytes);

    const std::string& CertificateFile() const { return certificateFile_; }

    TransferLimits limits;
    std::size_t heldBytes = 0;  ///< Of all responses.

private:
    void TakeCompletions();
    void TellListeners();

    CURLM* multi_;
    std::string certificateFile_;
    int running_ = 0;                     ///< Handles that libcurl works on.
    std::size_t pollBytes_ = 0;           ///< Taken in the present poll.
    std::vector<CurlTransfer*> heldUp_;   ///< To be resumed by the next poll.
    std::vector<CurlTransfer*> untold_;   ///< With a state that their listeners do not know yet.
    std::vector<CurlTransfer*> telling_;  ///< The same while they are told; null: removed meanwhile.
};

}  // namespace tessaloom
