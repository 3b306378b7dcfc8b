#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <utility>

namespace tessaloom {

/// Keeps the values asked for last, at most `capacity` of them; the longest unused one makes room.
template <typename Key, typename Value>
class RecentlyUsed {
public:
    explicit RecentlyUsed(std::size_t capacity) : capacity_(capacity) {}

    /// The value for `key`; `make` supplies one that is not kept.
    template <typename Make>
    std::shared_ptr<Value> Get(const Key& key, Make&& make) {
        for (auto it = entries_.begin(); it != entries_.end(); ++it)
            if (it->first == key) {
                entries_.splice(entries_.begin(), entries_, it);
                return it->second;
            }
        entries_.emplace_front(key, std::forward<Make>(make)());
        if (entries_.size() > capacity_) entries_.pop_back();
        return entries_.front().second;
    }

private:
    std::size_t capacity_;
    std::list<std::pair<Key, std::shared_ptr<Value>>> entries_;
};

}  // namespace tessaloom
