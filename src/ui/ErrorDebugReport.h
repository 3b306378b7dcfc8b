#pragma once

#include <QDialog>
#include <vector>

#include "core/ErrorReport.h"

class QPlainTextEdit;
class QTableWidget;

namespace tessaloom {

/// The one window that collects the reports of unexpected errors, the same ones counted.
class ErrorDebugReport final : public QDialog {
    Q_OBJECT

public:
    explicit ErrorDebugReport(QWidget* parent = nullptr);

    /// False for one that is there already: it is counted.
    bool Add(const ErrorReport& report);

private:
    struct Entry {
        ErrorReport report;
        int times = 1;
    };

    void ShowRow(std::size_t row);
    void ShowDetails();
    void CopyAll() const;
    void Clear();

    /// Reports that differ, the latest kept; more would be a flood that nobody reads.
    static constexpr std::size_t MostEntries = 200;

    std::vector<Entry> entries_;
    QTableWidget* table_;
    QPlainTextEdit* details_;
};

}  // namespace tessaloom
