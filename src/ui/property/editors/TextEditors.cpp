#include <QHBoxLayout>

#include "core/modNumbers.h"
#include "ui/property/RateBox.h"
#include "ui/property/TaggedTextEdit.h"
#include "ui/property/editors/Editors.h"
#include "ui/property/editors/Parts.h"

namespace tessaloom::Editors {

namespace {

/// A text with live tags, taken with every key.
class TaggedTextEditor final : public PropertyEditor {
public:
    explicit TaggedTextEditor(const Subject& subject)
        : PropertyEditor(subject.parent), text_(new TaggedTextEdit(subject.workspace)) {
        LayParts(this, text_);
        text_->setMaximumHeight(fontMetrics().height() * LinesShown);
        connect(text_, &TaggedTextEdit::Edited, this, &PropertyEditor::Entered);
    }

    void Show(const std::string& text) override {
        text_->SetPlaceholder({});
        if (text != text_->Text()) text_->ShowText(text);
    }

    void ShowMixed(const std::string&) override {
        text_->SetPlaceholder(SeveralValues());
        text_->ShowText({});
    }

    bool Busy() const override { return text_->Busy(); }

private:
    static constexpr int LinesShown = 9;  ///< With those for the preview.

    TaggedTextEdit* text_;
};

class RateEditor final : public PropertyEditor {
public:
    explicit RateEditor(const Subject& subject) : PropertyEditor(subject.parent) {
        const Property& property = subject.Description();
        rate_ = new RateBox(ListOf(property), property.low, property.high);
        LayParts(this, rate_);
        connect(rate_, &RateBox::Entered, this,
                [this](double seconds) { Q_EMIT Entered(modNumbers::CStrNI(seconds)); });
        connect(rate_, &RateBox::Wrong, this, &PropertyEditor::Wrong);
    }

    void Show(const std::string& text) override {
        double seconds = 0;
        modNumbers::TryDblNI(text, seconds);
        rate_->ShowSeconds(seconds);
    }

    void ShowMixed(const std::string& lead) override {
        double seconds = 0;
        modNumbers::TryDblNI(lead, seconds);
        rate_->ShowMixed(seconds);
    }

    bool Busy() const override { return rate_->Busy(); }
    void Finish() override { rate_->Finish(); }
    bool Mistaken() const override { return rate_->Mistaken(); }

private:
    static RateBox::List ListOf(const Property& property) {
        return property.decimals > 1    ? RateBox::List::SubSecond
               : property.decimals == 1 ? RateBox::List::HalfSecond
                                        : RateBox::List::WholeSeconds;
    }

    RateBox* rate_;
};

}  // namespace

PropertyEditor* MakeTaggedText(const Subject& subject) { return new TaggedTextEditor(subject); }
PropertyEditor* MakeRate(const Subject& subject) { return new RateEditor(subject); }

}  // namespace tessaloom::Editors
