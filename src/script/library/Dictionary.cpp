#include "script/library/Dictionary.h"

#include <array>
#include <utility>
#include <vector>

#include "script/library/KeyTable.h"
#include "script/library/Listing.h"
#include "vbscript/Array.h"
#include "vbscript/Holder.h"
#include "vbscript/MemberTable.h"

namespace tessaloom::library {

namespace {

using namespace vbscript;

constexpr int KeyExists = 457, ElementNotFound = 32811;

class Dictionary final : public TableObject<Dictionary>, public Holder {
public:
    static constexpr std::u16string_view Name = u"Dictionary";
    static std::span<const Member<Dictionary>> Members();

    std::unique_ptr<Enumerator> Enumerate(Context&) override {
        return std::make_unique<Listing>(Gathered(&KeyTable::Pair::key));
    }

    void DropValues() override {
        KeyTable empty;
        empty.ignoreCase = pairs_.ignoreCase;
        const KeyTable removed = std::exchange(pairs_, std::move(empty));
    }

private:
    BudgetVector<Value> Gathered(Value KeyTable::Pair::*part) const {
        BudgetVector<Value> values;
        values.reserve(pairs_.Count());
        pairs_.ForEach([&](const KeyTable::Pair& pair) {
            TimeLimit::Poll();
            values.push_back(pair.*part);
        });
        return values;
    }

    std::size_t Place(const Value& key) const {
        const std::size_t place = pairs_.Find(key);
        if (place == KeyTable::None) throw RuntimeError(ElementNotFound);
        return place;
    }

    static Value Item(Dictionary& self, const Arguments& arguments) {
        return self.pairs_.At(self.pairs_.FindOrAdd(arguments[0])).item;
    }

    static Value PlainItem(Object& self, Context&, const Value& key) {
        KeyTable& pairs = static_cast<Dictionary&>(self).pairs_;
        return pairs.At(pairs.FindOrAdd(key)).item;
    }

    static Value SetItem(Dictionary& self, const Arguments& arguments) {
        return std::exchange(self.pairs_.At(self.pairs_.FindOrAdd(arguments[0])).item,
                             arguments.NewValue().Assigned());
    }

    /// Without Set an object gives its default member's value.
    static Value LetItem(Dictionary& self, const Arguments& arguments) {
        Value scratch;
        const Value plain = PlainValue(arguments.GetContext(), arguments.NewValue(), scratch);
        return std::exchange(self.pairs_.At(self.pairs_.FindOrAdd(arguments[0])).item, plain.Assigned());
    }

    static Value Add(Dictionary& self, const Arguments& arguments) {
        const std::size_t before = self.pairs_.Count();
        const std::size_t place = self.pairs_.FindOrAdd(arguments[0]);
        if (self.pairs_.Count() == before) throw RuntimeError(KeyExists);
        self.pairs_.At(place).item = arguments[1].Assigned();
        return {};
    }

    static Value Rename(Dictionary& self, const Arguments& arguments) {
        const std::size_t place = self.Place(arguments[0]);
        const std::size_t taken = self.pairs_.Find(arguments.NewValue());
        if (taken != KeyTable::None && taken != place) throw RuntimeError(KeyExists);
        return self.pairs_.ChangeKey(arguments[0], arguments.NewValue());
    }

    static Value Remove(Dictionary& self, const Arguments& arguments) {
        const KeyTable::Pair removed = self.pairs_.Remove(self.Place(arguments[0]));
        return {};
    }

    static Value RemoveAll(Dictionary& self, const Arguments&) {
        self.DropValues();
        return {};
    }

    static Value SetCompareMode(Dictionary& self, const Arguments& arguments) {
        const int mode = ToLong(arguments.GetContext(), arguments.NewValue());
        if (self.pairs_.Count() > 0 || mode < 0) Fail(ErrorCode::InvalidCall);
        self.compareMode_ = mode;
        KeyTable fresh;
        fresh.ignoreCase = mode != 0;
        self.pairs_ = std::move(fresh);
        return {};
    }

    KeyTable pairs_;
    int compareMode_ = 0;
};

std::span<const Member<Dictionary>> Dictionary::Members() {
    using Self = Dictionary;
    static constexpr std::array<Member<Self>, 10> All = {{
        {u"Item", 1, 1, Item, LetItem, SetItem, IsDefault::Yes, {.item = PlainItem}},
        {u"Exists", 1, 1,
         [](Self& self, const Arguments& arguments) {
             return Value::OfBoolean(self.pairs_.Find(arguments[0]) != KeyTable::None);
         }},
        {u"Add", 2, 2, Add},
        {u"Count", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfLong(static_cast<std::int32_t>(self.pairs_.Count()));
         }},
        {u"Keys", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfArray(Array::OfValues(self.Gathered(&KeyTable::Pair::key)));
         }},
        {u"Items", 0, 0,
         [](Self& self, const Arguments&) {
             return Value::OfArray(Array::OfValues(self.Gathered(&KeyTable::Pair::item)));
         }},
        {u"Key", 1, 1, nullptr, Rename, Rename},
        {u"Remove", 1, 1, Remove},
        {u"RemoveAll", 0, 0, RemoveAll},
        {u"CompareMode", 0, 0, [](Self& self, const Arguments&) { return Value::OfLong(self.compareMode_); },
         SetCompareMode},
    }};
    return All;
}

}  // namespace

Ref<Object> MakeDictionary() { return Make<Dictionary>(); }

}  // namespace tessaloom::library
