#pragma once

#include <QTreeWidget>
#include <optional>
#include <string>
#include <vector>

#include "model/edit/LayerId.h"

namespace tessaloom {

/// One line of the list of layers.
struct LayerLine {
    LayerId layer;
    int pass = 0;      ///< 0 .. 3
    std::string icon;  ///< The name of a sign, ui/shared/CommandIcon.h.
    std::string title;
    bool enabled = true;
    std::string due;  ///< "in 12 s"
};

/// The layers under the headings of their passes, as they lie on each other: the topmost first.
class LayerTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit LayerTree(QWidget* parent = nullptr);

    /// Shows `lines`, which come in the order of the list, keeping what is selected. What did not change is
    /// not touched. Not while something is dragged or edited.
    void ShowLines(const std::vector<LayerLine>& lines);

    void ShowSelection(const std::vector<LayerId>& layers);
    std::vector<LayerId> Selection() const;
    std::optional<LayerId> Current() const;

    /// Where a layer dropped at `position` would lie: its pass, and the layer of its kind directly beneath
    /// it there (slot 0: none).
    struct Place {
        int pass = 0;
        LayerId below;
    };
    Place PlaceAt(const QPoint& position, LayerId dragged) const;

Q_SIGNALS:
    void SelectionMade();
    void Switched(LayerId layer, bool enabled);
    void Dropped(LayerId layer, int pass, LayerId below);
    void DeletePressed();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void Rebuild(const std::vector<LayerLine>& lines);
    void ShowLine(QTreeWidgetItem* item, const LayerLine& line, const LayerLine* before);
    QTreeWidgetItem* ItemOf(LayerId layer) const;

    std::vector<LayerLine> lines_;
};

}  // namespace tessaloom
