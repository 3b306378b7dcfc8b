#pragma once

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

namespace tessaloom {

/// A line at the bottom of a widget that says why something did not happen, and fades away by itself.
class Notice : public QWidget {
    Q_OBJECT

public:
    explicit Notice(QWidget* over);

    void Tell(const QString& text);

    QString Text() const { return text_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void LayOut();

    QString text_;
    QTimer stay_;
    QVariantAnimation fade_;
    double opacity_ = 1;
};

}  // namespace tessaloom
