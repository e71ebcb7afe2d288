// ui/qt/inputbindings.h - connects the controls that the user changes with their widgets, in both
// directions. The widget is updated from the control; the user's changes raise the control's
// events. The control outlives its widget.
#pragma once

#include "ui/controls/button.h"
#include "ui/controls/frame.h"
#include "ui/controls/inputs/checkbox.h"
#include "ui/controls/inputs/combobox.h"
#include "ui/controls/inputs/slider.h"
#include "ui/controls/inputs/textbox.h"

#include <QWidget>

class QAbstractButton;
class QComboBox;
class QSlider;

namespace ui::qt
{

// What decides the place of the widget: the control's own place, or a layout.
struct Binding {
    bool placed = true;
};

// Makes the widget of a label. If it names another widget, its access key gives that one the focus;
// otherwise it wraps its text and shows no marks.
QWidget *MakeLabel(ui::Label &label, bool isBuddy, QWidget *parent, Binding binding);
QWidget *MakeButton(ui::Button &button, QWidget *parent, Binding binding);
QWidget *MakeCheckBox(ui::CheckBox &box, bool round, QWidget *parent, Binding binding);
QWidget *MakeTextBox(ui::TextBox &box, QWidget *parent, Binding binding);
QWidget *MakeComboBox(ui::ComboBox &box, QWidget *parent, Binding binding);
QWidget *MakeFrame(ui::Frame &frame, QWidget *parent, Binding binding);
QWidget *MakeSlider(ui::Slider &slider, QWidget *parent, Binding binding);

// Shows place (if `placed`), visibility, enabled state and tool tip.
void ShowControl(const ui::Area &control, QWidget *widget, Binding binding);

// Sets the name of the widget, and of the part of it for typing, for screen readers.
void SpeakAs(QWidget *widget, const QString &words);

// A caption for a screen reader: without marks, and without blanks and a colon at its end.
QString SpokenText(std::string_view caption);

} // namespace ui::qt
