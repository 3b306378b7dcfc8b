#include <QHBoxLayout>

#include "ui/property/editors/Parts.h"
#include "ui/property/editors/TypedEditor.h"

namespace tessaloom::Editors {

namespace {

/// One line of text, or a web address.
class LineEditor final : public TypedEditor {
public:
    explicit LineEditor(const Subject& subject) : TypedEditor(subject) {
        auto* line = new QLineEdit;
        if (subject.Description().kind == PropertyKind::Address) {
            line->setPlaceholderText("http://");
            line->setInputMethodHints(Qt::ImhUrlCharactersOnly);
        }
        SetLine(line);
        LayParts(this, line);
    }
};

}  // namespace

PropertyEditor* MakeLine(const Subject& subject) { return new LineEditor(subject); }

}  // namespace tessaloom::Editors
