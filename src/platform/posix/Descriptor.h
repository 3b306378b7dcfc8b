#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace tessaloom {

/// An open file descriptor, closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }

    explicit operator bool() const { return number_ >= 0; }
    int Number() const { return number_; }

    /// Closes now, for callers that must know whether that succeeded.
    bool Close() { return ::close(std::exchange(number_, -1)) == 0; }

private:
    int number_;
};

}  // namespace tessaloom
