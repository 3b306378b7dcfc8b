#pragma once

#include <QString>
#include <functional>
#include <string_view>

class QEvent;
class QHBoxLayout;
class QToolButton;
class QWidget;

namespace tessaloom::Editors {

/// UTF-8 of the engine as the toolkit has it.
QString Words(std::string_view text);

/// What a field shows for things that have different values.
QString SeveralValues();

/// What a window says that shows one of several things which differ.
QString DifferHint();

/// The wheel turns the form unless `widget` has the focus, so that no value changes by the way.
void GuardWheel(QWidget* widget);

/// For a field in which something is being typed: Enter calls `take`, Escape `leave`. True when the event was
/// one of these keys. A window, for which they mean "OK" and "Cancel", gets them only while nothing is typed.
bool EndTyping(QEvent& event, const std::function<void()>& take, const std::function<void()>& leave);

/// The row of an editor's parts: no margins of its own. `focus` gets the focus for the editor.
QHBoxLayout* LayParts(QWidget* editor, QWidget* focus);

/// A small button with a text, for what opens a window.
QToolButton* OpenButton(const QString& text, const QString& name, const QString& tip);

}  // namespace tessaloom::Editors
