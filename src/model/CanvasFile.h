#pragma once

#include <string>
#include <string_view>

namespace tessaloom {

class Canvas;
class DocumentReader;
class Graphic;
class INI;
class Schedule;
class Text;

/// Reads and writes the file of one canvas. The tables of model/CanvasKeys.h say what stands where.
///
/// Multi-line texts of layer nnn are stored in section "X-Textnnn" as well: key "Text", then "Text2" and so
/// on.
class CanvasFile {
public:
    /// Both outlive this object.
    explicit CanvasFile(Canvas& canvas) : canvas_(canvas) {}

    /// Replaces all settings and layers of the canvas by those of the file.
    void Load(DocumentReader& reader);
    void LoadText(DocumentReader& reader);
    void LoadGraphics(DocumentReader& reader);

    /// Writes all settings and layers; sections of empty layer slots are removed.
    void Save(INI& ini) const;
    void SaveText(INI& ini) const;
    void SaveGraphics(INI& ini) const;

    /// The sections of a layer slot: "Text001" .. "Text100", "Graphic001" .. "Graphic100".
    static std::string TextSection(int slot);
    static std::string GraphicSection(int slot);

    /// The canvas has a password in its file (of an upload, or in an address).
    bool HoldsSecret() const;

private:
    void LoadOutputs(DocumentReader& reader);
    void LoadTextLayer(DocumentReader& reader, int slot, const std::string& section,
                       const std::string& enabled);
    void LoadGraphicLayer(DocumentReader& reader, const std::string& section, Graphic& graphic);
    void SaveTextLayer(INI& ini, int slot, const std::string& section, const Text& text) const;
    void SaveGraphicLayer(INI& ini, const std::string& section, const Graphic& graphic) const;
    std::string WithSlot(std::string_view fallback) const;

    Canvas& canvas_;
};

}  // namespace tessaloom
