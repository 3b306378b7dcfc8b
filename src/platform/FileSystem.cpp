#include "platform/FileSystem.h"

#include <algorithm>
#include <utility>

namespace tessaloom {

namespace {

/// The bytes that the file had when it was opened.
class MemoryReader final : public FileReader {
public:
    explicit MemoryReader(std::string bytes) : bytes_(std::move(bytes)) {}

    std::uint64_t Size() const override { return bytes_.size(); }
    std::string Read(std::uint64_t offset, std::size_t count) override {
        return offset < bytes_.size() ? bytes_.substr(offset, count) : std::string();
    }

private:
    std::string bytes_;
};

}  // namespace

bool FileSystem::SameFile(std::string_view one, std::string_view other) const {
    const auto plain = [](char c) { return c == '/' ? '\\' : c; };
    if (std::ranges::equal(one, other, {}, plain, plain)) return true;
    const auto stamp = Stamp(one);
    return stamp && stamp == Stamp(other);
}

bool FileSystem::LiesWithin(std::string_view, std::string_view) const { return true; }

std::unique_ptr<FileReader> FileSystem::OpenFile(std::string_view path) {
    auto bytes = ReadFile(path);
    return bytes ? std::make_unique<MemoryReader>(std::move(*bytes)) : nullptr;
}

}  // namespace tessaloom
