#include "core/main/DocumentCommands.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/ErrorReport.h"
#include "core/SetupValues.h"
#include "core/main/Program.h"
#include "model/Canvas.h"
#include "platform/Dialogs.h"
#include "platform/FileSystem.h"
#include "platform/MainWindow.h"

namespace tessaloom::modMain {

namespace {

constexpr std::string_view Module = "modMain.bas";
constexpr const char* PortfolioFilter = "Portfolios (*.por)|*.por";
constexpr const char* CanvasFilter = "Canvases (*.can)|*.can";

/// Shows one line of status for as long as it lives.
class Status {
public:
    Status(Dialogs& dialogs, std::string_view text) : dialogs_(dialogs) { dialogs_.ShowStatus(text); }
    ~Status() { dialogs_.HideStatus(); }
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;

private:
    Dialogs& dialogs_;
};

/// Runs a command with the program, trapped; its type's zero value while no program runs.
template <typename Body>
auto Command(std::string_view name, Body&& body) -> std::invoke_result_t<Body, Program&> {
    return Trap({Module, name}, [&] {
        if (!Running()) return std::invoke_result_t<Body, Program&>();
        const Busy busy(*Running());
        return body(*Running());
    });
}

/// The same for commands that need an open portfolio.
template <typename Body>
auto PortfolioCommand(std::string_view name, Body&& body)
    -> std::invoke_result_t<Body, Program&, tessaloom::Portfolio&> {
    return Command(name, [&](Program& program) {
        if (program.portfolio) return body(program, *program.portfolio);
        return std::invoke_result_t<Body, Program&, tessaloom::Portfolio&>();
    });
}

/// Before the open portfolio goes.
bool SaveOpenPortfolio(Program& program) {
    return OfferToSave(program, "Would you like to save the open portfolio and canvases?",
                       "Save Open Portfolio and Canvases?");
}

/// Asks for the portfolio's file. False when none was chosen.
bool ChoosePortfolioFile(Program& program, tessaloom::Portfolio& portfolio) {
    Dialogs& dialogs = program.platform.dialogs;
    const auto file = dialogs.SaveFile({"Portfolio Save As", PortfolioFilter, ".por", "NewPortfolio.por"});
    if (!file || file->empty()) {
        dialogs.MessageBox("No file was selected.", "No file selected");
        return false;
    }
    if (portfolio.SlotOfFile(*file) != 0) {
        dialogs.MessageBox("This is the file of an open canvas.", "Portfolio Save As");
        return false;
    }
    portfolio.SetFileName(*file);
    Setup().lastPortfolio = *file;
    return true;
}

/// True when there are no `failed` files. Else the person is told of them; a script that saves is not held
/// up, and they stand in the log.
bool AllWritten(Program& program, const std::vector<std::string>& failed) {
    if (failed.empty()) return true;
    if (ScriptRuns(program)) return false;
    std::string text = "Could not be written:";
    for (const std::string& file : failed) text += "\n" + file;
    program.platform.dialogs.MessageBox(text, "Not Saved");
    return false;
}

/// Writes one document under status, and tells the person when that fails.
template <typename Document>
bool WriteDocument(Program& program, Document& document) {
    bool written = false;
    {
        const Status status(program.platform.dialogs, "Saving...");
        written = document.SaveFile();
    }
    return written || AllWritten(program, {document.FileName()});
}

bool SaveCanvas(Program& program, tessaloom::Canvas& canvas) {
    if (canvas.FileName().empty()) return CanvasSaveAsProc(canvas.CanvasIndex());
    return WriteDocument(program, canvas);
}

/// Gives every open canvas a file name. False when one was refused a name.
bool NameCanvases(tessaloom::Portfolio& portfolio) {
    bool named = true;
    for (int slot = 1; slot <= tessaloom::Portfolio::MaxCanvas; ++slot) {
        const tessaloom::Canvas& canvas = portfolio.Canvas(slot);
        if (canvas.Enabled() && canvas.FileName().empty()) named = CanvasSaveAsProc(slot) && named;
    }
    return named;
}

/// A free canvas slot; 0, with a message, when there is none.
int FreeSlot(Program& program, const tessaloom::Portfolio& portfolio) {
    const int slot = portfolio.FreeCanvasSlot();
    if (slot == 0)
        program.platform.dialogs.MessageBox(
            "You already have all of the allowed canvases loaded.\n"
            "Remove an existing canvas to make room for a new one.",
            "Out of Canvas Locations");
    return slot;
}

std::optional<std::string> AskCanvasName(Program& program) {
    return program.platform.dialogs.InputBox("Enter a name for this canvas.", "Canvas Name",
                                             "Enter Something Unique");
}

void ShowCanvas(tessaloom::Portfolio& portfolio, tessaloom::Canvas& canvas) {
    canvas.SetEnabled(true);
    canvas.SetVisible(true);
    canvas.ActivitateFormTimer();
    portfolio.SetActiveCanvas(canvas.CanvasIndex());
    portfolio.SettingChanged();
}

/// Refuses, with a message, a file for the canvas of `slot` that the portfolio or another canvas writes: they
/// would undo each other's changes.
bool IsTaken(Program& program, const tessaloom::Portfolio& portfolio, int slot, const std::string& file,
             std::string_view title) {
    const int holder = portfolio.SlotOfFile(file);
    const bool own = program.platform.fileSystem.SameFile(file, portfolio.FileName());
    if (!own && (holder == 0 || holder == slot)) return false;
    program.platform.dialogs.MessageBox(
        own ? "This is the file of the open portfolio." : "This canvas is already open.", title);
    return true;
}

void NoFileSelected(Program& program) {
    program.platform.dialogs.MessageBox("No file was selected.  Aborting process.", "No file selected");
}

void Unreadable(Program& program, const std::string& file, std::string_view title) {
    program.platform.dialogs.MessageBox(file + " could not be read.", title);
}

bool IsInUse(const tessaloom::Portfolio& portfolio, int slot) {
    return slot >= 1 && slot <= tessaloom::Portfolio::MaxCanvas && portfolio.Canvas(slot).Enabled();
}

/// The active canvas; null when none is.
tessaloom::Canvas* ActiveCanvas(tessaloom::Portfolio& portfolio) {
    const int slot = portfolio.ActiveCanvas();
    return IsInUse(portfolio, slot) ? &portfolio.Canvas(slot) : nullptr;
}

}  // namespace

void PortfolioNew() {
    Command("PortfolioNew", [](Program& program) {
        if (ScriptRuns(program) || !SaveOpenPortfolio(program)) return;
        ReleasePortfolio(program);
        MakePortfolio(program);
        program.platform.mainWindow.EnablePortfolioCommands(true);
        program.platform.dialogs.MessageBox(
            "Your portfolio has been created.\n\n"
            "You may now add canvases using the Open Canvas or New Canvas selections from the File Menu.",
            "New Portfolio");
    });
}

void PortfolioOpen() {
    Command("PortfolioOpen", [](Program& program) {
        if (ScriptRuns(program)) return;
        const auto file = program.platform.dialogs.OpenFile({"Portfolio Open", PortfolioFilter, ".por", ""});
        if (file && !file->empty()) PortfolioOpenFile(*file);
    });
}

void PortfolioOpenFile(const std::string& file) {
    Command("PortfolioOpen", [&](Program& program) {
        if (ScriptRuns(program) || !SaveOpenPortfolio(program)) return;
        ReleasePortfolio(program);
        tessaloom::Portfolio& portfolio = MakePortfolio(program);
        portfolio.SetFileName(file);
        const bool loaded = portfolio.LoadFile();
        Setup().lastPortfolio = file;
        program.platform.mainWindow.EnablePortfolioCommands(true);
        if (!loaded) Unreadable(program, file, "Portfolio Open");
    });
}

bool PortfolioSave() {
    return PortfolioCommand("PortfolioSave", [](Program& program, tessaloom::Portfolio& portfolio) {
        if (portfolio.FileName().empty()) return PortfolioSaveAs();
        return WriteDocument(program, portfolio);
    });
}

bool PortfolioSaveAs() {
    return PortfolioCommand("PortfolioSaveAs", [](Program& program, tessaloom::Portfolio& portfolio) {
        return ChoosePortfolioFile(program, portfolio) && PortfolioSave();
    });
}

bool OfferToSave(Program& program, std::string_view question, std::string_view title) {
    if (!program.portfolio || !program.portfolio->NeedSaving()) return true;
    switch (program.platform.dialogs.MessageBox(question, title, Buttons::YesNoCancel)) {
        case Answer::Yes:
            return SaveAllProc(true);
        case Answer::No:
            return true;
        default:
            return false;
    }
}

bool SaveAllProc(bool everything) {
    return PortfolioCommand("SaveAllProc", [&](Program& program, tessaloom::Portfolio& portfolio) {
        const Status status(program.platform.dialogs, "Saving...");
        if (portfolio.FileName().empty() && !ChoosePortfolioFile(program, portfolio)) return false;
        if (everything)
            for (int slot = 1; slot <= tessaloom::Portfolio::MaxCanvas; ++slot)
                portfolio.Canvas(slot).SetNeedSaving(true);
        const bool named = NameCanvases(portfolio);
        portfolio.SaveCanvases();
        std::vector<std::string> failed;
        for (int slot = 1; slot <= tessaloom::Portfolio::MaxCanvas; ++slot) {
            // A canvas that could not be written keeps its mark.
            const tessaloom::Canvas& canvas = portfolio.Canvas(slot);
            if (canvas.Enabled() && canvas.NeedSaving() && !canvas.FileName().empty())
                failed.push_back(canvas.FileName());
        }
        if (!portfolio.SaveFile()) failed.push_back(portfolio.FileName());
        return AllWritten(program, failed) && named;
    });
}

void CanvasNew() {
    PortfolioCommand("CanvasNew", [](Program& program, tessaloom::Portfolio& portfolio) {
        const int slot = FreeSlot(program, portfolio);
        if (slot == 0) return;
        const auto name = AskCanvasName(program);
        if (!name || name->empty()) return;
        tessaloom::Canvas& canvas = portfolio.Canvas(slot);
        canvas.SetName(*name);
        ShowCanvas(portfolio, canvas);
        canvas.SetNeedSaving(true);
    });
}

void CanvasOpen() {
    PortfolioCommand("CanvasOpen", [](Program& program, tessaloom::Portfolio& portfolio) {
        Dialogs& dialogs = program.platform.dialogs;
        const int slot = FreeSlot(program, portfolio);
        if (slot == 0) return;
        const auto file = dialogs.OpenFile({"Canvas Open", CanvasFilter, ".can", ""});
        if (!file || file->empty()) return NoFileSelected(program);
        if (IsTaken(program, portfolio, slot, *file, "Canvas Open")) return;
        tessaloom::Canvas& canvas = portfolio.Canvas(slot);
        const bool needSaving = portfolio.NeedSaving();
        canvas.SetFileName(*file);
        bool loaded = false;
        {
            const Status status(dialogs, "Loading...");
            loaded = canvas.LoadFile();
        }
        if (!loaded) {
            portfolio.ResetCanvas(slot);
            portfolio.SetNeedSaving(needSaving);
            Unreadable(program, *file, "Canvas Open");
            return;
        }
        if (canvas.Name().empty())
            if (const auto name = AskCanvasName(program)) canvas.SetName(*name);
        ShowCanvas(portfolio, canvas);
    });
}

bool CanvasSave() {
    return PortfolioCommand("CanvasSave", [](Program& program, tessaloom::Portfolio& portfolio) {
        tessaloom::Canvas* canvas = ActiveCanvas(portfolio);
        return canvas && SaveCanvas(program, *canvas);
    });
}

bool CanvasSaveAs() {
    return PortfolioCommand("CanvasSaveAs", [](Program&, tessaloom::Portfolio& portfolio) {
        const tessaloom::Canvas* canvas = ActiveCanvas(portfolio);
        return canvas && CanvasSaveAsProc(canvas->CanvasIndex());
    });
}

bool CanvasSaveProc(int slot) {
    return PortfolioCommand("CanvasSaveProc", [&](Program& program, tessaloom::Portfolio& portfolio) {
        return IsInUse(portfolio, slot) && SaveCanvas(program, portfolio.Canvas(slot));
    });
}

bool CanvasSaveAsProc(int slot) {
    return PortfolioCommand("CanvasSaveAsProc", [&](Program& program, tessaloom::Portfolio& portfolio) {
        if (!IsInUse(portfolio, slot)) return false;
        Dialogs& dialogs = program.platform.dialogs;
        const auto file = dialogs.SaveFile({"Canvas Save As", CanvasFilter, ".can", "NewCanvas", false});
        if (!file || file->empty()) {
            NoFileSelected(program);
            return false;
        }
        if (program.platform.fileSystem.FileExists(*file)) {
            dialogs.MessageBox(
                "This file already exists.  To open an existing file, select \"Open Canvas\" instead.",
                "Canvas Save As");
            return false;
        }
        if (IsTaken(program, portfolio, slot, *file, "Canvas Save As")) return false;
        tessaloom::Canvas& canvas = portfolio.Canvas(slot);
        canvas.SetFileName(*file);
        portfolio.SettingChanged();
        return WriteDocument(program, canvas);
    });
}

void CanvasRemove() {
    PortfolioCommand("CanvasRemove", [](Program& program, tessaloom::Portfolio& portfolio) {
        Dialogs& dialogs = program.platform.dialogs;
        tessaloom::Canvas* canvas = ActiveCanvas(portfolio);
        if (!canvas || ScriptRuns(program)) return;
        if (dialogs.MessageBox("Are you sure you want to remove this canvas?", "Remove Canvas",
                               Buttons::YesNo) != Answer::Yes)
            return;
        if (canvas->NeedSaving() &&
            dialogs.MessageBox("This canvas has been changed.  Would you like to save it first?",
                               "Save Canvas", Buttons::YesNo) == Answer::Yes &&
            !SaveCanvas(program, *canvas))
            return;
        portfolio.ResetCanvas(canvas->CanvasIndex());
        portfolio.SettingChanged();
    });
}

}  // namespace tessaloom::modMain
