#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace tessaloom {

/// The bytes of a response between the server and whoever takes them, in blocks, so that a long one is never
/// moved as a whole.
class ResponseBody {
public:
    std::size_t Size() const { return size_; }

    void Append(std::string_view bytes) {
        while (!bytes.empty()) {
            if (blocks_.empty() || blocks_.back().size() == BlockBytes) {
                blocks_.emplace_back();
                blocks_.back().reserve(BlockBytes);
            }
            const std::size_t part = std::min(bytes.size(), BlockBytes - blocks_.back().size());
            blocks_.back().append(bytes.substr(0, part));
            bytes.remove_prefix(part);
            size_ += part;
        }
    }

    /// Removes the first `bytes` bytes, or all when there are fewer.
    std::string Take(std::size_t bytes) {
        std::string taken;
        taken.reserve(std::min(bytes, size_));
        while (taken.size() < bytes && !blocks_.empty()) {
            const std::string_view rest = std::string_view(blocks_.front()).substr(takenOfFirst_);
            const std::string_view part = rest.substr(0, bytes - taken.size());
            taken += part;
            takenOfFirst_ += part.size();
            if (part.size() < rest.size()) break;
            blocks_.pop_front();
            takenOfFirst_ = 0;
        }
        size_ -= taken.size();
        return taken;
    }

    void Clear() { *this = {}; }

private:
    static constexpr std::size_t BlockBytes = 256 << 10;

    std::deque<std::string> blocks_;
    std::size_t takenOfFirst_ = 0;
    std::size_t size_ = 0;
};

}  // namespace tessaloom
