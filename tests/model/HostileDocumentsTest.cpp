#include "model/DocumentCheck.h"
#include "model/Documents.h"

namespace tessaloom::testing {
namespace {

/// Values that nobody would type on purpose.
const std::string Nasty[] = {
    // clang-format off
    "-1", "0", "1", "2", "3", "4", "999", "1e308", "-1e308", "1e-308", "nan", "inf", "-0",
    "99999999999999999999", "-2147483648", "2147483647", "0x10", "&HFFFFFFFF", "&H", "&HG", "24:61:61",
    "99:99:99", "-1:00:00", "1:2", "::", "25.12.2026", "True", "False", "yes", "\xff\xfe", "\xc3\xa4",
    "\xf0\x9f\x98\x80", "[x]", "=", ";", "\\", "..\\..", "/dev/zero", "p.por", "c.can", "'", "\"", "&34&34",
    "<Date>", "<TimeHH", std::string(300, 'x'), "a\tb", "2.5",
    // clang-format on
};

/// Half of the damage is to values, half to single bytes.
std::string Damaged(std::string text, std::mt19937& random) {
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    for (std::size_t count = 1 + below(30); count > 0; --count) {
        const std::size_t line = text.find('\n', below(text.size()));
        const std::size_t equals = line == text.npos ? line : text.find('=', line);
        if (below(2) == 0 || equals == text.npos)
            text[below(text.size())] = static_cast<char>(1 + below(255));
        else
            text.replace(equals + 1, text.find_first_of("\r\n", equals) - equals - 1,
                         Nasty[below(std::size(Nasty))]);
    }
    return text;
}

TEST(HostileDocuments, AreLoadedDrawnAndSavedStably) {
    std::mt19937 random(20061114);
    const std::string canvasText = Data("completed.can"), portfolioText = Data("completed.por");
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        Documents documents;
        documents.Write("c.can", Damaged(canvasText, random));
        documents.Write("p.por", Damaged("[Canvas01]\r\nFileName=c.can\r\n" + portfolioText, random));
        CheckDocument(documents.platform, "p.por");
        documents.portfolio.SetFileName("p.por");
        documents.portfolio.LoadFile();
        for (int i = 0; i < 3; ++i) documents.Tick();
        documents.portfolio.Canvas(1).SetNeedSaving(true);
        documents.portfolio.SaveCanvases();
        documents.portfolio.SaveFile();

        const auto saveAgain = [&] {
            Portfolio again(documents.platform);
            again.SetFileName("p.por");
            again.LoadFile();
            again.Canvas(1).SetNeedSaving(true);
            again.SaveCanvases();
            again.SaveFile();
            return documents.files["c.can"].bytes + documents.files["p.por"].bytes;
        };
        const std::string saved = saveAgain();
        EXPECT_EQ(saveAgain(), saved);
    }
}

}  // namespace
}  // namespace tessaloom::testing
