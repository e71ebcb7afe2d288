// ui/controls/form.h - a window without its toolkit: its controls by name, the table of its
// captions, its layout, its events. A window is a struct derived from ui::Form. ui/qt/form makes
// the widgets, and does for all windows: object names, captions, names for screen readers, label
// buddies, tool tips, Enter and Escape, the icon, the place on the screen.
#pragma once

#include "ui/controls/button.h"
#include "ui/controls/frame.h"
#include "ui/controls/inputs/checkbox.h"
#include "ui/controls/inputs/combobox.h"
#include "ui/controls/inputs/keyedlist.h"
#include "ui/controls/inputs/keyedtree.h"
#include "ui/controls/inputs/slider.h"
#include "ui/controls/inputs/splitter.h"
#include "ui/controls/inputs/textbox.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/progressbar.h"
#include "ui/controls/statusbar.h"
#include "ui/controls/timer.h"

#include <concepts>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ui
{

// One row of a window's table of texts, looked up in the language file when the window loads.
struct Caption {
    enum class Of { Caption, ToolTip, SpokenName };

    std::string_view control; // the control's name; empty for the window's title
    std::string_view section;
    std::string_view key;
    std::string_view text; // English, the default; "&" marks an access key
    Of of = Of::Caption;
};

// How the controls of a window are arranged: a control, a row, a column or a grid of arrangements,
// or room that takes the remaining space. The desktop's style sets the distances. A control in a
// row or column that is Filled takes the remaining space too.
struct Layout {
    enum class Kind { Empty, Control, Row, Column, Grid, Room, Gap };

    Layout() = default;
    Layout(Area &shown)
        : kind(Kind::Control), control(&shown) {} // NOLINT: a control is written as it is

    Kind kind = Kind::Empty;
    Area *control = nullptr;   // of a gap: the control beside it; null for none
    std::vector<Layout> parts; // for a frame: what is inside
    int columns = 1;           // for a grid
    bool filled = false;
    bool tight = false; // no distance between the parts
    int margin = 0;     // for a frame without a border: twips from its edges to what is inside
};
[[nodiscard]] Layout Row(std::initializer_list<Layout> parts);
[[nodiscard]] Layout Column(std::initializer_list<Layout> parts);
[[nodiscard]] Layout Grid(int columns, std::initializer_list<Layout> parts); // row by row
[[nodiscard]] Layout Inside(Frame &frame, Layout inner, int margin = 0);
[[nodiscard]] Layout Room();                // moves its neighbours apart
[[nodiscard]] Layout Gap();                 // some distance, between groups of controls
[[nodiscard]] Layout Gap(Area &beside);     // the same, only while this control is visible
[[nodiscard]] Layout Filled(Layout layout); // takes the remaining space
[[nodiscard]] Layout Tight(Layout layout);  // its parts are close to each other and to the frame

// A control of a window; its type decides the widget.
using AnyControl = std::variant<Label *, Button *, CheckBox *, Option *, TextBox *, ComboBox *,
                                Frame *, Slider *, Splitter *, Picture *, KeyedTree *, KeyedList *,
                                StatusBar *, ProgressBar *, Timer *, Area *>;

struct Member {
    std::string name; // the object name: "txtTitle"; in an array "txtTitle(1)"
    AnyControl control;
    Frame *in = nullptr; // the frame that contains it; null: the window itself
    // The label that names it: the label's access key gives it the focus, and a screen reader
    // speaks its caption. Null for none.
    Label *label = nullptr;
};

// A pointer to a label. A pointer to another control with a caption (a button, a check box, a
// frame) does not compile, because these cannot name another control.
class NamingLabel
{
public:
    NamingLabel() = default;
    template <std::same_as<Label> Exactly>
    NamingLabel(Exactly *label) : m_label(label) // NOLINT: written as "{.label = &lblName}"
    {
    }

    Label *Get() const { return m_label; }

private:
    Label *m_label = nullptr;
};

// For Form::Add: the frame that contains the control, and the label that names it; null for none.
// The label must be a member of the form that was added before the control.
struct Where {
    Frame *in = nullptr;
    NamingLabel label = {};
};

// A key in a KeyDown event.
struct Key {
    int code = 0; // a letter or digit in upper-case ASCII; kEscapeKey, kEnterKey, ...
    bool shift = false, ctrl = false, alt = false;
    bool repeated = false; // the key is held down and was reported before
};
inline constexpr int kEnterKey = 13, kEscapeKey = 27, kDeleteKey = 46, kF5Key = 116;

class Form
{
public:
    // `formName` is the name of the window ("frmPref"); `captions` must outlive the form.
    Form(std::string_view formName, std::span<const Caption> captions);
    virtual ~Form(); // the window and the controls do not exist any more then
    Form(const Form &) = delete;
    Form &operator=(const Form &) = delete;

    const std::string name;
    const std::span<const Caption> captions;

    // The title of the window, UTF-8, without marks.
    const std::string &Title() const { return m_title; }
    void SetTitle(std::string_view title)
    {
        m_title = title;
        Notify(changed);
    }

    // --- The controls; added by the constructor of the derived struct. Their order is the order of
    // the Tab key. A control that is named by a label needs no row of its own for a spoken name.
    template <class Control>
    void Add(std::string_view controlName, Control &control, Where where = {})
    {
        members.push_back(
            {std::string(controlName), AnyControl(&control), where.in, where.label.Get()});
    }
    std::vector<Member> members;

    // The arrangement of the controls. Without a layout each control is at its Place(), in twips.
    Layout layout;

    // Without a layout: arrangements of what is inside some frames, each made by Inside. The frame
    // is at its Place(), its controls are arranged in it.
    std::vector<Layout> insides;

    // --- Properties of the window, to be set before it is loaded.
    Rect size{0, 0, 6000,
              4000}; // width and height inside the frame, in twips; with a layout the least ones
    bool resizable = false;
    Rect leastSize; // resizable without a layout: the least width and height inside the frame
    bool remembersPlace = false;    // its place is stored, and used when it loads again
    bool opensBeside = false;       // beside the window in use; of a stored place the size counts
    Button *acceptButton = nullptr; // pressed by Enter
    // Enter presses acceptButton only while a control in this frame has the focus; null: anywhere.
    const Frame *acceptsIn = nullptr;
    Button *cancelButton =
        nullptr; // pressed by Escape; when null, Escape closes the window if `escapeCloses`
    bool escapeCloses = true;
    const Area *firstFocus = nullptr; // has the keyboard first; null: the first control that can
    bool framed = true;               // false: no frame and no title, as a splash has
    bool centred = false;             // opens in the middle of the screen
    // Without modality: a window like the main one, which may be behind it and is minimised and
    // maximised by itself. The desktop decides where it opens.
    bool isIndependent = false;
    // The window is a box that says or asks something: a screen reader announces it when it opens,
    // the access key of a button presses the button also without Alt, and Ctrl+C copies the texts
    // of these labels, a line each.
    bool isBox = false;
    std::vector<const Label *> copied;
    bool takesKeyboard = true; // when shown without modality; false: it is not brought to the front
    bool overModal = false;    // can be shown and used while a modal window is open
    bool hidesOnClose =
        false; // stays loaded when the user closes it; shown again in the same state

    // --- The state of the window, set by its host.
    bool Loaded() const { return m_loaded; }
    bool Visible() const { return m_visible; }
    bool minimised = false;
    bool closedByFrame = false; // the user closed it last by its frame, not by a key or a button

    // --- Events. Each may be empty.
    std::function<void()> onLoad;   // after the captions are set, before the window is shown
    std::function<void()> onUnload; // the window is no longer on the screen
    std::function<bool()> mayClose; // called before it closes; false keeps it open
    // `size` has the new width and height. Called after the event of the toolkit, so it may let
    // events run; the first time before the window is visible.
    std::function<void()> onResize;
    std::function<void()> onVisibility; // Visible() has changed
    std::function<void()> onActivate;   // the window has become the active one
    // The window has been built, or its font has changed: the NeededSize() of controls may have
    // changed. onResize follows.
    std::function<void()> onMeasure;
    std::function<bool(const Key &)>
        onKeyDown; // before the control with the focus gets the key; true: handled

    // --- For the host of the window.
    ChangeHook changed; // for the window
    void SetLoaded(bool loaded) { m_loaded = loaded; }
    void SetVisible(bool visible)
    {
        if (std::exchange(m_visible, visible) != visible && onVisibility)
            onVisibility();
    }
    void SetHosted(bool hosted) { m_hosted = hosted; } // a window for it exists

private:
    std::string m_title;
    bool m_loaded = false;
    bool m_visible = false;
    bool m_hosted = false;
};

// Shows forms in windows. ui/qt/form implements it; tests of logic use tests/support/fakeforms.h.
struct FormHost {
    virtual ~FormHost() = default;
    virtual void Show(Form &form) = 0;      // loads it if needed
    virtual void ShowModal(Form &form) = 0; // the same; returns when the form is no longer visible
    virtual void Hide(Form &form) = 0;
    virtual void Close(Form &form) = 0;                  // hides and unloads it
    virtual void Retire(std::unique_ptr<Form> form) = 0; // see ui::Retire
    virtual std::vector<Form *> Forms() = 0;             // the loaded ones, the oldest first
    virtual void Forget(Form & /*form*/) {} // the form is destroyed without having been closed
};

// The host in use; null when there are no windows.
FormHost *&TheFormHost();

// Shows the window without modality; loads it first if needed, and brings it to the front if it is
// shown already.
// Errors: kNonModalOverModal (401) while a modal window is open; kObjectNotSet without a host.
void Show(Form &form);

// Shows the window modally and returns when it has been closed. An open group of catalogue rows is
// committed first; timers and events run meanwhile.
// Errors: those of onLoad; kObjectNotSet without a host.
void ShowModal(Form &form);

// Unloads the window without calling mayClose; does nothing when it is not loaded. A form that was
// shown modally may be destroyed once ShowModal has returned. Any other must live as long as the
// program, or be passed to Retire.
void Close(Form &form);
void Hide(Form &form); // stays loaded

// Destroys a form when it is closed and the current event is over; may be called from its own
// onUnload.
void Retire(std::unique_ptr<Form> form);

// Closes the window (or hides it, if hidesOnClose) unless its mayClose returns false. The window's
// close button and Escape do this. Returns: whether it was closed.
bool AskToClose(Form &form);

// At the end of the program: asks every loaded form, and closes all if each allows it. Returns:
// false when one did not; none is closed then.
bool AskToCloseAll();
void CloseAll();

// The control of this name; null when the form has none.
const Member *FindMember(const Form &form, std::string_view controlName);

// What every host does. LoadForm: sets the captions and calls onLoad. UnloadForm: calls onUnload.
void LoadForm(Form &form, const std::function<std::string(const Caption &)> &textOf);
void UnloadForm(Form &form);

} // namespace ui
