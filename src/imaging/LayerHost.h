#pragma once

#include <memory>

#include "core/SettingsOwner.h"
#include "time/LayerTimingTable.h"
#include "time/PresentTime.h"

namespace tessaloom {

class DIB;

/// What a text or graphic layer asks of the canvas that owns it.
///
/// Every setting of a layer that its file stores is told by `SettingChanged`.
class LayerHost : public SettingsOwner, public PresentTime {
public:
    /// The canvas's slot in the portfolio, 1 .. 20; 0 outside a portfolio.
    virtual int CanvasIndex() const = 0;

    /// Pass `pass` (0 .. 3) must be recomposed; what lies outside that range is ignored.
    virtual void PassChanged(int pass) = 0;

    /// The composed picture of canvas slot `canvas`; null when that slot holds none.
    virtual const DIB* CanvasPicture(int canvas) const = 0;

    /// The latest frame of feed slot `feed` (0 .. 9), which never changes again; null when none has come yet.
    virtual std::shared_ptr<const DIB> FeedFrame(int feed) const = 0;

    /// `EnableNow` of the layer's schedule changed its answer: the canvas is redrawn.
    virtual void ScheduleStateChanged() = 0;

protected:
    ~LayerHost() = default;
};

}  // namespace tessaloom
