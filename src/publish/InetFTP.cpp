#include "publish/InetFTP.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "core/ErrorReport.h"
#include "core/modNumbers.h"
#include "platform/Bytes.h"
#include "platform/FileSystem.h"
#include "time/modTime.h"

namespace tessaloom {
namespace {

constexpr std::string_view Module = "InetFTP.cls";
constexpr int MostAttempts = 3;
constexpr double KeepAliveSeconds = 30;
constexpr double NormalTimeSeconds = 10;  ///< A longer step of the clock between two events is a jump.

std::string Numbered(std::string_view text, int number) {
    return std::string(text).append(std::to_string(number));
}

int NumberOf(InetFTP::State state) { return static_cast<int>(state); }

}  // namespace

/// What a waiting state does with the answer, or without one.
struct InetFTP::Wait {
    State state;
    int seconds;  ///< After which the answer counts as lost.
    std::string_view doneStage, errorStage;
    State afterDone;
    State afterError;  ///< `Idle`: the upload is given up.
    std::string_view lateStage, lateStatus;
};

using enum InetFTP::State;

// clang-format off
const InetFTP::Wait InetFTP::Waits[] = {
    {ConnectWait,    120, "Connect Complete",    "Connect Error",    Connected,        Connect,
                          "Timeout: Connect",    "Failed to connect to FTP server in 2 minutes"},
    {KeepAliveWait,   60, "Keep Alive Complete", "Keep Alive Error", ConnectedWaiting, Idle,
                          "Timeout: Keep Alive", "Keep alive no-op timed out"},
    {StoreWait,      600, "Store Complete",      "Store Error",      Delete,           Idle,
                          "Timeout: Store",      "File send exceeded 10 minutes"},
    // a missing file is no failure
    {DeleteWait,      60, "Delete Complete",     "Delete Error",     Rename,           Rename,
                          "Timeout: Delete",     "File delete exceeded 1 minute"},
    {RenameWait,      60, "Rename Complete",     "Rename Error",     SendComplete,     SendComplete,
                          "Timeout: Rename",     "File rename exceeded 1 minute"},
    // a connection that breaks is ended, too
    {DisconnectWait,  60, "Disconnected",        "Disconnected",     Disconnected,     Disconnected,
                          "Timeout: Disconnect", "Logout exceeded 1 minute"},
};
// clang-format on

InetFTP::InetFTP(FileSystem& files, FtpClients& clients) : files_(files), clients_(clients) {}

InetFTP::~InetFTP() { Shutdown(); }

void InetFTP::SetAccount(const FtpAccount& account) {
    if (account_ == account) return;
    account_ = account;
    ResetConnection();
}

bool InetFTP::MaySend() {
    if (state_ == State::Idle || state_ == State::Disconnected || IdleConnection()) return true;
    status_ = Numbered("Send Rejected -- Currently in state ", NumberOf(state_));
    return false;
}

bool InetFTP::SendDataFile(std::vector<std::uint8_t> bytes, Order order) {
    return Trap({Module, "SendDataFile"}, [&] {
        if (!MaySend()) return false;
        EndUpload();
        order_ = std::move(order);
        bytes_ = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
        SaveLocally();
        attempts_ = 0;
        failed_ = false;
        steps_.clear();
        sendRequested_ = true;
        return true;
    });
}

// Without a connection there is nothing to reset.
void InetFTP::ResetConnection() { resetRequested_ = NumberOf(state_) >= NumberOf(State::Connect); }

void InetFTP::LogOutWhenDone() { order_.keepConnectionOpen = false; }

void InetFTP::TimerEvent() {
    if ((state_ == State::Idle || state_ == State::Disconnected) && !sendRequested_) return;
    Trap({Module, "TimerEvent"}, [&] {
        ReadClock();
        Step();
    });
}

void InetFTP::Shutdown() {
    Trap({Module, "Shutdown"}, [&] {
        EndUpload();
        resetRequested_ = false;
        myFTP_.reset();
        if (state_ == State::Idle) return;
        Show("Idle");
        Enter(State::Idle);
    });
}

// --- Events of the client ---

void InetFTP::myFTP_State(bool connected, bool expected) {
    if (connected || expected || state_ == State::DisconnectWait) return;
    status_ = "FTP disconnected unexpectedly";
    Complain(status_);
    if (!IdleConnection()) return;
    Show("Disconnected");
    Enter(State::Disconnected);
}

void InetFTP::myFTP_Progress() { result_ = Result::Complete; }

void InetFTP::myFTP_Error(int number, const std::string& description) {
    result_ = Result::Error;
    status_ = description;
    const std::string text = Numbered("Error. Number=", number) + ",Description=" + description;
    if (state_ == State::DeleteWait) return Note(LogLevel::Info, text);
    Complain(text);
}

// --- The machine ---

// A jump of the clock moves the reference times along, so that limits count normal time only.
void InetFTP::ReadClock() {
    const double before = std::exchange(now_, modTime::Clock());
    const double passed = SecondsSince(before);
    if (passed >= 0 && passed <= NormalTimeSeconds) return;
    entered_ += now_ - before;
    lastCommand_ += now_ - before;
}

double InetFTP::SecondsSince(double moment) const { return (now_ - moment) * modTime::SecondsPerDay; }

void InetFTP::Step() {
    switch (state_) {
        case Idle:
            return StepUnconnected("Not Initialized -- Send File");
        case Disconnected:
            return StepUnconnected("Disconnected -- Send File");
        case Connect:
            return StepConnect();
        case Connected:
        case ConnectedWaiting:
            return StepConnected();
        case KeepAlive:
            Act("Sending Keep Alive", "Sending keep-alive no-op");
            Client().NoOp();
            return Command(KeepAliveWait);
        case Store:
            return StepStore();
        case Delete:
            Act("Deleting", "Deleting existing file");
            Client().DeleteFile(RemotePath(order_.remoteFile));
            return Command(DeleteWait);
        case Rename:
            Act("Renaming", "Renaming file");
            Client().RenameFile(RemotePath(TemporaryName()), RemotePath(order_.remoteFile));
            return Command(RenameWait);
        case SendComplete:
            return StepSendComplete();
        case Disconnect:
            Act("Disconnecting", "Logging out");
            Client().LogOut();
            return Command(DisconnectWait);
        case ConnectWait:
        case KeepAliveWait:
        case StoreWait:
        case DeleteWait:
        case RenameWait:
        case DisconnectWait:
            return StepWait(*std::ranges::find(Waits, state_, &Wait::state));
    }
}

void InetFTP::StepUnconnected(std::string_view stage) {
    Show(stage);
    Enter(State::Connect);
}

void InetFTP::StepConnect() {
    ++attempts_;
    Act("Connecting", attempts_ == 1 ? "Logging into FTP server"
                                     : Numbered("Logging into FTP server -- Attempt #", attempts_));
    resetRequested_ = false;
    Client().LogIn(account_);
    Command(State::ConnectWait);
}

void InetFTP::StepConnected() {
    const auto leave = [this](std::string_view stage, State next) {
        Show(stage);
        Enter(next);
    };
    if (resetRequested_) return leave("Connected -- ResetConnection", State::Disconnect);
    if (sendRequested_) return leave("Connected -- Send File", State::Store);
    if (!order_.keepConnectionOpen) return Enter(State::Disconnect);
    if (state_ == State::ConnectedWaiting && order_.keepAlive &&
        SecondsSince(lastCommand_) >= KeepAliveSeconds)
        leave("Connected -- Keep Alive", State::KeepAlive);
}

void InetFTP::StepStore() {
    Show("Store Start");
    if (localFile_.empty() && !SaveLocally()) {
        Act("Local store error.", "Could not save local temp file");
        failed_ = true;
        Complain(status_ + ": " + files_.LastFailure());
        return Enter(State::SendComplete);
    }
    Act("Storing", "Sending file");
    Client().StoreFile(bytes_, RemotePath(order_.mode == Direct ? order_.remoteFile : TemporaryName()));
    Command(State::StoreWait);
}

void InetFTP::StepSendComplete() {
    Show("File Send Complete");
    failing_ = failed_;
    EndUpload();
    Enter(order_.keepConnectionOpen && Client().Connected() ? State::ConnectedWaiting : State::Disconnect);
}

void InetFTP::StepWait(const Wait& wait) {
    switch (result_) {
        case Result::Complete:
            Show(wait.doneStage);
            return StepDone(wait);
        case Result::Error:
            Show(wait.errorStage);
            return StepFailed(wait);
        case Result::None:
            break;
    }
    if (SecondsSince(entered_) < wait.seconds) return;
    Act(wait.lateStage, wait.lateStatus);
    Complain(status_);
    // The answer could still come, and be taken for that of the next command.
    Client().Disconnect();
    if (state_ == State::ConnectWait) return StepFailed(wait);
    GiveUp();
}

void InetFTP::StepDone(const Wait& wait) {
    constexpr State AfterStore[] = {State::Delete, State::Rename, State::SendComplete};  // by mode
    switch (state_) {
        case State::ConnectWait:
            attempts_ = 0;
            break;
        case State::StoreWait:
            return Enter(AfterStore[std::clamp<int>(order_.mode, DeleteAndRename, Direct)]);
        case State::DisconnectWait:
            if (std::exchange(resetRequested_, false)) return Enter(State::Connect);
            break;
        default:
            break;
    }
    Enter(wait.afterDone);
}

void InetFTP::StepFailed(const Wait& wait) {
    if (state_ == State::DisconnectWait) return StepDone(wait);
    failed_ = failed_ || state_ == State::RenameWait;
    const bool lastAttempt = state_ == State::ConnectWait && attempts_ >= MostAttempts;
    if (!lastAttempt && wait.afterError != State::Idle) return Enter(wait.afterError);
    GiveUp();
}

// Stage and status stay, to tell why. The connection is ended even where the server only refused a file: the
// next upload then finds nothing left over from this one.
void InetFTP::GiveUp() {
    if (sendRequested_) Complain("Upload failed. " + stage_ + ": " + status_);
    failing_ = failing_ || sendRequested_;
    Client().Disconnect();
    EndUpload();
    resetRequested_ = false;
    Enter(State::Disconnected);
}

void InetFTP::Act(std::string_view stage, std::string_view status) {
    status_ = status;
    Show(stage);
}

void InetFTP::Show(std::string_view stage) {
    stage_ = stage;
    if (steps_.size() == MostShown) steps_.pop_front();
    steps_.push_back({now_, stage_, status_});
}

void InetFTP::Command(State wait) {
    result_ = Result::None;
    lastCommand_ = now_;
    Enter(wait);
}

void InetFTP::Enter(State state) {
    state_ = state;
    entered_ = now_;
    Note(LogLevel::Debug, Numbered("New State. myState=", NumberOf(state)));
}

void InetFTP::Note(LogLevel level, std::string_view text) const {
    Log(level, Numbered("FTP push of canvas ", order_.canvasIndex).append(": ").append(text));
}

/// A server that is away for a night is no news each minute.
void InetFTP::Complain(std::string_view text) const {
    Note(failing_ ? LogLevel::Debug : LogLevel::Warning, text);
}

FtpClient& InetFTP::Client() {
    if (!myFTP_) myFTP_ = clients_.MakeClient(*this);
    return *myFTP_;
}

void InetFTP::EndUpload() {
    sendRequested_ = false;
    bytes_.reset();
    DropLocalFile();
}

bool InetFTP::SaveLocally() {
    const std::string name = TemporaryName();
    if (files_.WriteFile(name, AsText(*bytes_))) {
        localFile_ = name;
        return true;
    }
    files_.DeleteFile(name, true);
    return false;
}

void InetFTP::DropLocalFile() {
    if (!localFile_.empty()) files_.DeleteFile(std::exchange(localFile_, {}), true);
}

std::string InetFTP::TemporaryName() const {
    return "FTPPsh" + modNumbers::FormatNI(order_.canvasIndex, "00") + "-" + clients_.ProcessMark() + ".tmp";
}

std::string InetFTP::RemotePath(std::string_view file) const {
    const std::string& folder = order_.remoteFolder;
    if (folder.empty()) return std::string(file);
    return std::string(folder).append(folder.ends_with('/') ? "" : "/").append(file);
}

}  // namespace tessaloom
