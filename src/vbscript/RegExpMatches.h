#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "vbscript/MemberTable.h"
#include "vbscript/MemoryBudget.h"
#include "vbscript/String.h"

namespace tessaloom::vbscript {

/// What a search has found, shared by the objects that show it.
class RegExpFindings {
public:
    /// stride: positions a match, two of the whole and two of each group.
    RegExpFindings(String text, std::size_t stride) : text_(std::move(text)), stride_(stride) {}
    RegExpFindings(const RegExpFindings&) = delete;
    RegExpFindings& operator=(const RegExpFindings&) = delete;

    void Add(std::span<const std::int32_t> positions) {
        positions_.insert(positions_.end(), positions.begin(), positions.end());
    }

    std::size_t Count() const { return positions_.size() / stride_; }
    std::size_t Groups() const { return stride_ / 2 - 1; }
    std::span<const std::int32_t> Positions(std::size_t match) const {
        return std::span(positions_).subspan(match * stride_, stride_);
    }

    /// Of group `group` (0: the whole match); Empty when it took no part.
    Value TextOf(std::size_t match, std::size_t group) const;

private:
    String text_;
    std::size_t stride_;
    BudgetVector<std::int32_t> positions_;
};

using SharedFindings = std::shared_ptr<const RegExpFindings>;

/// What Execute gives.
class RegExpMatches final : public TableObject<RegExpMatches> {
public:
    static constexpr std::u16string_view Name = u"IMatchCollection2";
    static std::span<const Member<RegExpMatches>> Members();

    explicit RegExpMatches(SharedFindings findings) : findings_(std::move(findings)) {}

    std::unique_ptr<Enumerator> Enumerate(Context&) override;

private:
    SharedFindings findings_;
};

/// One match.
class RegExpMatch final : public TableObject<RegExpMatch> {
public:
    static constexpr std::u16string_view Name = u"IMatch2";
    static std::span<const Member<RegExpMatch>> Members();

    RegExpMatch(SharedFindings findings, std::size_t index) : findings_(std::move(findings)), index_(index) {}

private:
    SharedFindings findings_;
    std::size_t index_;
};

/// What the groups of a match have taken.
class RegExpSubMatches final : public TableObject<RegExpSubMatches> {
public:
    static constexpr std::u16string_view Name = u"ISubMatches";
    static std::span<const Member<RegExpSubMatches>> Members();

    RegExpSubMatches(SharedFindings findings, std::size_t match)
        : findings_(std::move(findings)), match_(match) {}

    std::unique_ptr<Enumerator> Enumerate(Context&) override;

private:
    SharedFindings findings_;
    std::size_t match_;
};

}  // namespace tessaloom::vbscript
