#pragma once

#include "platform/curl/CurlTransfers.h"
#include "platform/posix/PosixEnvironment.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixFolders.h"
#include "platform/posix/ThreadAlarm.h"
#include "platform/qt/QtSystemTime.h"
#include "script/library/ClassLibrary.h"
#include "vbscript/Host.h"

namespace tessaloom::vbrun {

/// What a script that runs alone finds outside: this computer, and nobody to answer boxes. They are written
/// to standard error and answered with what is safe.
class RunHost final : public vbscript::Host {
public:
    RunHost();

    double Now() override { return time_.LocalDateTime(); }
    double Timer() override { return time_.SecondsSinceMidnight(); }
    double SteadySeconds() override;
    Alarm& TimeAlarm() override { return alarm_; }
    const UserLocale& Locale() override { return locale_; }
    int MsgBox(const std::string& prompt, int buttons, const std::string& title) override;
    std::string InputBox(const std::string& prompt, const std::string& title,
                         const std::string& initial) override;
    vbscript::Ref<vbscript::Object> CreateObject(std::string_view programId) override;

    FileSystem& Files() { return files_; }

private:
    QtSystemTime time_;
    ThreadAlarm alarm_;
    UserLocale locale_;
    PosixFileSystem files_;
    PosixFolders folders_;
    PosixEnvironment environment_;
    CurlTransfers transfers_;
};

}  // namespace tessaloom::vbrun
