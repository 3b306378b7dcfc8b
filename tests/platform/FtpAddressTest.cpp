#include "platform/curl/FtpAddress.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(FtpAddress, IsReadAsPeopleWriteIt) {
    const struct {
        const char *server, *path, *url;  // "" for what is no server
    } rows[] = {
        {" ftp.example.com ", "a b/#1;x.jpg", "ftp://ftp.example.com/a%20b/%231%3Bx.jpg"},
        {"FTP://host:21/",    "/pub/x",       "ftp://host:21/%2Fpub/x"                  },
        {"ftps://host",       "x",            "ftp://host/x"                            },
        {"ftps://host:990",   "x",            "ftps://host:990/x"                       },
        {"ftps://host:1990",  "x",            "ftp://host:1990/x"                       },
        {"sftp://[::1]:22",   "dir/x",        "sftp://[::1]:22/~/dir/x"                 },
        {"sftp://host",       "/dir/x",       "sftp://host/dir/x"                       },
        {"sftp://host",       "",             "sftp://host/"                            },
        {"",                  "x",            ""                                        },
        {"ftps://",           "x",            ""                                        },
        {"user:word@host",    "x",            ""                                        },
        {"host/folder",       "x",            ""                                        },
        {"host:",             "x",            ""                                        },
        {"host:0",            "x",            ""                                        },
        {"host:65536",        "x",            ""                                        },
        {"host:21x",          "x",            ""                                        },
        {"[host]",            "x",            ""                                        },
        {"http://host",       "x",            ""                                        },
        {"ho st",             "x",            ""                                        },
        {"host\r\nDELE x",    "x",            ""                                        },
    };
    for (const auto& row : rows) {
        const auto address = FtpAddress::Parse(row.server);
        EXPECT_EQ(address ? address->Url(row.path) : "", row.url) << row.server;
    }
}

}  // namespace
}  // namespace tessaloom
