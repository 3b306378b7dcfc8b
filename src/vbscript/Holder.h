#pragma once

namespace tessaloom::vbscript {

/// What an object of the host that keeps values of scripts is, too: they may keep it in turn, a circle that
/// no counting of references ends. The engine ends it when all is forgotten.
class Holder {
public:
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    /// Drops all values of scripts, last of all: that may be the end of this object.
    virtual void DropValues() = 0;

protected:
    Holder() = default;
    virtual ~Holder() { Unlink(); }

private:
    friend class Holders;
    void Unlink();

    Holder* next_ = nullptr;
    Holder** link_ = nullptr;  ///< What leads here; null outside of any list.
};

/// The living ones that an engine knows.
class Holders {
public:
    Holders() = default;
    ~Holders() { DropAll(); }
    Holders(const Holders&) = delete;
    Holders& operator=(const Holders&) = delete;

    void Add(Holder& holder);
    void DropAll();  ///< Forgets them, without their values.

private:
    Holder* first_ = nullptr;
};

}  // namespace tessaloom::vbscript
