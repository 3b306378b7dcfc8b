#include <sys/resource.h>

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixSockets.h"
#include "publish/RequestHead.h"
#include "publish/VideoStreaming.h"
#include "publish/WebConnection.h"
#include "publish/WebServer.h"
#include "script/host/Script.h"
#include "support/CaughtReports.h"
#include "support/RecordingScriptEngine.h"
#include "support/TemporaryFolder.h"
#include "support/TestPlatform.h"
#include "support/WebClient.h"

namespace tessaloom::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view KeepAlive = " HTTP/1.1\r\nHost: x\r\ncOnnection: Keep-Alive\r\n\r\n";
constexpr std::string_view Secret = "nobody may read this";
constexpr std::string_view NotFound =
    "HTTP/1.0 404 Not Found\r\nServer: Tessaloom Web Server\r\nDate: 1/15/2026 9:05:07 AM\r\n"
    "Content-Type: text/html\r\nContent-Length: 0\r\n\r\n";

/// A portfolio on real files and sockets; only the clock, the codec and the script are not.
struct WebServerTest : TestPlatform, ::testing::Test {
    TemporaryFolder folder;
    PosixFileSystem disk;
    ProfileFiles documents{disk};
    PosixSockets net;
    Platform real{disk,    documents,  locale, time,         fonts, pictureLoader, jpegCodec, dialogs,
                  desktop, mainWindow, timer,  urlTransfers, net};
    RecordingScriptEngine engine;
    Portfolio portfolio{real};
    WebServer& server = portfolio.WebServer();
    CanvasWebServer& page = portfolio.Canvas(3).VideoStreaming().CanvasWebServer();
    const int port = FreePort();

    WebServerTest() {
        time.Set(FakeTime::FirstDay, 9, 5, 7.25);
        portfolio.SetFileName(folder / "p.por");
        portfolio.Script().SetEngine(&engine);
        fs::create_directories(folder / "web/sub");
        Write("web/index.htm", "home");
        Write("web/sub/a b.TXT", "text");
        Write("secret.txt", Secret);
        Canvas& canvas = portfolio.Canvas(3);
        canvas.SetName("Pier \"3\"");
        canvas.SetWidthHeight(40, 30);
        canvas.SetEnabled(true);
        page.SetFileName("Live.jpg");
        page.SetInterval(5);
        page.SetEnabled(true);
        server.SetPort(port);
        server.SetWebPath(folder / "web");
        server.SetAllowNonCanvasServes(true);
        server.SetEnabled(true);
        Tick(0);
    }

    void Write(const std::string& name, std::string_view bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    void Tick(double seconds) {
        time.Advance(seconds);
        portfolio.SetCaptureTime(time.Now());
        portfolio.UpdateImages();
        portfolio.UpdateOtherPost();
    }
    std::unique_ptr<WebClient> Connect() {
        return std::make_unique<WebClient>(port, [this] { net.Dispatch(); });
    }
    /// The connections of the server, once they have become `expected`, or nothing happens any more.
    int Connections(int expected) {
        pollfd wait{net.Number(), POLLIN, 0};
        while (server.Connections() != expected && ::poll(&wait, 1, 5000) > 0) net.Dispatch();
        return server.Connections();
    }
    /// Until nothing happens any more.
    void DispatchAll() {
        pollfd wait{net.Number(), POLLIN, 0};
        while (::poll(&wait, 1, 0) > 0) net.Dispatch();
    }
    /// What comes back on a connection of its own, until it closes.
    std::string Ask(std::string_view request) {
        const auto client = Connect();
        client->Send(request);
        return client->Rest();
    }
    std::string Get(std::string_view path) {
        return Ask(std::string("GET ").append(path).append(" HTTP/1.1\r\n\r\n"));
    }
    /// Kilobytes of memory that this program occupies.
    static long Resident() {
        long size = 0, pages = 0;
        std::ifstream("/proc/self/statm") >> size >> pages;
        return pages * (sysconf(_SC_PAGESIZE) / 1024);
    }
    static std::string Body(const std::string& response) {
        return response.substr(std::min(response.size(), response.find("\r\n\r\n") + 4));
    }
};

TEST_F(WebServerTest, AnswersToTheByte) {
    const auto success = [](std::string type, std::string more, const std::string& body) {
        return "HTTP/1.1 200 OK\r\nServer: Tessaloom Web Server\r\nDate: 1/15/2026 9:05:07 "
               "AM\r\nContent-Type: " +
               type +
               "\r\nPragma: no-cache\r\ncache-control: no-cache, must-revalidate\r\n"
               "Cache-control: no-cache, must-revalidate\r\nExpires: Mon, 26 Jul 1997 05:00:00 GMT\r\n" +
               more + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    };
    const std::string jpeg(*page.JPEGData());
    const std::string picture = success("image/jpeg", "Last-Modified: 1/15/2026 9:05:07 AM\r\n", jpeg);
    const std::string list = "[{\"file\": \"Live.jpg\", \"name\": \"Pier \\\"3\\\"\"}]\n";
    const std::string home = success("text/html", "", "home"), notFound(NotFound);
    // clang-format off
    const std::pair<const char*, std::string> cases[] = {
        {"GET / HTTP/1.1",                 home},
        {"get /?a=../b HTTP/1.0",          home},
        {"GETTER index.htm%20 HTTP/1.1",   home},
        {"GET /sub%5Ca%20b.TXT HTTP/1.1",  success("text/plain", "", "text")},
        {"GET /lIVE.jPG?t=1 HTTP/1.1",     picture},
        {"GET /%4cive.jpg HTTP/1.1",       picture},
        {"GET /canvases.json HTTP/1.1",    success("text/plain", "", list)},
        {"GET /a..b HTTP/1.1",             notFound},
        {"GET /sub HTTP/1.1",              notFound},
        {"GET /Live.jpg HTTP/9 HTTP/1.1",  notFound},
        {"GET /%zz HTTP/1.1",              notFound},
        {"HEAD / HTTP/1.1",                ""},
        {"GET /",                          ""},
        {"GET HTTP/1.1",                   ""},
        {"",                               ""},
    };
    // clang-format on
    for (const auto& [line, response] : cases)
        EXPECT_EQ(Ask(std::string(line) + "\r\n\r\n"), response) << line;
    Write("web/canvases.json", "own");
    EXPECT_EQ(Body(Get("/canvases.json")), "own");

    modNumbers::InitNumberFormat(GermanLocale());
    EXPECT_THAT(Get("/Live.jpg"), HasSubstr("\r\nDate: 15.01.2026 09:05:07\r\n"));
    server.SetAllowNonCanvasServes(false);
    EXPECT_EQ(Get("/"), "");
    EXPECT_EQ(Get("/canvases.json"), "");
    EXPECT_EQ(Body(Get("/Live.jpg")), jpeg);
    page.SetEnabled(false);
    EXPECT_EQ(Get("/Live.jpg"), "");
}

TEST_F(WebServerTest, EncodesAgainWhenThePictureIsOlderThanItsInterval) {
    const auto encodedAfter = [&](double seconds) {
        time.Advance(seconds);
        Get("/live.jpg");
        return jpegCodec.encoded;
    };
    EXPECT_EQ(encodedAfter(0), 1);
    EXPECT_EQ(encodedAfter(5), 1);
    EXPECT_EQ(encodedAfter(0.01), 2);
    Tick(-3600);
    EXPECT_EQ(encodedAfter(0), 3) << "a picture from the future is not fresh";
    page.SetInterval(0);
    EXPECT_EQ(encodedAfter(0), 4);
    portfolio.Canvas(3).SetEnabled(false);
    EXPECT_THAT(Get("/live.jpg"), StartsWith("HTTP/1.0 404"));
}

TEST_F(WebServerTest, ServesTheOffScheduleFileFromTheWebFolderOrBesideThePortfolio) {
    page.Schedule().SetScheduleMode(Schedule::FromStartTo);
    page.Schedule().SetStopAbsoluteTime(0.25);
    server.SetAllowNonCanvasServes(false);
    EXPECT_EQ(Get("/live.jpg"), NotFound);
    Write("offair.jpg", "closed");
    EXPECT_THAT(Get("/live.jpg"), HasSubstr("Content-Type: image/jpeg"));
    EXPECT_EQ(Body(Get("/live.jpg")), "closed");
    Write("web/offair.jpg", "back soon");
    EXPECT_EQ(Body(Get("/live.jpg")), "back soon");
    page.SetOffScheduleFile("../secret.txt");
    EXPECT_EQ(Get("/live.jpg"), NotFound);
    page.SetOffScheduleFile(" ");
    EXPECT_EQ(Body(Get("/live.jpg")), "home");
}

TEST_F(WebServerTest, PutsRequestsTogetherHoweverTheyArrive) {
    std::string requests, responses;
    for (const char* path : {"/", "/Live.jpg", "/none", "/sub/a%20b.TXT"}) {
        requests.append("GET ").append(path).append(KeepAlive);
        responses += Get(path);
    }
    for (std::size_t split = 0; split <= requests.size(); ++split) {
        const auto client = Connect();
        client->Send(std::string_view(requests).substr(0, split));
        client->Send(std::string_view(requests).substr(split));
        std::string got;
        for (int i = 0; i < 4; ++i) got += client->Response();
        ASSERT_EQ(got, responses) << split;
    }
    const auto dropwise = Connect();
    for (const char c : requests) dropwise->Send({&c, 1});
    dropwise->Send("GET / HTTP/1.1\r\n\r\n and more that nobody reads");
    EXPECT_EQ(dropwise->Rest(), responses + Get("/"));
}

/// A request that asks to keep the connection although `fields` speak of a body.
std::string RequestWithBody(std::string_view fields, std::string_view path = "/") {
    return std::string("GET ")
        .append(path)
        .append(" HTTP/1.1\r\n")
        .append(fields)
        .append("\r\nConnection: keep-alive\r\n\r\n");
}

TEST_F(WebServerTest, NeverReadsABodyAsTheNextRequest) {
    const std::string home = Get("/"), next = "GET /none" + std::string(KeepAlive);
    const auto kept = Connect();
    kept->Send(RequestWithBody("Content-Length: 0") + next);
    EXPECT_EQ(kept->Response(), home);
    EXPECT_EQ(kept->Response(), NotFound) << "what has no body keeps the connection";
    for (const std::string& fields :
         {"Content-Length: " + std::to_string(next.size()), std::string("Content-Length: 1000000000000"),
          std::string("Transfer-Encoding: chunked"), std::string("Expect: 100-continue\r\nContent-Length: 9"),
          std::string("Content-Length: 0\r\nContent-Length : 9")}) {
        SCOPED_TRACE(fields);
        const auto requests = server.Requests();
        const auto together = Connect(), later = Connect(), never = Connect();
        together->Send(RequestWithBody(fields) + next + next);
        EXPECT_EQ(together->Rest(), home);
        later->Send(RequestWithBody(fields));
        EXPECT_EQ(later->Response(), home);
        later->Send(next);
        later->Send(next);
        EXPECT_EQ(later->Rest(), "");
        never->Send(RequestWithBody(fields));
        EXPECT_EQ(never->Rest(), home);
        for (const auto* client : {&together, &later, &never}) EXPECT_FALSE((*client)->BrokenOff());
        EXPECT_EQ(server.Requests(), requests + 3);
    }
}

TEST_F(WebServerTest, AnswersWhatWasAskedBeforeARequestThatEndsTheConnection) {
    server.SetAllowNonCanvasServes(false);
    const std::string picture = Get("/Live.jpg"), ask = "GET /Live.jpg" + std::string(KeepAlive);
    // clang-format off
    const std::pair<std::string, std::string> cases[] = {
        {RequestWithBody("Content-Length: 20", "/Live.jpg"),         picture},
        {RequestWithBody("Transfer-Encoding: chunked", "/Live.jpg"), picture},
        {RequestWithBody("Content-Length: 20", "/none"),             ""},
        {"POST /Live.jpg HTTP/1.1\r\nContent-Length: 20\r\n\r\n",    ""},
        {"GET /" + std::string(RequestHead::Limit, 'x'),             ""},
    };
    // clang-format on
    for (const auto& [last, answer] : cases) {
        const auto client = Connect();
        client->Send(ask + ask + ask + last + ask + std::string(100'000, 'x'));
        EXPECT_EQ(client->Rest(), picture + picture + picture + answer) << last.substr(0, 80);
        EXPECT_FALSE(client->BrokenOff()) << last.substr(0, 80);
    }
}

TEST_F(WebServerTest, ReadsNothingOutsideItsFolder) {
    fs::create_symlink("../secret.txt", folder / "web/link.txt");
    fs::create_directory_symlink("..", folder / "web/up");
    fs::create_symlink("sub/a b.TXT", folder / "web/inner.txt");
    const std::string full = folder / "secret.txt";
    // clang-format off
    std::vector<std::string> paths{
        "/link.txt", "/up/secret.txt", "/link.txt%00", "/link.txt/", full, "/" + full, "//" + full, "file://" + full,
        "C:" + full, "/%00../secret.txt", "/" + std::string(5000, 'a'), "/" + std::string(300, '/') + full};
    // clang-format on
    for (const std::string dots :
         {"..", "%2e%2e", ".%2E", "%2e.", "%252e%252e", "%c0%ae%c0%ae", ". .", "...."})
        for (const std::string slash : {"/", "\\", "%2f", "%5C", "%255c", "%c0%af", "//", "/./"})
            for (const std::string before :
                 {"/", "", "/sub/", "/sub%2f..%2F", "/up/sub/", "/?/", "/none\\", "/%20"})
                paths.push_back(before + dots + slash + "secret.txt");
    ASSERT_GE(paths.size(), 200U);
    const auto client = Connect();
    for (const std::string& path : paths) {
        const std::string response = client->Get(path);
        EXPECT_THAT(response, Not(HasSubstr(Secret))) << path;
        const bool home = path.starts_with("/?");
        EXPECT_THAT(response, StartsWith(home ? "HTTP/1.1 200" : "HTTP/1.0 404")) << path;
    }
    EXPECT_EQ(Body(client->Get("/inner.txt")), "text");
    server.SetWebPath("");
    EXPECT_THAT(Get("/" + full), StartsWith("HTTP/1.0 404"));
}

TEST_F(WebServerTest, OutlivesAnyRequest) {
    CaughtReports reports;
    const auto head = [](std::size_t bytes) {
        const std::string start = "GET / HTTP/1.1\r\nX: ";
        return start + std::string(bytes - start.size() - 4, 'x') + "\r\n\r\n";
    };
    EXPECT_EQ(Body(Ask(head(16384))), "home");
    EXPECT_EQ(Ask(head(16385)), "");
    EXPECT_EQ(Ask(std::string(100'000, 'G')), "");
    std::mt19937 random(7);
    const std::string alphabet("GET /%2e.?\\\r\n\r\n\0\xFF HTTP/1.1live.jpgconnection: keep-alive", 57);
    for (int round = 0; round < 2000; ++round) {
        std::string request = round % 2 ? "GET /" : "";
        for (auto size = random() % 120; size > 0; --size) request += alphabet[random() % alphabet.size()];
        const auto client = Connect();
        client->Send(request + "\r\n\r\nPOST\r\n\r\n");
        EXPECT_THAT(client->Rest(), Not(HasSubstr(Secret)));
    }
    EXPECT_EQ(Body(Get("/")), "home");
    EXPECT_EQ(reports.Count(), 0);
    Write("web/huge.bin", "");
    fs::resize_file(folder / "web/huge.bin", 1'000'000'000);
    const auto client = Connect();
    client->Send("GET /huge.bin HTTP/1.1\r\n\r\n");
    fs::resize_file(folder / "web/huge.bin", 1000);
    EXPECT_THAT(client->Rest(), HasSubstr("Content-Length: 1000000000\r\n"));
    EXPECT_EQ(reports.CountAbout("Cannot read"), 1);
}

TEST_F(WebServerTest, GivesPlacesOfIdleClientsToNewOnes) {
    std::vector<std::unique_ptr<WebClient>> clients;
    for (int i = 0; i < WebServer::PoolSize; ++i) clients.push_back(Connect());
    EXPECT_EQ(Connections(WebServer::PoolSize), WebServer::PoolSize);
    EXPECT_EQ(Get("/"), "") << "nobody has been silent for long enough";
    time.Advance(5.1);
    EXPECT_EQ(Body(clients[0]->Get("/")), "home");
    EXPECT_EQ(Body(Get("/")), "home");
    EXPECT_EQ(Body(clients[0]->Get("/")), "home");
    EXPECT_EQ(clients[1]->Rest(), "") << "the first silent one had to go";
    clients[2]->Send("GET / HT");
    Tick(-3600);
    Tick(59);
    clients[2]->Send("T");
    EXPECT_EQ(Connections(WebServer::PoolSize - 1), WebServer::PoolSize - 1);
    Tick(2);
    EXPECT_EQ(server.Connections(), 0) << "silent for a minute, or sending drop by drop";
}

TEST_F(WebServerTest, SendsLargeFilesToSlowClientsWithoutReadingMoreRequests) {
    const std::string large(20'000'000, 'L');
    Write("web/large.bin", large);
    const auto slow = Connect();
    const std::string request = "GET /large.bin" + std::string(KeepAlive);
    slow->Send(request + request);
    EXPECT_EQ(Body(Get("/")), "home") << "meanwhile";
    Tick(50);
    Tick(50);
    EXPECT_EQ(Body(slow->Response()).size(), large.size());
    Tick(61);
    Tick(61);
    EXPECT_LT(slow->Rest().size(), large.size()) << "a client that takes nothing is sent away";
    const auto rude = Connect();
    rude->Send("GET / HTTP/1.1\r\n\r\n");
    EXPECT_EQ(Body(rude->Response()), "home");
    rude->Send("more");
    EXPECT_EQ(Connections(1), 1) << "it has not closed its end";
    Tick(1);
    Tick(6);
    EXPECT_EQ(server.Connections(), 0);
    EXPECT_EQ(Body(Ask("GET /large.bin HTTP/1.1\r\n\r\n" + std::string(100'000, 'x'))), large);
}

TEST_F(WebServerTest, DeliversTheWholeAnswerToClientsThatFirstSendTheirBody) {
    const std::string large(20'000'000, 'L'), body(16'000'000, 'x');
    Write("web/large.bin", large);
    const auto stubborn = Connect();
    EXPECT_TRUE(stubborn->Send(RequestWithBody("Content-Length: 16000000", "/large.bin") + body));
    EXPECT_EQ(Body(stubborn->Rest()), large);
    EXPECT_FALSE(stubborn->BrokenOff());

    const std::string medium(2'000'000, 'M');
    Write("web/medium.bin", medium);
    const auto sleepy = Connect();
    sleepy->Send(RequestWithBody("Content-Length: 5000", "/medium.bin"));
    DispatchAll();
    for (const double seconds : {1, 20, 20}) Tick(seconds);
    sleepy->Send(std::string(5000, 'x'));
    EXPECT_EQ(Body(sleepy->Rest()), medium) << "what is on its way may take a minute";
}

TEST_F(WebServerTest, EndsBodiesThatHaveNoEnd) {
    const auto resident = Resident();
    double seconds = 0;
    WebClient flood(port, [&, calls = 0]() mutable {
        net.Dispatch();
        if (++calls % 50 != 0) return;
        Tick(1);
        ++seconds;
    });
    flood.Send(RequestWithBody("Content-Length: 1000000000000"));
    const std::string part(1'000'000, 'x');
    int parts = 0;
    while (parts < 1000 && flood.Send(part)) ++parts;
    EXPECT_LT(parts, 50) << "megabytes";
    EXPECT_LE(seconds, 10);
    EXPECT_EQ(Body(flood.Rest()), "home");
    EXPECT_EQ(server.Connections(), 0);
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(Resident() - resident, 4096) << "kilobytes";
#endif
    const auto trickle = Connect();
    trickle->Send(RequestWithBody("Transfer-Encoding: chunked"));
    EXPECT_EQ(Body(trickle->Response()), "home");
    for (int i = 0; i < 8 && trickle->Send("x"); ++i) Tick(1);
    EXPECT_EQ(server.Connections(), 0);
}

TEST_F(WebServerTest, TellsTheScriptWhoMayEvenStopIt) {
    engine.procedures = {
        {"WebRequest", 2}
    };
    Write("script.txt", "");
    portfolio.Script().SetFileName(folder / "script.txt");
    portfolio.Script().SetEnabled(true);
    Get("/quiet");
    portfolio.Script().SetAllowWebRequest(true);
    engine.during = [&, depth = 0]() mutable {
        if (depth++ == 0) net.Dispatch();  // as a box in the script lets more come in
    };
    const auto client = Connect();
    client->Send("GET /Live%2ejpg?x=%20" + std::string(KeepAlive) + "GET /sub" + std::string(KeepAlive));
    EXPECT_THAT(client->Response(), StartsWith("HTTP/1.1 200"));
    EXPECT_EQ(client->Response(), NotFound);
    EXPECT_THAT(engine.calls, ElementsAre("WebRequest(\"127.0.0.1\",\"Live%2ejpg?x=%20\")",
                                          "WebRequest(\"127.0.0.1\",\"sub\")"));
    const auto chatty = Connect();
    engine.during = [&] { chatty->Send(std::string(1'000'000, 'x')); };  // comes in while a box is shown
    chatty->Send(RequestWithBody("Content-Length: 1000000"));
    EXPECT_EQ(Body(chatty->Rest()), "home");
    EXPECT_FALSE(chatty->BrokenOff());
    engine.during = [&] { server.SetEnabled(false); };
    EXPECT_EQ(Get("/"), "");
    EXPECT_EQ(client->Rest(), "");
    EXPECT_FALSE(WebClient(port).Connected());
    server.SetEnabled(true);
    EXPECT_EQ(Connect()->Get("/"), "");
    EXPECT_FALSE(server.Enabled());
}

TEST_F(WebServerTest, StaysSwitchedOffWhenItCannotListen) {
    Portfolio other(real);
    other.WebServer().SetPort(port);
    other.WebServer().SetEnabled(true);
    EXPECT_FALSE(other.WebServer().Enabled());
    EXPECT_TRUE(dialogs.shown.empty());
    timer.Tick();
    EXPECT_THAT(
        dialogs.shown,
        ElementsAre("Web Start Error: There was an error starting the web server.  Make sure the port is "
                    "not already in use and the network is available."));
    EXPECT_EQ(Body(Get("/")), "home");
}

TEST_F(WebServerTest, LeaksNothingOverThousandsOfRequestsAndVisitors) {
    const auto descriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto visit = [&](int times) {
        const auto kept = Connect();
        for (int i = 0; i < times; ++i) {
            ASSERT_EQ(Body(kept->Get(i % 2 ? "/" : "/live.jpg")).empty(), false);
            if (i % 4 == 0) Connect()->Send("GET / HT");
            if (i % 4 == 1) Get("/none");
        }
        kept->Leave();
        EXPECT_EQ(Connections(0), 0);
    };
    page.SetInterval(0);
    visit(1000);
    const auto openBefore = descriptors();
    [[maybe_unused]] const long before = Resident();
    visit(6700);  // 10,050 requests together, and as many visitors as a third
    EXPECT_EQ(descriptors(), openBefore);
#ifndef __SANITIZE_ADDRESS__  // which keeps what is freed, and looks for leaks itself
    EXPECT_LT(Resident() - before, 1024) << "kilobytes";
#endif
}

TEST_F(WebServerTest, TurnsVisitorsAwayWhenTheProgramHasNoMoreFiles) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const auto kept = Connect();
    EXPECT_EQ(Body(kept->Get("/")), "home");
    std::vector<std::unique_ptr<WebClient>> waiting;
    for (int i = 0; i < 3; ++i)
        waiting.push_back(std::make_unique<WebClient>(port, [this] { net.Dispatch(); }));
    const int lowestFree = ::dup(0);
    ::close(lowestFree);
    const rlimit none{static_cast<rlim_t>(lowestFree), before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    for (const auto& client : waiting) EXPECT_EQ(client->Rest(), "");
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(Body(kept->Get("/")), "home");
    EXPECT_EQ(Body(Get("/")), "home");
}

}  // namespace
}  // namespace tessaloom::testing
