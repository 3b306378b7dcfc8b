#include <QPushButton>
#include <utility>

#include "model/Canvas.h"
#include "model/Portfolio.h"
#include "model/edit/Conflicts.h"
#include "platform/Desktop.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "publish/CanvasSaves.h"
#include "ui/dialogs/CanvasSetupPage.h"
#include "ui/dialogs/FactList.h"
#include "ui/dialogs/Hint.h"
#include "ui/dialogs/Wording.h"
#include "ui/shared/Workspace.h"

namespace tessaloom::CanvasPages {

namespace {

using Wording::FullPath;

/// One of the three timed saves, as its page needs it.
struct Save {
    std::unique_ptr<PropertySet> (*properties)(Portfolio&, int canvas);
    const char* action;  ///< What makes it due.
    const char* last;    ///< Label of the last run.
    bool (CanvasSaves::*enabled)() const;
    double (CanvasSaves::*rate)() const;
    double (CanvasSaves::*next)() const;
    void (CanvasSaves::*setNext)(double moment);
    const Schedule& (CanvasSaves::*schedule)() const;
    const SaveResult& (CanvasSaves::*result)() const;
    int (*conflict)(const Portfolio&, int canvas);
    const char* clash;  ///< What the conflict means; "%1" is the other canvas.
};

const Save Fixed = {PropertySets::FixedSave,
                    "Sa&ve Now",
                    "Last saved",
                    &CanvasSaves::FixedEnabled,
                    &CanvasSaves::FixedRate,
                    &CanvasSaves::FixedNextFrame,
                    &CanvasSaves::SetFixedNextFrame,
                    &CanvasSaves::FixedSchedule,
                    &CanvasSaves::LastFixed,
                    Conflicts::FixedFile,
                    "The same file is written by %1: each overwrites the other's picture."};

const Save Sequential = {PropertySets::SequentialSave,
                         "Sa&ve Now",
                         "Last saved",
                         &CanvasSaves::SequentialEnabled,
                         &CanvasSaves::SequentialRate,
                         &CanvasSaves::SequentialNextFrame,
                         &CanvasSaves::SetSequentialNextFrame,
                         &CanvasSaves::SequentialSchedule,
                         &CanvasSaves::LastSequential,
                         Conflicts::SequentialFiles,
                         "Files of like names are written there by %1, too: one may overwrite the other."};

const Save Background = {PropertySets::Wallpaper,
                         "Chan&ge Now",
                         "Last changed",
                         &CanvasSaves::BackgroundEnabled,
                         &CanvasSaves::BackgroundRate,
                         &CanvasSaves::BackgroundNextFrame,
                         &CanvasSaves::SetBackgroundNextFrame,
                         &CanvasSaves::BackgroundSchedule,
                         &CanvasSaves::LastBackground,
                         Conflicts::Wallpaper,
                         "The wallpaper is also changed by %1: the one that runs last is seen."};

class SavePage : public CanvasSetupPage {
public:
    SavePage(Workspace& workspace, int canvas, const Save& save)
        : CanvasSetupPage(workspace, canvas, save.properties(*workspace.Portfolio(), canvas)), save_(save) {
        now_ = AddAction("cmdNow", save.action, [this] {
            const auto setNext = save_.setNext;
            if (Canvas* of = TheCanvas()) (of->Saves().*setNext)(of->Now());
        });
    }

protected:
    /// Called by the page's constructor, behind the facts of its own.
    void AddCommonFacts() {
        Facts()->Add("factLast", save_.last);
        Facts()->Add("factNext", "Next");
    }

    /// What is wrong on this page alone.
    virtual QStringList OwnHints(Canvas& canvas) = 0;
    virtual void ShowOwnFacts(Canvas& canvas) = 0;

private:
    void ShowCanvas(Portfolio& portfolio, Canvas& canvas) final {
        const CanvasSaves& saves = canvas.Saves();
        const bool enabled = (saves.*save_.enabled)();
        const double rate = (saves.*save_.rate)(), now = portfolio.Now();
        const SaveResult& last = (saves.*save_.result)();

        ShowOwnFacts(canvas);
        Facts()->Tell("factLast", LastText(last, now));
        Facts()->Tell("factNext",
                      Wording::Next(enabled, rate, (saves.*save_.next)(), (saves.*save_.schedule)(), now));

        QStringList hints = OwnHints(canvas);
        if (enabled) hints += Clash(portfolio, save_.conflict(portfolio, Slot()), save_.clash);
        if (last.moment > 0 && !last.written)
            hints += QString("The last picture was not written: %1").arg(Wording::Words(last.failure));
        hints.removeAll(QString());
        Hints()->Tell(hints);

        now_->setEnabled(enabled && rate > 0);
        now_->setToolTip(now_->isEnabled() ? QString() : "Only while it is switched on and has a rate");
    }

    QString LastText(const SaveResult& last, double now) const {
        if (last.moment <= 0) return "Not since the program was started";
        const QString when = Wording::Moment(last.moment, now);
        if (!last.written) return when + " (failed)";
        const auto stamp = TheWorkspace().Services().fileSystem.Stamp(last.path);
        const QString size = stamp ? ", " + Wording::Size(stamp->size) : QString();
        return when + ", " + Wording::Words(FileName(last.path)) + size;
    }

    const Save& save_;
    QPushButton* now_;
};

/// A save into a folder of the person's choice.
class FileSavePage final : public SavePage {
public:
    FileSavePage(Workspace& workspace, int canvas, const Save& save, const char* place,
                 std::string (*path)(Canvas&), std::string (*folder)(Canvas&))
        : SavePage(workspace, canvas, save), path_(path) {
        Facts()->Add("factPath", place);
        AddCommonFacts();
        AddFolderActions(folder);
    }

private:
    QStringList OwnHints(Canvas& canvas) override {
        if (path_(canvas).empty()) return {"There is no name yet, so nothing can be written."};
        return {FolderHint(canvas)};
    }

    void ShowOwnFacts(Canvas& canvas) override {
        Facts()->TellPath("factPath", FullPath(TheWorkspace().Services().fileSystem, path_(canvas)));
    }

    std::string (*path_)(Canvas&);
};

class WallpaperPage final : public SavePage {
public:
    WallpaperPage(Workspace& workspace, int canvas)
        : SavePage(workspace, canvas, Background),
          means_(Wording::Words(workspace.Services().desktop.WallpaperMeans())) {
        Facts()->Add("factDesktop", "This desktop");
        AddCommonFacts();
    }

private:
    QStringList OwnHints(Canvas&) override {
        if (!means_.isEmpty()) return {};
        return {"There is no desktop here whose wallpaper could be changed."};
    }

    void ShowOwnFacts(Canvas&) override {
        Facts()->Tell("factDesktop",
                      means_.isEmpty() ? QString() : "The wallpaper is changed by way of " + means_);
    }

    const QString means_;
};

std::string FixedFile(Canvas& canvas) { return canvas.Saves().FixedFileName(); }
std::string FixedFolder(Canvas& canvas) { return ParentFolderName(FixedFile(canvas)); }
std::string SequentialFolder(Canvas& canvas) { return canvas.Saves().SequentialPath(); }

}  // namespace

SetupPage* FixedSave(Workspace& workspace, int canvas) {
    return new FileSavePage(workspace, canvas, Fixed, "File", FixedFile, FixedFolder);
}

SetupPage* SequentialSave(Workspace& workspace, int canvas) {
    return new FileSavePage(workspace, canvas, Sequential, "Folder", SequentialFolder, SequentialFolder);
}

SetupPage* Wallpaper(Workspace& workspace, int canvas) { return new WallpaperPage(workspace, canvas); }

}  // namespace tessaloom::CanvasPages
