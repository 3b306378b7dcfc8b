#include <regex>

#include "support/Testing.h"

// Reads the includes of the whole source tree and holds them against the order of the folders.

namespace {

namespace fs = std::filesystem;

struct Room {
    std::string_view folder;
    int level;  // A room sees itself and what lies on lower levels, never a neighbour on its own level.
};

// The longest matching folder names a file's room.
constexpr Room Rooms[] = {
    {"app",              100},
    {"vbrun",            100},
    {"ui",               90 },
    {"ui/dialogs",       88 },
    {"ui/canvas",        87 },
    {"ui/property",      86 },
    {"ui/shared",        85 },
    {"script/objects",   80 },
    {"core/main",        70 },
    {"model/edit",       65 },
    {"model",            60 },
    {"publish",          50 },
    {"script/host",      50 },
    {"script/library",   50 },
    {"video",            50 },
    {"text",             50 },
    {"imaging/pixelops", 5  },
    {"imaging",          40 },
    {"time",             30 },
    {"core",             20 },
    {"vbscript",         15 },
    {"locale",           10 },
    {"platform",         0  },
};

// The seam's implementations stand beside the engine: only the program plugs them in.
constexpr std::string_view Implementations[] = {
    "platform/qt",   "platform/text",   "platform/jpeg", "platform/posix",   "platform/profile",
    "platform/curl", "platform/ffmpeg", "platform/v4l2", "platform/capture",
};

bool Within(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

const Room* RoomOf(std::string_view path) {
    const Room* best = nullptr;
    for (const Room& room : Rooms)
        if (Within(path, room.folder) && (!best || room.folder.size() > best->folder.size())) best = &room;
    return best;
}

std::optional<std::string_view> ImplementationOf(std::string_view path) {
    for (std::string_view folder : Implementations)
        if (Within(path, folder)) return folder;
    return std::nullopt;
}

std::string Objection(const std::string& from, const std::string& to) {
    const auto fromImplementation = ImplementationOf(from), toImplementation = ImplementationOf(to);
    const Room* fromRoom = RoomOf(from);
    const Room* toRoom = RoomOf(to);
    if (!fromRoom) return "the file lies in no known folder";
    if (!toRoom) return "the included file lies in no known folder";
    if (fromRoom->folder == "app" || fromRoom->folder == "vbrun") return "";
    if (toImplementation)
        return fromImplementation == toImplementation ? "" : "only app/ names implementations";
    if (fromRoom->folder == "vbscript" && toRoom->folder == "core")
        return "the language knows nothing of the rest";
    if (fromRoom == toRoom || toRoom->level < fromRoom->level) return "";
    return "includes point downwards only";
}

struct Include {
    std::string file, target;
    bool angled;
};

std::vector<Include> AllIncludes() {
    static const std::regex pattern(R"re(^\s*#\s*include\s*([<"])([^>"]+)[>"])re");
    std::vector<Include> includes;
    const fs::path root = SOURCE_TREE;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        const std::string extension = entry.path().extension().string();
        if (extension != ".h" && extension != ".cpp") continue;
        std::ifstream file(entry.path());
        std::smatch match;
        for (std::string line; std::getline(file, line);)
            if (std::regex_search(line, match, pattern))
                includes.push_back(
                    {fs::relative(entry.path(), root).generic_string(), match[2], match[1] == "<"});
    }
    return includes;
}

}  // namespace

TEST(Includes, PointDownwardsOnly) {
    int seen = 0;
    for (const Include& include : AllIncludes()) {
        if (include.angled || include.target == "core/Version.h") continue;
        ++seen;
        const std::string objection = Objection(include.file, include.target);
        EXPECT_EQ(objection, "") << include.file << " includes " << include.target;
    }
    EXPECT_GT(seen, 50);
}

TEST(Includes, OfTheToolkitStayInPlatformUiAndApp) {
    static const std::regex toolkit("^Q[A-Z][A-Za-z]+$|^Qt[A-Z]");
    for (const Include& include : AllIncludes()) {
        if (!std::regex_search(include.target, toolkit)) continue;
        const bool allowed =
            Within(include.file, "platform/qt") || Within(include.file, "ui") || Within(include.file, "app");
        EXPECT_TRUE(allowed) << include.file << " includes " << include.target;
    }
}

TEST(Includes, OfSeamHeadersAreTheStandardLibraryAndTheSeamAlone) {
    static const std::regex standard("^[a-z_]+$");
    for (const Include& include : AllIncludes()) {
        if (!Within(include.file, "platform") || ImplementationOf(include.file)) continue;
        EXPECT_TRUE(include.angled ? std::regex_match(include.target, standard)
                                   : Within(include.target, "platform"))
            << include.file << " includes " << include.target;
    }
}
