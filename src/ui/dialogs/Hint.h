#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;

namespace tessaloom {

/// What is wrong, or needs to be known, where it matters: an icon and short sentences. Hidden while there is
/// nothing to say.
class Hint : public QWidget {
    Q_OBJECT

public:
    explicit Hint(QWidget* parent = nullptr);

    void Tell(const QStringList& sentences);

    QString Text() const;

private:
    QLabel* icon_;
    QLabel* text_;
};

}  // namespace tessaloom
