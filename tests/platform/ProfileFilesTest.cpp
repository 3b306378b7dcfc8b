#include "platform/profile/ProfileFiles.h"

#include "platform/TextEncoding.h"
#include "support/FaultyFileSystem.h"
#include "support/MemoryFileSystem.h"
#include "support/Tsv.h"

namespace tessaloom::testing {
namespace {

constexpr const char* Path = "a.ini";

class ProfileFilesTest : public ::testing::Test {
protected:
    /// Puts `bytes` into the file, as another program would.
    void Given(std::string_view bytes) { memory_[Path].bytes = bytes; }
    std::string Bytes() { return memory_.ReadFile(Path).value_or("<missing>"); }
    std::string Get(std::string_view section, std::string_view key) {
        return profile_.Get(Path, section, key);
    }
    /// All sections and keys, with their lines.
    std::string Listed() {
        std::string all;
        for (const ProfileSection& section : profile_.Sections(Path)) {
            all += std::to_string(section.line) + " [" + section.name + "], ";
            for (const ProfileKey& key : profile_.Keys(Path, section.name))
                all += std::to_string(key.line) + " " + key.name + "=" + key.value + ", ";
        }
        return all;
    }
    bool Set(std::string_view key, std::string_view value) { return profile_.Set(Path, "s", key, value); }

    MemoryFileSystem memory_;
    FaultyFileSystem files_{memory_};
    std::vector<std::string> reports_;
    ProfileFiles profile_{files_, [this](const std::string& message) { reports_.push_back(message); }};
};

TEST_F(ProfileFilesTest, ReadsAsThePlatformOfOriginDoes) {
    const auto rows = ReadTsv(TEST_DATA "/vectors/profile_read.tsv");
    ASSERT_EQ(rows.size(), 34u);
    for (const TsvRow& row : rows) {
        SCOPED_TRACE(row[0]);
        memory_.DeleteFile(Path);
        if (row[1] != "<missing>") Given(row[1]);
        const std::string value = Get(ToUtf8(row[2]), ToUtf8(row[3]));
        EXPECT_EQ(value, ToUtf8(row[5]));
        EXPECT_EQ(std::to_string(FromWindows1252(row[5]) == value ? row[5].size() : value.size()), row[4]);
    }
    EXPECT_TRUE(reports_.empty());
}

TEST_F(ProfileFilesTest, WritesAsThePlatformOfOriginDoesAtOnceAndInATransaction) {
    const auto rows = ReadTsv(TEST_DATA "/vectors/profile_write.tsv");
    ASSERT_EQ(rows.size(), 18u);
    for (const TsvRow& row : rows) {
        for (const bool together : {false, true}) {
            SCOPED_TRACE(row[0]);
            memory_.DeleteFile(Path);
            if (row[1] != "<missing>") Given(row[1]);
            if (together) profile_.Begin(Path);
            for (std::string_view writes = row[2]; !writes.empty();) {
                const std::size_t end = std::min(writes.find(" || "), writes.size());
                const std::string_view one = writes.substr(0, end);
                writes.remove_prefix(std::min(end + 4, writes.size()));
                const std::size_t close = one.find(']'), equals = one.find('=');
                EXPECT_TRUE(profile_.Set(Path, one.substr(1, close - 1),
                                         one.substr(close + 1, equals - close - 1), one.substr(equals + 1)));
            }
            EXPECT_TRUE(profile_.Commit(Path));  // without a transaction: nothing to do
            EXPECT_EQ(Bytes(), ToUtf8(row[3]));
        }
    }
}

TEST_F(ProfileFilesTest, KeepsEveryLineThatIsNotSetAndStoresLineBreaksAsTheyAre) {
    for (const TsvRow& row : ReadTsv(TEST_DATA "/vectors/profile_lines.tsv")) {
        SCOPED_TRACE(row[0]);
        Given(row[1]);
        EXPECT_TRUE(Set(row[2], row[3]));
        EXPECT_EQ(Bytes(), row[4]);
    }
}

TEST_F(ProfileFilesTest, CutsValuesByCharacters) {
    std::string value;
    for (int i = 0; i < 300; ++i) value += "\xC3\xA9";
    Set("k", value);
    EXPECT_EQ(Get("s", "k"), value.substr(0, 254 * 2));
    EXPECT_EQ(profile_.Get(Path, "s", "k", 1000), value);
}

TEST_F(ProfileFilesTest, RemovesSectionsAndListsTheRest) {
    Given("k=0\n\n[a]\n1=x\n[B]\n; note\n2 = \"y\"\nno key\n2=again\n[ c ]\n[A]\n3=z\n");
    EXPECT_TRUE(profile_.RemoveSection(Path, "a"));
    EXPECT_EQ(Bytes(), "k=0\n\n[B]\n; note\n2 = \"y\"\nno key\n2=again\n[ c ]\n");
    EXPECT_EQ(Listed(), "3 [B], 5 2=y, 7 2=again, 8 [c], ");
    EXPECT_TRUE(profile_.Keys(Path, "none").empty());
    const int before = memory_.Changes();
    EXPECT_TRUE(profile_.RemoveSection(Path, "none"));
    EXPECT_EQ(memory_.Changes(), before);
}

TEST_F(ProfileFilesTest, AddsWhereSectionsWereRemoved) {
    Given("[a]\n1=x\n[b]\n2=y\n[a]\n[c]\n3=z\n[A]\n4=w");
    profile_.Begin(Path);
    EXPECT_TRUE(profile_.RemoveSection(Path, "A"));
    EXPECT_TRUE(profile_.RemoveSection(Path, "c"));
    EXPECT_EQ(profile_.Get(Path, "a", "1") + profile_.Get(Path, "c", "3"), "");
    EXPECT_TRUE(profile_.Set(Path, "a", "5", "v"));
    EXPECT_TRUE(profile_.Set(Path, "b", "6", "u"));
    EXPECT_TRUE(profile_.RemoveSection(Path, "b"));
    EXPECT_TRUE(profile_.Set(Path, "b", "7", "t"));
    EXPECT_EQ(Listed(), "1 [a], 2 5=v, 3 [b], 4 7=t, ");
    EXPECT_TRUE(profile_.Commit(Path));
    EXPECT_EQ(Bytes(), "[a]\r\n5=v\r\n[b]\r\n7=t\r\n");
}

TEST_F(ProfileFilesTest, ReadsAFileOnceUntilItIsChanged) {
    Given("[s]\r\nk=1\r\n");
    files_.FailNever();
    for (int i = 0; i < 5; ++i) EXPECT_EQ(Get("s", "k"), "1");
    EXPECT_EQ(files_.Operations(), 1);
    Given("[s]\r\nk=2\r\n");
    EXPECT_EQ(Get("s", "k"), "2");
    memory_.DeleteFile(Path);
    EXPECT_EQ(Get("s", "k"), "");
    EXPECT_EQ(profile_.State(Path), ProfileState::Missing);
}

TEST_F(ProfileFilesTest, WritesATransactionTogether) {
    Given("[s]\r\nk=1\r\n");
    const int before = memory_.Changes();
    profile_.Begin(Path);
    profile_.Begin(Path);
    Set("k", "2");
    EXPECT_TRUE(profile_.Commit(Path));
    Set("m", "3");
    EXPECT_EQ(Get("s", "k") + Get("s", "m"), "23");
    EXPECT_EQ(memory_.Changes(), before);
    EXPECT_TRUE(profile_.Commit(Path));
    EXPECT_EQ(memory_.Changes(), before + 1);
    EXPECT_EQ(Bytes(), "[s]\r\nk=2\r\nm=3\r\n");

    profile_.Begin(Path);
    Set("k", "2");
    EXPECT_TRUE(profile_.Commit(Path));  // nothing new
    EXPECT_EQ(memory_.Changes(), before + 1);

    profile_.Begin(Path);
    profile_.RemoveSection(Path, "s");
    Set("k", "4");
    profile_.Rollback(Path);
    EXPECT_EQ(Get("s", "k"), "2");
    EXPECT_EQ(memory_.Changes(), before + 1);
}

TEST_F(ProfileFilesTest, RepeatsATransactionOnAFileThatChangedMeanwhile) {
    Given("[s]\r\nk=1\r\nm=1\r\n[gone]\r\n");
    profile_.Begin(Path);
    Set("k", "2");
    profile_.RemoveSection(Path, "gone");
    Given("; mine\r\n[s]\r\nk=7\r\nm=7\r\n[gone]\r\n");
    EXPECT_EQ(Get("s", "m"), "1");
    EXPECT_TRUE(profile_.Commit(Path));
    EXPECT_EQ(Bytes(), "; mine\r\n[s]\r\nk=2\r\nm=7\r\n");
}

TEST_F(ProfileFilesTest, LeavesAloneWhatIsNoText) {
    const std::string bytes("[s]\r\nk=1\0\r\n", 12);
    Given(bytes);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Get("s", "k"), "");
        EXPECT_FALSE(Set("k", "2"));
        profile_.Begin(Path);
        EXPECT_FALSE(profile_.RemoveSection(Path, "s"));
        EXPECT_FALSE(profile_.Commit(Path));
    }
    EXPECT_EQ(profile_.State(Path), ProfileState::NotText);
    EXPECT_EQ(Bytes(), bytes);
    EXPECT_EQ(reports_, std::vector<std::string>{"a.ini is not text: it is left alone"});

    Given("[s]\r\n");  // it becomes no text during a transaction
    profile_.Begin(Path);
    Set("k", "2");
    Given(bytes);
    EXPECT_FALSE(profile_.Commit(Path));
    EXPECT_EQ(Bytes(), bytes);
    EXPECT_EQ(Get("s", "k"), "");
    EXPECT_TRUE(profile_.Set("b.ini", "s", "k", std::string_view("1\0x", 3)));
    EXPECT_EQ(profile_.State("b.ini"), ProfileState::Readable);
}

TEST_F(ProfileFilesTest, ReadsUpToALimitOfLines) {
    std::string lines;
    for (std::size_t i = 1; i < ProfileFiles::LineLimit; ++i) lines += "\r\n";
    Given(lines + "[s]\r\n");
    EXPECT_EQ(profile_.State(Path), ProfileState::Readable);
    Given(lines + "[s]\r\nk=1\n");
    EXPECT_EQ(profile_.State(Path), ProfileState::Unreadable);
    EXPECT_FALSE(Set("k", "2"));
    EXPECT_EQ(reports_, std::vector<std::string>{"a.ini cannot be read: it has too many lines"});
}

TEST_F(ProfileFilesTest, GoesOnAfterAFailureAndReportsItOnce) {
    Given("[s]\r\nk=1\r\n");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(Get("s", "k"), "1");
        files_.FailAt(1);
        EXPECT_FALSE(Set("k", "2"));
        profile_.Begin(Path);
        Set("k", "3");
        files_.FailAt(1);
        EXPECT_FALSE(profile_.Commit(Path));
        EXPECT_EQ(Get("s", "k"), "1");
        EXPECT_EQ(Bytes(), "[s]\r\nk=1\r\n");
    }
    EXPECT_EQ(reports_, std::vector<std::string>{"a.ini cannot be written: No space left on device"});
    files_.FailNever();
    EXPECT_TRUE(Set("k", "4"));
    files_.FailFrom(1);
    EXPECT_FALSE(Set("k", "5"));
    EXPECT_EQ(reports_.size(), 2u);
    EXPECT_EQ(Get("s", "k"), "");  // it cannot even be read any more
    EXPECT_EQ(profile_.State(Path), ProfileState::Unreadable);
    files_.FailNever();
    EXPECT_FALSE(Set("k", "6")) << "an unreadable file must not be replaced by an almost empty one";
}

TEST_F(ProfileFilesTest, ProtectsAFileThatHoldsAPassword) {
    Given("[s]\r\nk=1\r\n");
    profile_.Begin(Path);
    profile_.SetOwnerOnly(Path);
    EXPECT_FALSE(memory_[Path].ownerOnly);
    EXPECT_TRUE(profile_.Commit(Path));  // nothing else to write
    EXPECT_TRUE(memory_[Path].ownerOnly);

    profile_.SetOwnerOnly("b.ini");
    profile_.Set("b.ini", "s", "k", "1");
    EXPECT_TRUE(memory_["b.ini"].ownerOnly);
}

}  // namespace
}  // namespace tessaloom::testing
