#pragma once

#include <QWidget>
#include <optional>
#include <string>

class QComboBox;
class QLabel;

namespace tessaloom {

/// Rates as people write and read them. Seconds; 0: not by itself.
namespace RateText {

/// "0.5", "90 sec", "2 min", "1/30 sec", "1:30" (minutes and seconds), "1:00:00", "1 hr 30 min"; the user's
/// decimal separator and the point. Nothing for what is no rate.
std::optional<double> Seconds(const QString& text);

/// The label of the list where it has one, else "90 sec", "1 min 40 sec". 0: "Only when forced".
QString Label(double seconds);

}  // namespace RateText

/// Seconds between two runs, chosen from the system's list of rates or typed. While something is typed, a
/// line beneath tells how it is understood.
class RateBox : public QWidget {
    Q_OBJECT

public:
    enum class List {
        WholeSeconds,  ///< From "1 sec" on.
        SubSecond,     ///< From "1/30 sec" on.
        HalfSecond,    ///< "0.5 sec" and from "1 sec" on.
    };

    /// low, high: the range of the rate, seconds; "Only when forced" is offered where `low` is 0.
    explicit RateBox(List list, double low = 0, double high = 86400, QWidget* parent = nullptr);

    /// Shows a value that came from elsewhere; emits nothing.
    void ShowSeconds(double seconds);

    /// Shows that there are several values. lead: one of them.
    void ShowMixed(double lead);

    double Seconds() const { return seconds_; }

    /// The person is typing.
    bool Busy() const { return busy_; }

    /// What is typed is no rate.
    bool Mistaken() const;

    /// Takes what was typed where it is a rate; else it stays in the field until it is mended or left with
    /// Escape.
    void Finish();

Q_SIGNALS:
    /// A rate was chosen, or typed and ended with Enter or by leaving the field.
    void Entered(double seconds);

    /// What is typed so far is no rate, and why; "" when it is one again.
    void Wrong(const QString& reason);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Typed(const QString& text);
    void Put(double seconds, bool mixed);
    void Revert();

    /// What was begun for several values was deleted again.
    bool GivenUp() const;
    QString Refusal(const QString& text, std::optional<double>& seconds) const;

    QComboBox* box_;
    QLabel* understood_;
    const double low_, high_;
    double seconds_ = -1;  ///< -1: none was shown yet.
    bool busy_ = false;
    bool mixed_ = false;
};

}  // namespace tessaloom
