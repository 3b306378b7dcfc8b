#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/Log.h"
#include "platform/FtpClient.h"

namespace tessaloom {

class FileSystem;

/// Uploads one file after the other to one server: a machine of states that its owner's ticks move along.
///
/// A file appears on the server whole (modes 0 and 1), and the connection stays between uploads when that is
/// asked for. Whatever fails ends in a `Stage` and a `Status`; the next upload begins afresh.
class InetFTP final : private FtpListener {
public:
    /// How a file is replaced on the server.
    enum Mode {
        DeleteAndRename = 0,  ///< Stored under another name; the old file is deleted, the new one renamed.
        RenameOver = 1,       ///< Stored under another name, then renamed over the old file.
        Direct = 2,           ///< Stored under its final name.
    };

    /// What is to be done with the bytes of an upload.
    struct Order {
        std::string remoteFolder;  ///< "" for the folder of the log-in.
        std::string remoteFile;
        int canvasIndex = 0;  ///< Tells the temporary files of several canvases apart.
        int mode = DeleteAndRename;
        bool keepConnectionOpen = false;
        bool keepAlive = false;
    };

    /// The numbers appear in texts and in the log, so they are fixed.
    enum class State {
        Idle = 0,
        Disconnected = 10,
        Connect = 20,
        ConnectWait = 21,
        Connected = 30,
        ConnectedWaiting = 35,
        KeepAlive = 40,
        KeepAliveWait = 41,
        Store = 50,
        StoreWait = 51,
        Delete = 60,
        DeleteWait = 61,
        Rename = 70,
        RenameWait = 71,
        SendComplete = 80,
        Disconnect = 100,
        DisconnectWait = 101,
    };

    /// One step of an upload, as it was shown.
    struct Shown {
        double moment;
        std::string stage, status;
    };

    /// Steps that are remembered: more than one upload takes, with all its attempts.
    static constexpr std::size_t MostShown = 50;

    /// files: for the local temporary file, in the current folder. Both outlive this object.
    InetFTP(FileSystem& files, FtpClients& clients);
    ~InetFTP();
    InetFTP(const InetFTP&) = delete;
    InetFTP& operator=(const InetFTP&) = delete;

    /// The server of the next connection. One that is open to another server, or as another user, is ended
    /// before the next upload.
    void SetAccount(const FtpAccount& account);

    /// No transfer is in progress; when one is, `Status` becomes "Send Rejected ...".
    bool MaySend();

    /// Begins an upload with the next `TimerEvent`. False, with the `Status` of `MaySend`, while a transfer
    /// is in progress.
    bool SendDataFile(std::vector<std::uint8_t> bytes, Order order);

    /// Ends an open connection and makes a new one, once no transfer is in progress.
    void ResetConnection();

    /// Ends an open connection once no transfer is in progress.
    void LogOutWhenDone();

    /// Takes one step. To be called often, whether or not uploads are due; costs next to nothing when idle.
    void TimerEvent();

    /// Drops the upload in progress, logs out and releases the client.
    void Shutdown();
    void UnloadClass() { Shutdown(); }

    State CurrentState() const { return state_; }

    /// The short name of the present step, and what goes on or the last error.
    const std::string& Stage() const { return stage_; }
    const std::string& Status() const { return status_; }

    /// The steps of the last upload, and what followed it, the oldest first.
    const std::deque<Shown>& Steps() const { return steps_; }

    /// An upload was asked for and has not ended yet.
    bool Uploading() const { return sendRequested_; }

    /// Something went wrong in the last upload that ended.
    bool LastFailed() const { return failing_; }

private:
    enum class Result { None = 0, Complete = 1, Error = 2 };
    struct Wait;
    static const Wait Waits[];

    void FtpState(bool connected, bool expected) override { myFTP_State(connected, expected); }
    void FtpComplete() override { myFTP_Progress(); }
    void FtpError(int number, const std::string& description) override { myFTP_Error(number, description); }
    void myFTP_State(bool connected, bool expected);
    void myFTP_Progress();
    void myFTP_Error(int number, const std::string& description);

    bool IdleConnection() const { return state_ == State::Connected || state_ == State::ConnectedWaiting; }
    void ReadClock();
    void Step();
    void StepUnconnected(std::string_view stage);
    void StepConnect();
    void StepConnected();
    void StepStore();
    void StepSendComplete();
    void StepWait(const Wait& wait);
    void StepDone(const Wait& wait);
    void StepFailed(const Wait& wait);
    void Command(State wait);
    void Act(std::string_view stage, std::string_view status);
    void Show(std::string_view stage);
    void GiveUp();
    void Enter(State state);
    void EndUpload();
    void Note(LogLevel level, std::string_view text) const;
    void Complain(std::string_view text) const;
    FtpClient& Client();
    double SecondsSince(double moment) const;
    bool SaveLocally();
    void DropLocalFile();
    std::string RemotePath(std::string_view file) const;
    std::string TemporaryName() const;

    FileSystem& files_;
    FtpClients& clients_;
    std::unique_ptr<FtpClient> myFTP_;  ///< Made with the first log-in.
    FtpAccount account_;                ///< Of the next log-in.
    Order order_;
    FtpClient::Bytes bytes_;  ///< Of the upload asked for or in progress.
    State state_ = State::Idle;
    Result result_ = Result::None;  ///< Of the last command to the server.
    std::string stage_ = "Idle";
    std::string status_;
    std::deque<Shown> steps_;
    std::string localFile_;   ///< "" while there is none.
    double now_ = 0;          ///< As the last `TimerEvent` read the clock (a moment).
    double entered_ = 0;      ///< When the present state was entered.
    double lastCommand_ = 0;  ///< When a command was last sent.
    int attempts_ = 0;        ///< Log-ins tried since the last one that worked, or the last new upload.
    bool sendRequested_ = false;
    bool failed_ = false;   ///< Something went wrong in the upload in progress.
    bool failing_ = false;  ///< It did in the last one, and the log told.
    bool resetRequested_ = false;
};

}  // namespace tessaloom
