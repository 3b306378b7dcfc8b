#pragma once

#include <string>
#include <string_view>

/// The document commands of the File menu. Each ends quietly on an unexpected error, which is reported.
///
/// Commands that need a portfolio do nothing while none is open.
namespace tessaloom::modMain {

struct Program;

void PortfolioNew();
void PortfolioOpen();

/// The same for a file that is chosen already: its full path.
void PortfolioOpenFile(const std::string& file);

/// The saving commands are true when everything was written; false also when the person called it off.
bool PortfolioSave();
bool PortfolioSaveAs();

/// Saves the portfolio and its canvases: all of them with `everything`, else those that changed. Files
/// without a name are asked for one.
bool SaveAllProc(bool everything);

/// Asks whether unsaved changes should be saved, and saves them. False when the person said Cancel, here or
/// when asked for a file name.
bool OfferToSave(Program& program, std::string_view question, std::string_view title);

void CanvasNew();
void CanvasOpen();

/// These act on the active canvas.
bool CanvasSave();
bool CanvasSaveAs();
void CanvasRemove();

/// slot: 1 .. 20
bool CanvasSaveProc(int slot);
bool CanvasSaveAsProc(int slot);

}  // namespace tessaloom::modMain
