#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tessaloom {

/// One delivered frame. The bytes belong to the driver and are valid while the callback runs.
struct FrameHeader {
    static constexpr int Length = 40;  ///< Bytes of this header, as shown to people.

    /// `flags`: the buffer is filled; this frame is the first since the source was (re)opened, so nothing
    /// before it is comparable.
    static constexpr std::uint32_t Done = 1;
    static constexpr std::uint32_t First = 8;

    std::span<const std::uint8_t> data;  ///< The whole buffer: its size is the buffer length.
    std::size_t bytesUsed = 0;
    std::uint32_t timeCaptured = 0;  ///< Milliseconds since the driver was connected.
    std::uint32_t flags = Done;
};

/// How the pixels of a driver's frames lie: rows padded to 4 bytes, bottom row first, blue, green, red (24
/// bits) or 5-5-5 (16 bits).
struct CaptureFormat {
    static constexpr int Size = 40;  ///< Bytes of this description, as shown to people.

    int width = 0;   ///< Pixels, 1 .. `MaxSide`.
    int height = 0;  ///< Pixels, 1 .. `MaxSide`.
    int planes = 1;
    int bitCount = 24;
    int compression = 0;
    int sizeImage = 0;  ///< Bytes of a frame.
    int colorUsed = 0;
    int colorImportant = 0;

    /// Larger frames are refused: the padded size of a bitmap does not reckon with them.
    static constexpr int MaxSide = 16'384;

    bool operator==(const CaptureFormat&) const = default;
};

/// Which dialogs of its own a driver offers.
struct CaptureCapabilities {
    bool hasDlgVideoSource = false;
    bool hasDlgVideoFormat = false;
    bool hasDlgVideoDisplay = false;
};

/// Where a connected driver stands.
enum class CaptureState {
    Disconnected,
    Opening,     ///< The first attempt to reach the source is under way.
    Delivering,  ///< Frames come.
    Waiting,     ///< The source cannot be reached or has ended; it is tried again by and by.
};

struct CaptureStatus {
    CaptureState state = CaptureState::Disconnected;
    int width = 0;          ///< Of the frames, in pixels; 0 before the first one.
    int height = 0;         ///< The same.
    int failures = 0;       ///< Attempts that brought no frame since the driver was connected.
    std::string text = {};  ///< For people: what goes on, or why it does not. Holds no password.
};

/// The connection of one feed to one capture driver. All on the engine's thread; the callbacks run inside
/// `capGrabFrame` and `Poll` alone, and may not destroy this object. Nothing here waits for a device or a
/// network.
///
/// Destroying it removes the callbacks and disconnects.
class CaptureWindow {
public:
    using OnFrame = std::function<void(const FrameHeader& frame)>;
    using OnError = std::function<void(int id, std::string_view text)>;

    virtual ~CaptureWindow() = default;

    /// Null removes the callback.
    virtual void capSetCallbackOnFrame(OnFrame callback) = 0;

    /// Called once for what no reopening repairs, such as frames that are too large; id 0 clears an error.
    virtual void capSetCallbackOnError(OnError callback) = 0;

    /// Names the source; it is reached, and reached again whenever it was lost, while the program goes on.
    /// False when there is no driver of that index.
    virtual bool capDriverConnect(int driver) = 0;

    /// False when none was connected.
    virtual bool capDriverDisconnect() = 0;

    virtual CaptureCapabilities capDriverGetCaps() const = 0;

    /// The format of the frame that the callback has in hand, else of the last one. False before the first.
    virtual bool capGetVideoFormat(CaptureFormat& format) const = 0;

    /// The driver's own preview. None of ours draws any; kept for whoever has one.
    virtual void capPreview(bool on) = 0;

    virtual CaptureStatus capGetStatus() const = 0;

    /// `capGetStatus().state` and `.failures` without the words, cheap enough for every tick.
    virtual CaptureState State() const = 0;
    virtual int Failures() const = 0;

    /// Asks for the newest frame that was not delivered yet. When there is one it is delivered before this
    /// returns; else the grab stays outstanding (a second one changes nothing) and `Poll` delivers.
    /// False when no driver is connected.
    virtual bool capGrabFrame() = 0;

    /// Delivers what an outstanding grab has waited for. Called on every tick; costs next to nothing.
    virtual void Poll() = 0;

    /// The driver's own dialogs; false when it has none.
    virtual bool capDlgVideoSource() = 0;
    virtual bool capDlgVideoFormat() = 0;
    virtual bool capDlgVideoDisplay() = 0;
};

/// The capture drivers of this machine: the cameras, then the addresses in use, then "Test Pattern".
///
/// Indexes count from 0 and shift as cameras and addresses come and go, so whoever remembers a driver
/// remembers its name and finds the index anew before connecting. Only the first `Reachable` can be
/// connected.
class CaptureDrivers {
public:
    static constexpr int Reachable = 10;
    static constexpr std::string_view TestPattern = "Test Pattern";

    virtual ~CaptureDrivers() = default;

    /// A window for one feed. Null when this machine has no capture support at all.
    virtual std::unique_ptr<CaptureWindow> capCreateCaptureWindow(std::string_view windowName) = 0;

    /// The bare name of a driver: equal cameras have equal ones. Nothing behind the last driver.
    virtual std::optional<std::string> capGetDriverDescription(int driver) const = 0;

    /// Looks for cameras that were plugged in or taken away since. May take some milliseconds.
    virtual void Refresh() = 0;

    /// The index of the driver with that name, "(2) " before it for the second of equal cameras; -1 for an
    /// empty name. A name that is unknown joins the list, as an address when it reads like one (a scheme and
    /// a colon, or an absolute path), else as a camera or a file that is not there yet.
    virtual int Find(std::string_view name) = 0;
};

/// The name by which people tell drivers apart: "(k) " before a description that several drivers bear, k
/// counted from 1 in the order of indexes. "" when there is no such driver.
std::string NumberedDriverName(const CaptureDrivers& drivers, int driver);

}  // namespace tessaloom
