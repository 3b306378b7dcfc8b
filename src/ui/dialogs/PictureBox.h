#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace tessaloom {

class DIB;

/// A live picture, scaled down to the widget. It is looked at several times a second while it can be seen,
/// and scaled only when there is a new one.
class PictureBox : public QWidget {
    Q_OBJECT

public:
    /// What there is to see: null, or a picture that is valid until the next event. The number differs for
    /// each new picture.
    struct Sight {
        const DIB* picture = nullptr;
        int number = 0;
    };

    /// emptyText: shown while there is no picture.
    PictureBox(std::function<Sight()> look, const QString& emptyText, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Look(bool anew);

    std::function<Sight()> look_;
    QString emptyText_;
    QTimer timer_;
    QImage image_;
    int number_ = 0;
};

}  // namespace tessaloom
