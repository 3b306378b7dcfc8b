#pragma once

class QWidget;

namespace tessaloom {

class Workspace;

/// Opens `frmTextTags`: every tag of texts with its present value, by subject, with a search field. A double
/// click or Enter puts the tag into the text editor that had the focus last, else into the clipboard.
void ShowTextTags(Workspace& workspace, QWidget* parent);

}  // namespace tessaloom
