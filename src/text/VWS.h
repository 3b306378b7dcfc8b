#pragma once

#include "core/OwnedSettings.h"
#include "time/PresentTime.h"
#include "time/TimedActivity.h"

#include <array>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaloom {

class FileSystem;
struct FileStamp;

/// The weather input: a one-record file that a weather station's program rewrites with its latest readings.
///
/// Owned by the portfolio, which stores its settings. Moments are local day numbers (time/modTime.h).
/// Readings keep the units of the station's program; a missing one is -1000.
class VWS : private OwnedSettings {
public:
    static constexpr double Missing = -1000;
    static constexpr int Values = 120;  ///< Readings by field number up to 99, derived values from 100.
    static constexpr int Texts = 100;

    using Record = std::array<double, Values>;

    /// The fields of a record that values are derived from.
    enum Field {
        WindSpeed = 8,
        Gust = 9,
        WindDirection = 10,
        OutdoorTemperature = 14,
        Barometer = 15,
        DailyRain = 17,
        OutdoorTemperatureRate = 34,
        BarometerRate = 36,
    };

    /// The derived values.
    enum Derived {
        MaxTempToday = 100,
        MinTempToday = 101,
        MaxTempYesterday = 102,
        MinTempYesterday = 103,
        BarometerTrend = 104,
        TemperatureTrend = 105,
        StatWind = 106,  ///< Of the vector mean.
        StatDirection = 107,
        StatGust = 108,
        MaxGustYesterday = 109,
        MaxGustToday = 110,
        RainAtDayChange = 111,
        RainYesterday = 112,
        SeaLevelBarometer = 115,
    };

    static constexpr std::string_view LastDataFile = "lastdata.csv";  ///< In the directory of the start.

    /// Records that the history holds, with the free place between its ends: 41 hours at the usual 15 s.
    static constexpr int DatabaseRecords = 10000;

    /// All outlive the object. `time` is the capture time of the portfolio.
    VWS(SettingsOwner& owner, const PresentTime& time, FileSystem& files);

    /// Reads the file. True when it held a new record, which is then taken: readings, derived values,
    /// history. A file that cannot be read, is being written, or holds no whole record leaves the previous
    /// readings in place; it is reported when that happens twice in a row.
    bool GetCSVData();

    /// Keeps the daily values in `LastDataFile`, or takes them from there, so that they survive a restart.
    /// The first reading takes them, each record that changes them keeps them.
    void SaveLastData();
    void LoadLastData();

    /// Reading is on. Switching it on makes it due at once.
    bool CSVEnabled() const { return enabled_; }
    void SetCSVEnabled(bool enabled);

    /// Path of the record's file.
    const std::string& CSVFile() const { return file_; }
    void SetCSVFile(std::string_view path);

    /// Seconds between two readings, 0 .. 86400; 0: never.
    double CSVDelay() const { return timing_.Rate(); }
    void SetCSVDelay(double seconds);

    /// Seconds after midnight, 0 .. 86400.
    int CSVBaseTime() const { return static_cast<int>(timing_.BaseTime()); }
    void SetCSVBaseTime(int seconds);

    double NextTime() const { return timing_.NextTime(); }
    bool Due() const { return enabled_ && timing_.Due(time_.Now()); }
    void SetNextTime() { timing_.SetNextTime(time_.Now()); }
    void ForceUpdate() { timing_.Force(time_.Now()); }
    void RestartTiming() { timing_.Restart(time_.Now()); }

    /// The time stamp of the last record taken, a moment; 0: none yet.
    double CSVLastTime() const { return lastTime_; }

    /// The window of the wind statistics, seconds, 0 .. 86400.
    int CSVWindStatisticsInterval() const { return windStatisticsInterval_; }
    void SetCSVWindStatisticsInterval(int seconds) { Set(windStatisticsInterval_, seconds, {0, 86400}); }

    /// The rate, per hour as the station writes it, from which on a trend is rising; its negative: falling.
    double CSVBarometricTrendThreshold() const { return barometricTrendThreshold_; }
    void SetCSVBarometricTrendThreshold(double rate) { Set(barometricTrendThreshold_, rate, {0, 1000}); }
    double CSVTemperatureTrendThreshold() const { return temperatureTrendThreshold_; }
    void SetCSVTemperatureTrendThreshold(double rate) { Set(temperatureTrendThreshold_, rate, {0, 1000}); }

    /// Added to every barometer reading, in its unit, -1000 .. 1000.
    double CSVBarometerOffset() const { return barometerOffset_; }
    void SetCSVBarometerOffset(double offset) { Set(barometerOffset_, offset, {-1000, 1000}); }

    /// Of the station, in `CSVAltitudeUnits`, -2000 .. 40000.
    double CSVAltitude() const { return altitude_; }
    void SetCSVAltitude(double altitude) { Set(altitude_, altitude, {-2000, 40000}); }

    /// 0: metres, 1: feet.
    int CSVAltitudeUnits() const { return altitudeUnits_; }
    void SetCSVAltitudeUnits(int units) { Set(altitudeUnits_, units, {0, 1}); }

    /// 0: Celsius, 1: Fahrenheit.
    int CSVTemperatureUnits() const { return temperatureUnits_; }
    void SetCSVTemperatureUnits(int units) { Set(temperatureUnits_, units, {0, 1}); }

    /// The file could be read the last time.
    bool CSVDataValid() const { return dataValid_; }

    /// Reading or derived value k, 0 .. 119; `Missing` for any other k.
    double CSVData(int k) const;

    /// Text of field k as read, 0 .. 99; "-1000" when missing (as an empty field is) and for any other k.
    const std::string& CSVDataS(int k) const;

    /// Why the last reading found no whole record, in words; "" when it did, and before the first.
    const std::string& Failure() const { return failure_; }

    /// For scripts; any other k is ignored.
    void SetCSVData(int k, double value);
    void SetCSVDataS(int k, std::string_view text);

    /// Whether the history is kept, from which the wind statistics come. On at first.
    bool CSVEnableDatabase() const { return databaseEnabled_; }
    void SetCSVEnableDatabase(bool enabled) { databaseEnabled_ = enabled; }

    /// The history is a ring: records lie from the tail up to, but without, the head.
    int CSVDatabaseHeadPtr() const { return head_; }
    int CSVDatabaseTailPtr() const { return tail_; }
    int CSVDatabaseBufferSize() const { return DatabaseRecords; }

    /// Value k of the record at `index` of the ring; `Missing` where there is none.
    double CSVDatabase(int index, int k) const;

    /// For scripts; ignored where there is no record.
    void SetCSVDatabase(int index, int k, double value);

private:
    struct Kept {
        double moment = 0;
        Record data;
    };

    bool Failed(const std::string& what);
    bool IsBeingWritten(const std::optional<FileStamp>& before, std::string_view text);
    void Take(const std::vector<std::string>& fields, double moment);
    void ResetDailyData();
    void ProcessNewData();
    void ProcessNewDatabaseData();
    void AddToDatabase(double moment);
    double SeaLevelPressure() const;
    const double* Recorded(int index, int k) const;
    double& At(int k) { return data_[static_cast<std::size_t>(k)]; }
    bool Has(int k) const { return CSVData(k) != Missing; }

    const PresentTime& time_;
    FileSystem& files_;
    TimedActivity timing_{
        {0, 86400},
        {0, 86400}
    };

    bool enabled_ = false;
    std::string file_;
    int windStatisticsInterval_ = 60;
    double barometricTrendThreshold_ = 0.05;
    double temperatureTrendThreshold_ = 1;
    double barometerOffset_ = 0;
    double altitude_ = 0;
    int altitudeUnits_ = 0;
    int temperatureUnits_ = 0;

    double lastTime_ = 0;
    bool dataValid_ = false;
    double dailyDate_ = 0;  ///< The day to which the daily values belong; 0: none yet.
    bool lastDataLoaded_ = false;
    bool unsaved_ = false;  ///< Daily values changed that `LastDataFile` does not hold yet.
    bool putOff_ = false;   ///< The last reading left a file that had just been written for the next one.
    std::string failure_;
    int failures_ = 0;  ///< Readings in a row without a whole record.
    Record data_;
    std::array<std::string, Texts> texts_;

    bool databaseEnabled_ = true;
    std::deque<Kept> database_;  ///< Grows up to `DatabaseRecords`.
    int head_ = 0, tail_ = 0;
};

}  // namespace tessaloom
