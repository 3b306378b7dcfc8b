#include "ui/dialogs/VideoFeedsSetup.h"

#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>
#include <span>

#include "core/Log.h"
#include "model/edit/Feeds.h"
#include "model/edit/PropertySet.h"
#include "platform/CaptureDriver.h"
#include "platform/Platform.h"
#include "ui/dialogs/PictureBox.h"
#include "ui/dialogs/Setups.h"
#include "ui/dialogs/Wording.h"
#include "ui/property/PropertyForm.h"
#include "ui/shared/Workspace.h"
#include "video/VideoFeed.h"

namespace tessaloom {

namespace {

std::vector<std::unique_ptr<PropertySet>> SetsOf(Portfolio& portfolio, int feed) {
    std::vector<std::unique_ptr<PropertySet>> sets;
    sets.push_back(PropertySets::Feed(portfolio, feed));
    sets.push_back(PropertySets::Motion(portfolio, feed));
    return sets;
}

/// An address may hold a password, which a list must not show.
QString Title(int slot, const VideoFeed& feed) {
    const QString name = Wording::Words(MaskSecrets(feed.FeedName()));
    return QString("%1  %2").arg(slot + 1).arg(name.isEmpty() ? "(no source)" : name);
}

QString State(const VideoFeed& feed) {
    if (!feed.Enabled()) return "Not in use.";
    if (!feed.Valid()) {
        const std::string status = feed.Status();
        return status.empty() ? "Waiting for the source." : Wording::Words(status);
    }
    return QString("%1 × %2 pixels, %3 bits, %4 frames/s")
        .arg(feed.Width())
        .arg(feed.Height())
        .arg(static_cast<double>(feed.BPP()), 0, 'g', 3)
        .arg(static_cast<double>(feed.FPS()), 0, 'f', 0);
}

struct OwnDialog {
    const char* name;
    const char* text;
    bool (VideoFeed::*has)() const;
    void (VideoFeed::*show)();
};
constexpr OwnDialog OwnDialogs[] = {
    {"cmdSource",  "S&ource...",  &VideoFeed::HasSource,  &VideoFeed::ShowSourceDialog },
    {"cmdFormat",  "Forma&t...",  &VideoFeed::HasFormat,  &VideoFeed::ShowFormatDialog },
    {"cmdDisplay", "Dis&play...", &VideoFeed::HasDisplay, &VideoFeed::ShowDisplayDialog},
};

QPushButton* Button(const char* name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

}  // namespace

VideoFeedsSetup::VideoFeedsSetup(Workspace& workspace, QWidget* parent)
    : SetupWindow(workspace, Name, "Video Feeds", parent) {
    if (Portfolio* portfolio = workspace.Portfolio())
        for (int feed = 0; feed < Portfolio::MaxFeed; ++feed) {
            Settings& settings = found_.emplace_back();
            for (const auto& set : SetsOf(*portfolio, feed))
                for (std::size_t row = 0; row < set->Properties().size(); ++row)
                    settings.push_back(set->Get(row));
        }
    auto* sides = new QHBoxLayout;
    sides->addWidget(MakeListSide(), 2);
    sides->addWidget(MakeFeedSide(), 3);
    Contents()->addLayout(sides);
    connect(list_, &QListWidget::currentRowChanged, this, &VideoFeedsSetup::Choose);
    connect(&workspace, &Workspace::Pulse, this, &VideoFeedsSetup::Refresh);
    BuildList();
    const QFontMetrics font = fontMetrics();
    resize(font.averageCharWidth() * 110, font.height() * 38);
}

QWidget* VideoFeedsSetup::MakeListSide() {
    auto* side = new QWidget;
    auto* label = new QLabel("Fee&ds");
    list_ = new QListWidget;
    list_->setObjectName("feeds");
    list_->setAccessibleName("Video feeds");
    list_->setTextElideMode(Qt::ElideMiddle);
    label->setBuddy(list_);
    add_ = Button("cmdAddFeed", "&Add");
    sources_ = new QMenu(add_);
    add_->setMenu(sources_);
    connect(sources_, &QMenu::aboutToShow, this, &VideoFeedsSetup::FillAddMenu);
    remove_ = AddButton("cmdRemoveFeed", "&Remove", &VideoFeedsSetup::Remove);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add_);
    buttons->addWidget(remove_);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins({});
    layout->addWidget(label);
    layout->addWidget(list_, 1);
    layout->addLayout(buttons);
    return side;
}

QWidget* VideoFeedsSetup::MakeFeedSide() {
    feedSide_ = new QWidget;
    preview_ = new PictureBox(
        [this] {
            const VideoFeed* feed = Feed();
            return feed ? PictureBox::Sight{&feed->DIB(), feed->FRAME()} : PictureBox::Sight{};
        },
        "No picture yet");
    preview_->setAccessibleName("Preview of the feed");
    state_ = new QLabel;
    state_->setObjectName("state");
    state_->setWordWrap(true);
    form_ = new PropertyForm(TheWorkspace());
    connect(form_, &PropertyForm::Changed, this, &VideoFeedsSetup::Refresh);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(AddButton("cmdMotion", "&Motion Detection...", &VideoFeedsSetup::DetectMotion));
    buttons->addWidget(AddButton("cmdFrameInfo", "Frame I&nfo", &VideoFeedsSetup::ShowFrameInfo));
    for (const OwnDialog& dialog : OwnDialogs) {
        QPushButton* button = Button(dialog.name, dialog.text);
        connect(button, &QPushButton::clicked, this, [this, show = dialog.show] {
            if (VideoFeed* feed = Feed()) (feed->*show)();
        });
        ownDialogs_.push_back(button);
        buttons->addWidget(button);
    }
    buttons->addStretch();

    auto* layout = new QVBoxLayout(feedSide_);
    layout->setContentsMargins({});
    layout->addWidget(preview_, 3);
    layout->addWidget(state_);
    layout->addWidget(form_, 2);
    layout->addLayout(buttons);
    return feedSide_;
}

QPushButton* VideoFeedsSetup::AddButton(const char* name, const QString& text,
                                        void (VideoFeedsSetup::*act)(VideoFeed&)) {
    QPushButton* button = Button(name, text);
    connect(button, &QPushButton::clicked, this, [this, act] {
        if (VideoFeed* feed = Feed()) (this->*act)(*feed);
    });
    return button;
}

void VideoFeedsSetup::BuildList() {
    const Portfolio* portfolio = TheWorkspace().Portfolio();
    if (!portfolio) return;
    const int chosen = Slot();
    const QSignalBlocker quiet(list_);
    list_->clear();
    int row = 0;
    for (int slot = 0; slot < Portfolio::MaxFeed; ++slot) {
        if (Feeds::IsFree(*portfolio, slot)) continue;
        auto* item = new QListWidgetItem(Title(slot, portfolio->VideoFeed(slot)), list_);
        item->setData(Qt::UserRole, slot);
        if (slot == chosen) row = list_->count() - 1;
    }
    list_->setCurrentRow(list_->count() > 0 ? row : -1);
    add_->setEnabled(list_->count() < Portfolio::MaxFeed);
    add_->setToolTip(add_->isEnabled() ? "" : "All ten feeds are in use.");
    Choose();
}

int VideoFeedsSetup::Slot() const {
    const QListWidgetItem* item = list_->currentItem();
    return item ? item->data(Qt::UserRole).toInt() : -1;
}

VideoFeed* VideoFeedsSetup::Feed() const {
    Portfolio* portfolio = TheWorkspace().Portfolio();
    const int slot = Slot();
    return portfolio && slot >= 0 ? &portfolio->VideoFeed(slot) : nullptr;
}

void VideoFeedsSetup::Choose() {
    Portfolio* portfolio = TheWorkspace().Portfolio();
    const int slot = Slot();
    const bool some = portfolio && slot >= 0;
    form_->Show(some ? PropertySets::Feed(*portfolio, slot) : nullptr,
                "Add a camera of this computer, the address of a stream, or a video file.");
    feedSide_->setEnabled(some);
    remove_->setEnabled(some);
    Refresh();
}

void VideoFeedsSetup::Refresh() {
    if (!isVisible()) return;
    const Portfolio* portfolio = TheWorkspace().Portfolio();
    if (!portfolio) return;
    int used = 0;
    for (int slot = 0; slot < Portfolio::MaxFeed; ++slot)
        if (!Feeds::IsFree(*portfolio, slot)) ++used;
    if (used != list_->count()) return BuildList();
    for (int row = 0; row < list_->count(); ++row) {
        QListWidgetItem* item = list_->item(row);
        const int slot = item->data(Qt::UserRole).toInt();
        if (Feeds::IsFree(*portfolio, slot)) return BuildList();
        if (const QString title = Title(slot, portfolio->VideoFeed(slot)); title != item->text())
            item->setText(title);
    }
    const VideoFeed* feed = Feed();
    state_->setText(feed ? State(*feed) : "");
    for (std::size_t i = 0; i < ownDialogs_.size(); ++i)
        ownDialogs_[i]->setVisible(feed && (feed->*OwnDialogs[i].has)());
}

void VideoFeedsSetup::FillAddMenu() {
    sources_->clear();
    CaptureDrivers* drivers = TheWorkspace().Services().captureDrivers;
    if (drivers) drivers->Refresh();
    for (int driver = 0; drivers && drivers->capGetDriverDescription(driver); ++driver) {
        const QString name = Wording::Words(NumberedDriverName(*drivers, driver));
        // "&" marks a mnemonic in menus.
        QAction* action =
            sources_->addAction(Wording::Words(MaskSecrets(name.toStdString())).replace("&", "&&"));
        connect(action, &QAction::triggered, this, [this, name] { Add(name); });
    }
    sources_->addSeparator();
    QAction* address = sources_->addAction("&Address or File...");
    address->setObjectName("cmdAddAddress");
    connect(address, &QAction::triggered, this, &VideoFeedsSetup::AskForAddress);
}

void VideoFeedsSetup::AskForAddress() {
    auto* box = new QInputDialog(this);
    box->setObjectName("AddressBox");
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle("Add a Video Feed");
    box->setLabelText("Address of a stream (http, https, rtsp, udp ...) or full path of a video file:");
    box->setTextValue("http://");
    box->resize(fontMetrics().averageCharWidth() * 70, box->sizeHint().height());
    connect(box, &QInputDialog::textValueSelected, this, &VideoFeedsSetup::Add);
    box->open();
}

void VideoFeedsSetup::Add(const QString& source) {
    Portfolio* portfolio = TheWorkspace().Portfolio();
    if (!portfolio) return;
    const int slot = Feeds::Add(*portfolio, source.trimmed().toStdString());
    BuildList();
    for (int row = 0; row < list_->count(); ++row)
        if (list_->item(row)->data(Qt::UserRole).toInt() == slot) list_->setCurrentRow(row);
}

void VideoFeedsSetup::Remove(VideoFeed&) {
    Feeds::Remove(*TheWorkspace().Portfolio(), Slot());
    BuildList();
}

void VideoFeedsSetup::DetectMotion(VideoFeed&) {
    ShowMotionDetectSetup(TheWorkspace(), parentWidget(), Slot());
}

void VideoFeedsSetup::ShowFrameInfo(VideoFeed& feed) { feed.SetShowDebugInfo(true); }

void VideoFeedsSetup::Restore() {
    Portfolio* portfolio = TheWorkspace().Portfolio();
    if (!portfolio) return;
    for (int feed = 0; feed < static_cast<int>(found_.size()); ++feed) {
        std::span<const std::string> settings = found_[static_cast<std::size_t>(feed)];
        for (const auto& set : SetsOf(*portfolio, feed))
            for (std::size_t row = 0; row < set->Properties().size(); ++row, settings = settings.subspan(1))
                if (set->Get(row) != settings.front()) set->Set(row, settings.front());
    }
}

void ShowVideoFeedsSetup(Workspace& workspace, QWidget* parent) {
    SetupWindow::ShowOnly(VideoFeedsSetup::Name, [&] { return new VideoFeedsSetup(workspace, parent); });
}

}  // namespace tessaloom
