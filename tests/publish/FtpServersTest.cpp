#include <malloc.h>

#include "core/Log.h"
#include "platform/curl/CurlFtpClients.h"
#include "publish/InetFTP.h"
#include "support/FakeTime.h"
#include "support/FtpServers.h"
#include "support/MemoryFileSystem.h"
#include "support/ScriptedFtpServer.h"

// The upload machine over the network: to real server programs, and to one that does what it likes.

namespace tessaloom::testing {
namespace {

using Fault = ScriptedFtpServer::Fault;
using State = InetFTP::State;

std::string Noise(std::size_t bytes) {
    std::string noise(bytes, '\0');
    std::minstd_rand random(static_cast<unsigned>(bytes));
    for (char& c : noise) c = static_cast<char>(random() >> 8);
    return noise;
}

struct Disk : MemoryFileSystem {
    bool full = false;
    bool WriteFile(std::string_view path, std::string_view bytes) override {
        return !full && MemoryFileSystem::WriteFile(path, bytes);
    }
};

struct Uploader {
    FakeTime time;
    Disk files;
    CurlFtpClients clients;
    InetFTP ftp{files, clients};
    InetFTP::Order order{.remoteFolder = "up", .remoteFile = "live.jpg", .canvasIndex = 1};
    std::string stages;  ///< All that were seen, each with "; ".
    std::string stage, status;

    explicit Uploader(FtpTrust trust = {}) : clients(std::move(trust)) {}

    void Tick(double seconds = 0) {
        time.Advance(seconds);
        clients.Poll();
        ftp.TimerEvent();
        if (std::exchange(stage, ftp.Stage()) != ftp.Stage()) stages += stage + "; ";
        const bool waiting = static_cast<int>(ftp.CurrentState()) % 10 == 1;
        if (waiting) ::poll(nullptr, 0, 1);
    }
    bool Send(const std::string& bytes) { return ftp.SendDataFile({bytes.begin(), bytes.end()}, order); }

    /// Ticks, with `seconds` between them for the clock, until `done`. False when that never comes.
    template <typename Done>
    bool TickUntil(Done done, double seconds = 0) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        do Tick(seconds);
        while (!done() && std::chrono::steady_clock::now() < end);
        return done();
    }
    bool AtRest() const {
        return ftp.CurrentState() == State::Disconnected || ftp.CurrentState() == State::ConnectedWaiting;
    }
    bool Upload(const std::string& bytes, double seconds = 0) {
        return Send(bytes) && TickUntil([&] { return AtRest(); }, seconds);
    }
};

/// What the log holds while it lives.
struct CaughtLog {
    std::string text;
    LogSink before = SetLogSink([this](LogLevel, std::string_view line) { text.append(line).append("\n"); });
    ~CaughtLog() { SetLogSink(before); }
};

void UploadInEveryWay(FtpServer::Kind kind, bool passive) {
    const FtpServer server(kind);
    if (!server.Runs()) GTEST_SKIP() << "the server program does not run here";
    for (const bool keep : {true, false}) {
        Uploader at({server.CertificateFile(), server.SshFolder()});
        at.ftp.SetAccount(server.Account(passive));
        at.order.remoteFolder = server.RemoteFolder();
        at.order.keepConnectionOpen = at.order.keepAlive = keep;
        for (const int mode : {0, 1, 2}) {
            at.order.mode = mode;
            at.order.remoteFile = "a #1 100% \xC3\xBC;type=a.jpg";
            for (const std::size_t bytes : {0, 2'000'001}) {
                SCOPED_TRACE(std::to_string(mode) + " " + std::to_string(bytes));
                const std::string picture = Noise(bytes);
                EXPECT_TRUE(at.Upload(picture));
                EXPECT_EQ(at.ftp.Stage(), keep ? "File Send Complete" : "Disconnected") << at.ftp.Status();
                EXPECT_TRUE(BytesOf(server.Folder() + "/" + at.order.remoteFile) == picture);
            }
        }
        if (keep) {
            for (int i = 0; i < 4; ++i) at.Tick(9);
            EXPECT_TRUE(at.TickUntil([&] { return at.AtRest(); }));
            EXPECT_EQ(at.ftp.Stage(), "Keep Alive Complete") << at.ftp.Status();
        }
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(server.Folder()), {}), 1)
            << "nothing but the picture is left";
    }
}

TEST(FtpServers, TakeUploadsInEveryWay) {
    using enum FtpServer::Kind;
    for (const FtpServer::Kind kind : {Vsftpd, Pyftpdlib})
        for (const bool passive : {true, false}) {
            SCOPED_TRACE(std::to_string(static_cast<int>(kind)) + (passive ? " passive" : " active"));
            UploadInEveryWay(kind, passive);
        }
}

TEST(FtpServers, TakeUploadsOverTls) { UploadInEveryWay(FtpServer::Kind::VsftpdTls, false); }

TEST(FtpServers, TakeUploadsOverTlsFromTheStart) { UploadInEveryWay(FtpServer::Kind::VsftpdImplicit, true); }

TEST(FtpServers, TakeUploadsOverAShell) { UploadInEveryWay(FtpServer::Kind::Sshd, true); }

TEST(FtpServers, MustBeKnownWhereTheyAreVerified) {
    for (const FtpServer::Kind kind : {FtpServer::Kind::VsftpdTls, FtpServer::Kind::Sshd}) {
        const FtpServer server(kind), other(kind);
        if (!server.Runs() || !other.Runs()) GTEST_SKIP() << "the server program does not run here";
        Uploader at({other.CertificateFile(), other.SshFolder()});
        at.ftp.SetAccount(server.Account(true));
        at.order.remoteFolder = server.RemoteFolder();
        EXPECT_TRUE(at.Upload("picture"));
        EXPECT_EQ(at.ftp.Stage(), "Connect Error");
        EXPECT_THAT(at.ftp.Status(), AnyOf(HasSubstr("certificate"), HasSubstr("remote key")));
    }
    // Neither is a connection without protection taken in place of a secured one.
    const FtpServer plain(FtpServer::Kind::Pyftpdlib);
    Uploader at;
    FtpAccount account = plain.Account(true);
    account.server = "ftps://" + account.server;
    at.ftp.SetAccount(account);
    EXPECT_TRUE(at.Upload("picture"));
    EXPECT_EQ(at.ftp.Stage(), "Connect Error") << at.ftp.Status();
}

TEST(FtpServers, RefuseWithoutHarm) {
    const FtpServer server(FtpServer::Kind::Pyftpdlib);
    ASSERT_TRUE(server.Runs());
    CaughtLog log;
    Uploader at;
    const struct {
        const char *server, *user, *password, *folder, *file, *stage;
    } rows[] = {
        {"",                     "user",   "secret word", "up",      "x",           "Connect Error"},
        {"no such host.invalid", "user",   "secret word", "up",      "x",           "Connect Error"},
        {"127.0.0.1:1",          "user",   "secret word", "up",      "x",           "Connect Error"},
        {"127.0.0.1:99999",      "user",   "secret word", "up",      "x",           "Connect Error"},
        {nullptr,                "us\ner", "secret word", "up",      "x",           "Connect Error"},
        {nullptr,                "user",   "secret word", "nowhere", "x",           "Store Error"  },
        {nullptr,                "user",   "secret word", "up",      "x\r\nDELE y", "Disconnected" },
        {nullptr,                "user",   "secret word", "/up/",    "x",           "Disconnected" },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.server ? row.server : "here") + " " + row.folder + " " + row.file);
        FtpAccount account = server.Account(true);
        if (row.server) account.server = row.server;
        account.userName = row.user;
        account.password = row.password;
        at.ftp.SetAccount(account);
        at.order.remoteFolder = row.folder;
        at.order.remoteFile = row.file;
        EXPECT_TRUE(at.Upload("picture"));
        EXPECT_EQ(at.ftp.Stage(), row.stage) << at.ftp.Status();
        EXPECT_THAT(at.ftp.Status(), Not(HasSubstr("secret")));
    }
    EXPECT_EQ(BytesOf(server.Folder() + "/x"), "picture");
    EXPECT_THAT(log.text, HasSubstr("New State. myState=51"));
    EXPECT_THAT(log.text, HasSubstr("Error. Number=550,Description=550 "));
    EXPECT_THAT(log.text, Not(HasSubstr("secret")));
}

TEST(FtpServers, AreLedThroughTheStagesOfEachMode) {
    const std::string start =
                          "Connecting; Connect Complete; Connected -- Send File; Storing; Store Complete; ",
                      remove = "Deleting; Delete Error; ", rename = "Renaming; Rename Complete; ",
                      end = "File Send Complete; Disconnecting; Disconnected; ";
    const std::string byMode[] = {start + remove + rename + end, start + rename + end, start + end};
    for (const int mode : {0, 1, 2}) {
        ScriptedFtpServer server;
        Uploader at;
        at.ftp.SetAccount({server.Place(), "user", "hush", true});
        at.order.mode = mode;
        EXPECT_TRUE(at.Upload("picture"));
        EXPECT_EQ(at.stages, "Not Initialized -- Send File; " + byMode[mode]);
        server.Misbehave("PASS", Fault::Refuse, 2);
        at.stages.clear();
        EXPECT_TRUE(at.Upload("picture"));
        EXPECT_THAT(at.stages,
                    StartsWith("Disconnected -- Send File; Connecting; Connect Error; Connecting; Connect "
                               "Error; Connecting; Connect Complete; "));
    }
}

TEST(FtpServers, AreWaitedForSoLong) {
    const struct {
        const char* command;
        int times, seconds;
        const char *stage, *status;
    } rows[] = {
        {"USER", 3, 120, "Timeout: Connect",    "Failed to connect to FTP server in 2 minutes"},
        {"STOR", 1, 600, "Timeout: Store",      "File send exceeded 10 minutes"               },
        {"DELE", 1, 60,  "Timeout: Delete",     "File delete exceeded 1 minute"               },
        {"RNTO", 1, 60,  "Timeout: Rename",     "File rename exceeded 1 minute"               },
        {"QUIT", 1, 60,  "Timeout: Disconnect", "Logout exceeded 1 minute"                    },
        {"NOOP", 1, 60,  "Timeout: Keep Alive", "Keep alive no-op timed out"                  },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.stage);
        ScriptedFtpServer server;
        Uploader at;
        at.ftp.SetAccount({server.Place(), "user", "hush", true});
        at.order.keepConnectionOpen = at.order.keepAlive = *row.command == 'N';
        server.Misbehave(row.command, Fault::Mute, row.times);
        EXPECT_TRUE(at.Send("lost"));
        if (at.order.keepAlive) {
            EXPECT_TRUE(at.TickUntil([&] { return at.AtRest(); }));
            for (int i = 0; i < 29; ++i) at.Tick(1);
            EXPECT_TRUE(at.AtRest()) << "every 30 seconds";
            at.Tick(1);
        }
        for (int left = row.times - 1; left >= 0; --left) {
            EXPECT_TRUE(at.TickUntil([&] { return server.FaultsLeft() == left; }));
            if (left > 0) at.TickUntil([&] { return at.ftp.CurrentState() != State::ConnectWait; }, 1);
        }
        const int state = static_cast<int>(at.ftp.CurrentState());
        for (const int jump : {7200, -3600}) at.Tick(jump);
        EXPECT_FALSE(at.Send("refused"));
        EXPECT_EQ(at.ftp.Status(), "Send Rejected -- Currently in state " + std::to_string(state));
        const double began = at.time.Now();
        EXPECT_TRUE(at.TickUntil([&] { return at.AtRest(); }, 1));
        EXPECT_NEAR((at.time.Now() - began) * 86400, row.seconds, 3) << "of normal time";
        EXPECT_EQ(at.ftp.Stage(), row.stage);
        EXPECT_EQ(at.ftp.Status(), row.status);
        EXPECT_TRUE(at.Upload("next"));
        EXPECT_EQ(server.File("up/live.jpg"), "next");
    }
}

TEST(FtpServers, MayBeLostAndChanged) {
    ScriptedFtpServer server, other;
    Uploader at;
    at.ftp.SetAccount({server.Place(), "user", "hush", true});
    at.order.keepConnectionOpen = true;
    at.order.mode = InetFTP::Direct;
    server.Misbehave("226", Fault::ReplyAndClose);
    EXPECT_TRUE(at.Upload("one"));
    EXPECT_TRUE(at.TickUntil([&] { return at.ftp.CurrentState() == State::Disconnected; }));
    EXPECT_EQ(at.ftp.Status(), "FTP disconnected unexpectedly");
    EXPECT_TRUE(at.Upload("two"));
    at.ftp.SetAccount({other.Place(), "user", "hush", true});
    at.stages.clear();
    EXPECT_TRUE(at.Upload("three"));
    EXPECT_EQ(server.File("up/live.jpg") + other.File("up/live.jpg"), "twothree");
    EXPECT_THAT(at.stages,
                StartsWith("Connected -- ResetConnection; Disconnecting; Disconnected; Connecting; "));
    at.files.full = true;
    at.order.keepAlive = true;
    at.stages.clear();
    EXPECT_TRUE(at.Upload("unsaved"));
    EXPECT_EQ(at.stages, "Connected -- Send File; Local store error.; File Send Complete; ");
    EXPECT_EQ(at.ftp.Status(), "Could not save local temp file");
    EXPECT_TRUE(at.TickUntil([&] { return at.ftp.CurrentState() == State::KeepAliveWait; }, 9));
    at.ftp.LogOutWhenDone();
    EXPECT_TRUE(at.TickUntil([&] { return at.ftp.CurrentState() == State::Disconnected; }));
}

// Whatever the server does at whatever point, the next upload arrives.
TEST(FtpServers, MayMisbehaveAtEveryStep) {
    ScriptedFtpServer server;
    CaughtLog log;
    for (const bool keep : {false, true}) {
        Uploader at;
        at.ftp.SetAccount({server.Place(), "user", "hush", true});
        at.order.keepConnectionOpen = keep;
        int number = 0;
        for (const Fault fault : {Fault::Mute, Fault::Garbage, Fault::ManyLines, Fault::TwoReplies,
                                  Fault::Close, Fault::ReplyAndClose, Fault::Refuse, Fault::Endless})
            for (const char* command :
                 {"", "USER", "PASS", "PWD", "TYPE", "EPSV", "STOR", "226", "DELE", "RNFR", "RNTO", "QUIT"}) {
                SCOPED_TRACE(std::string(command) + " " + std::to_string(static_cast<int>(fault)));
                server.Misbehave(command, fault);
                EXPECT_TRUE(at.Upload("wrong", fault == Fault::Mute ? 5 : 0)) << "it is not over";
                if (fault == Fault::ManyLines) {
                    EXPECT_EQ(server.File("up/live.jpg"), "wrong") << "no fault at all";
                }
                server.Misbehave("", Fault::None, 0);
                const std::string picture = Noise(1000) + std::to_string(++number);
                for (int attempt = 0; attempt < 2 && server.File("up/live.jpg") != picture; ++attempt)
                    EXPECT_TRUE(at.Upload(picture));
                EXPECT_TRUE(server.File("up/live.jpg") == picture)
                    << at.ftp.Stage() << ", " << at.ftp.Status();
            }
    }
    EXPECT_THAT(log.text, Not(HasSubstr("hush")));
}

TEST(FtpServers, LeaveNothingBehindAfterAThousandUploads) {
    ScriptedFtpServer server;
    Uploader at;
    at.ftp.SetAccount({server.Place(), "user", "hush", true});
    const auto count = [](const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder), {});
    };
    const std::string picture = Noise(20'000);
    const auto threads = count("/proc/self/task");
    long handles = 0, bytes = 0;
    for (int upload = 0; upload < 1000; ++upload) {
        at.order.keepConnectionOpen = upload % 4 != 0;
        at.order.mode = upload % 3;
        ASSERT_TRUE(at.Upload(picture));
        if (upload != 100) continue;
        handles = count("/proc/self/fd");
        bytes = static_cast<long>(mallinfo2().uordblks);
    }
    EXPECT_TRUE(server.File("up/live.jpg") == picture);
    at.ftp.Shutdown();
    while (count("/proc/self/task") > threads) {
        at.clients.Poll();
        ::poll(nullptr, 0, 1);
    }
    EXPECT_LE(count("/proc/self/fd"), handles);
    EXPECT_LT(static_cast<long>(mallinfo2().uordblks), bytes + 200'000);
}

}  // namespace
}  // namespace tessaloom::testing
