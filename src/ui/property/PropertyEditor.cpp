#include "ui/property/PropertyEditor.h"

#include "ui/property/editors/Editors.h"

namespace tessaloom {

PropertyEditor* MakePropertyEditor(Workspace& workspace, PropertySet& set, std::size_t row, QWidget* parent) {
    return Editors::MakeLine({workspace, set, row, parent});
}

}  // namespace tessaloom
