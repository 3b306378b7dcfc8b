#pragma once

#include <cstddef>

#include "model/edit/PropertySet.h"
#include "ui/property/PropertyEditor.h"

namespace tessaloom::Editors {

/// What an editor is made for. The set outlives the editor.
struct Subject {
    Workspace& workspace;
    PropertySet& set;
    std::size_t row;
    QWidget* parent;

    const Property& Description() const { return set.Properties()[row]; }
};

// One for each kind of property, or family of kinds.

PropertyEditor* MakeSwitch(const Subject& subject);
PropertyEditor* MakeNumber(const Subject& subject);
PropertyEditor* MakePercent(const Subject& subject);
PropertyEditor* MakeAngle(const Subject& subject);
PropertyEditor* MakeChoice(const Subject& subject);
PropertyEditor* MakeFont(const Subject& subject);
PropertyEditor* MakeFeed(const Subject& subject);
PropertyEditor* MakeCanvas(const Subject& subject);
PropertyEditor* MakeColour(const Subject& subject);
PropertyEditor* MakeLine(const Subject& subject);
PropertyEditor* MakePassword(const Subject& subject);
PropertyEditor* MakePath(const Subject& subject);
PropertyEditor* MakeTimeOfDay(const Subject& subject);
PropertyEditor* MakeRate(const Subject& subject);
PropertyEditor* MakeTaggedText(const Subject& subject);
PropertyEditor* MakeSchedule(const Subject& subject);
PropertyEditor* MakeTransparentColours(const Subject& subject);

}  // namespace tessaloom::Editors
