#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QToolButton>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/edit/Layers.h"
#include "time/Schedule.h"
#include "ui/property/ScheduleSetup.h"
#include "ui/property/TransparentColours.h"
#include "ui/property/editors/Editors.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/FollowedLayers.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::Editors {

namespace {

/// A value that a window of its own sets: its description, and the button that opens the window.
class WindowEditor : public PropertyEditor {
public:
    explicit WindowEditor(const Subject& subject)
        : PropertyEditor(subject.parent),
          subject_(subject),
          description_(new QLabel),
          button_(OpenButton("Change...", "change", "Change " + Words(subject.Description().label))) {
        description_->setTextFormat(Qt::PlainText);
        description_->setWordWrap(true);
        auto* layout = LayParts(this, button_);
        layout->insertWidget(0, description_, 1);
        connect(button_, &QToolButton::clicked, this, [this] { Open(); });
    }

    void Show(const std::string& text) override { description_->setText(Summary(text)); }
    void ShowMixed(const std::string&) override { description_->setText(SeveralValues()); }

protected:
    virtual void Open() = 0;
    virtual QString Summary(const std::string& text) const { return QString::fromStdString(text); }

    const Subject subject_;

private:
    QLabel* description_;
    QToolButton* button_;
};

class ScheduleEditor final : public WindowEditor {
public:
    using WindowEditor::WindowEditor;

private:
    QString Summary(const std::string&) const override {
        const Schedule* schedule = subject_.set.ScheduleOf(subject_.row);
        return schedule ? QString::fromStdString(schedule->Description()) : QString();
    }

    /// The window stays open while other layers are selected; other things close their windows when they go.
    FindSchedules Finder() {
        Workspace& workspace = subject_.workspace;
        const int canvas = subject_.set.CanvasSlot();
        if (const auto layers = subject_.set.Layers(); !layers.empty())
            return [&workspace, layers = std::make_shared<FollowedLayers>(workspace, canvas, layers)] {
                std::vector<Schedule*> schedules;
                for (const LayerId layer : layers->Now())
                    schedules.push_back(ScheduleOfLayer(workspace, layers->CanvasSlot(), layer));
                return schedules;
            };
        return [editor = QPointer(this)] {
            return std::vector{editor ? editor->subject_.set.ScheduleOf(editor->subject_.row) : nullptr};
        };
    }

    static Schedule* ScheduleOfLayer(Workspace& workspace, int canvas, LayerId layer) {
        if (!workspace.CanvasAt(canvas)) return nullptr;
        const auto set = PropertySets::Layer(*workspace.Portfolio(), canvas, layer);
        return set->ScheduleOf(set->Find("Schedule").value());
    }

    std::string Name() const {
        const Canvas* canvas = subject_.workspace.CanvasAt(subject_.set.CanvasSlot());
        const auto layers = subject_.set.Layers();
        if (layers.size() > 1) return Layers::Counted(layers);
        if (canvas && !layers.empty()) return Layers::Title(*canvas, layers.front());
        return std::string(subject_.Description().group);
    }

    void Open() override {
        ShowScheduleSetup(subject_.workspace, window(), Name(), subject_.set.CanvasSlot(), Finder());
    }
};

class TransparentColoursEditor final : public WindowEditor {
public:
    using WindowEditor::WindowEditor;

private:
    /// The text lists the ranges with semicolons between them.
    QString Summary(const std::string& text) const override {
        if (text.empty()) return "None";
        const auto ranges = std::count(text.begin(), text.end(), ';') + 1;
        return ranges == 1 ? "1 range" : QString("%1 ranges").arg(ranges);
    }

    void Open() override {
        if (auto layers = subject_.set.Layers(); !layers.empty())
            ShowTransparentColours(subject_.workspace, window(), subject_.set.CanvasSlot(),
                                   std::move(layers));
    }
};

}  // namespace

PropertyEditor* MakeSchedule(const Subject& subject) { return new ScheduleEditor(subject); }
PropertyEditor* MakeTransparentColours(const Subject& subject) {
    return new TransparentColoursEditor(subject);
}

}  // namespace tessaloom::Editors
