#pragma once

#include <string>

#include "platform/FtpClient.h"

namespace tessaloom {

/// One command to a server.
struct FtpStep {
    enum class Kind { LogIn, Store, Delete, Rename, NoOp, LogOut };

    Kind kind;
    FtpClient::Bytes bytes;  ///< To be stored.
    std::string path;        ///< On the server: of the file to store, delete or rename.
    std::string newPath;
};

/// What became of it.
struct FtpOutcome {
    bool done = false;
    bool connected = false;   ///< The connection is still there.
    bool serverLeft = false;  ///< It was the server who closed it.
    int number = 0;           ///< Of the failure: the server's reply code, else libcurl's result.
    std::string description;
};

}  // namespace tessaloom
