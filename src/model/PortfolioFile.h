#pragma once

#include <string>

namespace tessaloom {

class DocumentReader;
class INI;
class Portfolio;

/// Reads and writes the file of the portfolio. The tables of model/PortfolioKeys.h say what stands where.
class PortfolioFile {
public:
    /// The portfolio outlives this object.
    explicit PortfolioFile(Portfolio& portfolio) : portfolio_(portfolio) {}

    /// Takes all settings over from the file and opens the canvases that it names.
    void Load(DocumentReader& reader);

    /// The canvas slots get the names of their canvases; canvas files are not written.
    void Save(INI& ini) const;

    /// The section of a canvas slot, "Canvas01" .. "Canvas20".
    static std::string CanvasSection(int slot);

    /// The portfolio has a password in its file (inside the address of a feed).
    bool HoldsSecret() const;

private:
    void LoadCanvases(DocumentReader& reader);
    void LoadFeeds(DocumentReader& reader);
    bool OpenCanvas(const DocumentReader& reader, int slot, const std::string& path);
    std::string UseOf(const std::string& path) const;
    std::string CanvasName(int slot) const;

    Portfolio& portfolio_;
};

}  // namespace tessaloom
