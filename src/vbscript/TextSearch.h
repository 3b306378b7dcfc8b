#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "vbscript/MemoryBudget.h"

namespace tessaloom::vbscript {

/// Searches texts for one part, in time linear in both whatever they are.
///
/// It begins with plain comparing, which is quickest for the texts of real life. When that comes to look at
/// the same units again and again ("aaa..ab" in "aaa..."), it goes on with the method of Knuth, Morris and
/// Pratt, which never goes back: its table says how much of the part still fits where the next unit does not.
///
/// `wanted` must outlive the search. Throws RuntimeError 7, and TimeUp.
template <typename Unit>
class TextSearch {
public:
    using View = std::basic_string_view<Unit>;

    static constexpr std::size_t None = View::npos;

    explicit TextSearch(View wanted) : wanted_(wanted) {}

    std::size_t Length() const { return wanted_.size(); }

    /// Where the part begins that is first at `from` or behind; `None` when there is none.
    std::size_t First(View text, std::size_t from) {
        if (wanted_.empty()) return from <= text.size() ? from : None;
        if (from > text.size()) return None;
        const std::size_t found = Search<false>(text.substr(from));
        return found == None ? None : from + found;
    }

    /// Where the last one begins.
    std::size_t Last(View text) {
        if (wanted_.empty()) return text.size();
        const std::size_t found = Search<true>(text);
        return found == None ? None : text.size() - found - wanted_.size();
    }

private:
    /// Comparisons that plain comparing may waste for each unit it moves on, and at all.
    static constexpr std::size_t WasteForUnit = 4, WasteAtAll = 1024;

    /// Unit `i`; of a backward search, from the end.
    template <bool Backward>
    static Unit At(View text, std::size_t i) {
        return Backward ? text[text.size() - 1 - i] : text[i];
    }

    template <bool Backward>
    std::size_t Search(View text) {
        if (text.size() < wanted_.size()) return None;
        const std::size_t places = text.size() - wanted_.size() + 1;
        const Unit first = At<Backward>(wanted_, 0);
        std::size_t wasted = 0;
        for (std::size_t place = 0; place < places;) {
            TimeLimit::Poll();
            const std::size_t end = std::min(places, place + TimeLimit::UnitsBetweenPolls);
            for (; place < end; ++place) {
                if (At<Backward>(text, place) != first) continue;
                const std::size_t same = SameFrom<Backward>(text, place);
                if (same == wanted_.size()) return place;
                wasted += same;
                if (wasted > WasteAtAll + WasteForUnit * place) return SearchOnwards<Backward>(text, place);
            }
        }
        return None;
    }

    /// How many units of the part lie at `place`, where the first one does.
    template <bool Backward>
    std::size_t SameFrom(View text, std::size_t place) const {
        std::size_t same = 1;
        while (same < wanted_.size() && At<Backward>(text, place + same) == At<Backward>(wanted_, same))
            ++same;
        return same;
    }

    /// From `place` on, without ever going back.
    template <bool Backward>
    [[gnu::noinline]] std::size_t SearchOnwards(View text, std::size_t place) {
        Prepare<Backward>();
        std::size_t same = 0;
        for (std::size_t begin = place; begin < text.size(); begin += TimeLimit::UnitsBetweenPolls) {
            TimeLimit::Poll();
            const std::size_t end = std::min(text.size(), begin + TimeLimit::UnitsBetweenPolls);
            for (std::size_t i = begin; i < end; ++i) {
                const Unit unit = At<Backward>(text, i);
                while (same > 0 && At<Backward>(wanted_, same) != unit) same = borders_[same - 1];
                if (At<Backward>(wanted_, same) == unit) ++same;
                if (same == wanted_.size()) return i + 1 - same;
            }
        }
        return None;
    }

    /// For every beginning of the part: the length of the longest shorter one that it ends with.
    template <bool Backward>
    void Prepare() {
        if (!borders_.empty()) return;
        borders_.resize(wanted_.size());
        std::size_t same = 0;
        InStretches(wanted_.size(), [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = std::max<std::size_t>(begin, 1); i < end; ++i) {
                const Unit unit = At<Backward>(wanted_, i);
                while (same > 0 && At<Backward>(wanted_, same) != unit) same = borders_[same - 1];
                if (At<Backward>(wanted_, same) == unit) ++same;
                borders_[i] = static_cast<std::uint32_t>(same);
            }
        });
    }

    View wanted_;
    BudgetVector<std::uint32_t> borders_;  ///< Empty until it is needed.
};

}  // namespace tessaloom::vbscript
