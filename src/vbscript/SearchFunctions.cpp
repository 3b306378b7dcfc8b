#include <algorithm>
#include <limits>

#include "vbscript/Arguments.h"
#include "vbscript/Array.h"
#include "vbscript/BuiltinTables.h"
#include "vbscript/TextSearch.h"

namespace tessaloom::vbscript {

namespace {

using UnitSearch = TextSearch<char16_t>;

constexpr std::size_t NotFound = UnitSearch::None;

/// vbBinaryCompare (0) or vbTextCompare (1), which ignores case.
bool IgnoresCase(const Arguments& of, std::size_t index) { return of.LongWithin(index, 0, 1, 0) == 1; }

/// A text in the form in which it is searched; the length of it never changes.
class Searched {
public:
    Searched(String text, bool ignoreCase) : text_(std::move(text)), view_(text_.View()) {
        if (!ignoreCase) return;
        folded_ = String::OfLength(view_.size());
        InStretches(view_.size(), [&](std::size_t begin, std::size_t end) {
            std::transform(view_.begin() + begin, view_.begin() + end, folded_.Units() + begin, LowerOf);
        });
        view_ = folded_.View();
    }
    Searched(const Searched&) = delete;
    Searched& operator=(const Searched&) = delete;

    std::u16string_view View() const { return view_; }
    std::u16string_view Original() const { return text_.View(); }

private:
    String text_;
    String folded_;
    std::u16string_view view_;
};

Value OfPlace(std::size_t place) { return Value::OfLong(static_cast<int>(place + 1)); }

Value InStr(Context& context, std::span<Value> values) {
    // a first argument more is the start
    const bool hasStart = values.size() > 2;
    const Arguments all(context, values), of(context, values.subspan(hasStart ? 1 : 0));
    const int start = hasStart ? all.LongOr(0, 1) : 1;
    if (start < 1) Fail(ErrorCode::InvalidCall);
    const bool ignoreCase = IgnoresCase(of, 2);
    if (of.IsNull(0) || of.IsNull(1)) return Value::Null();
    const Searched text(of.Text(0), ignoreCase), wanted(of.Text(1), ignoreCase);
    const auto from = static_cast<std::size_t>(start) - 1;
    if (from >= text.View().size()) return Value::OfLong(0);
    return OfPlace(UnitSearch(wanted.View()).First(text.View(), from));
}

Value InStrRev(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const int start = of.LongOr(2, -1);
    if (start == 0 || start < -1) Fail(ErrorCode::InvalidCall);
    const bool ignoreCase = IgnoresCase(of, 3);
    if (of.IsNull(0) || of.IsNull(1)) return Value::Null();
    const Searched text(of.Text(0), ignoreCase), wanted(of.Text(1), ignoreCase);
    const std::size_t length = text.View().size();
    const std::size_t end = start < 0 ? length : static_cast<std::size_t>(start);
    if (length == 0 || end > length) return Value::OfLong(0);
    if (wanted.View().empty()) return Value::OfLong(static_cast<int>(end));
    return OfPlace(UnitSearch(wanted.View()).Last(text.View().substr(0, end)));
}

Value StrComp(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const bool ignoreCase = IgnoresCase(of, 2);
    if (of.IsNull(0) || of.IsNull(1)) return Value::Null();
    return Value::OfInteger(CompareText(of.Text(0).View(), of.Text(1).View(), ignoreCase));
}

/// How many times at most; -1 means always.
std::size_t TimesAt(const Arguments& of, std::size_t index) {
    const int count = of.LongOr(index, -1);
    if (count < -1) Fail(ErrorCode::InvalidCall);
    return count < 0 ? std::numeric_limits<std::size_t>::max() : static_cast<std::size_t>(count);
}

Value Replace(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const int start = of.LongOr(3, 1);
    const std::size_t times = TimesAt(of, 4);
    const bool ignoreCase = IgnoresCase(of, 5);
    if (start < 1) Fail(ErrorCode::InvalidCall);
    const Searched text(of.Text(0), ignoreCase), wanted(of.Text(1), ignoreCase);
    const String with = of.Text(2);
    std::size_t from = std::min(static_cast<std::size_t>(start) - 1, text.View().size());
    UnitSearch search(wanted.View());
    std::size_t found = wanted.View().empty() || times == 0 ? NotFound : search.First(text.View(), from);
    if (found == NotFound) return Value::OfText(text.Original().substr(from));
    String out;
    for (std::size_t done = 0; done < times && found != NotFound; ++done) {
        out.Append(text.Original().substr(from, found - from));
        out.Append(with);
        from = found + search.Length();
        found = search.First(text.View(), from);
    }
    out.Append(text.Original().substr(from));
    return Value::OfString(out);
}

Value OfTexts(BudgetVector<Value>&& texts) { return Value::OfArray(Array::OfValues(std::move(texts))); }

Value Split(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const std::size_t times = TimesAt(of, 2);
    const bool ignoreCase = IgnoresCase(of, 3);
    const Searched text(of.Text(0), ignoreCase), delimiter(of.TextOr(1, u" "), ignoreCase);
    BudgetVector<Value> parts;
    if (text.View().empty() || times == 0) return OfTexts(std::move(parts));
    std::size_t from = 0;
    UnitSearch search(delimiter.View());
    while (search.Length() > 0 && parts.size() + 1 < times) {
        const std::size_t found = search.First(text.View(), from);
        if (found == NotFound) break;
        parts.push_back(Value::OfText(text.Original().substr(from, found - from)));
        from = found + search.Length();
    }
    parts.push_back(Value::OfText(text.Original().substr(from)));
    return OfTexts(std::move(parts));
}

/// The elements of an array of one dimension.
std::span<Value> ElementsAt(const Arguments& of, std::size_t index) {
    const Value& value = of.Plain(index);
    if (!value.Is(VarType::Array)) Fail(ErrorCode::TypeMismatch);
    Array& array = *value.AsArray();
    if (array.Rank() > 1) Fail(ErrorCode::TypeMismatch);
    if (array.Rank() == 0) Fail(ErrorCode::SubscriptOutOfRange);
    return array.Elements();
}

Value Join(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const String delimiter = of.TextOr(1, u" ");
    String out;
    bool isFirst = true;
    // held, because the text of an object may come from script code
    ElementsAt(of, 0);
    const Array::Lock array(*values[0].AsArray());
    for (const Value& element : array->Elements()) {
        TimeLimit::Poll();
        if (!isFirst) out.Append(delimiter);
        isFirst = false;
        if (element.Is(VarType::Null)) Fail(ErrorCode::TypeMismatch);
        out.Append(ToText(context, element));
    }
    return Value::OfString(out);
}

Value Filter(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const bool include = of.BooleanOr(2, true);
    const bool ignoreCase = IgnoresCase(of, 3);
    const Searched wanted(of.Text(1), ignoreCase);
    ElementsAt(of, 0);
    const Array::Lock array(*values[0].AsArray());
    UnitSearch search(wanted.View());
    BudgetVector<Value> kept;
    for (const Value& element : array->Elements()) {
        TimeLimit::Poll();
        const Searched text(ToText(context, element), ignoreCase);
        if ((search.First(text.View(), 0) != NotFound) == include)
            kept.push_back(Value::OfText(text.Original()));
    }
    return OfTexts(std::move(kept));
}

constexpr Builtin Functions[] = {
    {u"Filter",   2, 4, Filter  },
    {u"InStr",    2, 4, InStr   },
    {u"InStrRev", 2, 4, InStrRev},
    {u"Join",     1, 2, Join    },
    {u"Replace",  3, 6, Replace },
    {u"Split",    1, 4, Split   },
    {u"StrComp",  2, 3, StrComp },
};

}  // namespace

std::span<const Builtin> SearchFunctions() { return Functions; }

}  // namespace tessaloom::vbscript
