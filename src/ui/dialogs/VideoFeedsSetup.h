#pragma once

#include <string>
#include <vector>

#include "ui/shared/SetupWindow.h"

class QLabel;
class QListWidget;
class QMenu;
class QPushButton;

namespace tessaloom {

class PictureBox;
class PropertyForm;
class VideoFeed;

/// The video feeds of the portfolio: what there is, what comes of it, and its settings.
class VideoFeedsSetup : public SetupWindow {
    Q_OBJECT

public:
    static constexpr const char* Name = "VideoFeedsSetup";

    VideoFeedsSetup(Workspace& workspace, QWidget* parent);

protected:
    void Restore() override;

private:
    /// Every setting of a feed, as text.
    using Settings = std::vector<std::string>;

    void BuildList();
    QWidget* MakeListSide();
    QWidget* MakeFeedSide();
    QPushButton* AddButton(const char* name, const QString& text, void (VideoFeedsSetup::*act)(VideoFeed&));

    void FillAddMenu();
    void AskForAddress();
    void Add(const QString& source);
    void Remove(VideoFeed& feed);
    void DetectMotion(VideoFeed& feed);
    void ShowFrameInfo(VideoFeed& feed);

    /// The slot of the row in hand; -1 without one.
    int Slot() const;
    VideoFeed* Feed() const;
    void Choose();
    void Refresh();

    std::vector<Settings> found_;  ///< Of each slot, when the window opened.
    QListWidget* list_ = nullptr;
    QMenu* sources_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* remove_ = nullptr;
    QWidget* feedSide_ = nullptr;
    PictureBox* preview_ = nullptr;
    QLabel* state_ = nullptr;
    PropertyForm* form_ = nullptr;
    std::vector<QPushButton*> ownDialogs_;  ///< Source, format, display.
};

}  // namespace tessaloom
