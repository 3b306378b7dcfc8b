#include "ui/StatusLine.h"

#include <QDateTime>
#include <QLabel>
#include <QStatusBar>
#include <QStringList>
#include <cmath>
#include <optional>
#include <utility>

#include "core/main/modMain.h"
#include "model/Canvas.h"
#include "platform/Paths.h"
#include "publish/CanvasSaves.h"
#include "publish/VideoStreaming.h"
#include "time/modTime.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

constexpr int WarningSeconds = 120;
constexpr int MostWarnings = 10;

QString TimeOf(double moment) {
    constexpr int Minute = 60, Hour = 60 * Minute;
    const double day = moment - std::floor(moment);
    const int seconds = static_cast<int>(day * modTime::SecondsPerDay + 0.5) % (24 * Hour);
    const auto two = [](int number) { return QString("%1").arg(number, 2, 10, QChar('0')); };
    return two(seconds / Hour) + ":" + two(seconds / Minute % Minute) + ":" + two(seconds % Minute);
}

/// One publication, past or to come.
struct Event {
    double moment = 0;
    QString text;
};

template <typename Visit>
void ForCanvases(Portfolio& portfolio, Visit visit) {
    for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot)
        if (Canvas& canvas = portfolio.Canvas(slot); canvas.Enabled()) visit(canvas);
}

std::optional<Event> LastEvent(Portfolio& portfolio) {
    std::optional<Event> last;
    ForCanvases(portfolio, [&](Canvas& canvas) {
        const CanvasSaves& saves = canvas.Saves();
        for (const SaveResult* result :
             {&saves.LastFixed(), &saves.LastSequential(), &saves.LastBackground()}) {
            if (result->moment <= 0 || (last && last->moment >= result->moment)) continue;
            last = Event{result->moment, QString::fromStdString(FileName(result->path)) +
                                             (result->written ? " saved" : " not saved") + " at " +
                                             TimeOf(result->moment)};
        }
        const double served = canvas.VideoStreaming().CanvasWebServer().LastModified();
        if (served > 0 && (!last || last->moment < served))
            last = Event{served,
                         QString::fromStdString(canvas.Name()) + " served to the web at " + TimeOf(served)};
    });
    return last;
}

/// What uploads are doing, or why the last one failed.
QString Uploads(Portfolio& portfolio) {
    QStringList texts;
    ForCanvases(portfolio, [&](Canvas& canvas) {
        const FTPPush& upload = canvas.VideoStreaming().FTPPush();
        if (upload.Enabled())
            texts += "Upload of " + QString::fromStdString(canvas.Name() + ": " + upload.Stage());
    });
    return texts.join(", ");
}

std::optional<Event> NextEvent(Portfolio& portfolio) {
    std::optional<Event> next;
    ForCanvases(portfolio, [&](Canvas& canvas) {
        const CanvasSaves& saves = canvas.Saves();
        const FTPPush& upload = canvas.VideoStreaming().FTPPush();
        const struct {
            const char* name;
            bool enabled;
            double rate, moment;
        } outputs[] = {
            {"fixed save",      saves.FixedEnabled(),      saves.FixedRate(),      saves.FixedNextFrame()     },
            {"sequential save", saves.SequentialEnabled(), saves.SequentialRate(),
             saves.SequentialNextFrame()                                                                      },
            {"wallpaper",       saves.BackgroundEnabled(), saves.BackgroundRate(), saves.BackgroundNextFrame()},
            {"upload",          upload.Enabled(),          upload.Interval(),      upload.NextUploadTime()    },
        };
        for (const auto& output : outputs) {
            if (!output.enabled || output.rate <= 0 || output.moment >= modTime::Never) continue;
            if (next && next->moment <= output.moment) continue;
            next = Event{output.moment,
                         QString("Next: %1 of %2 at %3")
                             .arg(output.name, QString::fromStdString(canvas.Name()), TimeOf(output.moment))};
        }
    });
    return next;
}

void SetText(QLabel* label, const QString& text) {
    if (label->text() == text) return;
    label->setText(text);
    label->setToolTip(label->accessibleName() + "\n" + text);  // which may be cut off in the bar
    label->setVisible(!text.isEmpty());
}

}  // namespace

StatusLine::StatusLine(Workspace& workspace, QStatusBar* bar) : QObject(bar), workspace_(workspace) {
    const auto add = [bar](const char* name, const char* tip, int stretch) {
        auto* label = new QLabel(bar);
        label->setObjectName(name);
        label->setAccessibleName(tip);
        label->setToolTip(tip);
        label->setTextFormat(Qt::PlainText);
        // A long text is cut off rather than widening the window.
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        if (stretch == 0) label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        bar->addWidget(label, stretch);
        label->hide();  // until there is something to say
        return label;
    };
    load_ = add("lblLoad", "Work of a tick, and its share of the time that a tick has", 0);
    feeds_ = add("lblFeeds", "Frames per second of the video feeds", 2);
    last_ = add("lblLast", "Last publication and its result", 3);
    next_ = add("lblNext", "Next publication", 3);
    warning_ = add("lblWarning", "Last warning", 4);
    // What could not be read, reached or written is known to the log alone.
    log_ = SetLogSink({});
    SetLogSink([this](LogLevel level, std::string_view line) {
        if (log_) log_(level, line);
        if (level > LogLevel::Warning) return;
        const QString text = QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size()));
        QMetaObject::invokeMethod(
            this, [this, text] { Warn(text); }, Qt::QueuedConnection);
    });
    connect(&workspace_, &Workspace::Pulse, this, &StatusLine::Refresh);
    Refresh();
}

StatusLine::~StatusLine() { SetLogSink(std::move(log_)); }

void StatusLine::Warn(const QString& text) {
    warningPulses_ = WarningSeconds * 1000 / Workspace::PulseMilliseconds;
    warnings_.prepend(QTime::currentTime().toString("HH:mm:ss ") + text);
    while (warnings_.size() > MostWarnings) warnings_.removeLast();
    const QString count = warnings_.size() > 1 ? QString("%1 warnings: ").arg(warnings_.size()) : QString();
    SetText(warning_, count + warnings_.front());
    warning_->setToolTip(warnings_.join('\n'));
}

void StatusLine::Refresh() {
    if (warningPulses_ > 0 && --warningPulses_ == 0) {
        warnings_.clear();
        SetText(warning_, {});
    }
    Portfolio* portfolio = workspace_.Portfolio();
    SetText(load_, Load());
    SetText(feeds_, Feeds());
    QString last = portfolio ? "Nothing published yet" : "No portfolio is open";
    if (portfolio) {
        if (const auto event = LastEvent(*portfolio)) last = event->text;
        if (const QString uploads = Uploads(*portfolio); !uploads.isEmpty()) last += ", " + uploads;
    }
    SetText(last_, last);
    const auto next = portfolio ? NextEvent(*portfolio) : std::nullopt;
    SetText(next_, next ? next->text : QString());
}

QString StatusLine::Load() {
    constexpr double Newest = 0.25;
    const Portfolio* portfolio = workspace_.Portfolio();
    if (!portfolio) return {};
    milliseconds_ += Newest * (portfolio->CycleTime() - milliseconds_);
    const double percent = 100 * milliseconds_ / modMain::TickInterval;
    return QString("Tick %1 ms (%2 %)").arg(milliseconds_, 0, 'f', 1).arg(percent, 0, 'f', 0);
}

QString StatusLine::Feeds() const {
    const Portfolio* portfolio = workspace_.Portfolio();
    QStringList texts;
    for (int slot = 0; portfolio && slot < Portfolio::MaxFeed; ++slot) {
        const VideoFeed& feed = portfolio->VideoFeed(slot);
        if (!feed.Enabled()) continue;
        const QString state =
            feed.Valid() ? QString("%1 fps").arg(double(feed.FPS()), 0, 'f', 1) : QString("no picture");
        texts += QString("Feed %1: %2").arg(slot + 1).arg(state);
    }
    return texts.join(", ");
}

}  // namespace tessaloom
