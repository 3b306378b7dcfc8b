#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "vbscript/Arguments.h"
#include "vbscript/Array.h"
#include "vbscript/BuiltinTables.h"

namespace tessaloom::vbscript {

namespace {

constexpr std::size_t NotFound = std::u16string_view::npos;

/// vbBinaryCompare (0) or vbTextCompare (1), which ignores case.
bool IgnoresCase(const Arguments& of, std::size_t index) { return of.LongWithin(index, 0, 1, 0) == 1; }

/// A text in the form in which it is searched; the length of it never changes.
class Searched {
public:
    Searched(String text, bool ignoreCase) : text_(std::move(text)), view_(text_.View()) {
        if (!ignoreCase) return;
        folded_.resize(view_.size());
        std::ranges::transform(view_, folded_.begin(), LowerOf);
        view_ = folded_;
    }
    Searched(const Searched&) = delete;
    Searched& operator=(const Searched&) = delete;

    std::u16string_view View() const { return view_; }
    std::u16string_view Original() const { return text_.View(); }

private:
    String text_;
    std::u16string folded_;
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
    return OfPlace(text.View().find(wanted.View(), from));
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
    return OfPlace(text.View().substr(0, end).rfind(wanted.View()));
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
    const bool hopeless = wanted.View().empty() || text.View().find(wanted.View(), from) == NotFound;
    if (hopeless || times == 0) return Value::OfText(text.Original().substr(from));
    String out;
    for (std::size_t done = 0; done < times; ++done) {
        const std::size_t found = text.View().find(wanted.View(), from);
        if (found == NotFound) break;
        out.Append(text.Original().substr(from, found - from));
        out.Append(with);
        from = found + wanted.View().size();
    }
    out.Append(text.Original().substr(from));
    return Value::OfString(out);
}

Value OfTexts(std::vector<Value>&& texts) { return Value::OfArray(Array::OfValues(std::move(texts))); }

Value Split(Context& context, std::span<Value> values) {
    const Arguments of(context, values);
    const std::size_t times = TimesAt(of, 2);
    const bool ignoreCase = IgnoresCase(of, 3);
    const Searched text(of.Text(0), ignoreCase), delimiter(of.TextOr(1, u" "), ignoreCase);
    std::vector<Value> parts;
    if (text.View().empty() || times == 0) return OfTexts(std::move(parts));
    std::size_t from = 0;
    while (!delimiter.View().empty() && parts.size() + 1 < times) {
        const std::size_t found = text.View().find(delimiter.View(), from);
        if (found == NotFound) break;
        parts.push_back(Value::OfText(text.Original().substr(from, found - from)));
        from = found + delimiter.View().size();
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
    std::vector<Value> kept;
    for (const Value& element : array->Elements()) {
        const Searched text(ToText(context, element), ignoreCase);
        if ((text.View().find(wanted.View()) != NotFound) == include)
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
