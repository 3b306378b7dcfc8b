#include "support/FakeTime.h"
#include "support/MemoryFileSystem.h"
#include "time/TimeZoneLookup.h"
#include "time/modTime.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

using State = ZoneRecord::State;
using testing::FakeTime;

TEST(TimeZone, NamesAndCountsTheTimeInForce) {
    struct {
        ZoneRecord zone;
        const char* name;
        double offset;  // hours
    } const rows[] = {
        {{State::Standard, 300, 0, -60, "Eastern Standard Time", "Eastern Daylight Time"},
         "Eastern Standard Time",                                                                                 5   },
        {{State::Daylight, 300, 0, -60, "Eastern Standard Time", "Eastern Daylight Time"},
         "Eastern Daylight Time",                                                                                 4   },
        {{State::Standard, -330, 0, 0, "India Standard Time", ""},                         "India Standard Time", -5.5},
        {{State::Standard, 0, 30, 0, "", "Summer"},                                        "Not Available",       0.5 },
        {{State::Daylight, 0, 30, -60, "Winter", ""},                                      "Not Available",       -1  },
        {{State::Unknown, 120, 30, -60, "Winter", "Summer"},                               "Unknown",             2   },
    };
    FakeTime time;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        time.ZoneInForce() = row.zone;
        EXPECT_EQ(modTime::GetTimeZone(), row.name);
        EXPECT_EQ(modTime::GMTOffset(), row.offset);
    }
}

TEST(TimeZoneLookup, FindsTheFirstPairOfAName) {
    TimeZoneLookup lookup;
    lookup.Load(
        "no comma here\r\n  Eastern Standard Time ,  EST \r\n\r\nEastern Standard Time,second\r\n"
        "Central European Time,CET, or so\nbare line feed,BLF\r\nempty,\r\n,nameless\r\nlast,end");
    struct {
        const char* name;
        const char* value;
    } const rows[] = {
        {"Eastern Standard Time", "EST"       },
        {"EASTERN standard time", "EST"       },
        {"central european time", "CET, or so"},
        {"bare line feed",        "BLF"       },
        {"empty",                 ""          },
        {"",                      "nameless"  },
        {"last",                  "end"       },
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string* value = lookup.Find(row.name);
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(*value, row.value);
    }
    EXPECT_EQ(lookup.Find("no comma here"), nullptr);
    EXPECT_EQ(lookup.Find("Eastern Standard"), nullptr);

    lookup.Load("Heure d'\xC9t\xE9,\xC9t\xE9");  // Windows-1252
    const std::string* summer = lookup.Find("heure d'\u00E9t\u00E9");
    ASSERT_NE(summer, nullptr);
    EXPECT_EQ(*summer, "\u00C9t\u00E9");

    lookup.Load("\xEF\xBB\xBFmarked,yes");
    EXPECT_NE(lookup.Find("marked"), nullptr);
    EXPECT_EQ(lookup.Find("last"), nullptr) << "of the file before";
}

TEST(TimeZoneLookup, IsReadFromItsFileAndEmptyWithoutIt) {
    FakeTime time;
    time.ZoneInForce().standardName = "Eastern Standard Time";
    testing::MemoryFileSystem files;
    files["timezone.txt"].bytes = "Pacific Standard Time,PST\r\nEASTERN STANDARD TIME,EST\r\n";
    modTime::LoadTimeZoneLookup(files);
    EXPECT_EQ(modTime::ConvertedTimeZone(), "EST");
    time.ZoneInForce().standardName = "Arabian Standard Time";
    EXPECT_EQ(modTime::ConvertedTimeZone(), "Not defined in timezone.txt");

    time.ZoneInForce().standardName = "Eastern Standard Time";
    ASSERT_TRUE(files.DeleteFile("timezone.txt"));
    modTime::LoadTimeZoneLookup(files);
    EXPECT_EQ(modTime::ConvertedTimeZone(), "Not defined in timezone.txt");
}

TEST(SunTimes, AreComputedOnceForEachLocalDay) {
    FakeTime time(FakeTime::FirstDay + 0.5);
    modTime::SetStation(40, -75);
    time.ZoneInForce().bias = 300;
    const double sunrise = modTime::Sunrise(), sunset = modTime::Sunset();
    EXPECT_LT(sunrise, sunset);
    EXPECT_EQ(time.ZoneReadings(), 1);

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
}  // namespace tessaloom
