#pragma once

#include <QTreeWidget>
#include <vector>

namespace tessaloom {

class VWS;

/// Every reading of the weather input and every value derived from them, as texts show them, with the tag
/// that does.
class WeatherReadings : public QTreeWidget {
    Q_OBJECT

public:
    explicit WeatherReadings(QWidget* parent = nullptr);

    /// Everything is "N/A" while the last reading failed, as it is in texts.
    void Show(const VWS& weather);

private:
    std::vector<QTreeWidgetItem*> rows_;  ///< In the order of the table.
};

}  // namespace tessaloom
