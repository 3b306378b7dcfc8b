#include "publish/InetFTP.h"

#include <gmock/gmock.h>

#include "support/FakeFtpClients.h"
#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"

namespace tessaloom::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Answer = FakeFtpClients::Answer;
using Stages = std::vector<std::string>;

const std::string Local = "FTPPsh07-77.tmp", Remote = "cam/FTPPsh07-77.tmp";

struct Disk : MemoryFileSystem {
    bool full = false;
    bool WriteFile(std::string_view path, std::string_view bytes) override {
        return !full && MemoryFileSystem::WriteFile(path, bytes);
    }
};

struct Machine {
    FakeTime time;
    Disk files;
    FakeFtpClients server;
    InetFTP ftp{files, server};
    InetFTP::Order order{.remoteFolder = "cam", .remoteFile = "live.jpg", .canvasIndex = 7};
    Stages stages;

    Machine() { ftp.SetAccount({"host", "user", "secret", true}); }

    bool Send(std::string_view bytes) { return ftp.SendDataFile({bytes.begin(), bytes.end()}, order); }

    /// Ticks, each `seconds` after the one before; notes the stages.
    void Run(double seconds = 0.01, int ticks = 40) {
        for (int i = 0; i < ticks; ++i) {
            time.Advance(seconds);
            server.Poll();
            ftp.TimerEvent();
            if (stages.empty() || stages.back() != ftp.Stage()) stages.push_back(ftp.Stage());
        }
    }
    int State() const { return static_cast<int>(ftp.CurrentState()); }
};

TEST(InetFTP, TakesTheStagesOfEachMode) {
    const Stages start{"Not Initialized -- Send File", "Connecting", "Connect Complete",
                       "Connected -- Send File",       "Storing",    "Store Complete"};
    const Stages deleting{"Deleting", "Delete Error"}, renaming{"Renaming", "Rename Complete"},
        end{"File Send Complete", "Disconnecting", "Disconnected"};
    const struct {
        int mode;
        std::vector<Stages> parts;
        Stages commands;
    } rows[] = {
        {InetFTP::DeleteAndRename,
         {start, deleting, renaming, end},
         {"STOR " + Remote, "DELE cam/live.jpg", "RENAME " + Remote + " cam/live.jpg"}},
        {InetFTP::RenameOver,
         {start, renaming, end},
         {"STOR " + Remote, "RENAME " + Remote + " cam/live.jpg"}                     },
        {InetFTP::Direct,          {start, end}, {"STOR cam/live.jpg"}                },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.mode);
        Machine at;
        at.order.mode = row.mode;
        ASSERT_TRUE(at.Send("picture"));
        EXPECT_EQ(at.files[Local].bytes, "picture");
        at.Run();
        Stages expected;
        for (const Stages& part : row.parts) expected.insert(expected.end(), part.begin(), part.end());
        EXPECT_EQ(at.stages, expected);
        Stages commands = row.commands;
        commands.insert(commands.begin(), "LOGIN host user passive");
        commands.push_back("QUIT");
        EXPECT_EQ(at.server.commands, commands);
        EXPECT_EQ(at.server.stored["cam/live.jpg"], "picture");
        EXPECT_FALSE(at.files.FileExists(Local));
        EXPECT_EQ(at.State(), 10);
    }
}

// Every answer that can fail or stay out: how that shows, and that the next upload arrives all the same.
TEST(InetFTP, BeginsAfreshAfterEveryFailure) {
    constexpr auto Ok = Answer::Complete, Refused = Answer::Error, Mute = Answer::None, Lost = Answer::Lost;
    const struct {
        std::deque<Answer> answers;
        double limit;  // seconds until it is given up
        std::string stage, status;
        int state;
    } rows[] = {
        {{Refused, Refused, Refused}, 0,   "Connect Error",       "550 Refused",                                  10},
        {{Mute, Mute, Mute},          360, "Timeout: Connect",    "Failed to connect to FTP server in 2 minutes", 10},
        {{Ok, Refused},               0,   "Store Error",         "550 Refused",                                  10},
        {{Ok, Lost},                  0,   "Store Error",         "FTP disconnected unexpectedly",                10},
        {{Ok, Mute},                  600, "Timeout: Store",      "File send exceeded 10 minutes",                10},
        {{Ok, Ok, Mute},              60,  "Timeout: Delete",     "File delete exceeded 1 minute",                10},
        {{Ok, Ok, Ok, Mute},          60,  "Timeout: Rename",     "File rename exceeded 1 minute",                10},
        {{Ok, Ok, Ok, Refused},       0,   "File Send Complete",  "550 Refused",                                  35},
        {{Ok, Ok, Ok, Lost},          0,   "Disconnected",        "Logging out",                                  10},
        {{Ok, Ok, Ok, Ok, Refused},   30,  "Keep Alive Error",    "550 Refused",                                  10},
        {{Ok, Ok, Ok, Ok, Mute},      90,  "Timeout: Keep Alive", "Keep alive no-op timed out",                   10},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.stage + ", " + row.status);
        Machine at;
        at.server.stored["cam/live.jpg"] = "old";
        at.order.keepConnectionOpen = at.order.keepAlive = true;
        at.server.answers = row.answers;
        at.Send("lost");
        at.Run();
        const int seconds = static_cast<int>(row.limit);
        if (seconds > 0) {
            at.Run(1, seconds - 2);
            EXPECT_NE(at.ftp.Stage(), row.stage) << "too early";
            at.Run(1, 6);
        }
        EXPECT_EQ(at.ftp.Stage(), row.stage);
        EXPECT_EQ(at.ftp.Status(), row.status);
        EXPECT_EQ(at.State(), row.state);
        at.server.answers.clear();
        EXPECT_TRUE(at.Send("next"));
        at.Run();
        EXPECT_EQ(at.server.stored["cam/live.jpg"], "next");
        EXPECT_EQ(at.State(), 35);
    }
}

TEST(InetFTP, KeepsTheConnectionAndItsTime) {
    Machine at;
    at.order.keepConnectionOpen = at.order.keepAlive = true;
    at.Send("one");
    at.Run();
    at.server.commands.clear();
    at.Run(1, 100);
    EXPECT_THAT(at.server.commands, ElementsAre("NOOP", "NOOP", "NOOP"));
    at.time.Advance(-3600);
    at.Run(1, 3);
    at.time.Advance(3600);
    at.Run(1, 3);
    EXPECT_EQ(at.server.commands.size(), 3u) << "neither jump is time that passed";

    at.server.commands.clear();
    at.server.answers = {Answer::None};
    at.Send("two");
    at.Run();
    EXPECT_EQ(at.State(), 51);
    EXPECT_FALSE(at.Send("three"));
    EXPECT_EQ(at.ftp.Status(), "Send Rejected -- Currently in state 51");
    at.time.Advance(7200);
    at.Run();
    EXPECT_EQ(at.State(), 51) << "time-outs are measured across normal time";
    at.ftp.Shutdown();
    EXPECT_EQ(at.State(), 0);
    EXPECT_EQ(at.server.clients, 0);

    at.server.commands.clear();
    at.Send("four");
    at.Run();
    at.ftp.SetAccount({"other", "user", "secret", true});
    at.Send("five");
    at.Run();
    EXPECT_EQ(at.server.stored["cam/live.jpg"], "five");
    EXPECT_EQ(std::ranges::count(at.server.commands, "LOGIN other user passive"), 1);
    at.server.LoseConnections();
    EXPECT_EQ(at.ftp.Status(), "FTP disconnected unexpectedly");
    EXPECT_EQ(at.State(), 10);

    at.Send("six");
    at.Run();
    at.ftp.LogOutWhenDone();
    at.Run();
    EXPECT_EQ(at.State(), 10) << "a connection that is no longer wanted is ended";
}

TEST(InetFTP, CountsAttemptsAndMindsTheLocalFile) {
    Machine at;
    at.server.answers = {Answer::Error, Answer::Error};
    at.Send("picture");
    at.Run(0.01, 2);
    EXPECT_EQ(at.ftp.Status(), "Logging into FTP server");
    at.Run(0.01, 2);
    EXPECT_EQ(at.ftp.Status(), "Logging into FTP server -- Attempt #2");
    at.Run();
    EXPECT_EQ(at.server.stored["cam/live.jpg"], "picture") << "the third attempt";

    at.files.full = true;
    at.stages.clear();
    at.server.commands.clear();
    at.Send("unsaved");
    at.Run();
    EXPECT_THAT(at.stages, ::testing::Contains("Local store error."));
    EXPECT_THAT(at.server.commands, ElementsAre("LOGIN host user passive", "QUIT"));
}

}  // namespace
}  // namespace tessaloom::testing
