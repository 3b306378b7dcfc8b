#pragma once

namespace tessaloom {

/// A part of a window into which people type.
class EntryForm {
public:
    virtual ~EntryForm() = default;

    /// Takes what is being typed. What is no value is brought into view, gets the focus, and makes it false.
    virtual bool TakeTyped() = 0;
};

}  // namespace tessaloom
