#pragma once

#include <QAbstractSpinBox>
#include <QLineEdit>
#include <functional>
#include <utility>

namespace tessaloom::Editors {

/// A line with arrows that lets anything be typed: what it means is the owner's business.
class StepBox final : public QAbstractSpinBox {
public:
    /// step: called with the number of steps, up or (negative) down.
    explicit StepBox(std::function<void(int)> step, int characters);

    QLineEdit* Line() const { return lineEdit(); }

    void stepBy(int steps) override { step_(steps); }
    QValidator::State validate(QString&, int&) const override { return QValidator::Acceptable; }
    void fixup(QString&) const override {}
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }

private:
    std::function<void(int)> step_;
    int characters_;
};

}  // namespace tessaloom::Editors
