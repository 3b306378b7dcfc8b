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
        if (IsAddress()) line->setInputMethodHints(Qt::ImhUrlCharactersOnly);
        SetLine(line);
        LayParts(this, line);
    }

protected:
    QString Placeholder(const std::string&) const override { return IsAddress() ? "http://" : Fallback(); }

private:
    bool IsAddress() const { return subject_.Description().kind == PropertyKind::Address; }
};

}  // namespace

PropertyEditor* MakeLine(const Subject& subject) { return new LineEditor(subject); }

}  // namespace tessaloom::Editors
