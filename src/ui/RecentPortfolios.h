#pragma once

#include <string>
#include <vector>

namespace tessaloom {

class Workspace;

/// The portfolios that were open last, the latest first, kept between two runs.
class RecentPortfolios {
public:
    static constexpr std::size_t Most = 8;

    explicit RecentPortfolios(Workspace& workspace);

    const std::vector<std::string>& Files() const { return files_; }

    /// Puts `file`, a full path, first.
    void Add(const std::string& file);
    void Remove(const std::string& file);

private:
    void Keep();

    Workspace& workspace_;
    std::vector<std::string> files_;
};

}  // namespace tessaloom
