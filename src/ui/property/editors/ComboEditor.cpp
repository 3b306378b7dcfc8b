#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/Log.h"
#include "core/modNumbers.h"
#include "model/Canvas.h"
#include "platform/Fonts.h"
#include "platform/Platform.h"
#include "ui/property/editors/Editors.h"
#include "ui/property/editors/NumberText.h"
#include "ui/property/editors/Parts.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom::Editors {

namespace {

struct Item {
    std::string value;
    QString label;
};

/// A combo box that asks for its items anew before it is used.
class FreshComboBox final : public QComboBox {
public:
    explicit FreshComboBox(std::function<void()> refresh) : refresh_(std::move(refresh)) {
        setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
        setMinimumContentsLength(8);
    }

    void showPopup() override {
        refresh_();
        // Labels that are longer than the form is wide can be read in full.
        view()->setMinimumWidth(view()->sizeHintForColumn(0) +
                                view()->verticalScrollBar()->sizeHint().width());
        QComboBox::showPopup();
    }

protected:
    void focusInEvent(QFocusEvent* event) override {
        refresh_();
        QComboBox::focusInEvent(event);
    }

private:
    std::function<void()> refresh_;
};

/// One of several values. A stored value that is none of them is shown as it is.
class ComboEditor : public PropertyEditor {
public:
    explicit ComboEditor(const Subject& subject)
        : PropertyEditor(subject.parent), subject_(subject), box_(new FreshComboBox([this] { Fill(); })) {
        GuardWheel(box_);
        LayParts(this, box_);
        box_->setPlaceholderText(SeveralValues());
        connect(box_, &QComboBox::activated, this, [this](int index) {
            Keep(box_->itemData(index).toString().toStdString());
            Q_EMIT Wrong({});
            Q_EMIT Entered(stored_);
        });
    }

    void Show(const std::string& text) override {
        Keep(text);
        Fill();
    }

    void ShowMixed(const std::string& lead) override {
        Keep(lead, true);
        Fill();
    }

protected:
    void Keep(const std::string& value, bool mixed = false) {
        stored_ = value;
        mixed_ = mixed;
    }

    virtual std::vector<Item> Items() const = 0;
    virtual QString LabelOfOther(const std::string& value) const { return QString::fromStdString(value); }

    virtual void Fill() {
        std::vector<Item> items = Items();
        const auto same = [&](const Item& item) { return item.value == stored_; };
        if (!mixed_ && std::none_of(items.begin(), items.end(), same))
            items.push_back({stored_, LabelOfOther(stored_)});
        if (!Shows(items)) {
            box_->clear();
            for (const Item& item : items) box_->addItem(item.label, QString::fromStdString(item.value));
        }
        box_->setCurrentIndex(mixed_ ? -1 : box_->findData(QString::fromStdString(stored_)));
        box_->setToolTip(subject_.Description().tip.empty() ? box_->currentText() : QString());
    }

    QComboBox* Box() const { return box_; }
    const std::string& Stored() const { return stored_; }
    bool Mixed() const { return mixed_; }

    const Subject subject_;

private:
    bool Shows(const std::vector<Item>& items) const {
        if (box_->count() != static_cast<int>(items.size())) return false;
        for (int i = 0; i < box_->count(); ++i) {
            const Item& item = items[static_cast<std::size_t>(i)];
            if (box_->itemText(i) != item.label || box_->itemData(i).toString().toStdString() != item.value)
                return false;
        }
        return true;
    }

    FreshComboBox* box_;
    std::string stored_;
    bool mixed_ = false;
};

class ChoiceEditor final : public ComboEditor {
public:
    using ComboEditor::ComboEditor;

private:
    std::vector<Item> Items() const override {
        std::vector<Item> items;
        for (const PropertyChoice& choice : subject_.Description().choices)
            items.push_back({std::string(choice.value), Words(choice.label)});
        return items;
    }

    /// A number that is not in the list is shown with its unit.
    QString LabelOfOther(const std::string& value) const override {
        const Property& property = subject_.Description();
        double number = 0;
        if (property.unit.empty() || !modNumbers::TryDblNI(value, number))
            return QString::fromStdString(value);
        const bool below = number < 0 && !property.unitBelow.empty();
        return NumberText::Shown(below ? -number : number, subject_.workspace.Services().locale) + ' ' +
               Words(below ? property.unitBelow : property.unit);
    }
};

/// The feeds of the portfolio by their names, which is how files know them.
class FeedEditor final : public ComboEditor {
public:
    using ComboEditor::ComboEditor;

private:
    std::vector<Item> Items() const override {
        std::vector<Item> items = {
            {"", "None"}
        };
        if (const Portfolio* portfolio = subject_.workspace.Portfolio())
            for (int feed = 0; feed < Portfolio::MaxFeed; ++feed)
                if (const std::string& name = portfolio->VideoFeed(feed).FeedName(); !name.empty())
                    items.push_back({name, Label(name)});
        return items;
    }

    QString LabelOfOther(const std::string& value) const override { return Label(value) + " (not there)"; }

    /// Addresses are shown without the passwords that they may hold.
    static QString Label(const std::string& name) { return QString::fromStdString(MaskSecrets(name)); }
};

/// The open canvases by slot and name.
class OpenCanvasEditor final : public ComboEditor {
public:
    using ComboEditor::ComboEditor;

private:
    std::vector<Item> Items() const override {
        std::vector<Item> items;
        for (int slot = 1; slot <= Portfolio::MaxCanvas; ++slot)
            if (const Canvas* canvas = subject_.workspace.CanvasAt(slot))
                items.push_back(
                    {std::to_string(slot),
                     QString::number(slot) + ": " + QString::fromStdString(canvas->Name()) + Own(slot)});
        return items;
    }

    QString Own(int slot) const { return slot == subject_.set.CanvasSlot() ? " (this one)" : ""; }

    QString LabelOfOther(const std::string& value) const override {
        return QString::fromStdString(value) + ": not open";
    }
};

/// The faces that can be drawn; others can be typed, for another machine.
class FontEditor final : public ComboEditor {
public:
    explicit FontEditor(const Subject& subject) : ComboEditor(subject) {
        Box()->setEditable(true);
        Box()->setInsertPolicy(QComboBox::NoInsert);
        Box()->completer()->setCompletionMode(QCompleter::PopupCompletion);
        Box()->completer()->setFilterMode(Qt::MatchContains);
        connect(Box()->lineEdit(), &QLineEdit::editingFinished, this, [this] { FontEditor::Finish(); });
    }

    /// The list is made only when somebody is about to use it.
    void Show(const std::string& text) override {
        Keep(text);
        Box()->lineEdit()->setPlaceholderText({});
        Box()->setEditText(QString::fromStdString(text));
    }

    void ShowMixed(const std::string& lead) override {
        Keep(lead, true);
        Box()->lineEdit()->setPlaceholderText(SeveralValues());
        Box()->setEditText({});
    }

    bool Busy() const override { return Box()->lineEdit()->isModified(); }

    void Finish() override {
        QLineEdit* line = Box()->lineEdit();
        const std::string typed = line->text().trimmed().toStdString();
        const bool modified = line->isModified();
        line->setModified(false);
        if (!modified || (Mixed() ? typed.empty() : typed == Stored())) return;
        Show(typed);
        Q_EMIT Entered(typed);
        Q_EMIT Wrong(Installed(typed) ? "" : "Not installed here; the nearest font is drawn.");
    }

private:
    void Fill() override {
        if (Busy()) return;
        ComboEditor::Fill();
    }

    std::vector<std::string> Faces() const { return subject_.workspace.Services().fonts.FaceNames(); }

    bool Installed(const std::string& name) const {
        const auto faces = Faces();
        return std::find(faces.begin(), faces.end(), name) != faces.end();
    }

    std::vector<Item> Items() const override {
        std::vector<Item> items;
        for (const std::string& face : Faces()) items.push_back({face, QString::fromStdString(face)});
        return items;
    }
};

}  // namespace

PropertyEditor* MakeChoice(const Subject& subject) { return new ChoiceEditor(subject); }
PropertyEditor* MakeFeed(const Subject& subject) { return new FeedEditor(subject); }
PropertyEditor* MakeCanvas(const Subject& subject) { return new OpenCanvasEditor(subject); }
PropertyEditor* MakeFont(const Subject& subject) { return new FontEditor(subject); }

}  // namespace tessaloom::Editors
