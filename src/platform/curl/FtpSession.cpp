#include "platform/curl/FtpSession.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/Ascii.h"
#include "platform/TextEncoding.h"

namespace tessaloom {

namespace {

using Kind = FtpStep::Kind;

constexpr long UploadBufferBytes = 256 << 10;
constexpr std::size_t MostReplyBytes = 64 << 10;  ///< To one step; no honest server says as much.
constexpr std::size_t MostReplyCharacters = 200;  ///< Of a reply that is told.
constexpr int PollMilliseconds = 10;              ///< libcurl overlooks some replies, so it is asked often.
constexpr auto IdleLook = std::chrono::milliseconds(200);  ///< How often an idle connection is looked at.
constexpr long LeaveMilliseconds = 5000;                   ///< For a server to answer to our farewell.
constexpr int LessUrgent = 5;                              ///< Niceness.
/// Time limits are the engine's, as its clock sees them. libcurl takes no more than 24 days.
constexpr long NoLimitSeconds = 20L * 86400;
constexpr long FarFutureSeconds = 10L * 365 * 86400;

int CodeOf(std::string_view reply) {
    return (reply[0] - '0') * 100 + (reply[1] - '0') * 10 + (reply[2] - '0');
}

bool IsLastLine(std::string_view line) {
    return line.size() >= 4 && std::ranges::all_of(line.substr(0, 3), ascii::IsDigit) && line[3] == ' ';
}

/// As it may stand in a log: what a server says can be anything.
std::string Readable(std::string_view text) {
    std::string readable = ToUtf8(text);
    std::ranges::replace_if(
        readable, [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
    readable = FirstCharacters(readable, MostReplyCharacters);
    readable.erase(readable.find_last_not_of(' ') + 1);
    return readable;
}

int PortOf(const curl_sockaddr& address) {
    if (address.family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in*>(&address.addr)->sin_port);
    if (address.family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6*>(&address.addr)->sin6_port);
    return 0;
}

/// 'one "two"' as the file transfer of a shell takes it.
std::string Quoted(std::string_view path) {
    std::string quoted = "\"";
    for (const char c : path) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

FtpOutcome ServerEnded() { return {false, false, true, CURLE_RECV_ERROR, "The server ended the connection"}; }

bool PeerLeft(int socket) {
    pollfd other{socket, POLLRDHUP, 0};
    return ::poll(&other, 1, 0) != 0;
}

}  // namespace

FtpSession::FtpSession(const FtpTrust& trust, FtpAddress address, const FtpAccount& account)
    : trust_(trust),
      address_(std::move(address)),
      account_(account),
      multi_(curl_multi_init()),
      easy_(curl_easy_init()) {
    if (!multi_ || !easy_) {
        Release();
        throw std::system_error(std::make_error_code(std::errc::not_enough_memory));
    }
    // Signals are for the program's first thread.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        thread_ = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        Release();
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

FtpSession::~FtpSession() {
    Break();
    thread_.join();
}

// --- The engine's side ---

void FtpSession::Begin(FtpStep step) {
    const std::lock_guard lock(mutex_);
    if (lost_) {  // The thread is gone, and nobody has looked yet.
        outcome_ = ServerEnded();
        return;
    }
    next_ = std::move(step);
    busy_ = true;
    wakeUp_.notify_one();
}

std::optional<FtpOutcome> FtpSession::TakeOutcome() {
    const std::lock_guard lock(mutex_);
    return std::exchange(outcome_, {});
}

void FtpSession::Leave() {
    {
        const std::lock_guard lock(mutex_);
        leaving_ = true;
        if (!busy_ && !sockets_.empty()) {
            next_ = FtpStep{Kind::LogOut, {}, {}, {}};
            busy_ = true;
            wakeUp_.notify_one();
            return;
        }
    }
    Break();
}

void FtpSession::Break() {
    const std::lock_guard lock(mutex_);
    broken_ = true;
    for (const curl_socket_t socket : sockets_) ::shutdown(socket, SHUT_RDWR);
    wakeUp_.notify_one();
    if (multi_) curl_multi_wakeup(multi_);
}

// --- The thread's side ---

void FtpSession::Run() {
    // Beside the tick, no upload is urgent. (Here, the niceness of a thread is its own.)
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), LessUrgent);
    while (const auto step = NextStep()) {
        step_ = &*step;
        const FtpOutcome outcome = Perform(*step);
        const std::lock_guard lock(mutex_);
        outcome_ = outcome;
        busy_ = false;
        if (!outcome.connected || step->kind == Kind::LogOut) break;
    }
    // Without this, libcurl would say farewell (once more) and wait for an answer.
    Break();
    Release();
    ended_ = true;
}

void FtpSession::Release() {
    CURLM* multi = nullptr;
    {
        const std::lock_guard lock(mutex_);
        multi = std::exchange(multi_, nullptr);
    }
    curl_easy_cleanup(std::exchange(easy_, nullptr));
    curl_multi_cleanup(multi);
}

std::optional<FtpStep> FtpSession::NextStep() {
    std::unique_lock lock(mutex_);
    for (;;) {
        if (broken_) return std::nullopt;
        if (next_) return std::exchange(next_, {});
        wakeUp_.wait_for(lock, IdleLook);
        if (next_ || sockets_.empty() || !ServerStirs(sockets_.front())) continue;
        lost_ = true;
        return std::nullopt;
    }
}

/// The server left, or says something that was not asked: its next reply would be taken for the answer to
/// another command. Within a secured connection there may be words of the connection itself.
bool FtpSession::ServerStirs(int control) const {
    pollfd other{control, POLLRDHUP, 0};
    if (address_.security == FtpAddress::Security::None) other.events |= POLLIN;
    return ::poll(&other, 1, 0) != 0;
}

FtpOutcome FtpSession::Perform(const FtpStep& step) {
    if (step.kind != Kind::LogIn) {
        const std::lock_guard lock(mutex_);
        if (sockets_.empty() || ServerStirs(sockets_.front())) return ServerEnded();
    }
    given_ = replyBytes_ = 0;
    replies_.clear();
    message_[0] = '\0';
    Prepare(step);
    return OutcomeOf(step, refused_ == CURLE_OK ? Transfer() : refused_);
}

void FtpSession::Prepare(const FtpStep& step) {
    curl_easy_reset(easy_);
    refused_ = CURLE_OK;
    Set(CURLOPT_ERRORBUFFER, message_);
    Set(CURLOPT_PROTOCOLS_STR, address_.Shell() ? "sftp" : "ftp,ftps");
    Set(CURLOPT_PROXY, "");
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_QUICK_EXIT, 1L);
    Set(CURLOPT_PATH_AS_IS, 1L);
    Set(CURLOPT_TCP_KEEPALIVE, 1L);
    Set(CURLOPT_CONNECTTIMEOUT, NoLimitSeconds);
    Set(CURLOPT_SERVER_RESPONSE_TIMEOUT, NoLimitSeconds);
    Set(CURLOPT_ACCEPTTIMEOUT_MS, NoLimitSeconds * 1000);
    Set(CURLOPT_MAXAGE_CONN, FarFutureSeconds);
    Set(CURLOPT_HEADERFUNCTION, &FtpSession::TakeReply);
    Set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    Set(CURLOPT_WRITEFUNCTION, &FtpSession::DropBytes);
    Set(CURLOPT_OPENSOCKETFUNCTION, &FtpSession::OpenSocket);
    Set(CURLOPT_OPENSOCKETDATA, static_cast<void*>(this));
    Set(CURLOPT_CLOSESOCKETFUNCTION, &FtpSession::CloseSocket);
    Set(CURLOPT_CLOSESOCKETDATA, static_cast<void*>(this));
    if (!account_.userName.empty()) {
        Set(CURLOPT_USERNAME, account_.userName.c_str());
        Set(CURLOPT_PASSWORD, account_.password.c_str());
    }
    Set(CURLOPT_FTP_FILEMETHOD, long{CURLFTPMETHOD_NOCWD});
    // libcurl 7.88 does not encrypt the data on connections that the server opens.
    if (!account_.passive && address_.security == FtpAddress::Security::None) Set(CURLOPT_FTPPORT, "-");
    {
        const std::lock_guard lock(mutex_);
        if (leaving_) Set(CURLOPT_TIMEOUT_MS, LeaveMilliseconds);
    }
    PrepareTrust();
    PrepareCommands(step);
}

void FtpSession::PrepareTrust() {
    // Else a server that secures only the commands would be sent the files in clear.
    if (address_.security != FtpAddress::Security::None) Set(CURLOPT_USE_SSL, long{CURLUSESSL_ALL});
    // Servers demand that connections for data resume the session of the first one. A session of version 1.3
    // can be resumed but once.
    Set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2} | long{CURL_SSLVERSION_MAX_TLSv1_2});
    if (!trust_.certificateFile.empty()) Set(CURLOPT_CAINFO, trust_.certificateFile.c_str());
    if (!address_.Shell()) return;
    Set(CURLOPT_SSH_KNOWNHOSTS, (trust_.sshFolder + "/known_hosts").c_str());
    Set(CURLOPT_SSH_KEYFUNCTION, &FtpSession::CheckHostKey);
    if (!account_.password.empty()) {
        Set(CURLOPT_SSH_AUTH_TYPES, long{CURLSSH_AUTH_PASSWORD | CURLSSH_AUTH_KEYBOARD});
        return;
    }
    Set(CURLOPT_SSH_AUTH_TYPES, long{CURLSSH_AUTH_PUBLICKEY | CURLSSH_AUTH_AGENT});
    std::error_code error;
    for (const char* name : {"id_ed25519", "id_ecdsa", "id_rsa"}) {
        const std::string file = trust_.sshFolder + "/" + name;
        if (!std::filesystem::exists(file, error)) continue;
        Set(CURLOPT_SSH_PRIVATE_KEYFILE, file.c_str());
        break;
    }
}

/// A command that fails would end the connection; with "*" before it the reply is ours to judge. Over a shell
/// there are no replies to see, and a file is never renamed over another one, which so is deleted first.
void FtpSession::PrepareCommands(const FtpStep& step) {
    std::vector<std::string> commands;
    const bool shell = address_.Shell();
    switch (step.kind) {
        case Kind::LogIn:
            Set(CURLOPT_FRESH_CONNECT, 1L);
            break;
        case Kind::Store:
            Set(CURLOPT_UPLOAD, 1L);
            Set(CURLOPT_UPLOAD_BUFFERSIZE, UploadBufferBytes);
            Set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(step.bytes->size()));
            Set(CURLOPT_READFUNCTION, &FtpSession::GiveBytes);
            Set(CURLOPT_READDATA, static_cast<void*>(this));
            break;
        case Kind::Delete:
            commands = {shell ? "*rm " + Quoted(step.path) : "*DELE " + step.path};
            break;
        case Kind::Rename:
            if (shell)
                commands = {"*rm " + Quoted(step.newPath),
                            "rename " + Quoted(step.path) + " " + Quoted(step.newPath)};
            else
                commands = {"*RNFR " + step.path, "*RNTO " + step.newPath};
            break;
        case Kind::NoOp:
            // A shell has no command for it: the time stamp of the root folder is asked for.
            if (shell)
                Set(CURLOPT_FILETIME, 1L);
            else
                commands = {"*NOOP"};
            break;
        case Kind::LogOut:
            if (!shell) commands = {"*QUIT"};
            break;
    }
    Set(CURLOPT_URL, address_.Url(step.kind == Kind::Store ? step.path : "").c_str());
    if (step.kind != Kind::Store) Set(CURLOPT_NOBODY, 1L);
    curl_slist_free_all(std::exchange(commands_, nullptr));
    for (const std::string& command : commands) commands_ = curl_slist_append(commands_, command.c_str());
    Set(CURLOPT_QUOTE, commands_);
}

CURLcode FtpSession::Transfer() {
    CURLcode result = CURLE_ABORTED_BY_CALLBACK;
    if (curl_multi_add_handle(multi_, easy_) != CURLM_OK) return CURLE_FAILED_INIT;
    for (bool done = false; !done && !broken_;) {
        int running = 0, left = 0;
        curl_multi_perform(multi_, &running);
        while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
            done = true;
            result = message->data.result;
        }
        if (!done) curl_multi_poll(multi_, nullptr, 0, PollMilliseconds, nullptr);
    }
    curl_multi_remove_handle(multi_, easy_);
    curl_slist_free_all(std::exchange(commands_, nullptr));
    return result;
}

FtpOutcome FtpSession::OutcomeOf(const FtpStep& step, CURLcode result) {
    FtpOutcome outcome;
    {
        const std::lock_guard lock(mutex_);
        outcome.connected = !sockets_.empty();
    }
    outcome.serverLeft = serverLeft_;
    outcome.done = result == CURLE_OK;
    const auto replyWithin = [this](std::size_t at, int low) {
        return at < replies_.size() && CodeOf(replies_[at]) / 100 == low / 100;
    };
    if (step.kind == Kind::LogOut) {
        outcome.done = true;
    } else if (address_.Shell()) {
        curl_off_t time = -1;
        curl_easy_getinfo(easy_, CURLINFO_FILETIME_T, &time);
        if (step.kind == Kind::NoOp) outcome.done = outcome.done && time >= 0;
    } else if (step.kind == Kind::Rename) {
        outcome.done = outcome.done && replyWithin(0, 300) && replyWithin(1, 200);
    } else if (step.kind == Kind::Delete || step.kind == Kind::NoOp) {
        outcome.done = outcome.done && replyWithin(0, 200);
    }
    if (outcome.done) return outcome;

    // The first of two commands fails for its own reason, the second one because of it; but a server may
    // refuse the newer ways to open a connection for the data before it takes an older one.
    const bool told = !replies_.empty() && (CodeOf(replies_.back()) >= 400 || result == CURLE_OK);
    const std::string reply = !told ? "" : step.kind == Kind::Rename ? replies_.front() : replies_.back();
    outcome.number = told ? CodeOf(reply) : static_cast<int>(result);
    outcome.description = Readable(told ? reply : FailureOf(result));
    // Some servers repeat what they did not understand.
    if (!account_.password.empty() && outcome.description.find(account_.password) != std::string::npos)
        outcome.description = "The server gave a reason that is not repeated here";
    return outcome;
}

std::string FtpSession::FailureOf(CURLcode result) const {
    if (replyBytes_ > MostReplyBytes) return "The server's answer has no end";
    // In the active mode this harmless remark hides the reason.
    const bool useful = message_[0] && !std::strstr(message_, "inet_ntop");
    return useful ? message_ : curl_easy_strerror(result);
}

// --- What libcurl calls, on the thread ---

std::size_t FtpSession::TakeReply(char* data, std::size_t size, std::size_t count, void* self) {
    auto& session = *static_cast<FtpSession*>(self);
    const std::string_view line(data, size * count);
    session.replyBytes_ += line.size();
    if (session.replyBytes_ > MostReplyBytes) return 0;
    if (IsLastLine(line)) session.replies_.emplace_back(line);
    return line.size();
}

std::size_t FtpSession::GiveBytes(char* buffer, std::size_t size, std::size_t count, void* self) {
    auto& session = *static_cast<FtpSession*>(self);
    const auto& bytes = *session.step_->bytes;
    const std::size_t part = std::min(size * count, bytes.size() - session.given_);
    if (part > 0) std::memcpy(buffer, bytes.data() + session.given_, part);
    session.given_ += part;
    return part;
}

int FtpSession::CheckHostKey(CURL*, const curl_khkey*, const curl_khkey*, curl_khmatch match, void*) {
    return match == CURLKHMATCH_OK ? CURLKHSTAT_FINE : CURLKHSTAT_REJECT;
}

/// A connection that broke unseen would silently be made anew, and the next step go to a server that knows
/// nothing of those before: after the log-in, only connections for data are allowed.
curl_socket_t FtpSession::OpenSocket(void* self, curlsocktype, curl_sockaddr* address) {
    auto& session = *static_cast<FtpSession*>(self);
    const int port = PortOf(*address);
    const bool logIn = session.step_->kind == Kind::LogIn;
    if (!logIn &&
        (session.step_->kind != Kind::Store || session.address_.Shell() || port == session.controlPort_))
        return CURL_SOCKET_BAD;

    const std::lock_guard lock(session.mutex_);
    if (session.broken_) return CURL_SOCKET_BAD;
    const int socket = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    if (socket < 0) return CURL_SOCKET_BAD;
    if (logIn) {
        session.controlPort_ = port;
        session.sockets_.push_back(socket);
    }
    return socket;
}

int FtpSession::CloseSocket(void* self, curl_socket_t socket) {
    auto& session = *static_cast<FtpSession*>(self);
    const std::lock_guard lock(session.mutex_);
    if (std::erase(session.sockets_, socket) > 0) session.serverLeft_ = PeerLeft(socket);
    return ::close(socket);
}

}  // namespace tessaloom
