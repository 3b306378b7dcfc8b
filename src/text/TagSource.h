#pragma once

namespace tessaloom {

class VWS;

/// What the tags of a text show of the open portfolio, besides the time.
class TagSource {
public:
    /// When feed slot `feed` (0 .. 9) last saw motion, a moment; 0: never.
    virtual double LastMotionTime(int feed) const = 0;

    /// The weather input; null when there is none.
    virtual const VWS* Weather() const = 0;

protected:
    ~TagSource() = default;
};

}  // namespace tessaloom
