#pragma once

#include <QTimer>
#include <deque>

namespace tessaloom {

class Canvas;
class Workspace;

/// Lets picture layers load their files one after the other, each in a tick of its own, so that many large
/// ones do not hold up a single tick. Those that go meanwhile are left out.
class LoadQueue {
public:
    LoadQueue(Workspace& workspace, int canvas);

    /// slot: of a layer that is due now.
    void Add(int slot);

private:
    void LoadNext();
    bool Loading(const Canvas& canvas) const;

    Workspace& workspace_;
    const int canvas_;
    std::deque<int> slots_;  ///< Those to come.
    int slot_ = 0;           ///< The one that was made due last; 0 for none.
    QTimer timer_;
};

}  // namespace tessaloom
