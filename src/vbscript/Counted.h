#pragma once

#include <cstddef>
#include <cstdint>

namespace tessaloom::vbscript {

/// What values share by counted references: strings, arrays and objects.
///
/// The count is not atomic: a script and all it holds live on one thread. A new one has the count 0. Its own
/// memory is charged to the script (MemoryBudget.h).
class Counted {
public:
    static void* operator new(std::size_t bytes);  ///< Throws RuntimeError 7.
    static void operator delete(void* block, std::size_t bytes);

// Version 12 takes the payload of a plain number for a pointer that is released.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Warray-bounds"
    void Retain() const { ++count_; }
    void Release() const {
        if (--count_ == 0) LastReleased();
    }
#pragma GCC diagnostic pop
    std::uint32_t References() const { return count_; }

protected:
    Counted() = default;
    virtual ~Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    /// Ends the life of an object that nobody refers to any more. An override may run script code that
    /// refers to it meanwhile (it retains itself for that time).
    virtual void Dispose() { delete this; }

private:
    /// Disposes of it, at once or (deep inside the end of others, so that a long chain cannot exhaust the
    /// machine stack) when the outermost end is through.
    void LastReleased() const;

    mutable std::uint32_t count_ = 0;
};

}  // namespace tessaloom::vbscript
