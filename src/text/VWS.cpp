#include "text/VWS.h"

#include "core/ErrorReport.h"
#include "core/modNumbers.h"
#include "platform/FileSystem.h"
#include "text/WeatherRecord.h"
#include "time/modTime.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaloom {
namespace {

constexpr std::string_view Module = "VWS.cls";
constexpr std::string_view MissingText = "-1000";
constexpr std::size_t LargestFile = 65536;
constexpr double DegreesPerRadian = 180 / std::numbers::pi;

/// What survives a restart, in the order of the file; the day to which it belongs comes first.
constexpr int DailyValues[] = {VWS::MaxTempToday,     VWS::MinTempToday,     VWS::MaxTempYesterday,
                               VWS::MinTempYesterday, VWS::MaxGustYesterday, VWS::MaxGustToday,
                               VWS::RainAtDayChange,  VWS::RainYesterday};

bool InRange(int k, int size) { return k >= 0 && k < size; }

double NumberIn(std::string_view text) {
    double number = 0;
    return modNumbers::TryDblNI(text, number) ? number : 0;
}

/// "2026-3-9 14:05:30": read alike in every locale.
double MomentOf(const std::vector<std::string>& fields) {
    return modNumbers::CDateNI(fields[2] + "-" + fields[3] + "-" + fields[4] + " " + fields[5] + ":" +
                               fields[6] + ":" + fields[7]);
}

double TrendOf(double rate, double threshold) {
    if (rate >= threshold) return 1;
    return rate <= -threshold ? -1 : 0;
}

}  // namespace

VWS::VWS(SettingsOwner& owner, const PresentTime& time, FileSystem& files)
    : owner_(owner), time_(time), files_(files) {
    data_.fill(Missing);
    data_[0] = 0;
    texts_.fill(std::string(MissingText));
    texts_[0].clear();
}

bool VWS::GetCSVData() {
    return Trap({Module, "GetCSVData"}, [&] {
        const auto text = files_.ReadFile(file_, LargestFile);
        dataValid_ = text.has_value();
        if (!text) return false;
        const auto fields = SplitWeatherRecord(*text);
        if (!fields) return false;
        const double moment = MomentOf(*fields);
        if (moment == lastTime_) return false;  // the station has written nothing new
        if (!lastDataLoaded_) LoadLastData();
        Take(*fields, moment);
        return true;
    });
}

void VWS::Take(const std::vector<std::string>& fields, double moment) {
    for (std::size_t k = 1; k < texts_.size(); ++k) {
        const bool present = k < fields.size();
        texts_[k] = present ? fields[k] : std::string(MissingText);
        data_[k] = present ? NumberIn(fields[k]) : Missing;
    }
    const double day = std::floor(moment);
    const bool newDay = day != dailyDate_;
    const Record before = data_;
    if (newDay) ResetDailyData();
    dailyDate_ = day;
    ProcessNewData();
    if (databaseEnabled_) AddToDatabase(moment);
    lastTime_ = moment;
    const auto changed = [&](int k) { return before[static_cast<std::size_t>(k)] != CSVData(k); };
    if (newDay || std::any_of(std::begin(DailyValues), std::end(DailyValues), changed)) SaveLastData();
}

void VWS::ResetDailyData() {
    At(MaxTempYesterday) = At(MaxTempToday);
    At(MinTempYesterday) = At(MinTempToday);
    At(MaxTempToday) = At(MinTempToday) = At(OutdoorTemperature);
    At(MaxGustYesterday) = At(MaxGustToday);
    At(MaxGustToday) = At(Gust);
    At(RainYesterday) = At(RainAtDayChange);
    At(RainAtDayChange) = At(DailyRain);
}

void VWS::ProcessNewData() {
    if (Has(OutdoorTemperature)) {
        const double now = At(OutdoorTemperature);
        At(MaxTempToday) = std::max(At(MaxTempToday), now);
        At(MinTempToday) = Has(MinTempToday) ? std::min(At(MinTempToday), now) : now;
    }
    if (Has(Gust)) At(MaxGustToday) = std::max(At(MaxGustToday), At(Gust));
    if (Has(OutdoorTemperatureRate))
        At(TemperatureTrend) = TrendOf(At(OutdoorTemperatureRate), temperatureTrendThreshold_);
    if (Has(BarometerRate)) At(BarometerTrend) = TrendOf(At(BarometerRate), barometricTrendThreshold_);
    if (Has(DailyRain)) At(RainAtDayChange) = At(DailyRain);
    if (Has(Barometer)) At(Barometer) += barometerOffset_;
    At(SeaLevelBarometer) = Has(OutdoorTemperature) && Has(Barometer) ? SeaLevelPressure() : Missing;
}

/// The barometric formula: gravity 9.81 m/s2, gas constant of dry air 287 J/(kg K), and the mean temperature
/// of the air column between the station and the sea, 0.00651 K warmer per metre of descent.
double VWS::SeaLevelPressure() const {
    const double metres = altitudeUnits_ == 1 ? altitude_ * 0.3048 : altitude_;
    const double outdoors = CSVData(OutdoorTemperature);
    const double celsius = temperatureUnits_ == 1 ? (outdoors - 32) / 1.8 : outdoors;
    const double meanKelvin = celsius + 273.15 + 0.003255 * metres;
    return CSVData(Barometer) * std::exp(9.81 * metres / 287 / meanKelvin);
}

void VWS::AddToDatabase(double moment) {
    if (database_.empty()) database_.resize(DatabaseRecords);
    database_[static_cast<std::size_t>(head_)] = {moment, data_};
    ProcessNewDatabaseData();
    head_ = (head_ + 1) % DatabaseRecords;
    if (head_ == tail_) tail_ = (tail_ + 1) % DatabaseRecords;
}

/// The mean wind as a vector, each record weighing as long as it was in force: opposite winds cancel.
void VWS::ProcessNewDatabaseData() {
    const auto number = [](const Kept& kept, int k) { return kept.data[static_cast<std::size_t>(k)]; };
    const Kept& newest = database_[static_cast<std::size_t>(head_)];
    const double oldest = newest.moment - windStatisticsInterval_ / modTime::SecondsPerDay - 1e-9;
    double east = 0, north = 0, weight = 0, gust = number(newest, Gust);
    double following = newest.moment;
    for (int i = head_; i != tail_;) {
        i = (i + DatabaseRecords - 1) % DatabaseRecords;
        const Kept& kept = database_[static_cast<std::size_t>(i)];
        if (kept.moment < oldest) break;
        const double span = following - kept.moment;
        following = kept.moment;
        gust = std::max(gust, number(kept, Gust));
        if (span <= 0 || number(kept, WindSpeed) == Missing || number(kept, WindDirection) == Missing)
            continue;
        const double angle = number(kept, WindDirection) / DegreesPerRadian;
        east += std::sin(angle) * number(kept, WindSpeed) * span;
        north += std::cos(angle) * number(kept, WindSpeed) * span;
        weight += span;
    }
    if (weight == 0) {
        At(StatWind) = At(WindSpeed);
        At(StatDirection) = At(WindDirection);
        At(StatGust) = At(Gust);
        return;
    }
    const double speed = std::hypot(east, north) / weight;
    At(StatWind) = speed;
    At(StatGust) = gust;
    if (east == 0 && north == 0) return;  // no direction: the one before stays
    const double direction = std::atan2(east, north) * DegreesPerRadian;
    At(StatDirection) = direction < 0 ? direction + 360 : direction;
}

void VWS::SaveLastData() {
    Trap({Module, "SaveLastData"}, [&] {
        if (dailyDate_ == 0) return;
        std::string line = modNumbers::CStrNI(dailyDate_);
        for (const int k : DailyValues) line.append(1, ',').append(modNumbers::CStrNI(CSVData(k)));
        files_.ReplaceFile(LastDataFile, line + "\r\n");
    });
}

void VWS::LoadLastData() {
    Trap({Module, "LoadLastData"}, [&] {
        lastDataLoaded_ = true;
        const auto text = files_.ReadFile(LastDataFile, LargestFile);
        if (!text) return;
        std::string_view rest = *text;
        std::vector<double> values;
        for (std::size_t end = 0; end != std::string_view::npos && values.size() <= std::size(DailyValues);) {
            end = rest.find(',');
            double value = 0;
            if (!modNumbers::TryDblNI(rest.substr(0, std::min(end, rest.find('\r'))), value)) return;
            values.push_back(value);
            if (end != std::string_view::npos) rest.remove_prefix(end + 1);
        }
        if (values.size() != std::size(DailyValues) + 1) return;
        dailyDate_ = values[0];
        for (std::size_t i = 0; i < std::size(DailyValues); ++i) At(DailyValues[i]) = values[i + 1];
    });
}

void VWS::SetCSVEnabled(bool enabled) {
    if (!Store(enabled_, enabled)) return;
    if (enabled) timing_.Force(time_.Now());
    owner_.SettingChanged();
}

void VWS::SetCSVFile(std::string_view path) {
    if (Store(file_, std::string(path))) owner_.SettingChanged();
}

void VWS::SetCSVDelay(double seconds) {
    if (timing_.SetRate(seconds, time_)) owner_.SettingChanged();
}

void VWS::SetCSVBaseTime(int seconds) {
    if (timing_.SetBaseTime(seconds)) owner_.SettingChanged();
}

double VWS::CSVData(int k) const { return InRange(k, Values) ? data_[static_cast<std::size_t>(k)] : Missing; }

const std::string& VWS::CSVDataS(int k) const {
    static const std::string missing(MissingText);
    return InRange(k, Texts) ? texts_[static_cast<std::size_t>(k)] : missing;
}

void VWS::SetCSVData(int k, double value) {
    if (InRange(k, Values)) At(k) = value;
}

void VWS::SetCSVDataS(int k, std::string_view text) {
    if (InRange(k, Texts)) texts_[static_cast<std::size_t>(k)] = text;
}

double VWS::CSVDatabase(int index, int k) const {
    if (!InRange(index, static_cast<int>(database_.size())) || !InRange(k, Values)) return Missing;
    const int used = (head_ - tail_ + DatabaseRecords) % DatabaseRecords;
    if ((index - tail_ + DatabaseRecords) % DatabaseRecords >= used) return Missing;
    return database_[static_cast<std::size_t>(index)].data[static_cast<std::size_t>(k)];
}

}  // namespace tessaloom
