#include <QColorDialog>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>
#include <algorithm>

#include "model/KeyKinds.h"
#include "ui/property/editors/Parts.h"
#include "ui/property/editors/TypedEditor.h"

namespace tessaloom::Editors {

namespace {

QColor ColourOf(const std::string& text) {
    int value = 0;
    Colour::Parse(text, value);
    return QColor(value & 0xFF, value >> 8 & 0xFF, value >> 16 & 0xFF);
}

std::string TextOf(const QColor& colour) {
    return Colour::Write(colour.blue() << 16 | colour.green() << 8 | colour.red());
}

/// A colour: a swatch that opens the chooser, and its components as the web writes them.
class ColourEditor final : public TypedEditor {
public:
    explicit ColourEditor(const Subject& subject)
        : TypedEditor(subject), swatch_(OpenButton({}, "swatch", "Choose a colour")) {
        auto* line = new QLineEdit;
        const QFontMetrics metrics = line->fontMetrics();
        line->setMaximumWidth(
            std::max(metrics.horizontalAdvance("#MMMMMM"), metrics.horizontalAdvance(SeveralValues())) +
            metrics.height());
        SetLine(line);
        auto* layout = LayParts(this, line);
        layout->insertWidget(0, swatch_);
        layout->addStretch();
        swatch_->setToolButtonStyle(Qt::ToolButtonIconOnly);
        connect(swatch_, &QToolButton::clicked, this, [this] { Choose(); });
    }

protected:
    QString Display(const std::string& text) const override { return ColourOf(text).name().toUpper(); }

    Reading Read(const QString& typed) const override {
        QString text = typed.trimmed();
        if (text.size() == 6 && QColor::isValidColor('#' + text)) text.prepend('#');
        const bool complete = !text.startsWith('#') || text.size() == 7 || text.size() == 4;
        if (!complete || !QColor::isValidColor(text))
            return {std::nullopt, "Must be a colour such as #FF8800."};
        return {TextOf(QColor(text)), {}};
    }

    void ValueShown(const std::string& text) override {
        const QSize size(fontMetrics().height() * 2, fontMetrics().height());
        QPixmap picture(size * devicePixelRatioF());
        picture.setDevicePixelRatio(devicePixelRatioF());
        picture.fill(Mixed() ? palette().color(QPalette::Base) : ColourOf(text));
        QPainter painter(&picture);
        if (Mixed())
            painter.fillRect(QRectF({}, size), QBrush(palette().color(QPalette::Mid), Qt::BDiagPattern));
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(QRectF({}, size).adjusted(0, 0, -1, -1));
        painter.end();
        swatch_->setIconSize(size);
        swatch_->setIcon(picture);
    }

private:
    /// The colour follows the chooser and goes back when it is cancelled; several colours change only when it
    /// is closed.
    void Choose() {
        const std::string before = Stored();
        auto* chooser = new QColorDialog(ColourOf(before), this);
        chooser->setObjectName("ColourChooser");
        chooser->setAttribute(Qt::WA_DeleteOnClose);
        chooser->setWindowTitle(Words(subject_.Description().label).remove('&'));
        const auto take = [this](const QColor& colour) { Take(TextOf(colour)); };
        if (Mixed()) {
            connect(chooser, &QColorDialog::colorSelected, this, take);
        } else {
            connect(chooser, &QColorDialog::currentColorChanged, this, take);
            connect(chooser, &QDialog::rejected, this, [this, before] { Take(before); });
        }
        chooser->open();
    }

    QToolButton* swatch_;
};

}  // namespace

PropertyEditor* MakeColour(const Subject& subject) { return new ColourEditor(subject); }

}  // namespace tessaloom::Editors
