#pragma once

#include <utility>

#include "vbscript/MemoryBudget.h"
#include "vbscript/Object.h"

namespace tessaloom::library {

/// Walks along values that were gathered before: what the walker does to the collection meanwhile does not
/// matter.
class Listing final : public vbscript::Enumerator {
public:
    explicit Listing(vbscript::BudgetVector<vbscript::Value> values) : values_(std::move(values)) {}

    bool Next(vbscript::Value& item) override {
        if (next_ >= values_.size()) return false;
        item = values_[next_++];
        return true;
    }

private:
    vbscript::BudgetVector<vbscript::Value> values_;
    std::size_t next_ = 0;
};

}  // namespace tessaloom::library
