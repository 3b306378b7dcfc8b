#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QToolButton>
#include <algorithm>
#include <functional>
#include <string>

#include "model/edit/Layers.h"
#include "time/Schedule.h"
#include "ui/property/ScheduleSetup.h"
#include "ui/property/TransparentColours.h"
#include "ui/property/editors/Editors.h"
#include "ui/property/editors/Parts.h"
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
    std::function<Schedule*()> Finder() {
        Workspace& workspace = subject_.workspace;
        const std::size_t row = subject_.row;
        if (const auto layer = subject_.set.Layer())
            return [&workspace, canvas = subject_.set.CanvasSlot(), layer = *layer, row]() -> Schedule* {
                if (!workspace.CanvasAt(canvas)) return nullptr;
                return PropertySets::Layer(*workspace.Portfolio(), canvas, layer)->ScheduleOf(row);
            };
        return [editor = QPointer(this), row] {
            return editor ? editor->subject_.set.ScheduleOf(row) : nullptr;
        };
    }

    std::string Name() const {
        const Canvas* canvas = subject_.workspace.CanvasAt(subject_.set.CanvasSlot());
        const auto layer = subject_.set.Layer();
        if (canvas && layer) return Layers::Title(*canvas, *layer);
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
        if (const auto layer = subject_.set.Layer())
            ShowTransparentColours(subject_.workspace, window(), subject_.set.CanvasSlot(), layer->slot);
    }
};

}  // namespace

PropertyEditor* MakeSchedule(const Subject& subject) { return new ScheduleEditor(subject); }
PropertyEditor* MakeTransparentColours(const Subject& subject) {
    return new TransparentColoursEditor(subject);
}

}  // namespace tessaloom::Editors
