#include "ui/canvas/LayerMenu.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMimeData>
#include <algorithm>
#include <vector>

#include "model/Canvas.h"
#include "model/edit/Layers.h"
#include "ui/canvas/CanvasEditor.h"
#include "ui/canvas/NewLayers.h"
#include "ui/shared/Workspace.h"

namespace tessaloom {

namespace {

using Command = void (CanvasEditor::*)();

enum class Needs { Nothing, Selection, Clipboard };

struct Row {
    const char* name;  ///< Of the action; null for a separator.
    const char* text = nullptr;
    Command command = nullptr;
    Needs needs = Needs::Nothing;
    QKeySequence::StandardKey key = QKeySequence::UnknownKey;
};

// clang-format off
constexpr Row EditRows[] = {
    {"cmdCut",       "Cu&t",            &CanvasEditor::Cut,       Needs::Selection, QKeySequence::Cut      },
    {"cmdCopy",      "&Copy",           &CanvasEditor::Copy,      Needs::Selection, QKeySequence::Copy     },
    {"cmdPaste",     "&Paste",          &CanvasEditor::Paste,     Needs::Clipboard, QKeySequence::Paste    },
    {"cmdDuplicate", "D&uplicate",      &CanvasEditor::Duplicate, Needs::Selection                         },
    {"cmdDelete",    "&Delete",         &CanvasEditor::Delete,    Needs::Selection, QKeySequence::Delete   },
    {nullptr},
    {"cmdToFront",   "Bring to &Front", &CanvasEditor::ToFront,   Needs::Selection                         },
    {"cmdRaise",     "&Raise",          &CanvasEditor::Raise,     Needs::Selection                         },
    {"cmdLower",     "&Lower",          &CanvasEditor::Lower,     Needs::Selection                         },
    {"cmdToBack",    "Send to &Back",   &CanvasEditor::ToBack,    Needs::Selection                         },
    {nullptr},
    {"cmdSelectAll", "Select &All",     &CanvasEditor::SelectAll, Needs::Nothing,   QKeySequence::SelectAll},
};

constexpr Row AddRows[] = {
    {"cmdAddText",    "Add &Text",           &CanvasEditor::AddText       },
    {"cmdAddPicture", "Add &Picture...",     &CanvasEditor::AddPictureFile},
    {"cmdAddFeed",    "Add Ca&mera...",      &CanvasEditor::AddFeed       },
    {"cmdAddAddress", "Add &Web Picture...", &CanvasEditor::AddAddress    },
    {"cmdAddBlock",   "Add &Block",          &CanvasEditor::AddBlock      },
    {"cmdAddCanvas",  "Add C&anvas...",      &CanvasEditor::AddCanvas     },
};
// clang-format on

void AddCommands(QMenu& menu, std::span<const Row> rows, CanvasEditor& editor, bool selected) {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    for (const Row& row : rows) {
        if (!row.name) {
            menu.addSeparator();
            continue;
        }
        QAction* action = menu.addAction(QObject::tr(row.text), &editor, row.command);
        action->setObjectName(row.name);
        if (row.key != QKeySequence::UnknownKey) action->setShortcut(row.key);
        action->setEnabled(row.needs == Needs::Nothing || (row.needs == Needs::Selection && selected) ||
                           (row.needs == Needs::Clipboard && data && NewLayers::Takes(*data)));
    }
}

}  // namespace

QMenu* MakeLayerMenu(CanvasEditor& editor, Workspace& workspace, int canvas, std::span<const LayerId> here) {
    auto* menu = new QMenu(&editor);
    menu->setObjectName("LayerMenu");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const std::vector<LayerId> selection = workspace.Selection();
    const Canvas* there = workspace.CanvasAt(canvas);
    if (there && !here.empty()) {
        menu->addSection(QObject::tr("Layers here"));
        for (const LayerId layer : here) {
            QString title = QString::fromStdString(Layers::Title(*there, layer)).replace('&', "&&");
            QAction* action =
                menu->addAction(title, &editor, [&workspace, layer] { workspace.Select({layer}); });
            action->setCheckable(true);
            action->setChecked(std::ranges::count(selection, layer) > 0);
        }
        menu->addSeparator();
    }
    AddCommands(*menu, EditRows, editor, !selection.empty());
    menu->addSeparator();
    QMenu* add = menu->addMenu(QObject::tr("Add &New"));
    add->setObjectName("AddMenu");
    AddCommands(*add, AddRows, editor, true);
    return menu;
}

}  // namespace tessaloom
