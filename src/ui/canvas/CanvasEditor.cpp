#include "ui/canvas/CanvasEditor.h"

#include "ui/shared/Workspace.h"

namespace tessaloom {

struct CanvasEditor::Parts {
    Workspace& workspace;
    int canvas;
    bool scaled = true;
};

CanvasEditor::CanvasEditor(Workspace& workspace, int canvas, QWidget* parent)
    : QWidget(parent), parts_(new Parts{workspace, canvas}) {
    setObjectName("CanvasEditor");
}

CanvasEditor::~CanvasEditor() = default;

void CanvasEditor::ShowPicture(const DIB&) {}
void CanvasEditor::SetScaled(bool scaled) { parts_->scaled = scaled; }
bool CanvasEditor::Scaled() const { return parts_->scaled; }
QSize CanvasEditor::sizeHint() const { return QWidget::sizeHint(); }
QSize CanvasEditor::minimumSizeHint() const { return QWidget::minimumSizeHint(); }
void CanvasEditor::Cut() {}
void CanvasEditor::Copy() {}
void CanvasEditor::Paste() {}
void CanvasEditor::Duplicate() {}
void CanvasEditor::Delete() {}
void CanvasEditor::SelectAll() {}
void CanvasEditor::Raise() {}
void CanvasEditor::Lower() {}
void CanvasEditor::ToFront() {}
void CanvasEditor::ToBack() {}
void CanvasEditor::AddText() {}
void CanvasEditor::AddPictureFile() {}
void CanvasEditor::AddFeed() {}
void CanvasEditor::AddAddress() {}
void CanvasEditor::AddBlock() {}
void CanvasEditor::AddCanvas() {}

}  // namespace tessaloom
