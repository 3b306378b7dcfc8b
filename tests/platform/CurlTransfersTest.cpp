#include "platform/curl/CurlTransfers.h"

#include <thread>

#include "support/LocalHttpServer.h"
#include "support/TlsServer.h"

namespace tessaloom::testing {
namespace {

using Connection = LocalHttpServer::Connection;
using State = TransferState;

class CurlTransfersTest : public ::testing::Test {
protected:
    /// Polls until `over`, or until patience ends.
    static void PollUntil(UrlTransfers& all, const std::function<bool()>& over) {
        for (int i = 0; i < 60'000 && !over(); ++i) {
            all.Poll();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_TRUE(over());
    }

    void Finish(UrlTransfer& one) {
        PollUntil(transfers, [&] { return !one.StillExecuting(); });
        transfers.Poll();
    }

    State Fetch(const std::string& address) {
        transfer->Get(address);
        Finish(*transfer);
        return transfer->State();
    }

    static std::string BodyOf(UrlTransfer& one) {
        std::string body;
        for (std::string chunk; !(chunk = one.GetChunk(100'000)).empty(); body += chunk)
            EXPECT_LE(chunk.size(), 100'000U);
        return body;
    }

    /// Sends without end until the other side goes; the bytes that it took are counted.
    LocalHttpServer::Answer Flood(std::string head) {
        return [this, head = std::move(head)](Connection& to) {
            const std::string block(65536, 'x');
            for (bool taken = to.Send(head); taken; taken = to.Send(block)) flooded += block.size();
        };
    }

    std::atomic<std::size_t> flooded = 0;
    LocalHttpServer server;
    CurlTransfers transfers;
    std::unique_ptr<UrlTransfer> transfer = transfers.MakeTransfer();
};

TEST_F(CurlTransfersTest, FetchAResponseInChunksAndTellOfEachState) {
    std::string picture;  // more than one poll takes in
    for (int i = 0; i < 3'300'000; ++i) picture += static_cast<char>(i * 31 >> 3);
    server.Serve("/a picture.jpg", "not asked for like this");
    server.Serve("/a%20picture.jpg", picture);
    std::vector<State> told;
    transfer->OnStateChanged([&](State state) { told.push_back(state); });
    EXPECT_EQ(Fetch("  " + server.Address("/a picture.jpg") + "\n"), State::ResponseCompleted);
    EXPECT_EQ(static_cast<int>(transfer->State()), 12);
    EXPECT_EQ(told.back(), State::ResponseCompleted);
    EXPECT_EQ(std::ranges::count(told, State::ResponseCompleted), 1);
    EXPECT_TRUE(BodyOf(*transfer) == picture);
    EXPECT_EQ(transfer->GetChunk(1), "");
}

TEST_F(CurlTransfersTest, FollowRedirectsAndLogInAsTheAddressSays) {
    const auto moved = [](std::string to) {
        return [to](Connection& other) {
            other.Send(LocalHttpServer::Whole("302 Found", "elsewhere", "Location: " + to + "\r\n"));
        };
    };
    server.Serve("/picture", "here");
    server.On("/five", moved("/four"));
    server.On("/four", moved("/three"));
    server.On("/three", moved("/two"));
    server.On("/two", moved("/one"));
    server.On("/one", moved("/picture"));
    server.On("/six", moved("/five"));
    server.On("/loop", moved("/loop"));
    server.On("/out", moved("file:///etc/hostname"));
    server.On("/locked", [](Connection& to) {
        // "user:p@ss"
        const bool known = to.Request().find("Authorization: Basic dXNlcjpwQHNz") != std::string::npos;
        to.Send(known ? LocalHttpServer::Whole("200 OK", "open")
                      : LocalHttpServer::Whole("401 Unauthorized", "closed",
                                               "WWW-Authenticate: Basic realm=\"cam\"\r\n"));
    });
    const std::string host = "127.0.0.1:" + std::to_string(server.Port());
    const struct {
        std::string address;
        const char* body;     // "" when it fails
        const char* failure;  // part of the reason
    } rows[] = {
        {host + "/picture",                           "here", ""        },
        {server.Address("/five"),                     "here", ""        },
        {server.Address("/six"),                      "",     "redirect"},
        {server.Address("/loop"),                     "",     "redirect"},
        {server.Address("/out"),                      "",     "protocol"},
        {"http://user:p%40ss@" + host + "/locked",    "open", ""        },
        {"http://user:p@ss@" + host + "/locked",      "open", ""        },
        {"http://user:wrong@" + host + "/locked",     "",     "401"     },
        {server.Address("/locked"),                   "",     "401"     },
        {server.Address("/no-such.jpg"),              "",     "404"     },
        {"file:///etc/hostname",                      "",     "protocol"},
        {"ftp://" + host + "/picture",                "",     "protocol"},
        {"http://" + host + "/pic\x01ture",           "",     "URL"     },
        {std::string("http://") + host + '\0' + "/x", "",     "address" },
        {"http://",                                   "",     "URL"     },
        {"",                                          "",     "address" },
        {"http://127.0.0.1:1/",                       "",     "connect" },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.address);
        const State expected = *row.failure ? State::Failed : State::ResponseCompleted;
        EXPECT_EQ(Fetch(row.address), expected) << transfer->Failure();
        EXPECT_EQ(BodyOf(*transfer), row.body);
        EXPECT_THAT(transfer->Failure(), HasSubstr(row.failure));
        EXPECT_EQ(transfer->Failure().empty(), !*row.failure);
        EXPECT_THAT(transfer->Failure(), Not(AnyOf(HasSubstr("wrong"), HasSubstr("/locked"))));
    }
}

TEST_F(CurlTransfersTest, FailOnResponsesThatAreNotWhole) {
    server.On("/short", [](Connection& to) { to.Send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nabc"); });
    server.On("/chunk", [](Connection& to) {
        to.Send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nabcde\r\n");
    });
    server.On("/closed", [](Connection&) {});
    server.On("/noise", [](Connection& to) { to.Send("\x16\x03\x01 what?\r\n\r\n"); });
    server.On("/500", [](Connection& to) { to.Send(LocalHttpServer::Whole("500 Oops", "page")); });
    for (const char* path : {"/short", "/chunk", "/closed", "/noise", "/500"}) {
        EXPECT_EQ(Fetch(server.Address(path)), State::Failed) << path;
        EXPECT_EQ(BodyOf(*transfer), "");
    }
    server.On("/long", [](Connection& to) { to.Send("HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabcdef"); });
    EXPECT_EQ(Fetch(server.Address("/long")), State::ResponseCompleted);
    EXPECT_EQ(BodyOf(*transfer), "abc");
}

TEST_F(CurlTransfersTest, BoundTheBytesOfOneResponseAndOfAll) {
    transfers.SetLimits({.bytes = 1 << 20, .bytesTogether = 3 << 19});
    server.On("/declared", Flood("HTTP/1.1 200 OK\r\nContent-Length: 5000000000\r\n\r\n"));
    server.On("/endless", Flood("HTTP/1.1 200 OK\r\n\r\n"));
    server.On("/head", Flood("HTTP/1.1 200 OK\r\nX-Long: "));
    server.On("/heads", [this](Connection& to) {
        to.Send("HTTP/1.1 200 OK\r\n");
        const std::string line = "X-Line: " + std::string(1000, 'x') + "\r\n";
        while (to.Send(line)) flooded += line.size();
    });
    for (const char* path : {"/declared", "/endless", "/head", "/heads"}) {
        SCOPED_TRACE(path);
        flooded = 0;
        EXPECT_EQ(Fetch(server.Address(path)), State::Failed);
        EXPECT_LT(flooded, 32U << 20) << "what waits between the two sides included";
    }
    server.Serve("/most", std::string(1 << 20, 'a'));
    EXPECT_EQ(Fetch(server.Address("/most")), State::ResponseCompleted);
    const auto second = transfers.MakeTransfer();
    second->Get(server.Address("/most"));
    Finish(*second);
    EXPECT_THAT(second->Failure(), HasSubstr("together"));
    EXPECT_EQ(BodyOf(*transfer).size(), 1U << 20);
    second->Get(server.Address("/most"));
    Finish(*second);
    EXPECT_EQ(second->State(), State::ResponseCompleted) << "the first one was fetched";
}

TEST_F(CurlTransfersTest, GiveUpOnServersThatHoldTheLine) {
    server.On("/silent", [](Connection& to) { to.GoneWithin(-1); });
    server.On("/trickle", [](Connection& to) {
        to.Send("HTTP/1.1 200 OK\r\n\r\n");
        while (!to.GoneWithin(10) && to.Send("x")) {}
    });
    for (const char* path : {"/silent", "/trickle"}) {
        for (const TransferLimits& limits : {
                 TransferLimits{.totalMilliseconds = 300         },
                 TransferLimits{ .stalledSeconds = 1, .stalledBytesPerSecond = 100'000}
        }) {
            transfers.SetLimits(limits);
            EXPECT_EQ(Fetch(server.Address(path)), State::Failed) << path;
            EXPECT_THAT(transfer->Failure(), HasSubstr("in time"));
        }
    }
}

TEST_F(CurlTransfersTest, MayBeCancelledAndDestroyedAtAnyTime) {
    server.On("/silent", [](Connection& to) { to.GoneWithin(-1); });
    server.Serve("/a", "first");
    server.Serve("/b", "second");
    int told = 0;
    transfer->OnStateChanged([&](State) { ++told; });
    transfer->Get(server.Address("/silent"));
    transfers.Poll();
    transfer->Cancel();
    EXPECT_EQ(transfer->State(), State::Idle);
    transfer->Get("");
    transfer->Cancel();
    transfers.Poll();
    EXPECT_EQ(told, 0);

    // A listener that starts another one on itself and ends one that was to be told after it.
    auto other = transfers.MakeTransfer();
    other->OnStateChanged([&](State) { ADD_FAILURE() << "destroyed before"; });
    bool again = true;
    transfer->OnStateChanged([&](State state) {
        if (state != State::Failed || !again) return;
        again = false;
        other.reset();
        transfer->Get(server.Address("/b"));
    });
    transfer->Get("");
    other->Get("");
    transfers.Poll();
    Finish(*transfer);
    EXPECT_EQ(BodyOf(*transfer), "second");

    // One that destroys itself.
    transfer->OnStateChanged([&](State state) {
        if (state == State::ResponseCompleted) transfer.reset();
    });
    transfer->Get(server.Address("/a"));
    PollUntil(transfers, [&] { return !transfer; });

    // One under way when the program ends.
    transfer = transfers.MakeTransfer();
    transfer->Get(server.Address("/silent"));
    transfers.Poll();
}

TEST_F(CurlTransfersTest, HeedNoProxyOfTheEnvironment) {
    LocalHttpServer proxy;
    server.Serve("/a", "direct");
    for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"})
        setenv(name, proxy.Address("").c_str(), 1);
    EXPECT_EQ(Fetch(server.Address("/a")), State::ResponseCompleted);
    for (const char* name : {"http_proxy", "all_proxy", "ALL_PROXY"}) unsetenv(name);
    EXPECT_EQ(BodyOf(*transfer), "direct");
    EXPECT_EQ(proxy.Requests(), 0);
}

TEST_F(CurlTransfersTest, TrustNoUnknownCertificate) {
    TlsServer secure("picture.txt", "secret");
    if (!secure.Runs()) GTEST_SKIP() << "no openssl program";
    EXPECT_EQ(Fetch(secure.Address("/picture.txt")), State::Failed);
    EXPECT_THAT(transfer->Failure(), HasSubstr("certificate"));

    CurlTransfers trusting(secure.CertificateFile());
    const auto trusted = trusting.MakeTransfer();
    trusted->Get(secure.Address("/picture.txt"));
    PollUntil(trusting, [&] { return !trusted->StillExecuting(); });
    EXPECT_EQ(trusted->Failure(), "");
    EXPECT_EQ(BodyOf(*trusted), "secret");
}

TEST_F(CurlTransfersTest, SendsWholeRequestsAndTakesAnyAnswer) {
    std::string request;
    server.On("/form", [&](Connection& to) {
        request = to.Request();
        to.Send(LocalHttpServer::Whole("409 Not Now", "why", "X-One: 1\r\n"));
    });
    UrlRequest post;
    post.method = "POST";
    post.address = server.Address("/form");
    post.user = "me";
    post.headers = {"X-Own: yes", "X-Empty:"};
    post.body = std::string("a\0b", 3);
    transfer->Send(post);
    Finish(*transfer);
    EXPECT_EQ(transfer->State(), State::ResponseCompleted);
    EXPECT_EQ(transfer->Response().status, 409);
    EXPECT_EQ(transfer->Response().statusText, "Not Now");
    EXPECT_THAT(transfer->Response().headers, HasSubstr("X-One: 1\r\n"));
    EXPECT_EQ(BodyOf(*transfer), "why");
    EXPECT_TRUE(request.starts_with("POST /form "));
    EXPECT_TRUE(request.ends_with(post.body));
    for (const char* line : {"X-Own: yes\r\n", "X-Empty:\r\n"}) EXPECT_THAT(request, HasSubstr(line));
    EXPECT_THAT(request, Not(HasSubstr("Content-Type")));

    post.headers = {"X-Own: yes\r\nX-Smuggled: 1"};
    transfer->Send(post);
    Finish(*transfer);
    EXPECT_EQ(transfer->State(), State::Failed);
}

}  // namespace
}  // namespace tessaloom::testing
