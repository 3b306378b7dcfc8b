#include "model/PortfolioFile.h"

#include "core/Log.h"
#include "model/Canvas.h"
#include "model/DocumentReader.h"
#include "model/Portfolio.h"
#include "model/PortfolioKeys.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"

namespace tessaloom {

namespace {

template <typename Owner, std::size_t Size>
std::span<const Key<Owner>> All(const std::array<Key<Owner>, Size>& keys) {
    return keys;
}

std::string FeedPrefix(int feed) { return "Feed" + std::to_string(feed); }

}  // namespace

std::string PortfolioFile::CanvasSection(int slot) {
    return (slot < 10 ? "Canvas0" : "Canvas") + std::to_string(slot);
}

void PortfolioFile::Load(DocumentReader& reader) {
    reader.LoadInOrder("VWS", All(PortfolioKeys::Weather), PortfolioKeys::WeatherLoadOrder, portfolio_.VWS());
    LoadCanvases(reader);
    LoadFeeds(reader);
    reader.LoadInOrder("WebServer", All(PortfolioKeys::Web), PortfolioKeys::WebLoadOrder,
                       portfolio_.WebServer());
    reader.Load("Scripting", All(PortfolioKeys::Scripting), portfolio_.Script());
}

void PortfolioFile::LoadCanvases(DocumentReader& reader) {
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        const std::string section = CanvasSection(slot);
        const std::string path = reader.Get(section, "FileName", "");
        std::string& keptName = portfolio_.unloadedNames_[static_cast<std::size_t>(slot)];
        keptName.clear();
        if (reader.ReadingMode() == DocumentReader::Mode::Checking) continue;
        if (portfolio_.Canvas(slot).Enabled()) portfolio_.ResetCanvas(slot);
        if (!path.empty() && !OpenCanvas(reader, slot, path)) keptName = path;
    }
}

/// Two slots with one file would undo each other's changes, and a canvas would fill the portfolio's own file
/// with its settings.
bool PortfolioFile::OpenCanvas(const DocumentReader& reader, int slot, const std::string& path) {
    if (const std::string use = UseOf(path); !use.empty()) {
        reader.Fault(CanvasSection(slot), "FileName", path, use + ", the slot is left out");
        return false;
    }
    Canvas& canvas = portfolio_.Canvas(slot);
    canvas.SetFileName(path);
    const bool completing = reader.ReadingMode() == DocumentReader::Mode::Completing;
    if (!canvas.LoadFile(completing ? Reading::Completing : Reading::Passive)) {
        canvas.SetFileName("");
        canvas.SetNeedSaving(false);
        return false;
    }
    canvas.SetEnabled(true);
    canvas.SetVisible(true);
    canvas.ActivitateFormTimer();
    return true;
}

std::string PortfolioFile::UseOf(const std::string& path) const {
    if (portfolio_.PlatformServices().fileSystem.SameFile(path, portfolio_.FileName()))
        return "the file of the portfolio itself";
    const int slot = portfolio_.SlotOfFile(path);
    return slot == 0 ? std::string() : "the file of " + CanvasSection(slot);
}

void PortfolioFile::LoadFeeds(DocumentReader& reader) {
    for (int feed = 0; feed < Portfolio::MaxFeed; ++feed) {
        VideoFeed& owner = portfolio_.VideoFeed(feed);
        reader.Load("VideoFeeds", All(PortfolioKeys::Feed), owner, FeedPrefix(feed));
        reader.Load("VideoFeeds", All(PortfolioKeys::Motion), owner.MotionDetect(), FeedPrefix(feed));
    }
}

void PortfolioFile::Save(INI& ini) const {
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot)
        ini.SetKey(CanvasSection(slot), "FileName", CanvasName(slot));
    for (int feed = 0; feed < Portfolio::MaxFeed; ++feed) {
        const VideoFeed& owner = portfolio_.VideoFeed(feed);
        SaveKeys(ini, "VideoFeeds", All(PortfolioKeys::Feed), owner, FeedPrefix(feed));
        SaveKeys(ini, "VideoFeeds", All(PortfolioKeys::Motion), owner.MotionDetect(), FeedPrefix(feed));
    }
    SaveKeys(ini, "VWS", All(PortfolioKeys::Weather), portfolio_.VWS());
    SaveKeys(ini, "WebServer", All(PortfolioKeys::Web), portfolio_.WebServer());
    SaveKeys(ini, "Scripting", All(PortfolioKeys::Scripting), portfolio_.Script());
}

std::string PortfolioFile::CanvasName(int slot) const {
    const Canvas& canvas = portfolio_.Canvas(slot);
    return canvas.Enabled() ? canvas.FileName() : portfolio_.unloadedNames_[static_cast<std::size_t>(slot)];
}

bool PortfolioFile::HoldsSecret() const {
    for (int feed = 0; feed < Portfolio::MaxFeed; ++feed) {
        const std::string& name = portfolio_.VideoFeed(feed).FeedName();
        if (MaskSecrets(name) != name) return true;
    }
    return false;
}

}  // namespace tessaloom
