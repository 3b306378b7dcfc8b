#pragma once

#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/Layers.h"
#include "model/edit/PropertySet.h"
#include "support/Testing.h"
#include "ui/dialogs/SetupProperties.h"

namespace tessaloom::testing {

/// All that people can set: of the program, the open portfolio and its canvases, by a name each.
inline std::map<std::string, std::unique_ptr<PropertySet>> AllSets(const Platform& platform) {
    Portfolio& portfolio = *modMain::OpenPortfolio();
    std::map<std::string, std::unique_ptr<PropertySet>> sets;
    sets["setup"] = std::make_unique<SetupProperties>(platform);
    sets["feed"] = PropertySets::Feed(portfolio, 0);
    sets["motion"] = PropertySets::Motion(portfolio, 0);
    sets["web"] = PropertySets::Web(portfolio);
    sets["weather"] = PropertySets::Weather(portfolio);
    sets["script"] = PropertySets::Scripting(portfolio);
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        if (!portfolio.Canvas(slot).Enabled()) continue;
        const std::string canvas = "canvas" + std::to_string(slot);
        sets[canvas] = PropertySets::CanvasGeneral(portfolio, slot);
        sets[canvas + ".fixed"] = PropertySets::FixedSave(portfolio, slot);
        sets[canvas + ".sequential"] = PropertySets::SequentialSave(portfolio, slot);
        sets[canvas + ".wallpaper"] = PropertySets::Wallpaper(portfolio, slot);
        sets[canvas + ".ftp"] = PropertySets::FTPUpload(portfolio, slot);
        sets[canvas + ".web"] = PropertySets::WebPicture(portfolio, slot);
        for (const LayerId layer : Layers::InDrawingOrder(portfolio.Canvas(slot)))
            sets[canvas + (layer.kind == LayerId::Kind::Text ? ".text" : ".graphic") +
                 std::to_string(layer.slot)] = PropertySets::Layer(portfolio, slot, layer);
    }
    return sets;
}

/// The values of all these, by the name of the set and of the property.
inline std::map<std::string, std::string> AllSettings(const Platform& platform) {
    std::map<std::string, std::string> values;
    for (const auto& [name, set] : AllSets(platform))
        for (std::size_t row = 0; row < set->Properties().size(); ++row)
            values[name + "." + std::string(set->Properties()[row].name)] = set->Get(row);
    return values;
}

}  // namespace tessaloom::testing
