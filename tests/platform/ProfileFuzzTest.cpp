#include "platform/TextEncoding.h"
#include "platform/profile/ProfileDocument.h"
#include "platform/profile/ProfileFiles.h"
#include "support/MemoryFileSystem.h"

// Random files, most of them made of what profile files are made of, under a fixed seed.

namespace tessaloom::testing {
namespace {

// clang-format off
constexpr std::string_view Pieces[] = {
    "[s]", "[t]", "[", "]", "k=1", "k", "m", "=", ";", "\"", "'", " ", "\t", "\r", "\n", "\r\n", "\r\n",
    "\r\n[s]\r\nk=2\r\n", "&34", "\xEF\xBB\xBF", "\xE9", "\xC3\xA9", "\x80", "x=y=z\n", "; c\r\n", "[S] junk\n"};
constexpr std::string_view Names[] = {"s", "S", "t", "new", "\xC3\xA9", "k", "K ", "m", "x"};
constexpr std::string_view PlainValues[] = {"", "1", "a b", "a=b;c", "[s]", "&34", "\xC3\xA9\xE2\x82\xAC", "x'"};
constexpr std::string_view WildNames[] = {"a=b", ";k", "[k", "a]b", "", "s\r\n[t]", "\"q\""};
constexpr std::string_view WildValues[] = {"a\r\nb", "\n[t]\nk=3", "x\r", "\r\n\r\n", "]", "a\nk=9\nm=8", "\xFF"};
// clang-format on

class ProfileFuzzTest : public ::testing::Test {
protected:
    std::size_t Below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }

    std::string_view OneOf(std::span<const std::string_view> choices) {
        return choices[Below(choices.size())];
    }

    std::string File() {
        std::string bytes;
        for (std::size_t pieces = Below(30); pieces > 0; --pieces) bytes += OneOf(Pieces);
        for (std::size_t mutations = Below(3); mutations > 0 && !bytes.empty(); --mutations)
            bytes[Below(bytes.size())] = static_cast<char>(1 + Below(255));
        return bytes;
    }

    std::mt19937 random_{20231};
};

/// Everything that can be learnt from a document.
std::string Seen(const ProfileDocument& document) {
    std::string seen;
    for (const ProfileSection& section : document.Sections()) {
        seen += "\n[" + section.name + "] " + std::to_string(section.line);
        for (const ProfileKey& key : document.Keys(section.name)) {
            seen += "\n" + std::to_string(key.line) + " " + key.name + "=" + key.value + " ";
            seen += document.Find(section.name, key.name).value_or("(missing)");
        }
    }
    return seen;
}

/// What `Find` gives for every key, by folded section and key name.
std::map<std::pair<std::string, std::string>, std::string> Values(const ProfileDocument& document) {
    std::map<std::pair<std::string, std::string>, std::string> values;
    for (const ProfileSection& section : document.Sections())
        for (const ProfileKey& key : document.Keys(section.name))
            values[{FoldCase(section.name), FoldCase(key.name)}] = *document.Find(section.name, key.name);
    return values;
}

std::string Trimmed(std::string_view name) {
    return std::string(name.substr(0, name.find_last_not_of(' ') + 1));
}

TEST_F(ProfileFuzzTest, KeepsEveryByteAndEveryOtherKey) {
    for (int round = 0; round < 5000; ++round) {
        const std::string bytes = File();
        SCOPED_TRACE(::testing::PrintToString(bytes));
        ProfileDocument document(bytes);
        const std::string_view mark = bytes.starts_with(Utf8Mark) ? Utf8Mark : "";
        ASSERT_EQ(document.Text(), std::string(mark) + ToUtf8(std::string_view(bytes).substr(mark.size())));
        for (int change = 0; change < 4; ++change) {
            const std::string_view section = OneOf(Names), key = OneOf(Names), value = OneOf(PlainValues);
            auto expected = Values(document);
            expected[{FoldCase(Trimmed(section)), FoldCase(Trimmed(key))}] = value;
            document.Set(section, key, value);
            ASSERT_EQ(document.Find(section, key), value);
            ASSERT_EQ(Values(document), expected);
            ASSERT_FALSE(document.Set(section, key, value));
        }
        ASSERT_EQ(Seen(document), Seen(ProfileDocument(document.Text())));
    }
}

TEST_F(ProfileFuzzTest, SeesAfterAnyChangeWhatTheFileSays) {
    for (int round = 0; round < 5000; ++round) {
        const std::string bytes = File();
        SCOPED_TRACE(::testing::PrintToString(bytes));
        ProfileDocument document(bytes);
        for (int change = 0; change < 6; ++change) {
            const auto name = [&] { return Below(3) ? OneOf(Names) : OneOf(WildNames); };
            const std::string_view section = name(), key = name();
            const std::string value = ToUtf8(Below(2) ? OneOf(PlainValues) : OneOf(WildValues));
            if (Below(5) == 0) {
                document.RemoveSection(section);
            } else {
                document.Set(section, key, value);
            }
            SCOPED_TRACE(::testing::PrintToString(document.Text()));
            ASSERT_EQ(Seen(document), Seen(ProfileDocument(document.Text())));
        }
    }
}

TEST_F(ProfileFuzzTest, SurvivesAnyBytes) {
    MemoryFileSystem files;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes(Below(200), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(Below(2) ? Below(256) : "[]=;\r\n\"' sk"[Below(11)]);
        files["a.ini"].bytes = bytes;
        ProfileFiles profile(files);
        const bool text = bytes.find('\0') == bytes.npos;
        ASSERT_EQ(profile.Set("a.ini", "s", "k", "value"), text);
        ASSERT_EQ(profile.Get("a.ini", "s", "k"), text ? "value" : "");
        ASSERT_EQ(files.ReadFile("a.ini") == bytes, !text);
    }
}

}  // namespace
}  // namespace tessaloom::testing
