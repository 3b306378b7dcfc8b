#pragma once

#include <QWidget>
#include <memory>

class QMenu;

namespace tessaloom {

class Workspace;

/// All layers of the active canvas by pass, the topmost first: switched on and off, dragged into another
/// order, selected together with the canvas's window. Shows when each is due.
class LayerPanel : public QWidget {
    Q_OBJECT

public:
    explicit LayerPanel(Workspace& workspace, QWidget* parent = nullptr);
    ~LayerPanel() override;

    /// What the button "Add" opens: the main window's own menu of new layers. Without one there is no button.
    void SetAddMenu(QMenu* menu);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Parts;

    QWidget* MakeTools();

    std::unique_ptr<Parts> parts_;
};

}  // namespace tessaloom
