#include "vbscript/Builtins.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "vbscript/BuiltinTables.h"

namespace tessaloom::vbscript {

namespace {

std::vector<Builtin> CollectAll() {
    std::vector<Builtin> all;
    for (const auto functions : {TextFunctions(), ByteFunctions(), SearchFunctions(), MathFunctions(),
                                 DateFunctions(), FormatFunctions(), TypeFunctions(), HostFunctions()})
        all.insert(all.end(), functions.begin(), functions.end());
    std::ranges::sort(all,
                      [](const Builtin& a, const Builtin& b) { return NameComesBefore(a.name, b.name); });
    return all;
}

}  // namespace

std::span<const Builtin> Builtins() {
    static const std::vector<Builtin> all = CollectAll();
    return all;
}

int FindBuiltin(std::u16string_view name) {
    const auto all = Builtins();
    const auto found = std::lower_bound(
        all.begin(), all.end(), name,
        [](const Builtin& row, std::u16string_view wanted) { return NameComesBefore(row.name, wanted); });
    return found != all.end() && SameName(found->name, name) ? static_cast<int>(found - all.begin()) : -1;
}

}  // namespace tessaloom::vbscript
