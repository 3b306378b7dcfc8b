#pragma once

#include <sys/types.h>

#include "support/TemporaryFolder.h"
#include "support/TracedProcess.h"

namespace tessaloom::testing {

/// The program itself, run as a process of its own in a folder. Killed when this object goes.
class ChildProgram {
public:
    struct Options {
        std::vector<std::string> environment;  ///< "NAME=value", on top of this process's own.
        bool unprivileged = false;             ///< As a user who owns nothing, where this one may do all.
        bool traced = false;                   ///< Runs only within `DiesAt`.
    };

    /// arguments: what follows "--home FOLDER" on the command line.
    ChildProgram(const std::string& folder, const std::vector<std::string>& arguments,
                 const Options& options);
    ChildProgram(const std::string& folder, const std::vector<std::string>& arguments)
        : ChildProgram(folder, arguments, Options{}) {}
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    void Send(int signal) const;

    /// Waits so many milliseconds, or less when the program ends before. True when it has ended.
    bool EndsWithin(double milliseconds);

    /// Waits for the end and returns the exit status; minus the signal that ended it. -1000 when it runs on
    /// and on.
    int Status();

    /// Runs the program, traced, until it is killed at this moment. The end's status, as `Status` tells it.
    int DiesAt(const Moment& moment);

    bool Runs() { return !EndsWithin(0); }

    std::string Output() const;
    std::string Log() const;

    /// The end of patience, milliseconds: enough for a sanitized program on a busy machine.
    static constexpr double Patience = 30'000;

private:
    void End(int status);

    TemporaryFolder own_;  ///< What it prints, and the folders of its user.
    pid_t process_ = 0;    ///< 0: ended.
    int handle_ = -1;
    int status_ = -1000;
};

/// Looks again and again until `condition` holds; false when patience ends before.
bool Becomes(const std::function<bool()>& condition);

}  // namespace tessaloom::testing
