// ui/qt/widgetmakers.h - widgets for controls that only one window has. State: the registered
// makers.
#pragma once

#include "ui/controls/form.h"

#include <QWidget>
#include <functional>
#include <string_view>

namespace ui::qt
{

// Makes the widget for a control; called when the window of the form is built. The parent owns the
// widget, and the form outlives it. The result may also be a part of a widget that another maker
// has made for an earlier control. The maker connects the widget with its control. A second
// registration of a control replaces the first.
using WidgetMaker = std::function<QWidget *(ui::Form &form, QWidget *parent)>;
void RegisterWidget(std::string_view formName, std::string_view controlName, WidgetMaker make);

// The maker for a control; null when none is registered.
const WidgetMaker *FindWidgetMaker(std::string_view formName, std::string_view controlName);

} // namespace ui::qt
