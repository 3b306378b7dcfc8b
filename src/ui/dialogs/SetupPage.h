#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "model/edit/PropertySet.h"

class QHBoxLayout;
class QPushButton;
class QVBoxLayout;

namespace tessaloom {

class Canvas;
class FactList;
class Hint;
class Portfolio;
class PropertyForm;
class Workspace;

/// Settings, and beneath them what comes of them: hints, facts that are looked at while they can be seen, and
/// what can be done now.
class SetupPage : public QWidget {
    Q_OBJECT

public:
    SetupPage(Workspace& workspace, std::unique_ptr<PropertySet> set, QWidget* parent = nullptr);

    PropertyForm* Form() const { return form_; }

    /// Looks at the facts, if they can be seen.
    void Refresh();

protected:
    /// Shows the present facts. The portfolio is open.
    virtual void ShowFacts(Portfolio& portfolio) = 0;

    void showEvent(QShowEvent* event) override;

    Workspace& TheWorkspace() const { return workspace_; }
    Hint* Hints() const { return hints_; }
    FactList* Facts() const { return facts_; }

    /// Between the facts and the buttons.
    QVBoxLayout* Extras() const { return extras_; }

    /// A button in the bottom row, whose handler runs with what was typed taken over.
    QPushButton* AddAction(const QString& name, const QString& text, std::function<void()> act);

private:
    Workspace& workspace_;
    PropertyForm* form_;
    Hint* hints_;
    FactList* facts_;
    QVBoxLayout* extras_;
    QHBoxLayout* actions_;
};

}  // namespace tessaloom
