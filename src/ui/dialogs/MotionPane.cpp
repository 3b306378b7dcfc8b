#include "ui/dialogs/MotionPane.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/dialogs/MotionGraph.h"
#include "ui/dialogs/MotionHistogram.h"
#include "ui/dialogs/PictureBox.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"
#include "video/MotionScale.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

/// A figure of the detector on the scale -1 (fully darker) .. 1 (fully lighter), the coverage on 0 .. 1.
struct Figure {
    const char* caption;
    const char* tip;
    double (*value)(const MotionDetect&);
};

double Darker(int value) { return std::min(MotionScale::DarkerPercent(value) / 100, 0.0); }
double Lighter(int value) { return std::max(MotionScale::BrighterPercent(value) / 100, 0.0); }

constexpr Figure AllFigures[] = {
    {"Dark Trigger: ",  "From this change on, a point counts as darker.",
     [](const MotionDetect& motion) { return Darker(motion.DarkerMotionLimit()); }                    },
    {"Light Trigger: ", "From this change on, a point counts as lighter.",
     [](const MotionDetect& motion) { return Lighter(motion.BrighterMotionLimit()); }                 },
    {"Coverage: ",      "How much of the picture changed, on the logarithmic scale.",
     [](const MotionDetect& motion) { return static_cast<double>(motion.LastMeasurement().coverage); }},
    {"Min Dark: ",      "The greatest change towards dark.",
     [](const MotionDetect& motion) { return Darker(motion.LastMeasurement().darkMin); }              },
    {"Max Dark: ",      "The greatest change towards light.",
     [](const MotionDetect& motion) { return Lighter(motion.LastMeasurement().lightMax); }            },
};

QString Number(double value) { return QLocale().toString(value, 'f', 4); }

}  // namespace

MotionPane::MotionPane(Workspace& workspace, int feed, QWidget* parent)
    : QWidget(parent), workspace_(workspace), feed_(feed), last_(new QLabel) {
    const auto motion = [this]() -> MotionDetect* {
        VideoFeed* found = Feed();
        return found ? &found->MotionDetect() : nullptr;
    };
    auto* picture = new PictureBox(
        [this] {
            const VideoFeed* found = Feed();
            if (!found || !found->MotionDetect().Enabled() || !found->MotionDetect().PreviousDataValid())
                return PictureBox::Sight{};
            return PictureBox::Sight{&found->MotionDetect().Difference(), found->FRAME()};
        },
        "Nothing is compared yet.\nGrey will mean no change, white lighter, black darker.");
    picture->setAccessibleName("Difference of the last two frames");
    graph_ = new MotionGraph(motion);
    last_->setObjectName("lastTrigger");

    auto* captions = new QHBoxLayout;
    for (std::size_t i = 0; i < Figures; ++i) {
        figures_[i] = new QLabel;
        figures_[i]->setToolTip(AllFigures[i].tip);
        captions->addWidget(figures_[i]);
        captions->addStretch();
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(picture, 1);
    layout->addLayout(captions);
    layout->addWidget(new MotionHistogram(workspace, motion));
    layout->addWidget(graph_);
    layout->addWidget(last_);
    connect(&workspace, &Workspace::Pulse, this, &MotionPane::Refresh);
    Refresh();
}

void MotionPane::ShowGraph(bool show) { graph_->setVisible(show); }

VideoFeed* MotionPane::Feed() const {
    Portfolio* portfolio = workspace_.Portfolio();
    return portfolio ? &portfolio->VideoFeed(feed_) : nullptr;
}

void MotionPane::Refresh() {
    const VideoFeed* feed = Feed();
    if (!feed) return;
    const MotionDetect& motion = feed->MotionDetect();
    for (std::size_t i = 0; i < Figures; ++i)
        figures_[i]->setText(AllFigures[i].caption + Number(AllFigures[i].value(motion)));
    last_->setText(
        motion.LastMotionTriggerTime() == 0
            ? "No motion yet."
            : QString("Last motion: %1, coverage %2")
                  .arg(Wording::Moment(motion.LastMotionTriggerTime(), workspace_.Portfolio()->Now()),
                       Number(static_cast<double>(motion.LastMotionCoverage()))));
}

}  // namespace tessaloom
