#pragma once

#include "vbscript/Error.h"
#include "vbscript/Token.h"

namespace tessaloom::vbscript {

/// Counts how deep the parser is inside itself while it lives; throws SyntaxError 1001 beyond the limit.
class ParserNesting {
public:
    ParserNesting(int& depth, int limit, Position at) : depth_(depth) {
        if (depth_ >= limit) throw SyntaxError(1001, at.line, at.column);
        ++depth_;
    }
    ~ParserNesting() { --depth_; }
    ParserNesting(const ParserNesting&) = delete;
    ParserNesting& operator=(const ParserNesting&) = delete;

private:
    int& depth_;
};

}  // namespace tessaloom::vbscript
