#include "model/CanvasFile.h"

#include <array>

#include "core/Log.h"
#include "model/CanvasKeys.h"
#include "model/DocumentReader.h"
#include "model/LongText.h"

namespace tessaloom {

namespace {

using CanvasKeys::GraphicAfterSchedule;
using CanvasKeys::GraphicAfterTable;
using CanvasKeys::GraphicBeforeSchedule;
using CanvasKeys::ScheduleKeys;
using CanvasKeys::TextAfterSchedule;
using CanvasKeys::TextBeforeSchedule;

std::string Digits(int number, std::size_t width) {
    std::string text = std::to_string(number);
    return text.size() < width ? text.insert(0, width - text.size(), '0') : text;
}

std::string LongTextSection(int slot) { return "X-" + CanvasFile::TextSection(slot); }

std::string PieceKey(std::size_t index) { return index == 0 ? "Text" : "Text" + std::to_string(index + 1); }

/// Positions count from 0, the numbers in the file from 1.
std::string TableKey(int position) { return "TransparentColorTable" + Digits(position + 1, 3); }
constexpr int GroupSize = 4;
bool IsColourPosition(int position) { return position % GroupSize < 2; }

/// The sections of the scheduled outputs, in file order.
struct OutputSchedule {
    std::string_view section;
    Schedule& (*schedule)(Canvas&);
};
constexpr OutputSchedule OutputSchedules[] = {
    {"FixedCaptureSchedule",      [](Canvas& canvas) -> Schedule& { return canvas.Saves().FixedSchedule(); }     },
    {"SequentialCaptureSchedule",
     [](Canvas& canvas) -> Schedule& { return canvas.Saves().SequentialSchedule(); }                             },
    {"BackgroundSchedule",        [](Canvas& canvas) -> Schedule& { return canvas.Saves().BackgroundSchedule(); }},
    {"FTPPushSchedule",
     [](Canvas& canvas) -> Schedule& { return canvas.VideoStreaming().FTPPush().Schedule(); }                    },
    {"WebServerSchedule",
     [](Canvas& canvas) -> Schedule& { return canvas.VideoStreaming().CanvasWebServer().Schedule(); }            },
};

template <typename Owner, std::size_t Size>
std::span<const Key<Owner>> All(const std::array<Key<Owner>, Size>& keys) {
    return keys;
}

void LoadSchedule(DocumentReader& reader, std::string_view section, Schedule& schedule) {
    reader.Load(section, All(ScheduleKeys), schedule);
    schedule.SetNeedsSaving(false);
}

std::string ReadLongText(DocumentReader& reader, int slot, const std::string& plain) {
    const std::string section = LongTextSection(slot);
    std::string joined;
    for (std::size_t index = 0;; ++index) {
        const std::string piece = reader.Peek(section, PieceKey(index));
        if (piece.empty()) break;
        joined += piece;
    }
    if (joined.empty()) return plain;
    const std::string text = LongText::Unescaped(joined);
    return LongText::PlainForm(text) == plain ? text : plain;
}

/// Pieces of a longer text that was there before are emptied, so that the section keeps its place in the
/// file.
void SaveLongText(INI& ini, const std::string& section, std::string_view text) {
    std::size_t index = 0;
    for (const std::string& piece : LongText::Pieces(text)) ini.SetKey(section, PieceKey(index++), piece);
    for (; !ini.GetKey(section, PieceKey(index), WriteDefault::No, {}).empty(); ++index)
        ini.SetKey(section, PieceKey(index), {});
}

/// Reads whether the layer exists; a word that is no boolean is a fault, and counts as False.
bool ReadEnabled(DocumentReader& reader, const std::string& section, const std::string& text) {
    bool enabled = false;
    const KeyFault fault = Boolean::Parse(text, enabled);
    if (fault != KeyFault::None) reader.Fault(section, "Enabled", text, DescriptionOf(fault));
    return enabled;
}

template <typename Kind>
int ReadNumber(DocumentReader& reader, const std::string& section, const std::string& key,
               std::string_view fallback, int low, int high) {
    const std::string text = reader.Get(section, key, fallback);
    int value = 0;
    KeyFault fault = Kind::Parse(text, value);
    const int clamped = Clamped(value, {low, high});
    if (fault == KeyFault::None && clamped != value) fault = KeyFault::OutOfRange;
    if (fault != KeyFault::None)
        reader.Fault(section, key, text,
                     std::string(DescriptionOf(fault)) + ", " + Kind::Write(clamped) + " taken");
    return clamped;
}

void LoadColourTable(DocumentReader& reader, const std::string& section, Graphic& graphic) {
    for (int position = 0; position < graphic.TransparentColorCount() * GroupSize; ++position) {
        const std::string key = TableKey(position);
        graphic.SetTransparentColorTable(
            position, IsColourPosition(position)
                          ? ReadNumber<Colour>(reader, section, key, "&H000000", 0, Graphic::LargestColor)
                          : ReadNumber<Whole>(reader, section, key, "0", 0, 100));
    }
}

void SaveColourTable(INI& ini, const std::string& section, const Graphic& graphic) {
    for (int position = 0; position < graphic.TransparentColorCount() * GroupSize; ++position) {
        const int value = graphic.TransparentColorTable(position);
        ini.SetKey(section, TableKey(position),
                   IsColourPosition(position) ? Colour::Write(value) : Whole::Write(value));
    }
}

}  // namespace

std::string CanvasFile::TextSection(int slot) { return "Text" + Digits(slot, 3); }
std::string CanvasFile::GraphicSection(int slot) { return "Graphic" + Digits(slot, 3); }

void CanvasFile::Load(DocumentReader& reader) {
    for (const Key<Canvas>& key : CanvasKeys::General) {
        std::string fallback(key.fallback);
        // The window's place is a real number in its frame, without one the place that the canvas has.
        const CanvasView* view = canvas_.View();
        if (key.name == "PosX")
            fallback = Single::Write(static_cast<float>(view ? view->Left() : canvas_.Left()));
        if (key.name == "PosY")
            fallback = Single::Write(static_cast<float>(view ? view->Top() : canvas_.Top()));
        reader.Load("General", key, canvas_, fallback);
    }
    reader.Load("Background", All(CanvasKeys::BackgroundColor), canvas_);
    reader.Load("Background", All(CanvasKeys::Background), canvas_.Saves());
    reader.Load("Capture", All(CanvasKeys::Capture), canvas_.Saves());
    LoadOutputs(reader);
    LoadText(reader);
    LoadGraphics(reader);
}

void CanvasFile::LoadOutputs(DocumentReader& reader) {
    for (const OutputSchedule& output : OutputSchedules)
        LoadSchedule(reader, output.section, output.schedule(canvas_));
    for (const auto& key : CanvasKeys::FTPPushKeys)
        reader.Load("FTPPush", key, canvas_.VideoStreaming().FTPPush(), WithSlot(key.fallback));
    for (const auto& key : CanvasKeys::WebServerKeys)
        reader.Load("WebServer", key, canvas_.VideoStreaming().CanvasWebServer(), WithSlot(key.fallback));
}

void CanvasFile::LoadText(DocumentReader& reader) {
    for (int slot = 1; slot <= Canvas::MaxText; ++slot) {
        canvas_.RemoveText(slot);
        const std::string section = TextSection(slot);
        const std::string enabled = reader.Peek(section, "Enabled");
        if (!enabled.empty()) LoadTextLayer(reader, slot, section, enabled);
    }
}

void CanvasFile::LoadTextLayer(DocumentReader& reader, int slot, const std::string& section,
                               const std::string& enabled) {
    Text& text = *canvas_.AddText(slot);
    text.SetEnabled(ReadEnabled(reader, section, enabled));
    text.SetValue(ReadLongText(reader, slot, reader.Get(section, "Text", "")));
    reader.Load(section, All(TextBeforeSchedule), text);
    LoadSchedule(reader, section, text.Schedule());
    reader.Load(section, All(TextAfterSchedule), text);
}

void CanvasFile::LoadGraphics(DocumentReader& reader) {
    for (int slot = 1; slot <= Canvas::MaxGraphic; ++slot) {
        canvas_.RemoveGraphic(slot);
        const std::string section = GraphicSection(slot);
        const std::string enabled = reader.Peek(section, "Enabled");
        if (enabled.empty()) continue;
        Graphic& graphic = *canvas_.AddGraphic(slot);
        graphic.SetEnabled(ReadEnabled(reader, section, enabled));
        LoadGraphicLayer(reader, section, graphic);
    }
}

void CanvasFile::LoadGraphicLayer(DocumentReader& reader, const std::string& section, Graphic& graphic) {
    reader.Load(section, All(GraphicBeforeSchedule), graphic);
    LoadSchedule(reader, section, graphic.Schedule());
    reader.Load(section, All(GraphicAfterSchedule), graphic);
    LoadColourTable(reader, section, graphic);
    reader.Load(section, All(GraphicAfterTable), graphic);
}

void CanvasFile::Save(INI& ini) const {
    SaveKeys(ini, "General", All(CanvasKeys::General), canvas_);
    SaveKeys(ini, "Background", All(CanvasKeys::BackgroundColor), canvas_);
    SaveKeys(ini, "Background", All(CanvasKeys::Background), canvas_.Saves());
    SaveKeys(ini, "Capture", All(CanvasKeys::Capture), canvas_.Saves());
    for (const OutputSchedule& output : OutputSchedules) {
        Schedule& schedule = output.schedule(canvas_);
        SaveKeys(ini, output.section, All(ScheduleKeys), schedule);
        schedule.SetNeedsSaving(false);
    }
    SaveKeys(ini, "FTPPush", All(CanvasKeys::FTPPushKeys), canvas_.VideoStreaming().FTPPush());
    SaveKeys(ini, "WebServer", All(CanvasKeys::WebServerKeys), canvas_.VideoStreaming().CanvasWebServer());
    SaveText(ini);
    SaveGraphics(ini);
}

void CanvasFile::SaveText(INI& ini) const {
    for (int slot = 1; slot <= Canvas::MaxText; ++slot) {
        const std::string section = TextSection(slot);
        Text* const text = canvas_.Text(slot);
        if (!text || !LongText::Needed(text->Value())) ini.RemoveSection(LongTextSection(slot));
        if (!text) {
            ini.RemoveSection(section);
            continue;
        }
        SaveTextLayer(ini, slot, section, *text);
        text->Schedule().SetNeedsSaving(false);
    }
}

void CanvasFile::SaveTextLayer(INI& ini, int slot, const std::string& section, const Text& text) const {
    ini.SetKey(section, "Enabled", Boolean::Write(text.Enabled()));
    ini.SetKey(section, "Text",
               LongText::Needed(text.Value()) ? LongText::PlainForm(text.Value()) : text.Value());
    SaveKeys(ini, section, All(TextBeforeSchedule), text);
    SaveKeys(ini, section, All(ScheduleKeys), text.Schedule());
    SaveKeys(ini, section, All(TextAfterSchedule), text);
    if (LongText::Needed(text.Value())) SaveLongText(ini, LongTextSection(slot), text.Value());
}

void CanvasFile::SaveGraphics(INI& ini) const {
    for (int slot = 1; slot <= Canvas::MaxGraphic; ++slot) {
        const std::string section = GraphicSection(slot);
        if (Graphic* graphic = canvas_.Graphic(slot)) {
            SaveGraphicLayer(ini, section, *graphic);
            graphic->Schedule().SetNeedsSaving(false);
        } else {
            ini.RemoveSection(section);
        }
    }
}

void CanvasFile::SaveGraphicLayer(INI& ini, const std::string& section, const Graphic& graphic) const {
    ini.SetKey(section, "Enabled", Boolean::Write(graphic.Enabled()));
    SaveKeys(ini, section, All(GraphicBeforeSchedule), graphic);
    SaveKeys(ini, section, All(ScheduleKeys), graphic.Schedule());
    SaveKeys(ini, section, All(GraphicAfterSchedule), graphic);
    SaveColourTable(ini, section, graphic);
    SaveKeys(ini, section, All(GraphicAfterTable), graphic);
}

bool CanvasFile::HoldsSecret() const {
    if (!canvas_.VideoStreaming().FTPPush().Password().empty()) return true;
    const auto secret = [](const std::string& address) { return MaskSecrets(address) != address; };
    for (int slot = 1; slot <= Canvas::MaxGraphic; ++slot)
        if (const Graphic* graphic = canvas_.Graphic(slot))
            // A feed is named by its address.
            if (secret(graphic->SourceURL()) || secret(graphic->SourceVideoFeedName())) return true;
    return false;
}

std::string CanvasFile::WithSlot(std::string_view fallback) const {
    std::string text(fallback);
    if (const auto at = text.find("##"); at != text.npos)
        text.replace(at, 2, Digits(canvas_.CanvasIndex(), 2));
    return text;
}

}  // namespace tessaloom
