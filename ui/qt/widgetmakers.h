// ui/qt/widgetmakers.h - the widgets of controls that only one window has. State: the makers.
#pragma once

#include "ui/controls/form.h"

#include <QWidget>
#include <functional>
#include <string_view>

namespace ui::qt
{

// Makes the widget of a control of a window's own kind, a ui::Area among its members; called when a
// window of that name is built. The widget belongs to its parent, and the form outlives it.
using WidgetMaker = std::function<QWidget *(ui::Form &form, QWidget *parent)>;
void RegisterWidget(std::string_view formName, std::string_view controlName, WidgetMaker make);

// The maker of a control; null when none was registered.
const WidgetMaker *FindWidgetMaker(std::string_view formName, std::string_view controlName);

} // namespace ui::qt
