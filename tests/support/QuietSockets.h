#pragma once

#include "platform/Sockets.h"
#include "support/Testing.h"

namespace tessaloom::testing {

/// A network on which every port is free and nobody ever calls.
class QuietSockets : public Sockets {
public:
    std::string refusal;  ///< What the next `Listen` answers; "": success.
    int listening = 0;    ///< The port that is listened on; 0: none.

    std::unique_ptr<ListenerSocket> MakeListener(ListenerEvents&) override {
        return std::make_unique<Listener>(*this);
    }
    std::unique_ptr<ConnectionSocket> MakeConnection(ConnectionEvents& events) override {
        return NoSockets().MakeConnection(events);
    }

private:
    class Listener : public ListenerSocket {
    public:
        explicit Listener(QuietSockets& owner) : owner_(owner) {}
        std::string Listen(int port) override {
            if (owner_.refusal.empty()) owner_.listening = port;
            return owner_.refusal;
        }
        void Close() override { owner_.listening = 0; }

    private:
        QuietSockets& owner_;
    };
};

}  // namespace tessaloom::testing
