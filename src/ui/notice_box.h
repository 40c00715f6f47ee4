#pragma once
// The message boxes of editing: a refused field, a permission box cleared.
// They carry the program's short title, as every message box of the tool.

#include "editing/field_leave.h"

class QWidget;

namespace rm8::ui {

inline constexpr char kApplicationTitle[] = "RM8";

// Modal, with an OK button and the notice's icon.
void showNotice(QWidget* parent, const Notice& notice);

} // namespace rm8::ui
