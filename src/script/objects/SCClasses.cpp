#include <array>
#include <charconv>

#include "core/RunFlags.h"
#include "core/SetupValues.h"
#include "core/Store.h"
#include "core/main/DocumentCommands.h"
#include "core/main/modMain.h"
#include "imaging/Graphic.h"
#include "locale/Format.h"
#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "platform/Desktop.h"
#include "platform/Dialogs.h"
#include "platform/Platform.h"
#include "publish/CanvasSaves.h"
#include "publish/VideoStreaming.h"
#include "publish/WebServer.h"
#include "script/objects/SCMember.h"
#include "text/Text.h"
#include "text/VWS.h"
#include "time/modTime.h"
#include "video/VideoFeed.h"

// All that scripts can see. The rows say which member of the model a script's name stands for; what is more
// than forwarding stands above them.
namespace tessaloom {

namespace {

using vbscript::Arguments;
using vbscript::Value;
using vbscript::VarType;

// --- Parts of the tree ---

/// The one part number `Slot` of its owner.
template <SCKind Kind, int Slot>
Value PartOf(SCObject& self) {
    SCPlace place = self.Place();
    place.owner = self.Kind();
    place.part = Slot;
    return self.Part(Slot, Kind, place);
}

/// The part at `index` of a collection whose parts are numbered from `First`; Nothing where the model has
/// none.
template <SCKind Kind, typename Model, int SCPlace::*Number, int First>
Value Element(SCObject& self, int index) {
    SCPlace place = self.Place();
    place.*Number = index;
    if (!FindModel<Model>(place)) return Value::Nothing();
    return self.Part(static_cast<std::size_t>(First + index - 1), Kind, place);
}

/// Where the parts of a portfolio and of a canvas are kept.
enum PortfolioParts {
    Canvases = 0,
    Feeds = Portfolio::MaxCanvas,
    Server = Feeds + Portfolio::MaxFeed,
    Weather
};
enum CanvasParts {
    Texts = 0,
    Graphics = Canvas::MaxText,
    Push = Graphics + Canvas::MaxGraphic,
    Page,
    Paper,
    Saves
};

template <int SCPlace::*Number>
void MoveTo(SCObject& self, int number) {
    SCPlace place = self.Place();
    place.*Number = number;
    self.SetPlace(place);
}

void MoveToCanvas(SCObject& self, int slot) {
    MoveTo<&SCPlace::canvas>(self, Clamped(slot, {1, Portfolio::MaxCanvas}));
}

// --- SCMain ---

Value MainPortfolio(SCObject& self) {
    return modMain::OpenPortfolio() ? PartOf<SCKind::Portfolio, 0>(self) : Value::Nothing();
}

int MaxCanvas(SCObject&) { return Portfolio::MaxCanvas; }
int MaxText(SCObject&) { return Canvas::MaxText; }
int MaxGraphic(SCObject&) { return Canvas::MaxGraphic; }

/// A Single counts with the digits that it shows, not with those that a double would add.
double AsShown(float single) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), single).ptr;
    double real = 0;
    std::from_chars(digits.begin(), end, real);
    return real;
}

/// `text`: holds the text of the result while that is used.
FormatValue Formattable(const Value& value, std::string& text) {
    switch (value.Type()) {
        case VarType::Empty:
            return {};
        case VarType::Null:
            return FormatNull{};
        case VarType::Boolean:
            return value.Whole() != 0;
        case VarType::Byte:
        case VarType::Integer:
        case VarType::Long:
            return static_cast<int>(value.Whole());
        case VarType::Single:
            return AsShown(static_cast<float>(value.Real()));
        case VarType::Double:
            return value.Real();
        case VarType::Currency:
            return static_cast<double>(value.Currency()) / 10000;
        case VarType::Date:
            return FormatDate{value.Real()};
        case VarType::String:
            text = value.AsString().ToUtf8();
            return std::string_view(text);
        default:
            vbscript::Fail(vbscript::ErrorCode::TypeMismatch);
    }
}

Value vbFormat(SCObject&, const Arguments& arguments) {
    vbscript::Context& context = arguments.GetContext();
    std::string text;
    const FormatValue value = Formattable(arguments.Plain(0), text);
    const std::string pattern = arguments.TextOr(1, u"").ToUtf8();
    const int year = vbscript::CurrentYear(context);
    return Value::OfUtf8(Format(value, pattern, context.locale, {.currentYear = year}).OrThrow());
}

double CurrentClock(SCObject&) { return modTime::Clock(); }
double Sunrise(SCObject&) { return modTime::GetSunrise(); }
double Sunset(SCObject&) { return modTime::GetSunset(); }

bool LoadLastOnStartup(SCObject&) { return Setup().autoLoad; }
void SetLoadLastOnStartup(SCObject&, bool load) { Setup().autoLoad = load; }
std::string LoadLastFileName(SCObject&) { return Setup().lastPortfolio; }
void SetLoadLastFileName(SCObject&, const std::string& path) { Setup().lastPortfolio = path; }

bool CancelShutdown(SCObject&) { return Flags().cancelShutdown; }
void SetCancelShutdown(SCObject&, bool cancel) { Flags().cancelShutdown = cancel; }

/// What may ask the person, who does not answer in the script's time. When nobody was asked, it was.
template <typename Act>
Value Asking(SCObject& self, const Arguments& arguments, Act act) {
    const Dialogs& dialogs = ModelAt<Portfolio>(self.Place()).PlatformServices().dialogs;
    const int before = dialogs.Waits();
    vbscript::TimeLimit::Pause pause(arguments.GetContext().limit);
    act();
    if (dialogs.Waits() == before) pause.Drop();
    return {};
}

Value SaveAll(SCObject& self, const Arguments& arguments) {
    return Asking(self, arguments, [] { modMain::SaveAllProc(true); });
}

Value SavePortfolio(SCObject& self, const Arguments& arguments) {
    return Asking(self, arguments, [] { modMain::PortfolioSave(); });
}

/// Deliberately nothing: existing scripts call it, and the program must not end by that.
void ExitApp(SCObject&) {}

void BeepMe(SCObject& self) { ModelAt<Portfolio>(self.Place()).PlatformServices().desktop.Beep(); }

// --- The others ---

Value SaveCanvas(SCObject& self, const Arguments& arguments) {
    const int slot = ModelAt<Canvas>(self.Place()).CanvasIndex();
    return Asking(self, arguments, [slot] { modMain::CanvasSaveProc(slot); });
}

void ShowDiffFrame(SCObject& self) { ModelAt<MotionDetect>(self.Place()).ShowDiffFrame(); }

/// A server that cannot listen says so in a box.
Value SetServerEnabled(SCObject& self, const Arguments& arguments) {
    const SCPlace place = self.Place();
    const bool enabled = arguments.Boolean(0);
    return Asking(self, arguments, [&] { ModelAt<WebServer>(place).SetEnabled(enabled); });
}

/// Without a time: at the capture time.
bool EnableNow(SCObject& self, std::optional<double> time) {
    return ModelAt<Schedule>(self.Place()).EnableNow(time ? *time : ModelAt<Portfolio>(self.Place()).Now());
}

/// The schedule of another schedule object.
Value SetScheduleObject(SCObject& self, const Arguments& arguments) {
    const Value& value = arguments.NewValue();
    const auto* const other = value.Is(VarType::Object) ? dynamic_cast<SCObject*>(value.AsObject()) : nullptr;
    if (!other || other->Kind() != SCKind::Schedule) vbscript::Fail(vbscript::ErrorCode::TypeMismatch);
    self.SetPlace(other->Place());
    return {};
}

// --- The table ---

// clang-format off
constexpr SCMember MainMembers[] = {
    ReadOnly<MainPortfolio>                              (u"Portfolio"),
    ReadOnly<MaxCanvas>                                  (u"MaxCanvas"),
    ReadOnly<MaxText>                                    (u"MaxText"),
    ReadOnly<MaxGraphic>                                 (u"MaxGraphic"),
    {u"vbFormat", 1, 2, vbFormat},
    ReadOnly<CurrentClock>                               (u"CurrentClock"),
    ReadOnly<Sunrise>                                    (u"Sunrise"),
    ReadOnly<Sunset>                                     (u"Sunset"),
    Property<LoadLastOnStartup, SetLoadLastOnStartup>    (u"LoadLastOnStartup"),
    Property<LoadLastFileName, SetLoadLastFileName>      (u"LoadLastFileName"),
    {u"SaveAll", 0, 0, SaveAll},
    {u"SavePortfolio", 0, 0, SavePortfolio},
    Method<ExitApp>                                      (u"ExitApp"),
    Property<CancelShutdown, SetCancelShutdown>          (u"CancelShutdown"),
    Method<BeepMe>                                       (u"BeepMe"),
};

constexpr SCMember PortfolioMembers[] = {
    ReadOnly<Element<SCKind::Canvas, Canvas, &SCPlace::canvas, Canvases>>   (u"Canvas"),
    ReadOnly<Element<SCKind::VideoFeed, VideoFeed, &SCPlace::index, Feeds>> (u"VideoFeed"),
    ReadOnly<PartOf<SCKind::WebServer, Server>>                             (u"WebServer"),
    ReadOnly<PartOf<SCKind::VWS, Weather>>                                  (u"VWS"),
    Property<&Portfolio::FileName, &Portfolio::SetFileName>                 (u"FileName"),
    Property<&Portfolio::NeedSaving, &Portfolio::SetNeedSaving>             (u"NeedSaving"),
    ReadOnly<&Portfolio::CycleTime>                                         (u"CycleTime"),
};

constexpr SCMember CanvasMembers[] = {
    WriteOnly<MoveToCanvas>                                              (u"Index"),
    ReadOnly<Element<SCKind::Text, Text, &SCPlace::index, Texts>>          (u"Text"),
    ReadOnly<Element<SCKind::Graphic, Graphic, &SCPlace::index, Graphics>> (u"Graphic"),
    ReadOnly<PartOf<SCKind::FTPPush, Push>>                              (u"FTPPush"),
    ReadOnly<PartOf<SCKind::CanvasWebServer, Page>>                      (u"CanvasWebServer"),
    ReadOnly<PartOf<SCKind::Wallpaper, Paper>>                           (u"Wallpaper"),
    ReadOnly<PartOf<SCKind::AutoSave, Saves>>                            (u"AutoSave"),
    Property<&Canvas::Width, &Canvas::SetWidth>                          (u"Width"),
    Property<&Canvas::Height, &Canvas::SetHeight>                        (u"Height"),
    Method<&Canvas::SetWidthHeight>                                      (u"SetWidthHeight"),
    Property<&Canvas::Name, &Canvas::SetName>                            (u"Name"),
    Property<&Canvas::FileName, &Canvas::SetFileName>                    (u"FileName"),
    Property<&Canvas::BackgroundColor, &Canvas::SetBackgroundColor>      (u"BackgroundColor"),
    Property<&Canvas::ShadowIntensity, &Canvas::SetShadowIntensity>      (u"ShadowIntensity"),
    Property<&Canvas::FormType, &Canvas::SetFormType>                    (u"WindowMode"),
    {u"Save", 0, 0, SaveCanvas},
    Method<&Canvas::ForceRedraw>                                         (u"ForceRedraw"),
    Method<&Canvas::ForceReload>                                         (u"ForceReload"),
};

constexpr SCMember TextMembers[] = {
    WriteOnly<MoveTo<&SCPlace::index>>                       (u"Index"),
    WriteOnly<MoveTo<&SCPlace::canvas>>                      (u"CanvasValue"),
    Property<&Text::Value, &Text::SetValue>                  (u"Text"),
    Property<&Text::Enabled, &Text::SetEnabled>              (u"Enabled"),
    Property<&Text::Layer, &Text::SetLayer>                  (u"Layer"),
    Property<&Text::Rate, &Text::SetRate>                    (u"Rate"),
    Property<&Text::UpdateBaseTime, &Text::SetUpdateBaseTime>(u"BaseTime"),
    Property<&Text::Alignment, &Text::SetAlignment>          (u"Alignment"),
    Property<&Text::x, &Text::Setx>                          (u"x"),
    Property<&Text::Y, &Text::SetY>                          (u"Y"),
    Property<&Text::FontName, &Text::SetFontName>            (u"FontName"),
    Property<&Text::FontSize, &Text::SetFontSize>            (u"FontSize"),
    Property<&Text::FontBold, &Text::SetFontBold>            (u"FontBold"),
    Property<&Text::FontItalic, &Text::SetFontItalic>        (u"FontItalics"),
    Property<&Text::FontSmoothing, &Text::SetFontSmoothing>  (u"FontSmoothing"),
    Property<&Text::Color, &Text::SetColor>                  (u"Color"),
    Property<&Text::ProcessedString, &Text::SetProcessedString>(u"ProcessedString"),
    Property<&Text::Shadow, &Text::SetShadow>                (u"Shadow"),
    Property<&Text::ShadowSize, &Text::SetShadowSize>        (u"ShadowSize"),
    Property<&Text::ShadowOffsetX, &Text::SetShadowOffsetX>  (u"ShadowOffsetX"),
    Property<&Text::ShadowOffsetY, &Text::SetShadowOffsetY>  (u"ShadowOffsetY"),
    Property<&Text::Opacity, &Text::SetOpacity>              (u"Opacity"),
    Property<&Text::OpacityMode, &Text::SetOpacityMode>      (u"OpacityMode"),
    Property<&Text::RotationAngle, &Text::SetRotationAngle>  (u"RotationAngle"),
    Property<&Text::Scripted, &Text::SetScripted>            (u"Scripted"),
    ReadOnly<PartOf<SCKind::Schedule, 0>>                    (u"Schedule"),
    Method<&Text::ProcessText>                               (u"ProcessText"),
    Method<&Text::ForceUpdate>                               (u"ForceUpdate"),
};

constexpr SCMember GraphicMembers[] = {
    WriteOnly<MoveTo<&SCPlace::index>>                              (u"Index"),
    WriteOnly<MoveTo<&SCPlace::canvas>>                             (u"CanvasValue"),
    Property<&Graphic::Enabled, &Graphic::SetEnabled>               (u"Enabled"),
    Property<&Graphic::Layer, &Graphic::SetLayer>                   (u"Layer"),
    Property<&Graphic::Rate, &Graphic::SetRate>                     (u"Rate"),
    Property<&Graphic::UpdateBaseTime, &Graphic::SetUpdateBaseTime> (u"BaseTime"),
    Property<&Graphic::Alignment, &Graphic::SetAlignment>           (u"Alignment"),
    Property<&Graphic::x, &Graphic::Setx>                           (u"X"),
    Property<&Graphic::Y, &Graphic::SetY>                           (u"Y"),
    Property<&Graphic::Shadow, &Graphic::SetShadow>                 (u"Shadow"),
    Property<&Graphic::ShadowSize, &Graphic::SetShadowSize>         (u"ShadowSize"),
    Property<&Graphic::ShadowOffsetX, &Graphic::SetShadowOffsetX>   (u"ShadowOffsetX"),
    Property<&Graphic::ShadowOffsetY, &Graphic::SetShadowOffsetY>   (u"ShadowOffsetY"),
    Property<&Graphic::Opacity, &Graphic::SetOpacity>               (u"Opacity"),
    Property<&Graphic::OpacityMode, &Graphic::SetOpacityMode>       (u"OpacityMode"),
    Property<&Graphic::RotationAngle, &Graphic::SetRotationAngle>   (u"RotationAngle"),
    Property<&Graphic::Scripted, &Graphic::SetScripted>             (u"Scripted"),
    Property<&Graphic::SourceType, &Graphic::SetSourceType>         (u"SourceType"),
    Property<&Graphic::SourceCanvas, &Graphic::SetSourceCanvas>     (u"SourceCanvas"),
    Property<&Graphic::SourceVideoFeed, &Graphic::SetSourceVideoFeed>(u"SourceVideoFeed"),
    Property<&Graphic::SourceFileName, &Graphic::SetSourceFileName> (u"SourceFileName"),
    Property<&Graphic::SourceURL, &Graphic::SetSourceURL>           (u"SourceURL"),
    Property<&Graphic::CropLeft, &Graphic::SetCropLeft>             (u"CropLeft"),
    Property<&Graphic::CropRight, &Graphic::SetCropRight>           (u"CropRight"),
    Property<&Graphic::CropTop, &Graphic::SetCropTop>               (u"CropTop"),
    Property<&Graphic::CropBottom, &Graphic::SetCropBottom>         (u"CropBottom"),
    Property<&Graphic::StretchWidth, &Graphic::SetStretchWidth>     (u"StretchWidth"),
    Property<&Graphic::StretchHeight, &Graphic::SetStretchHeight>   (u"StretchHeight"),
    Property<&Graphic::Stretched, &Graphic::SetStretched>           (u"Stretch"),
    Property<&Graphic::OpacityUseFile, &Graphic::SetOpacityUseFile> (u"OpacityUseFile"),
    Property<&Graphic::OpacityFileName, &Graphic::SetOpacityFileName>(u"OpacityFileName"),
    Property<&Graphic::FeatherRadius, &Graphic::SetFeatherRadius>   (u"FeatherRadius"),
    Property<&Graphic::FeatherWidth, &Graphic::SetFeatherWidth>     (u"FeatherWidth"),
    Property<&Graphic::ColorProcessing, &Graphic::SetColorProcessing>(u"ColorProcessing"),
    Property<&Graphic::BackgroundColor, &Graphic::SetBackgroundColor>(u"BackgroundColor"),
    Property<&Graphic::TransparentColorEnable, &Graphic::SetTransparentColorEnable>(u"TransparentEnabled"),
    Property<&Graphic::TransparentColorCount, &Graphic::SetTransparentColorCount>  (u"TransparentColorCount"),
    Property<&Graphic::TransparentColorTable, &Graphic::SetTransparentColorTable>  (u"TransparentColorTable"),
    ReadOnly<PartOf<SCKind::Schedule, 0>>                           (u"Schedule"),
    Method<&Graphic::ForceUpdate>                                   (u"ForceUpdate"),
};

constexpr SCMember VideoFeedMembers[] = {
    WriteOnly<MoveTo<&SCPlace::index>>                          (u"Index"),
    Property<&VideoFeed::Enabled, &VideoFeed::SetEnabled>       (u"Enabled"),
    ReadOnly<&VideoFeed::Width>                                 (u"Width"),
    ReadOnly<&VideoFeed::Height>                                (u"Height"),
    Property<&VideoFeed::Rate, &VideoFeed::SetRate>             (u"Rate"),
    ReadOnly<&VideoFeed::FPS>                                   (u"FPS"),
    Property<&VideoFeed::ShowPreview, &VideoFeed::SetShowPreview>(u"PreviewWindowEnabled"),
    ReadOnly<&VideoFeed::FeedName>                              (u"InputDeviceName"),
    ReadOnly<PartOf<SCKind::MotionDetect, 0>>                   (u"MotionDetect"),
};

constexpr SCMember MotionDetectMembers[] = {
    WriteOnly<MoveTo<&SCPlace::index>>                                                   (u"Index"),
    Property<&MotionDetect::Enabled, &MotionDetect::SetEnabled>                          (u"Enabled"),
    Method<ShowDiffFrame>                                                                (u"ShowDiffFrame"),
    Property<&MotionDetect::SaveFixed, &MotionDetect::SetSaveFixed>                      (u"SaveFixed"),
    Property<&MotionDetect::SaveFixedFileName, &MotionDetect::SetSaveFixedFileName>      (u"FixedFileName"),
    Property<&MotionDetect::SaveFixedQuality, &MotionDetect::SetSaveFixedQuality>        (u"FixedQuality"),
    Property<&MotionDetect::SaveSequential, &MotionDetect::SetSaveSequential>            (u"SaveTimeNamed"),
    Property<&MotionDetect::SaveSequentialPath, &MotionDetect::SetSaveSequentialPath>    (u"TimeNamedPath"),
    Property<&MotionDetect::SaveSequentialQuality, &MotionDetect::SetSaveSequentialQuality>(u"TimeNamedQuality"),
    Property<&MotionDetect::SaveDiff, &MotionDetect::SetSaveDiff>                        (u"SaveDiff"),
    Property<&MotionDetect::SaveDiffQuality, &MotionDetect::SetSaveDiffQuality>          (u"DiffQuality"),
    Property<&MotionDetect::DiffPreBlurRadius, &MotionDetect::SetDiffPreBlurRadius>      (u"BlurSize"),
    Property<&MotionDetect::CoverageLimit, &MotionDetect::SetCoverageLimit>              (u"CoverageRequirement"),
    Property<&MotionDetect::DarkerMotionLimit, &MotionDetect::SetDarkerMotionLimit>      (u"DarkTrigger"),
    Property<&MotionDetect::BrighterMotionLimit, &MotionDetect::SetBrighterMotionLimit>  (u"LightTrigger"),
    Property<&MotionDetect::MotionTriggerRestInterval, &MotionDetect::SetMotionTriggerRestInterval>
                                                                                         (u"TriggerRestPeriod"),
    ReadOnly<&MotionDetect::LastMotionTriggerTime>                                       (u"LastMotionTime"),
    Property<&MotionDetect::MotionBeep, &MotionDetect::SetMotionBeep>                    (u"BeepOnTrigger"),
    Property<&MotionDetect::ShowDiffImageCoverage, &MotionDetect::SetShowDiffImageCoverage>(u"ShowCoverageSize"),
};

constexpr SCMember VWSMembers[] = {
    Property<&VWS::CSVEnabled, &VWS::SetCSVEnabled>                                     (u"Enabled"),
    Property<&VWS::CSVDelay, &VWS::SetCSVDelay>                                         (u"Rate"),
    Property<&VWS::CSVBaseTime, &VWS::SetCSVBaseTime>                                   (u"BaseTime"),
    Property<&VWS::CSVFile, &VWS::SetCSVFile>                                           (u"CSVFileName"),
    Property<&VWS::CSVAltitude, &VWS::SetCSVAltitude>                                   (u"Altitude"),
    Property<&VWS::CSVAltitudeUnits, &VWS::SetCSVAltitudeUnits>                         (u"AltitudeUnits"),
    Property<&VWS::CSVTemperatureUnits, &VWS::SetCSVTemperatureUnits>                   (u"TemperatureUnits"),
    Property<&VWS::CSVBarometerOffset, &VWS::SetCSVBarometerOffset>                     (u"BarometerOffset"),
    Property<&VWS::CSVWindStatisticsInterval, &VWS::SetCSVWindStatisticsInterval>       (u"WindStatisticsWindow"),
    Property<&VWS::CSVBarometricTrendThreshold, &VWS::SetCSVBarometricTrendThreshold>   (u"BarometricTrendThreshold"),
    Property<&VWS::CSVTemperatureTrendThreshold, &VWS::SetCSVTemperatureTrendThreshold> (u"TemperatureTrendThreshold"),
    Property<&VWS::CSVData, &VWS::SetCSVData>                                           (u"LastData"),
    Property<&VWS::CSVDataS, &VWS::SetCSVDataS>                                         (u"LastDataString"),
    ReadOnly<&VWS::CSVDatabaseTailPtr>                                                  (u"DatabaseTailPointer"),
    ReadOnly<&VWS::CSVDatabaseHeadPtr>                                                  (u"DatabaseHeadPointer"),
    ReadOnly<&VWS::CSVDatabaseBufferSize>                                               (u"DatabaseBufferSize"),
    Property<&VWS::CSVDatabase, &VWS::SetCSVDatabase>                                   (u"DatabaseData"),
};

constexpr SCMember WebServerMembers[] = {
    Property<&WebServer::AllowNonCanvasServes, &WebServer::SetAllowNonCanvasServes>(u"AllowNonCanvasServes"),
    {u"Enabled", 0, 0, sc::Call<&WebServer::Enabled>, SetServerEnabled},
    Property<&WebServer::WebPath, &WebServer::SetWebPath>                          (u"RootPath"),
    Property<&WebServer::Port, &WebServer::SetPort>                                (u"Port"),
};

constexpr SCMember FTPPushMembers[] = {
    WriteOnly<MoveTo<&SCPlace::canvas>>                                   (u"CanvasValue"),
    Property<&FTPPush::Enabled, &FTPPush::SetEnabled>                     (u"Enabled"),
    Property<&FTPPush::BaseTime, &FTPPush::SetBaseTime>                   (u"BaseTime"),
    Property<&FTPPush::Path, &FTPPush::SetPath>                           (u"FilePath"),
    Property<&FTPPush::Interval, &FTPPush::SetInterval>                   (u"Rate"),
    Property<&FTPPush::Password, &FTPPush::SetPassword>                   (u"Password"),
    Property<&FTPPush::Quality, &FTPPush::SetQuality>                     (u"Quality"),
    Property<&FTPPush::ServerName, &FTPPush::SetServerName>               (u"ServerName"),
    Property<&FTPPush::FTPMode, &FTPPush::SetFTPMode>                     (u"FTPMode"),
    Property<&FTPPush::PassiveFTP, &FTPPush::SetPassiveFTP>               (u"PassiveFTP"),
    Property<&FTPPush::KeepConnectionOpen, &FTPPush::SetKeepConnectionOpen>(u"KeepConnectionOpen"),
    Property<&FTPPush::KeepAlive, &FTPPush::SetKeepAlive>                 (u"KeepAlive"),
    Property<&FTPPush::UserName, &FTPPush::SetUserName>                   (u"UserName"),
    ReadOnly<&FTPPush::Status>                                            (u"Status"),
    ReadOnly<&FTPPush::Stage>                                             (u"Stage"),
    Method<&FTPPush::Upload>                                              (u"Upload"),
    ReadOnly<PartOf<SCKind::Schedule, 0>>                                 (u"Schedule"),
};

constexpr SCMember CanvasWebServerMembers[] = {
    WriteOnly<MoveTo<&SCPlace::canvas>>                               (u"CanvasValue"),
    Property<&CanvasWebServer::Enabled, &CanvasWebServer::SetEnabled>   (u"Enabled"),
    Property<&CanvasWebServer::FileName, &CanvasWebServer::SetFileName> (u"FileName"),
    Property<&CanvasWebServer::Interval, &CanvasWebServer::SetInterval> (u"Interval"),
    Property<&CanvasWebServer::Quality, &CanvasWebServer::SetQuality>   (u"Quality"),
    ReadOnly<PartOf<SCKind::Schedule, 0>>                             (u"Schedule"),
};

constexpr SCMember WallpaperMembers[] = {
    WriteOnly<MoveTo<&SCPlace::canvas>>                                          (u"CanvasValue"),
    Property<&CanvasSaves::BackgroundEnabled, &CanvasSaves::SetBackgroundEnabled>  (u"Enabled"),
    Property<&CanvasSaves::BackgroundRate, &CanvasSaves::SetBackgroundRate>        (u"Rate"),
    Property<&CanvasSaves::BackgroundBaseTime, &CanvasSaves::SetBackgroundBaseTime>(u"BaseTime"),
    ReadOnly<PartOf<SCKind::Schedule, 0>>                                        (u"Schedule"),
};

constexpr SCMember AutoSaveMembers[] = {
    WriteOnly<MoveTo<&SCPlace::canvas>>                                          (u"CanvasValue"),
    Property<&CanvasSaves::FixedEnabled, &CanvasSaves::SetFixedEnabled>            (u"FixedEnabled"),
    Property<&CanvasSaves::FixedRate, &CanvasSaves::SetFixedRate>                  (u"FixedRate"),
    Property<&CanvasSaves::FixedBaseTime, &CanvasSaves::SetFixedBaseTime>          (u"FixedBaseTime"),
    Property<&CanvasSaves::FixedFileName, &CanvasSaves::SetFixedFileName>          (u"FixedFileName"),
    Property<&CanvasSaves::FixedQuality, &CanvasSaves::SetFixedQuality>            (u"FixedQuality"),
    Property<&CanvasSaves::CascadeEnabled, &CanvasSaves::SetCascadeEnabled>        (u"CascadeEnabled"),
    Property<&CanvasSaves::CascadeCount, &CanvasSaves::SetCascadeCount>            (u"CascadeCount"),
    Property<&CanvasSaves::CascadeMode, &CanvasSaves::SetCascadeMode>              (u"CascadeMode"),
    Property<&CanvasSaves::SequentialEnabled, &CanvasSaves::SetSequentialEnabled>  (u"SequentialEnabled"),
    Property<&CanvasSaves::SequentialRate, &CanvasSaves::SetSequentialRate>        (u"SequentialRate"),
    Property<&CanvasSaves::SequentialBaseTime, &CanvasSaves::SetSequentialBaseTime>(u"SequentialBaseTime"),
    Property<&CanvasSaves::SequentialPath, &CanvasSaves::SetSequentialPath>        (u"SequentialDirectory"),
    Property<&CanvasSaves::SequentialQuality, &CanvasSaves::SetSequentialQuality>  (u"SequentialQuality"),
    Property<&CanvasSaves::SequentialType, &CanvasSaves::SetSequentialType>        (u"SequentialType"),
    Property<&CanvasSaves::SequentialNumber, &CanvasSaves::SetSequentialNumber>    (u"SequentialNumber"),
    ReadOnly<PartOf<SCKind::Schedule, 0>>                                        (u"FixedSchedule"),
    ReadOnly<PartOf<SCKind::Schedule, 1>>                                        (u"SequentialSchedule"),
};

constexpr SCMember ScheduleMembers[] = {
    {u"ScheduleObject", 0, 0, nullptr, nullptr, SetScheduleObject},
    Property<&Schedule::ScheduleMode, &Schedule::SetScheduleMode>              (u"ScheduleMode"),
    Property<&Schedule::StartMode, &Schedule::SetStartMode>                    (u"StartMode"),
    Property<&Schedule::StopMode, &Schedule::SetStopMode>                      (u"StopMode"),
    Property<&Schedule::StartAbsoluteTime, &Schedule::SetStartAbsoluteTime>    (u"StartAbsoluteTime"),
    Property<&Schedule::StartSunriseOffset, &Schedule::SetStartSunriseOffset>  (u"StartSunriseOffset"),
    Property<&Schedule::StartSunsetOffset, &Schedule::SetStartSunsetOffset>    (u"StartSunsetOffset"),
    Property<&Schedule::StopAbsoluteTime, &Schedule::SetStopAbsoluteTime>      (u"StopAbsoluteTime"),
    Property<&Schedule::StopSunriseOffset, &Schedule::SetStopSunriseOffset>    (u"StopSunriseOffset"),
    Property<&Schedule::StopSunsetOffset, &Schedule::SetStopSunsetOffset>      (u"StopSunsetOffset"),
    Method<EnableNow>                                                          (u"EnableNow"),
};

// In the order of SCKind.
constexpr SCClass Classes[] = {
    {u"SCMain", MainMembers},
    {u"SCPortfolio", PortfolioMembers},
    {u"SCCanvas", CanvasMembers},
    {u"SCText", TextMembers},
    {u"SCGraphic", GraphicMembers},
    {u"SCVideoFeed", VideoFeedMembers},
    {u"SCMotionDetect", MotionDetectMembers},
    {u"SCVWS", VWSMembers},
    {u"SCWebServer", WebServerMembers},
    {u"SCFTPPush", FTPPushMembers},
    {u"SCCanvasWebServer", CanvasWebServerMembers},
    {u"SCWallpaper", WallpaperMembers},
    {u"SCAutoSave", AutoSaveMembers},
    {u"SCSchedule", ScheduleMembers},
};
// clang-format on

}  // namespace

const SCClass& ClassOf(SCKind kind) { return Classes[static_cast<std::size_t>(kind)]; }

}  // namespace tessaloom
