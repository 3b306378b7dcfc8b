#include "ui/dialogs/WeatherReadings.h"

#include <QHeaderView>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "text/Tags.h"
#include "text/VWS.h"
#include "ui/dialogs/Wording.h"

namespace tessaloom {

namespace {

/// Units that are known; the station's program chooses those of the others.
enum class Unit { AsWritten, Temperature, TemperatureRate, Percent, Degrees };

struct Reading {
    std::string_view group, name, tag;
    Unit unit = Unit::AsWritten;
    std::string_view note = {};  ///< The tag behind the value: a trend, or a point of the compass.
};

// clang-format off
constexpr Reading Readings[] = {
    {"Conditions",      "Weather",                   "<csvweather>"},
    {"Wind",            "Speed",                     "<csvwind>"},
    {"Wind",            "Gust",                      "<csvgust>"},
    {"Wind",            "Direction",                 "<csvdir>",             Unit::Degrees, "<csvcomp>"},
    {"Wind",            "Mean speed",                "<csvstatwind>"},
    {"Wind",            "Mean direction",            "<csvstatdir>",         Unit::Degrees, "<csvstatcomp>"},
    {"Wind",            "Strongest gust meanwhile", "<csvstatgust>"},
    {"Wind",            "Strongest gust today",      "<csvmaxgusttoday>"},
    {"Wind",            "Strongest gust yesterday",  "<csvmaxgustyesterday>"},
    {"Temperature",     "Outdoor",                   "<csvouttemp>",         Unit::Temperature, "<csvtemptrend>"},
    {"Temperature",     "Outdoor, per hour",  "<csvouttemprate>",     Unit::TemperatureRate},
    {"Temperature",     "Highest today",             "<csvmaxtemptoday>",    Unit::Temperature},
    {"Temperature",     "Lowest today",              "<csvmintemptoday>",    Unit::Temperature},
    {"Temperature",     "Highest yesterday",         "<csvmaxtempyesterday>", Unit::Temperature},
    {"Temperature",     "Lowest yesterday",          "<csvmintempyesterday>", Unit::Temperature},
    {"Temperature",     "Wind chill",                "<csvchill>",           Unit::Temperature},
    {"Temperature",     "Heat index outdoors",       "<csvoutheat>",         Unit::Temperature},
    {"Temperature",     "Dew point",                 "<csvdew>",             Unit::Temperature},
    {"Temperature",     "Indoor",                    "<csvintemp>",          Unit::Temperature},
    {"Temperature",     "Indoor, per hour",   "<csvintemprate>",      Unit::TemperatureRate},
    {"Temperature",     "Heat index indoors",        "<csvinheat>",          Unit::Temperature},
    {"Humidity",        "Outdoor",                   "<csvouthum>",          Unit::Percent},
    {"Humidity",        "Indoor",                    "<csvinhum>",           Unit::Percent},
    {"Pressure",        "Barometer",                 "<csvbarom>",           Unit::AsWritten, "<csvbaromtrend>"},
    {"Pressure",        "At sea level",              "<csvslbarom>"},
    {"Pressure",        "Change per hour",           "<csvbaromrate>"},
    {"Rain",            "Rate",                      "<csvrainrate>"},
    {"Rain",            "Last hour",                 "<csvhourlyrain>"},
    {"Rain",            "Today",                     "<csvdailyrain>"},
    {"Rain",            "Yesterday",                 "<csvrainyesterday>"},
    {"Rain",            "This month",                "<csvmonthlyrain>"},
    {"Rain",            "This year",                 "<csvyearlyrain>"},
    {"Rain",            "Total",                     "<csvtotalrain>"},
    {"Sun",             "UV index",                  "<csvuvindex>"},
    {"Sun",             "Solar radiation",           "<csvsolarrad>"},
    {"Sun",             "Evapotranspiration",        "<csvevap>"},
    {"More sensors",    "Temperature 1",             "<csvch1temp>",         Unit::Temperature},
    {"More sensors",    "Temperature 1 per hour", "<csvch1temprate>", Unit::TemperatureRate},
    {"More sensors",    "Humidity 1",                "<csvch1hum>",          Unit::Percent},
    {"More sensors",    "Temperature 2",             "<csvch2temp>",         Unit::Temperature},
    {"More sensors",    "Temperature 2 per hour", "<csvch2temprate>", Unit::TemperatureRate},
    {"More sensors",    "Humidity 2",                "<csvch2hum>",          Unit::Percent},
    {"More sensors",    "Temperature 3",             "<csvch3temp>",         Unit::Temperature},
    {"More sensors",    "Temperature 3 per hour", "<csvch3temprate>", Unit::TemperatureRate},
    {"More sensors",    "Humidity 3",                "<csvch3hum>",          Unit::Percent},
};
// clang-format on

enum Column { NameText, ValueText, UnitText, NoteText, TagText };

const QString NotAvailable = "N/A";

QString Expanded(std::string_view tag, const VWS& weather) {
    if (!weather.CSVDataValid()) return NotAvailable;
    std::string text(tag);
    ReplaceWeatherTags(text, weather);
    return Wording::Words(text);
}

QString UnitOf(Unit unit, const VWS& weather) {
    const QString temperature = weather.CSVTemperatureUnits() == 0 ? "°C" : "°F";
    switch (unit) {
        case Unit::AsWritten:
            break;
        case Unit::Temperature:
            return temperature;
        case Unit::TemperatureRate:
            return temperature + "/h";
        case Unit::Percent:
            return "%";
        case Unit::Degrees:
            return "°";
    }
    return {};
}

void SetText(QTreeWidgetItem* row, Column column, const QString& text) {
    if (row->text(column) != text) row->setText(column, text);
}

}  // namespace

WeatherReadings::WeatherReadings(QWidget* parent) : QTreeWidget(parent) {
    setObjectName("readings");
    setAccessibleName("Readings");
    setHeaderLabels({"Reading", "Value", "Unit", "Trend", "Tag"});
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setRootIsDecorated(false);
    setSelectionMode(SingleSelection);
    QTreeWidgetItem* group = nullptr;
    for (const Reading& reading : Readings) {
        if (!group || group->text(NameText) != Wording::Words(reading.group)) {
            group = new QTreeWidgetItem(this, {Wording::Words(reading.group)});
            group->setFirstColumnSpanned(true);
            group->setExpanded(true);
            QFont bold = font();
            bold.setBold(true);
            group->setFont(NameText, bold);
        }
        auto* row = new QTreeWidgetItem(group, {Wording::Words(reading.name)});
        row->setText(TagText, Wording::Words(reading.tag));
        row->setTextAlignment(ValueText, Qt::AlignRight | Qt::AlignVCenter);
        rows_.push_back(row);
    }
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

void WeatherReadings::Show(const VWS& weather) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const Reading& reading = Readings[i];
        const QString value = Expanded(reading.tag, weather);
        const bool missing = value == NotAvailable;
        SetText(rows_[i], ValueText, value);
        SetText(rows_[i], UnitText, missing ? QString() : UnitOf(reading.unit, weather));
        const QString note = missing || reading.note.empty() ? QString() : Expanded(reading.note, weather);
        SetText(rows_[i], NoteText, note == NotAvailable ? QString() : note);
    }
}

}  // namespace tessaloom
