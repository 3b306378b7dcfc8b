#pragma once

namespace tessaloom {

/// The flags that frame the run of the whole process.
struct RunFlags {
    bool startingUp = false;  ///< From the first line of `Main` until the main window has been shown.
    bool running = false;     ///< From the first line of `Main` until the shutdown begins; cleared to end.
    bool quitDuringStartup =
        false;                    ///< A close was asked for while starting up; honoured when start-up ends.
    bool cancelShutdown = false;  ///< Set by a script's shutdown hook: the close in progress is called off.
    bool withoutQuestions =
        false;  ///< The system asked for the end (a signal): nobody is asked about saving.
};

/// The one set of flags of this process.
RunFlags& Flags();

}  // namespace tessaloom
