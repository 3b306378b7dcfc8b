#include "ui/RecentPortfolios.h"

#include <algorithm>

#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

std::string Key(std::size_t place) { return "RecentPortfolio" + std::to_string(place + 1); }

}  // namespace

RecentPortfolios::RecentPortfolios(Workspace& workspace) : workspace_(workspace) {
    for (std::size_t place = 0; place < Most; ++place)
        if (std::string file = workspace_.Remembered(Key(place)); !file.empty())
            files_.push_back(std::move(file));
}

void RecentPortfolios::Add(const std::string& file) {
    if (!files_.empty() && files_.front() == file) return;
    const FileSystem& files = workspace_.Services().fileSystem;
    std::erase_if(files_, [&](const std::string& other) { return files.SameFile(other, file); });
    files_.insert(files_.begin(), file);
    if (files_.size() > Most) files_.resize(Most);
    Keep();
}

void RecentPortfolios::Remove(const std::string& file) {
    if (std::erase(files_, file) > 0) Keep();
}

void RecentPortfolios::Keep() {
    for (std::size_t place = 0; place < Most; ++place)
        workspace_.Remember(Key(place), place < files_.size() ? files_[place] : std::string());
}

}  // namespace tessaloom
