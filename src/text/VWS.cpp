#include "text/VWS.h"

#include "core/ErrorReport.h"
#include "core/modNumbers.h"
#include "locale/DateParts.h"
#include "locale/Error.h"
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
constexpr double RoundingError = 1e-12;  ///< Of sums of sines, by their terms: opposite winds leave no more.
constexpr double DegreesPerRadian = 180 / std::numbers::pi;

/// What survives a restart, in the order of the file; the day to which it belongs comes first.
constexpr int DailyValues[] = {VWS::MaxTempToday,     VWS::MinTempToday,     VWS::MaxTempYesterday,
                               VWS::MinTempYesterday, VWS::MaxGustYesterday, VWS::MaxGustToday,
                               VWS::RainAtDayChange,  VWS::RainYesterday};

bool InRange(int k, int size) { return k >= 0 && k < size; }

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == text.npos; }

bool Names(std::string_view text, int number) {
    double value = 0;
    return modNumbers::TryDblNI(text, value) && value == number;
}

/// "2026-3-9 14:05:30", which reads alike in every locale. Nothing when there is no such date.
std::optional<double> MomentOf(const std::vector<std::string>& fields) {
    const double moment = modNumbers::CDateNI(fields[2] + "-" + fields[3] + "-" + fields[4] + " " +
                                              fields[5] + ":" + fields[6] + ":" + fields[7]);
    const auto parts = PartsOfMoment(moment);
    // What is no date in this order may still be one with day and month exchanged.
    if (moment == 0 || !parts || !Names(fields[3], parts->month) || !Names(fields[4], parts->day))
        return std::nullopt;
    return moment;
}

/// True for a text that a station's program ends with its line: nothing of it can be missing.
bool EndsItsLine(std::string_view text) { return text.ends_with('\n') || text.ends_with('\r'); }

double TrendOf(double rate, double threshold) {
    if (rate >= threshold) return 1;
    return rate <= -threshold ? -1 : 0;
}

}  // namespace

VWS::VWS(SettingsOwner& owner, const PresentTime& time, FileSystem& files)
    : OwnedSettings(owner), time_(time), files_(files) {
    data_.fill(Missing);
    data_[0] = 0;
    texts_.fill(std::string(MissingText));
    texts_[0].clear();
}

bool VWS::GetCSVData() {
    return Trap({Module, "GetCSVData"}, [&] {
        if (!lastDataLoaded_) LoadLastData();
        const auto before = files_.Stamp(file_);
        const auto text = files_.ReadFile(file_, LargestFile);
        dataValid_ = text.has_value();
        if (!text) return Failed("cannot be read: " + files_.LastFailure());
        if (IsBeingWritten(before, *text)) return false;
        const auto fields = SplitWeatherRecord(*text);
        if (!fields) return Failed("holds no whole record of a known version");
        const auto moment = MomentOf(*fields);
        if (!moment) return Failed("holds a date that does not exist");
        failures_ = 0;
        failure_.clear();
        if (*moment == lastTime_) return false;  // the station has written nothing new
        Take(*fields, *moment);
        return true;
    });
}

bool VWS::Failed(const std::string& what) {
    failure_ = what;
    if (++failures_ == 2) throw Error(ErrorNumber::DeviceIO, "The weather file " + file_ + " " + what);
    return false;
}

/// A last field that is cut short cannot be told from a whole one, so a file written this very moment is put
/// off, but only once in a row: the station may keep the same time as we do.
bool VWS::IsBeingWritten(const std::optional<FileStamp>& before, std::string_view text) {
    if (files_.Stamp(file_) != before) return true;
    const bool young = before && !before->settled && !EndsItsLine(text);
    putOff_ = young && !putOff_;
    return putOff_;
}

void VWS::Take(const std::vector<std::string>& fields, double moment) {
    for (std::size_t k = 1; k < texts_.size(); ++k) {
        const bool present = k < fields.size() && !IsBlank(fields[k]);
        texts_[k] = present ? std::string_view(fields[k]) : MissingText;
        data_[k] = present ? modNumbers::Str2DblNI(fields[k]) : Missing;
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
    unsaved_ = unsaved_ || newDay || std::any_of(std::begin(DailyValues), std::end(DailyValues), changed);
    if (unsaved_) SaveLastData();
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
    if (metres == 0) return CSVData(Barometer);
    const double pressure = CSVData(Barometer) * std::exp(9.81 * metres / 287 / meanKelvin);
    return std::isfinite(pressure) ? pressure : Missing;  // a temperature below absolute zero
}

void VWS::AddToDatabase(double moment) {
    const auto head = static_cast<std::size_t>(head_);
    if (head == database_.size()) database_.emplace_back();
    database_[head] = {moment, data_};
    ProcessNewDatabaseData();
    head_ = (head_ + 1) % DatabaseRecords;
    if (head_ == tail_) tail_ = (tail_ + 1) % DatabaseRecords;
}

/// The mean wind as a vector, each record weighing as long as it was in force: opposite winds cancel. What
/// lies before a step back in time (daylight saving ends) cannot be weighed against what follows.
void VWS::ProcessNewDatabaseData() {
    const auto number = [](const Kept& kept, int k) { return kept.data[static_cast<std::size_t>(k)]; };
    const Kept& newest = database_[static_cast<std::size_t>(head_)];
    const double oldest = newest.moment - windStatisticsInterval_ / modTime::SecondsPerDay - 1e-9;
    double east = 0, north = 0, path = 0, weight = 0, gust = number(newest, Gust);
    double following = newest.moment;
    for (int i = head_; i != tail_;) {
        i = (i + DatabaseRecords - 1) % DatabaseRecords;
        const Kept& kept = database_[static_cast<std::size_t>(i)];
        if (kept.moment < oldest || kept.moment > following) break;
        const double span = std::round((following - kept.moment) * modTime::SecondsPerDay);
        following = kept.moment;
        gust = std::max(gust, number(kept, Gust));
        if (number(kept, WindSpeed) == Missing || number(kept, WindDirection) == Missing) continue;
        const double angle = number(kept, WindDirection) / DegreesPerRadian;
        const double distance = number(kept, WindSpeed) * span;
        east += std::sin(angle) * distance;
        north += std::cos(angle) * distance;
        path += std::abs(distance);
        weight += span;
    }
    if (weight == 0) {
        At(StatWind) = At(WindSpeed);
        At(StatDirection) = At(WindDirection);
        At(StatGust) = At(Gust);
        return;
    }
    const double length = std::hypot(east, north);
    const bool calm = !(length > path * RoundingError);  // also where speeds are beyond all numbers
    At(StatWind) = calm ? 0 : length / weight;
    At(StatGust) = gust;
    if (calm) return;  // no direction: the one before stays
    const double direction = std::atan2(east, north) * DegreesPerRadian;
    At(StatDirection) = direction < 0 ? direction + 360 : direction;
}

void VWS::SaveLastData() {
    Trap({Module, "SaveLastData"}, [&] {
        if (dailyDate_ == 0) return;
        std::string line = modNumbers::CStrNI(dailyDate_);
        for (const int k : DailyValues) line.append(1, ',').append(modNumbers::CStrNI(CSVData(k)));
        if (!files_.ReplaceFile(LastDataFile, line + "\r\n"))
            throw Error(ErrorNumber::DeviceIO, std::string(LastDataFile) + ": " + files_.LastFailure());
        unsaved_ = false;
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

void VWS::SetCSVFile(std::string_view path) { Set(file_, std::string(path)); }

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

/// Null where the ring holds no record.
const double* VWS::Recorded(int index, int k) const {
    if (!InRange(index, static_cast<int>(database_.size())) || !InRange(k, Values)) return nullptr;
    const int used = (head_ - tail_ + DatabaseRecords) % DatabaseRecords;
    if ((index - tail_ + DatabaseRecords) % DatabaseRecords >= used) return nullptr;
    return &database_[static_cast<std::size_t>(index)].data[static_cast<std::size_t>(k)];
}

double VWS::CSVDatabase(int index, int k) const {
    const double* const value = Recorded(index, k);
    return value ? *value : Missing;
}

void VWS::SetCSVDatabase(int index, int k, double value) {
    if (Recorded(index, k))
        database_[static_cast<std::size_t>(index)].data[static_cast<std::size_t>(k)] = value;
}

}  // namespace tessaloom
