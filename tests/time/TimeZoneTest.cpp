#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "time/TimeZoneLookup.h"
#include "time/modTime.h"

namespace tessaloom::testing {
namespace {

using State = ZoneRecord::State;

TEST(TimeZone, NamesAndCountsTheTimeInForce) {
    const std::string standard = "Eastern Standard Time", daylight = "Eastern Daylight Time";
    struct {
        ZoneRecord zone;
        std::string name;
        double offset;  // hours
    } const rows[] = {
  // clang-format off
        {{State::Standard, 300, 0, -60, standard, daylight}, standard, 5},
        {{State::Daylight, 300, 0, -60, standard, daylight}, daylight, 4},
        {{State::Standard, -330, 0, 0, "India Standard Time", ""}, "India Standard Time", -5.5},
        {{State::Standard, 0, 30, 0, "", "Summer"}, "Not Available", 0.5},
        {{State::Daylight, 0, 30, -60, "Winter", ""}, "Not Available", -1},
        {{State::Unknown, 120, 30, -60, "Winter", "Summer"}, "Unknown", 2},
  // clang-format on
    };
    FakeTime time;
    for (const auto& row : rows) {
        time.ZoneInForce() = row.zone;
        EXPECT_EQ(modTime::GetTimeZone(), row.name);
        EXPECT_EQ(modTime::GMTOffset(), row.offset) << row.name;
    }
}

TEST(TimeZoneLookup, FindsTheFirstPairOfAName) {
    constexpr const char* None = "(none)";
    constexpr const char* File =
        "no comma here\r\n  Eastern Standard Time ,  EST \r\n\r\nEastern Standard Time,second\r\n"
        "Central European Time,CET, or so\nbare line feed,BLF\r\nempty,\r\n,nameless\r\nlast,end";
    struct {
        const char *file, *name, *value;
    } const rows[] = {
  // clang-format off
        {File, "Eastern Standard Time", "EST"},
        {File, "EASTERN standard time", "EST"},
        {File, "central european time", "CET, or so"},
        {File, "bare line feed", "BLF"},
        {File, "empty", ""},
        {File, "", "nameless"},
        {File, "last", "end"},
        {File, "no comma here", None},
        {File, "Eastern Standard", None},
        {"Heure d'\xC9t\xE9,\xC9t\xE9", "heure d'\u00E9t\u00E9", "\u00C9t\u00E9"},  // Windows-1252
        {"\xEF\xBB\xBFmarked,yes", "marked", "yes"},
        {"another,file", "last", None},
  // clang-format on
    };
    TimeZoneLookup lookup;
    for (const auto& row : rows) {
        lookup.Load(row.file);
        const std::string* value = lookup.Find(row.name);
        EXPECT_EQ(value ? *value : None, row.value) << row.name;
    }
}

TEST(TimeZoneLookup, IsReadFromItsFileAndEmptyWithoutIt) {
    constexpr const char* None = "Not defined in timezone.txt";
    FakeTime time;
    MemoryFileSystem files;
    files["timezone.txt"].bytes = "Pacific Standard Time,PST\r\nEASTERN STANDARD TIME,EST\r\n";
    for (const bool there : {true, false}) {
        modTime::LoadTimeZoneLookup(files);
        time.ZoneInForce().standardName = "Eastern Standard Time";
        EXPECT_EQ(modTime::ConvertedTimeZone(), there ? "EST" : None);
        time.ZoneInForce().standardName = "Arabian Standard Time";
        EXPECT_EQ(modTime::ConvertedTimeZone(), None);
        files.DeleteFile("timezone.txt");
    }
}

TEST(SunTimes, AreComputedOnceForEachLocalDay) {
    FakeTime time(FakeTime::FirstDay + 0.5);
    modTime::SetStation(40, -75);
    time.ZoneInForce().bias = 300;
    const double sunrise = modTime::Sunrise(), sunset = modTime::Sunset();
    EXPECT_LT(sunrise, sunset);

    modTime::SetStation(-40, 75);
    time.ZoneInForce().bias = -300;
    time.Set(FakeTime::FirstDay, 23, 59, 59.99);
    EXPECT_EQ(modTime::GetSunrise(), sunrise);
    EXPECT_EQ(modTime::GetSunset(), sunset);
    EXPECT_EQ(time.ZoneReadings(), 1);

    time.Advance(0.01);
    EXPECT_LT(modTime::Sunrise(), sunrise) << "summer in the south";
    EXPECT_GT(modTime::Sunset(), sunset);
    EXPECT_EQ(time.ZoneReadings(), 2);
}

}  // namespace
}  // namespace tessaloom::testing
