#include "platform/curl/CurlTransfer.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <utility>

#include "platform/Ascii.h"
#include "platform/TextEncoding.h"
#include "platform/curl/BrokenPipeGuard.h"
#include "platform/curl/CurlMulti.h"

namespace tessaloom {

namespace {

constexpr const char* Protocols = "http,https";

/// No honest server sends as much.
constexpr std::size_t LargestHeader = 256 << 10;  // bytes

/// As people write addresses: blanks around them mean nothing, and of several "@" before the path all but the
/// last belong to the password. What may not stand there as it is, is written as the protocol does.
std::string UsableAddress(std::string_view written) {
    const std::string_view address = ascii::Trimmed(written, ascii::WhiteSpace);
    const std::size_t scheme = address.find("://");
    const std::size_t host = scheme == std::string_view::npos ? 0 : scheme + 3;
    const std::string_view front = address.substr(0, address.find_first_of("/?#", host));
    const std::size_t lastSign = front.rfind('@');

    std::string usable;
    for (std::size_t i = 0; i < address.size(); ++i) {
        if (address[i] == ' ')
            usable += "%20";
        else if (address[i] == '@' && i < front.size() && i != lastSign)
            usable += "%40";
        else
            usable += address[i];
    }
    return usable;
}

bool HoldsControls(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' ' && c != '\t'; });
}

/// A line break would begin another line of the head, a NUL would end the text for the library.
bool FitForHead(const UrlRequest& request, const std::string& address) {
    return address.find('\0') == address.npos && !request.method.empty() &&
           std::ranges::all_of(request.method, ascii::IsLetter) && !HoldsControls(request.user) &&
           !HoldsControls(request.password) && std::ranges::none_of(request.headers, HoldsControls);
}

/// The library leaves a header out that has no value, and sends it empty where a semicolon ends its name.
std::string HeaderLine(const std::string& header) {
    const std::size_t colon = header.find(':');
    const bool empty =
        colon == header.npos || header.find_first_not_of(ascii::WhiteSpace, colon + 1) == header.npos;
    return empty ? header.substr(0, colon) + ";" : header;
}

curl_slist* HeaderList(const UrlRequest& request) {
    curl_slist* list = nullptr;
    const auto add = [&](const std::string& line) {
        if (curl_slist* longer = curl_slist_append(list, line.c_str())) list = longer;
    };
    // The library's own: to wait for leave to send a long body, and to call any body a form.
    add("Expect:");
    add("Content-Type:");
    for (const std::string& header : request.headers) add(HeaderLine(header));
    return list;
}

std::string Megabytes(std::size_t bytes) { return std::to_string(bytes >> 20) + " MB"; }

/// What a handle is told; `accepted` while it took everything.
struct Options {
    CURL* handle;
    bool accepted = true;

    template <typename T>
    void Set(CURLoption option, T value) {
        accepted = curl_easy_setopt(handle, option, value) == CURLE_OK && accepted;
    }
};

/// Where requests may lead, and how long and large they may become.
void SetBounds(Options& options, const TransferLimits& limits) {
    options.Set(CURLOPT_DEFAULT_PROTOCOL, "http");
    options.Set(CURLOPT_PROTOCOLS_STR, Protocols);
    options.Set(CURLOPT_REDIR_PROTOCOLS_STR, Protocols);
    options.Set(CURLOPT_FOLLOWLOCATION, 1L);
    options.Set(CURLOPT_MAXREDIRS, long{limits.redirects});
    options.Set(CURLOPT_PROXY, "");
    options.Set(CURLOPT_NOSIGNAL, 1L);
    // A name that is being looked up is not waited for when the transfer is cancelled.
    options.Set(CURLOPT_QUICK_EXIT, 1L);
    options.Set(CURLOPT_CONNECTTIMEOUT_MS, long{limits.connectMilliseconds});
    options.Set(CURLOPT_TIMEOUT_MS, long{limits.totalMilliseconds});
    options.Set(CURLOPT_LOW_SPEED_LIMIT, long{limits.stalledBytesPerSecond});
    options.Set(CURLOPT_LOW_SPEED_TIME, long{limits.stalledSeconds});
    options.Set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits.bytes));
}

/// Who asks, and whom we trust.
void SetAccount(Options& options, const UrlRequest& request) {
    options.Set(CURLOPT_USERAGENT, "Tessaloom");
    // A camera that can do better is not sent the password itself.
    options.Set(CURLOPT_HTTPAUTH, CURLAUTH_BASIC | CURLAUTH_DIGEST);
    if (!request.user.empty() || !request.password.empty()) {
        options.Set(CURLOPT_USERNAME, request.user.c_str());
        options.Set(CURLOPT_PASSWORD, request.password.c_str());
    }
    if (!request.trustAnyServer) return;
    options.Set(CURLOPT_SSL_VERIFYPEER, 0L);
    options.Set(CURLOPT_SSL_VERIFYHOST, 0L);
}

}  // namespace

CurlTransfer::~CurlTransfer() { Cancel(); }

void CurlTransfer::Get(std::string_view address) {
    UrlRequest request;
    request.address = address;
    Begin(request, true);
}

void CurlTransfer::Send(const UrlRequest& request) { Begin(request, false); }

void CurlTransfer::Begin(const UrlRequest& request, bool failOnErrorStatus) {
    Cancel();
    limits_ = multi_.limits;
    if (request.connectMilliseconds > 0) limits_.connectMilliseconds = request.connectMilliseconds;
    if (request.totalMilliseconds > 0) limits_.totalMilliseconds = request.totalMilliseconds;
    const std::string usable = UsableAddress(request.address);
    if (usable.empty() || !FitForHead(request, usable) || !Prepare(request, usable, failOnErrorStatus) ||
        !multi_.Start(*this, handle_)) {
        if (handle_) curl_easy_cleanup(std::exchange(handle_, nullptr));
        return Fail("the address cannot be used");
    }
    state_ = TransferState::Requesting;
}

void CurlTransfer::Cancel() {
    if (handle_) {
        Release();
    } else {
        multi_.Remove(*this, nullptr);
    }
    DropBody();
    headerBytes_ = 0;
    response_ = {};
    failure_.clear();
    excess_.clear();
    state_ = TransferState::Idle;
}

std::string CurlTransfer::GetChunk(std::size_t bytes) {
    if (state_ != TransferState::ResponseCompleted) return {};
    std::string chunk = body_.Take(bytes);
    multi_.heldBytes -= chunk.size();
    return chunk;
}

bool CurlTransfer::Prepare(const UrlRequest& request, const std::string& address, bool failOnErrorStatus) {
    handle_ = curl_easy_init();
    if (!handle_) return false;
    Options options{handle_};
    options.Set(CURLOPT_URL, address.c_str());
    options.Set(CURLOPT_FAILONERROR, long{failOnErrorStatus});
    SetBounds(options, limits_);
    SetAccount(options, request);
    if (request.method == "HEAD") {
        options.Set(CURLOPT_NOBODY, 1L);
    } else if (request.method != "GET") {
        sentBody_ = request.body;
        options.Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(sentBody_.size()));
        options.Set(CURLOPT_POSTFIELDS, sentBody_.c_str());
        // With POST the library turns the method of a redirect into GET, as browsers do.
        if (request.method != "POST") options.Set(CURLOPT_CUSTOMREQUEST, request.method.c_str());
    }
    if (!request.headers.empty() || request.method != "GET") {
        sentHeaders_.reset(HeaderList(request));
        options.Set(CURLOPT_HTTPHEADER, sentHeaders_.get());
    }
    if (!multi_.CertificateFile().empty()) options.Set(CURLOPT_CAINFO, multi_.CertificateFile().c_str());
    options.Set(CURLOPT_HEADERFUNCTION, &CurlTransfer::TakeHeader);
    options.Set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    options.Set(CURLOPT_WRITEFUNCTION, &CurlTransfer::TakeBody);
    options.Set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    return options.accepted;
}

std::size_t CurlTransfer::TakeHeader(char* data, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    transfer.headerBytes_ += size * count;
    if (transfer.headerBytes_ <= LargestHeader && transfer.TakeHeaderLine({data, size * count}))
        return size * count;
    transfer.excess_ = "the head of the response has no end";
    return 0;
}

/// False without memory for it. A status line begins another answer.
bool CurlTransfer::TakeHeaderLine(std::string_view line) {
    try {
        const std::string_view text = ascii::Trimmed(line, ascii::WhiteSpace);
        if (line.starts_with("HTTP/")) {
            response_ = {};
            const std::size_t status = text.find(' ');
            if (status == text.npos) return true;
            const std::string_view answer = text.substr(status + 1);
            std::from_chars(answer.data(), answer.data() + answer.size(), response_.status);
            const std::size_t words = answer.find(' ');
            if (words != answer.npos) response_.statusText = ToUtf8(answer.substr(words + 1));
        } else if (!text.empty()) {
            response_.headers.append(ToUtf8(text)).append("\r\n");
        }
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

/// A count other than the one given, or the one that means a pause, breaks the transfer off. What a server
/// sends along with a redirect or an error does not come here.
std::size_t CurlTransfer::TakeBody(char* data, std::size_t size, std::size_t count, void* self) {
    auto& transfer = *static_cast<CurlTransfer*>(self);
    const std::size_t bytes = size * count;
    if (bytes > transfer.limits_.bytes - transfer.body_.Size()) {
        transfer.excess_ = "the response is larger than " + Megabytes(transfer.limits_.bytes);
        return 0;
    }
    if (transfer.multi_.heldBytes + bytes > transfer.limits_.bytesTogether) {
        transfer.excess_ =
            "all responses together are larger than " + Megabytes(transfer.limits_.bytesTogether);
        return 0;
    }
    if (!transfer.multi_.MayTake(transfer, bytes)) return CURL_WRITEFUNC_PAUSE;
    const std::size_t before = transfer.body_.Size();
    try {
        transfer.body_.Append({data, bytes});
    } catch (const std::bad_alloc&) {
        transfer.excess_ = "there is no memory for the response";
    }
    transfer.multi_.heldBytes += transfer.body_.Size() - before;
    if (!transfer.excess_.empty()) return 0;
    if (transfer.state_ == TransferState::Requesting) transfer.Enter(TransferState::Receiving);
    return bytes;
}

void CurlTransfer::Ended(CURLcode result) {
    std::string reason = result == CURLE_OK ? "" : ReasonOf(result);
    Release();
    response_.late = result == CURLE_OPERATION_TIMEDOUT;
    if (result != CURLE_OK) return Fail(std::move(reason));
    Enter(TransferState::ResponseCompleted);
}

std::string CurlTransfer::ReasonOf(CURLcode result) const {
    if (!excess_.empty()) return excess_;
    switch (result) {
        case CURLE_HTTP_RETURNED_ERROR: {
            long status = 0;
            curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status);
            return "the server answered with status " + std::to_string(status);
        }
        case CURLE_FILESIZE_EXCEEDED:
            return "the response is larger than " + Megabytes(limits_.bytes);
        case CURLE_OPERATION_TIMEDOUT:
            return "no whole response came in time";
        case CURLE_PARTIAL_FILE:
            return "the response was cut short";
        default:
            return curl_easy_strerror(result);
    }
}

void CurlTransfer::Enter(TransferState state) {
    state_ = state;
    multi_.TellLater(*this);
}

void CurlTransfer::Fail(std::string reason) {
    DropBody();
    failure_ = std::move(reason);
    Enter(TransferState::Failed);
}

void CurlTransfer::TellState() {
    // A copy: the listener may replace itself, or destroy this object with it.
    if (const StateChanged listener = listener_) listener(state_);
}

void CurlTransfer::Release() {
    multi_.Remove(*this, handle_);
    const BrokenPipeGuard guard;
    curl_easy_cleanup(std::exchange(handle_, nullptr));
    sentHeaders_.reset();
    sentBody_ = {};
}

void CurlTransfer::DropBody() {
    multi_.heldBytes -= body_.Size();
    body_.Clear();
}

}  // namespace tessaloom
