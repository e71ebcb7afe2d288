// ui/qt/inputbindings.h - ties the controls that the user changes to their widgets, both ways. The
// widget follows the control; what the user does reaches the control's events. The control outlives
// its widget.
#pragma once

#include "ui/controls/button.h"
#include "ui/controls/checkbox.h"
#include "ui/controls/combobox.h"
#include "ui/controls/frame.h"
#include "ui/controls/slider.h"
#include "ui/controls/textbox.h"

#include <QWidget>

class QAbstractButton;
class QComboBox;
class QSlider;

namespace ui::qt
{

// Who puts the widget in its place: the control's own place, or else a layout.
struct Binding {
    bool placed = true;
};

// A label that names another widget takes the keyboard there by its access key; any other wraps its
// text and shows no marks.
QWidget *MakeLabel(ui::Label &label, bool isBuddy, QWidget *parent, Binding binding);
QWidget *MakeButton(ui::Button &button, QWidget *parent, Binding binding);
QWidget *MakeCheckBox(ui::CheckBox &box, bool round, QWidget *parent, Binding binding);
QWidget *MakeTextBox(ui::TextBox &box, QWidget *parent, Binding binding);
QWidget *MakeComboBox(ui::ComboBox &box, QWidget *parent, Binding binding);
QWidget *MakeFrame(ui::Frame &frame, QWidget *parent, Binding binding);
QWidget *MakeSlider(ui::Slider &slider, QWidget *parent, Binding binding);

// Place (where placed), visibility, enabled state, tool tip.
void ShowControl(const ui::Area &control, QWidget *widget, Binding binding);

// Names the widget, and a part of it that is typed into, for a screen reader.
void SpeakAs(QWidget *widget, const QString &words);

// A caption in words, for a screen reader: without marks, blanks and colon at its end.
QString SpokenText(std::string_view caption);

} // namespace ui::qt
