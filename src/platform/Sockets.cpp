#include "platform/Sockets.h"

namespace tessaloom {

namespace {

class UnconnectedSocket final : public ConnectionSocket {
public:
    bool Accept(int) override { return false; }
    bool Open() const override { return false; }
    const std::string& RemoteHostIP() const override { return nobody_; }
    bool Send(std::string, SharedBytes) override { return true; }
    void NotifySent() override {}
    void IgnoreInput() override {}
    void CloseWhenSent() override {}
    void Close() override {}
    std::uint64_t BytesArrived() const override { return 0; }

private:
    std::string nobody_;
};

class DeafListener final : public ListenerSocket {
public:
    std::string Listen(int) override { return "this program uses no network"; }
    void Close() override {}
};

class Offline final : public Sockets {
public:
    std::unique_ptr<ListenerSocket> MakeListener(ListenerEvents&) override {
        return std::make_unique<DeafListener>();
    }
    std::unique_ptr<ConnectionSocket> MakeConnection(ConnectionEvents&) override {
        return std::make_unique<UnconnectedSocket>();
    }
};

}  // namespace

Sockets& NoSockets() {
    static Offline offline;
    return offline;
}

}  // namespace tessaloom
