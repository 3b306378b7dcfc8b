#pragma once

#include <type_traits>
#include <utility>

namespace tessaloom::vbscript {

/// A counted pointer to an `Object` or `Array` (anything with `Retain` and `Release`); may be null.
template <typename T>
class Ref {
public:
    constexpr Ref() = default;
    constexpr Ref(decltype(nullptr)) {}
    explicit Ref(T* target) : target_(target) {
        if (target_) target_->Retain();
    }
    Ref(const Ref& other) : Ref(other.target_) {}
    Ref(Ref&& other) noexcept : target_(std::exchange(other.target_, nullptr)) {}

    template <typename U>
    requires(!__is_same(T, U)) Ref(const Ref<U>& other) : Ref(static_cast<T*>(other.Get())) {}

    ~Ref() {
        if (target_) target_->Release();
    }

    Ref& operator=(Ref other) noexcept {
        std::swap(target_, other.target_);
        return *this;
    }

    T* Get() const { return target_; }
    T* operator->() const { return target_; }
    T& operator*() const { return *target_; }
    explicit operator bool() const { return target_ != nullptr; }
    bool operator==(const Ref&) const = default;

private:
    T* target_ = nullptr;
};

/// A new T, held by its first reference.
template <typename T, typename... Arguments>
Ref<T> Make(Arguments&&... arguments) {
    return Ref<T>(new T(std::forward<Arguments>(arguments)...));
}

}  // namespace tessaloom::vbscript
