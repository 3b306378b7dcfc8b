#include "ui/ErrorDebugReport.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTime>
#include <QVBoxLayout>
#include <algorithm>

namespace tessaloom {

namespace {

enum Column { Time, Times, Place, Description, Columns };

QString TextOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

ErrorDebugReport::ErrorDebugReport(QWidget* parent) : QDialog(parent) {
    setObjectName("ErrorDebugReport");
    setWindowTitle(TextOf(ErrorReport::Title));
    table_ = new QTableWidget(0, Columns, this);
    table_->setObjectName("lstReports");
    table_->setAccessibleName("Errors");
    table_->setHorizontalHeaderLabels({"Last seen", "Times", "Where", "Error"});
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    details_ = new QPlainTextEdit(this);
    details_->setObjectName("txtReport");
    details_->setAccessibleName("Details");
    details_->setReadOnly(true);
    details_->setTabChangesFocus(true);
    details_->setPlaceholderText("No errors have been reported.");

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    auto* copy = buttons->addButton("&Copy All", QDialogButtonBox::ActionRole);
    copy->setObjectName("cmdCopyAll");
    auto* clear = buttons->addButton("C&lear", QDialogButtonBox::ActionRole);
    clear->setObjectName("cmdClear");
    connect(copy, &QPushButton::clicked, this, &ErrorDebugReport::CopyAll);
    connect(clear, &QPushButton::clicked, this, &ErrorDebugReport::Clear);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
    connect(table_, &QTableWidget::itemSelectionChanged, this, &ErrorDebugReport::ShowDetails);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_, 2);
    layout->addWidget(details_, 1);
    layout->addWidget(buttons);
    const int unit = fontMetrics().height();
    resize(40 * unit, 24 * unit);
}

bool ErrorDebugReport::Add(const ErrorReport& report) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return entry.report == report; });
    const bool known = found != entries_.end();
    std::size_t row = static_cast<std::size_t>(found - entries_.begin());
    if (known) {
        ++found->times;
    } else {
        if (entries_.size() == MostEntries) {
            entries_.erase(entries_.begin());
            table_->removeRow(0);
        }
        row = entries_.size();
        entries_.push_back({report});
        table_->insertRow(static_cast<int>(row));
    }
    ShowRow(row);
    if (table_->selectedItems().isEmpty()) table_->selectRow(static_cast<int>(row));
    return !known;
}

void ErrorDebugReport::ShowRow(std::size_t row) {
    const auto& [report, times] = entries_[row];
    const QString texts[Columns] = {QTime::currentTime().toString("HH:mm:ss"), QString::number(times),
                                    TextOf(report.module) + ", " + TextOf(report.procedure),
                                    TextOf(report.description)};
    for (int column = 0; column < Columns; ++column) {
        auto* item = new QTableWidgetItem(texts[column]);
        if (column == Times) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table_->setItem(static_cast<int>(row), column, item);
    }
    table_->resizeColumnsToContents();
}

void ErrorDebugReport::ShowDetails() {
    const int row = table_->currentRow();
    details_->setPlainText(row < 0 ? QString() : TextOf(entries_.at(std::size_t(row)).report.Text()));
}

void ErrorDebugReport::CopyAll() const {
    QString all;
    for (const auto& [report, times] : entries_)
        all += TextOf(report.Text()) + QString("\nTimes: %1\n\n").arg(times);
    QApplication::clipboard()->setText(all);
}

void ErrorDebugReport::Clear() {
    entries_.clear();
    table_->setRowCount(0);
    details_->clear();
}

}  // namespace tessaloom
