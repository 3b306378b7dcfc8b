#include "publish/WebConnection.h"

#include <algorithm>
#include <utility>

#include "core/ErrorReport.h"
#include "core/Store.h"
#include "locale/Error.h"
#include "platform/Ascii.h"
#include "platform/FileSystem.h"
#include "platform/TextEncoding.h"
#include "publish/CanvasList.h"
#include "publish/CanvasWebServer.h"
#include "publish/ResponseHead.h"
#include "publish/WebFiles.h"
#include "publish/WebHost.h"
#include "time/modTime.h"

namespace tessaloom {

namespace {

constexpr std::string_view Module = "WebConnection.cls";
constexpr std::string_view EmptyLine = "\r\n\r\n";
constexpr std::string_view DefaultPage = "index.htm";

bool IsFullPath(std::string_view path) { return path.starts_with('/') || path.starts_with('\\'); }

}  // namespace

WebConnection::WebConnection(int winSockIndex, Sockets& sockets, WebHost& host, FileSystem& files)
    : winSockIndex_(winSockIndex), host_(host), files_(files), socket_(sockets.MakeConnection(*this)) {}

WebConnection::~WebConnection() = default;

template <typename Body>
void WebConnection::Guard(std::string_view procedure, Body&& body) {
    const bool done = Trap({Module, procedure}, [&] {
        body();
        return true;
    });
    if (!done) ForceClose();
}

bool WebConnection::TakeConnection(int requestID) {
    return Trap({Module, "TakeConnection"}, [&] {
        ForceClose();
        if (!socket_->Accept(requestID)) return false;
        bytesArrived_ = bytesSent_ = 0;
        closing_ = false;
        RestartTimes(modTime::Clock());
        return true;
    });
}

void WebConnection::ForceClose() {
    ++uses_;
    answering_ = false;
    socket_->Close();
    file_.reset();
    buffer_.clear();
    searched_ = 0;
}

void WebConnection::Socket_DataArrival(std::string_view bytes) {
    Guard("Socket_DataArrival", [&] {
        buffer_.append(bytes);
        lastActivityTime_ = modTime::Clock();
        AnswerNext();
    });
}

void WebConnection::Socket_SendComplete() {
    Guard("Socket_SendComplete", [&] {
        if (file_) return SendPortion({});
        lastActivityTime_ = modTime::Clock();
        AnswerNext();
    });
}

void WebConnection::Socket_Close() { ForceClose(); }

void WebConnection::Socket_Error(std::string_view description) {
    Guard("Socket_Error", [&] { throw Error(ErrorNumber::DeviceIO, std::string(description)); });
}

/// Where the empty line begins that ends the next request; npos while it has not come.
std::size_t WebConnection::HeadEnd() {
    const std::size_t end = buffer_.find(EmptyLine, searched_);
    searched_ = end != buffer_.npos ? end : buffer_.size() - std::min(buffer_.size(), EmptyLine.size() - 1);
    return end;
}

/// One request at a time: what was sent ahead waits until the response has gone, and others have had a turn.
/// What ends the connection must not destroy the responses before it, which may still be on their way.
void WebConnection::AnswerNext() {
    if (answering_) return buffer_.size() > RequestHead::Limit ? ForceClose() : void();
    const std::size_t end = HeadEnd();
    const bool whole = end != buffer_.npos;
    if ((whole ? end + EmptyLine.size() : buffer_.size()) > RequestHead::Limit) return Finish();
    if (!whole) return;
    const auto request = ParseRequestHead(std::string_view(buffer_).substr(0, end));
    buffer_.erase(0, end + EmptyLine.size());
    searched_ = 0;
    if (!request) return Finish();
    answering_ = true;
    Answer(*request);
    answering_ = false;
}

void WebConnection::Answer(const RequestHead& request) {
    keepAlive_ = request.keepAlive;
    if (!keepAlive_) socket_->IgnoreInput();
    ++requests_;
    const unsigned uses = uses_;
    host_.WebRequest(socket_->RemoteHostIP(), ToUtf8(request.path));
    if (uses != uses_) return;

    const std::string name = RequestedName(request.path);
    const std::string folded = FoldCase(ToUtf8(name));
    for (int slot = 1; slot <= WebHost::Slots; ++slot) {
        CanvasWebServer* const canvas = host_.PublishedCanvas(slot);
        if (!canvas || FoldCase(canvas->FileName()) != folded) continue;
        if (canvas->Schedule().EnableNow(modTime::Clock())) return ReturnJPG(*canvas);
        return ServeOffSchedule(ascii::Trimmed(canvas->OffScheduleFile()));
    }
    if (!allowNonCanvasServes_) return Finish();
    ServeFile(ascii::Trimmed(name));
}

void WebConnection::ServeFile(std::string_view path) {
    if (path.empty()) path = DefaultPage;
    if (auto file = OpenWebFile(files_, webPath_, path)) return SendFile(path, std::move(file));
    if (!ascii::SameText(path, CanvasListName)) return Send404();
    auto list = std::make_shared<const std::string>(CanvasList(host_));
    std::string head = FileHead(ContentTypeOf(path), list->size());
    Respond(std::move(head), std::move(list));
}

/// The owner of the canvas chose this file, so that it may also lie outside the web folder.
void WebConnection::ServeOffSchedule(std::string_view path) {
    if (path.empty()) path = DefaultPage;
    if (path.find("..") != path.npos) return Send404();
    auto file = OpenWebFile(files_, webPath_, path);
    if (!file)
        file = OpenWebFile(files_, IsFullPath(path) ? std::string(path) : JoinPath(host_.Folder(), path));
    return file ? SendFile(path, std::move(file)) : Send404();
}

void WebConnection::SendFile(std::string_view path, std::unique_ptr<FileReader> file) {
    file_ = std::move(file);
    fileSent_ = 0;
    SendPortion(FileHead(ContentTypeOf(path), file_->Size()));
}

/// What was promised in the head must come: a file that became shorter meanwhile ends the connection.
void WebConnection::SendPortion(std::string head) {
    const std::uint64_t left = file_->Size() - fileSent_;
    const std::size_t count = std::min<std::uint64_t>(left, Portion);
    auto bytes = std::make_shared<const std::string>(file_->Read(fileSent_, count));
    if (bytes->size() < count) throw Error(ErrorNumber::DeviceIO, "Cannot read the rest of a file");
    fileSent_ += count;
    if (count == left) file_.reset();
    Respond(std::move(head), std::move(bytes));
}

void WebConnection::ReturnJPG(CanvasWebServer& canvas) {
    Guard("ReturnJPG", [&] {
        const SharedBytes bytes = canvas.JPEGData();
        if (bytes->empty()) return Send404();
        Respond(PictureHead(canvas.LastModified(), bytes->size()), bytes);
    });
}

void WebConnection::Send404() {
    Guard("Send404", [&] { Respond(NotFoundHead(), nullptr); });
}

void WebConnection::Respond(std::string head, SharedBytes body) {
    bytesSent_ += head.size() + (body ? body->size() : 0);
    const bool gone = socket_->Send(std::move(head), std::move(body));
    if (!keepAlive_ && !file_)
        Finish();
    else if (gone && (file_ || HeadEnd() != buffer_.npos))
        socket_->NotifySent();
}

/// Closes without spoiling the arrival of what was sent. Nothing is read from the connection any more.
void WebConnection::Finish() {
    closing_ = true;
    buffer_.clear();
    searched_ = 0;
    lastArrivalTime_ = modTime::Clock();
    socket_->CloseWhenSent();
}

/// Requests that come in drop by drop keep nobody: only what the client takes counts.
void WebConnection::CloseIfIdle(double now) {
    if (State() == 0) return;
    if (Store(bytesArrived_, socket_->BytesArrived())) lastArrivalTime_ = now;
    const bool goodbye = closing_ && bytesArrived_ >= bytesSent_;
    const double patience = goodbye ? FarewellSeconds : IdleSeconds;
    if ((now - lastArrivalTime_) * modTime::SecondsPerDay > patience) ForceClose();
}

void WebConnection::RestartTimes(double now) {
    lastActivityTime_ = now;
    lastArrivalTime_ = now;
}

}  // namespace tessaloom
