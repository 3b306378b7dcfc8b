#pragma once

#include "platform/Platform.h"
#include "platform/curl/CurlTransfers.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFolders.h"
#include "platform/posix/ThreadAlarm.h"
#include "script/objects/ScriptControl.h"

namespace tessaloom {

/// What runs the scripts of portfolios, and what only scripts stand on. Outlives the shutdown.
class ScriptServices {
public:
    explicit ScriptServices(Platform& platform)
        : control_(platform, {platform.fileSystem, folders_, environment_, transfers_}, alarm_) {}

    ScriptEngine& Engine() { return control_; }

private:
    PosixFolders folders_;
    PosixEnvironment environment_;
    CurlTransfers transfers_;
    ThreadAlarm alarm_;
    ScriptControl control_;
};

}  // namespace tessaloom
