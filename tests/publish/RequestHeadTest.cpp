#include "publish/RequestHead.h"

#include "support/Testing.h"

namespace tessaloom::testing {
namespace {

TEST(RequestHead, KeepsTheConnectionOnlyWhereNobodyCouldSeeABodyBehindIt) {
    const struct {
        std::string_view fields;
        bool kept;
    } cases[] = {
        {"Host: x",                                          true                 },
        {"Content-Length: 0",                                true                 },
        {"CONTENT-length:0",                                 true                 },
        {"content-length:\t 0 \t",                           true                 },
        {"Content-Length: 0\r\nContent-Length: 0",           true                 },
        {"X-Content-Length: 5",                              true                 },
        {"Content-Lengths: 5",                               true                 },
        {"Referer: http://x/?Content-Length: 5",             true                 },
        {"Upgrade-Insecure-Requests: 1",                     true                 },
        {"TE: trailers",                                     true                 },
        {"Accept:",                                          true                 },
        {"Cookie: \xC3\xA4=\xFF\ttab",                       true                 },
        {"Content-Length: 5",                                false                },
        {"content-LENGTH:5",                                 false                },
        {"Content-Length:\t5\t",                             false                },
        {"Content-Length: 5\r\nContent-Length: 5",           false                },
        {"Content-Length: 0\r\nContent-Length: 5",           false                },
        {"Content-Length: 5\r\nContent-Length: 0",           false                },
        {"Content-Length: 0, 5",                             false                },
        {"Content-Length: 0,0",                              false                },
        {"Content-Length: 5;0",                              false                },
        {"Content-Length: 0 5",                              false                },
        {"Content-Length: +0",                               false                },
        {"Content-Length: -0",                               false                },
        {"Content-Length: +5",                               false                },
        {"Content-Length: -5",                               false                },
        {"Content-Length: 05",                               false                },
        {"Content-Length: 0x0",                              false                },
        {"Content-Length: 0.0",                              false                },
        {"Content-Length: \"0\"",                            false                },
        {"Content-Length: five",                             false                },
        {"Content-Length:",                                  false                },
        {"Content-Length: ",                                 false                },
        {"Content-Length",                                   false                },
        {"Content-Length: 18446744073709551616",             false                },
        {"Content-Length: 99999999999999999999999999999",    false                },
        {"Content-Length: 4294967296",                       false                },
        {"Content-Length : 5",                               false                },
        {"Content-Length\t: 5",                              false                },
        {"Content-Length : 0",                               false                },
        {" Content-Length: 5",                               false                },
        {"\tContent-Length: 5",                              false                },
        {"Content-Length:\r\n 5",                            false                },
        {"Content-Length: 0\r\n 5",                          false                },
        {"X: y\r\n Content-Length: 5",                       false                },
        {"X: y\nContent-Length: 5",                          false                },
        {"X: y\rContent-Length: 5",                          false                },
        {"X: y\n\nGET /other HTTP/1.1",                      false                },
        {"Content-Length: 0\n",                              false                },
        {"Content-Length: 0\r",                              false                },
        {"Content-Length\v: 5",                              false                },
        {std::string_view("Content-Length\0: 5",             18),                   false},
        {std::string_view("Content-Length: 0\0005",                                                  19),                               false},
        {std::string_view("X: y\0Content-Length: 5",                                             22),                                    false},
        {"Content-Length\xA0: 5",   false},
        {"Content-Length: 0\xA0",                            false                                         },
        {": 5",                            false                },
        {"no field at all",                                              false                                  },
        {"Transfer-Encoding: chunked",                                  false    },
        {"transfer-encoding:identity",                       false     },
        {"TRANSFER-ENCODING:",                       false                },
        {"Transfer-Encoding: nonsense",                               false                        },
        {"Transfer-Encoding : chunked",                      false       },
        {"Transfer-Encoding\r\n : chunked",                      false                },
        {"Content-Length: 0\r\nTransfer-Encoding: chunked",                  false            },
        {"Transfer-Encoding: identity\r\nContent-Length: 0",  false},
        {"Expect: 100-continue", false               },
        {"Upgrade: websocket",                             false                                            },
    };
    for (const auto& [fields, kept] : cases)
        for (const std::string_view version : {"1.0", "1.1"})
            for (const bool first : {false, true}) {
                const std::string line = "GET /a HTTP/" + std::string(version) + "\r\n";
                const std::string keep = "Connection: keep-alive", text(fields);
                const auto request =
                    ParseRequestHead(line + (first ? text + "\r\n" + keep : keep + "\r\n" + text));
                ASSERT_TRUE(request) << fields;
                EXPECT_EQ(request->path, "a") << fields;
                EXPECT_EQ(request->keepAlive, kept) << fields << (first ? ", first" : ", last");
            }
}

TEST(RequestHead, KeepsNoConnectionWhoseRequestLineHidesAnotherLine) {
    constexpr std::string_view Fields = "\r\nConnection: keep-alive";
    for (const std::string_view line :
         {"GET / HTTP/1.1\nContent-Length: 5", "GET / HTTP/1.1\rContent-Length: 5",
          "GET /\nContent-Length: 5\nX: HTTP/1.1", "GET / HTTP/1.1\n", "GET / HTTP/1.1\r"}) {
        const auto request = ParseRequestHead(std::string(line).append(Fields));
        ASSERT_TRUE(request) << line;
        EXPECT_FALSE(request->keepAlive) << line;
    }
}

}  // namespace
}  // namespace tessaloom::testing
