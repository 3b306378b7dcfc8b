#include "model/DocumentCheck.h"

#include <algorithm>
#include <optional>
#include <string>

#include "core/INI.h"
#include "core/modNumbers.h"
#include "imaging/Graphic.h"
#include "model/Canvas.h"
#include "model/CanvasFile.h"
#include "model/DocumentReader.h"
#include "model/Portfolio.h"
#include "model/PortfolioFile.h"
#include "platform/Ascii.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "platform/PrivateProfile.h"
#include "publish/CanvasSaves.h"
#include "script/host/Script.h"
#include "text/VWS.h"

namespace tessaloom {

namespace {

/// Checks one file after the other against the tables, by reading it into objects that nobody uses.
class Checker {
public:
    explicit Checker(Platform& platform) : platform_(platform) {}

    void CheckCanvas(std::string path, int slot);
    void CheckPortfolio(std::string path);

    std::vector<DocumentFault> TakeFaults() { return std::move(faults_); }

private:
    bool Begin(std::string path);
    void End(const DocumentReader& reader);
    void FindUnknown(const DocumentReader& reader, const ProfileSection& section);
    int LineOf(const std::string& section, const std::string& key);
    void Add(std::string_view section, std::string_view key, std::string_view value, std::string_view reason,
             int line = 0);
    void NeedFile(std::string_view section, std::string_view key, const std::string& path);
    void NeedFolder(std::string_view section, std::string_view key, std::string_view value,
                    std::string_view folder);
    bool IsOn(std::string_view section, std::string_view key);

    Platform& platform_;
    std::string path_;         ///< Of the file being checked.
    std::size_t ownFrom_ = 0;  ///< Its first fault.
    std::vector<DocumentFault> faults_;
    const DocumentFaultHandler collect_ = [this](const DocumentFault& fault) { faults_.push_back(fault); };
};

void Checker::CheckCanvas(std::string path, int slot) {
    if (!Begin(std::move(path))) return;
    Portfolio portfolio(platform_);
    Canvas& canvas = portfolio.Canvas(slot);
    INI ini(platform_.profile, path_);
    DocumentReader reader(ini, DocumentReader::Mode::Checking, collect_);
    reader.NoteKeys();
    CanvasFile(canvas).Load(reader);

    const CanvasSaves& saves = canvas.Saves();
    if (saves.FixedEnabled())
        NeedFolder("Capture", "FixedFileName", saves.FixedFileName(),
                   ParentFolderName(saves.FixedFileName()));
    if (saves.SequentialEnabled())
        NeedFolder("Capture", "SequentialDirectory", saves.SequentialPath(), saves.SequentialPath());
    for (int layer = 1; layer <= Canvas::MaxGraphic; ++layer) {
        const Graphic* graphic = canvas.Graphic(layer);
        if (!graphic) continue;
        const std::string section = CanvasFile::GraphicSection(layer);
        if (graphic->SourceType() == Graphic::PictureFile)
            NeedFile(section, "SourceFileName", graphic->SourceFileName());
        if (graphic->OpacityUseFile()) NeedFile(section, "OpacityFileName", graphic->OpacityFileName());
    }
    End(reader);
}

void Checker::CheckPortfolio(std::string path) {
    if (!Begin(std::move(path))) return;
    Portfolio portfolio(platform_);
    INI ini(platform_.profile, path_);
    DocumentReader reader(ini, DocumentReader::Mode::Checking, collect_);
    reader.NoteKeys();
    PortfolioFile(portfolio).Load(reader);
    if (IsOn("Scripting", "Enabled")) NeedFile("Scripting", "FileName", portfolio.Script().FileName());
    if (IsOn("VWS", "CSVEnabled")) NeedFile("VWS", "CSVFile", portfolio.VWS().CSVFile());

    std::vector<std::pair<std::string, int>> canvases;
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot) {
        const std::string section = PortfolioFile::CanvasSection(slot);
        std::string canvas = reader.Peek(section, "FileName");
        if (canvas.empty()) continue;
        const auto sameFile = [&](std::string_view other) {
            return platform_.fileSystem.SameFile(canvas, other);
        };
        const auto earlier = std::ranges::find_if(canvases, sameFile, &std::pair<std::string, int>::first);
        if (sameFile(path_))
            Add(section, "FileName", canvas, "the file of the portfolio itself, the slot is left out");
        else if (earlier != canvases.end())
            Add(section, "FileName", canvas,
                "the file of " + PortfolioFile::CanvasSection(earlier->second) + ", the slot is left out");
        else
            canvases.emplace_back(std::move(canvas), slot);
    }
    End(reader);
    for (auto& [canvas, slot] : canvases) CheckCanvas(std::move(canvas), slot);
}

bool Checker::Begin(std::string path) {
    path_ = std::move(path);
    ownFrom_ = faults_.size();
    const ProfileState state = platform_.profile.State(path_);
    if (state != ProfileState::Readable) Add({}, {}, {}, ReasonOf(state));
    return state == ProfileState::Readable;
}

/// Adds what the reader never asked for, and puts the faults of this file into the order of its lines.
void Checker::End(const DocumentReader& reader) {
    for (const ProfileSection& section : platform_.profile.Sections(path_)) FindUnknown(reader, section);
    const auto own = faults_.begin() + static_cast<std::ptrdiff_t>(ownFrom_);
    for (auto fault = own; fault != faults_.end(); ++fault)
        if (fault->line == 0) fault->line = LineOf(fault->section, fault->key);
    std::stable_sort(own, faults_.end(),
                     [](const DocumentFault& a, const DocumentFault& b) { return a.line < b.line; });
}

void Checker::FindUnknown(const DocumentReader& reader, const ProfileSection& section) {
    if (ascii::StartsWithText(section.name, "X-")) return;
    if (!reader.AskedSection(section.name)) return Add(section.name, {}, {}, "unknown section", section.line);
    const bool isLayer =
        reader.Asked(section.name, "Enabled") &&
        (ascii::StartsWithText(section.name, "Text") || ascii::StartsWithText(section.name, "Graphic"));
    if (isLayer && platform_.profile.Get(path_, section.name, "Enabled").empty())
        return Add(section.name, "Enabled", {}, "missing, so the layer is left out", section.line);
    for (const ProfileKey& key : platform_.profile.Keys(path_, section.name))
        // Entries beyond the count are remains of a longer table.
        if (!reader.Asked(section.name, key.name) &&
            !ascii::StartsWithText(key.name, "TransparentColorTable"))
            Add(section.name, key.name, key.value, "unknown key", key.line);
}

int Checker::LineOf(const std::string& section, const std::string& key) {
    for (const ProfileKey& candidate : platform_.profile.Keys(path_, section))
        if (ascii::SameText(candidate.name, key)) return candidate.line;
    return 0;
}

void Checker::Add(std::string_view section, std::string_view key, std::string_view value,
                  std::string_view reason, int line) {
    faults_.push_back(
        {path_, std::string(section), std::string(key), std::string(value), std::string(reason), line});
}

void Checker::NeedFile(std::string_view section, std::string_view key, const std::string& path) {
    if (!platform_.fileSystem.FileExists(path)) Add(section, key, path, "missing file");
}

void Checker::NeedFolder(std::string_view section, std::string_view key, std::string_view value,
                         std::string_view folder) {
    if (!folder.empty() && !platform_.fileSystem.FolderExists(folder))
        Add(section, key, value, "missing folder");
}

bool Checker::IsOn(std::string_view section, std::string_view key) {
    return modNumbers::Str2Bool(platform_.profile.Get(path_, section, key));
}

bool IsCanvas(Platform& platform, std::string_view path) {
    const std::string extension(ExtensionName(path));
    if (ascii::SameText(extension, "can")) return true;
    if (ascii::SameText(extension, "por")) return false;
    return std::ranges::any_of(platform.profile.Sections(path), [](const ProfileSection& section) {
        return ascii::SameText(section.name, "General");
    });
}

}  // namespace

std::vector<DocumentFault> CheckDocument(Platform& platform, std::string_view path) {
    Checker checker(platform);
    if (IsCanvas(platform, path))
        checker.CheckCanvas(std::string(path), 1);
    else
        checker.CheckPortfolio(std::string(path));
    return checker.TakeFaults();
}

}  // namespace tessaloom
