// ui/controls/form.h - a window without its toolkit: its controls by name, the table of its
// captions, its layout, its events. A window is a struct derived from ui::Form; ui/qt/form builds
// the widgets and does for all windows what none has to do itself: object names, captions, the
// names that a screen reader speaks, label buddies, tool tips, Enter and Escape, the icon, the
// place on the screen.
#pragma once

#include "ui/controls/button.h"
#include "ui/controls/checkbox.h"
#include "ui/controls/combobox.h"
#include "ui/controls/frame.h"
#include "ui/controls/keyedlist.h"
#include "ui/controls/keyedtree.h"
#include "ui/controls/label.h"
#include "ui/controls/picture.h"
#include "ui/controls/progressbar.h"
#include "ui/controls/slider.h"
#include "ui/controls/statusbar.h"
#include "ui/controls/textbox.h"
#include "ui/controls/timer.h"

#include <concepts>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
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

// How a window's controls are arranged: a control, a row, a column or a grid of arrangements, or
// room that takes what is left. Distances are the desktop's own. A control in a row or column that
// is Filled takes what is left as well.
struct Layout {
    enum class Kind { Empty, Control, Row, Column, Grid, Room };

    Layout() = default;
    Layout(Area &shown)
        : kind(Kind::Control), control(&shown) {} // NOLINT: controls are listed as they are

    Kind kind = Kind::Empty;
    Area *control = nullptr;
    std::vector<Layout> parts; // of a control: what is inside a frame
    int columns = 1;           // of a grid
    bool filled = false;
};
[[nodiscard]] Layout Row(std::initializer_list<Layout> parts);
[[nodiscard]] Layout Column(std::initializer_list<Layout> parts);
[[nodiscard]] Layout Grid(int columns, std::initializer_list<Layout> parts); // row by row
[[nodiscard]] Layout Inside(Frame &frame, Layout inner);
[[nodiscard]] Layout Room();                // pushes its neighbours apart
[[nodiscard]] Layout Filled(Layout layout); // takes what is left

// A control of a window, by the kind of its widget.
using AnyControl =
    std::variant<Label *, Button *, CheckBox *, Option *, TextBox *, ComboBox *, Frame *, Slider *,
                 Picture *, KeyedTree *, KeyedList *, StatusBar *, ProgressBar *, Timer *, Area *>;

struct Member {
    std::string name; // its object name: "txtTitle"; of an array "txtTitle(1)"
    AnyControl control;
    Frame *in = nullptr; // the frame that holds it; null: the window itself
    // The label that names it: its access key leads here, and a screen reader speaks it. Null for
    // none.
    Label *label = nullptr;
};

// A label itself. A pointer to a control that only has a caption as well (a button, a check box, a
// frame) does not compile: it cannot name another control.
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

// For Form::Add: the frame that holds the control, and the label that names it; null for none. The
// label is a member of the form, added before the control.
struct Where {
    Frame *in = nullptr;
    NamingLabel label = {};
};

// A key as the KeyDown event gives it.
struct Key {
    int code = 0; // of letters and digits their upper-case ASCII; kEscapeKey, kEnterKey, ...
    bool shift = false, ctrl = false, alt = false;
    bool repeated = false; // it is held down, and was pressed before
};
inline constexpr int kEnterKey = 13, kEscapeKey = 27, kDeleteKey = 46, kF5Key = 116;

class Form
{
public:
    // `formName` is that of the window ("frmPref"); `captions` outlives the form.
    Form(std::string_view formName, std::span<const Caption> captions);
    virtual ~Form(); // its window is gone by then, as its controls are
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

    // --- What the window is made of; filled in by the derived struct's constructor. The order of
    // the members is the order of the Tab key. A label named by `label` of a later member needs no
    // row of its own there.
    template <class Control>
    void Add(std::string_view controlName, Control &control, Where where = {})
    {
        members.push_back(
            {std::string(controlName), AnyControl(&control), where.in, where.label.Get()});
    }
    std::vector<Member> members;

    // The arrangement of the controls. Without one each control is at its own Place(), in twips.
    Layout layout;

    // --- The window's own properties, set before it loads.
    Rect size{0, 0, 6000,
              4000}; // width and height inside the frame, twips; of a layout the least ones
    bool resizable = false;
    bool remembersPlace = false;    // its place is stored, and restored when it loads again
    Button *acceptButton = nullptr; // Enter
    Button *cancelButton =
        nullptr; // Escape; without one Escape closes the window if `escapeCloses`
    bool escapeCloses = true;
    bool takesKeyboard = true; // when it is shown without modality; false: it does not come forward
    bool overModal = false;    // is shown and used while a modal window is up, too
    bool hidesOnClose = false; // stays loaded when the user closes it, and is shown again as it was

    // --- The state of the window, kept up to date while it shows.
    bool Loaded() const { return m_loaded; }
    bool Visible() const { return m_visible; }
    bool minimised = false;

    // --- Events. Each may be empty.
    std::function<void()> onLoad;   // after the captions, before the window shows
    std::function<void()> onUnload; // the window is gone from the screen
    std::function<bool()> mayClose; // asked before it closes; false keeps it
    std::function<void()> onResize; // `size` has the new width and height
    std::function<bool(const Key &)>
        onKeyDown; // before the control that has the keyboard; true: taken

    // --- Used by the host of the window.
    ChangeHook changed; // the window's
    void SetLoaded(bool loaded) { m_loaded = loaded; }
    void SetVisible(bool visible) { m_visible = visible; }
    void SetHosted(bool hosted) { m_hosted = hosted; } // there is a window of it

private:
    std::string m_title;
    bool m_loaded = false;
    bool m_visible = false;
    bool m_hosted = false;
};

// Shows forms in windows. Implemented by ui/qt/form; tests of logic put their own
// (tests/support/fakeforms.h).
struct FormHost {
    virtual ~FormHost() = default;
    virtual void Show(Form &form) = 0;      // loads it where needed
    virtual void ShowModal(Form &form) = 0; // the same; returns when the form is no longer visible
    virtual void Hide(Form &form) = 0;
    virtual void Close(Form &form) = 0;                  // hides and unloads it
    virtual void Retire(std::unique_ptr<Form> form) = 0; // see ui::Retire
    virtual std::vector<Form *> Forms() = 0;             // those that are loaded, the oldest first
    virtual void Forget(Form & /*form*/) {}              // it ends now, without having been closed
};

// The host in use; null where there are no windows.
FormHost *&TheFormHost();

// Shows the window without modality, loading it first where needed; one that shows comes forward.
// Errors: kNonModalOverModal (401) while a modal window is up; kObjectNotSet without a host.
void Show(Form &form);

// Shows the window modally and returns when it was closed. An open group of catalogue rows is
// closed first; timers and events run meanwhile. Errors: those of onLoad; kObjectNotSet without a
// host.
void ShowModal(Form &form);

// Closes the window, without asking mayClose: unloads it. Nothing for one that is not loaded. A
// form that was shown modally may end once ShowModal has returned; any other lives as long as the
// program, or ends by Retire.
void Close(Form &form);
void Hide(Form &form); // stays loaded

// Ends a form once it is closed and the event under way is over, also from its own onUnload.
void Retire(std::unique_ptr<Form> form);

// Closes (or, of one that hidesOnClose, hides) the window if its mayClose lets it. The window's
// close button and Escape come here. Returns: whether it was closed.
bool AskToClose(Form &form);

// At the end of the program: asks every loaded form, and closes all when each lets it.
// Returns: false when one did not; none is closed then.
bool AskToCloseAll();
void CloseAll();

// The control of this name; null when the form has none.
const Member *FindMember(const Form &form, std::string_view controlName);

// What is common to every host: captions, onLoad; onUnload.
void LoadForm(Form &form, const std::function<std::string(const Caption &)> &textOf);
void UnloadForm(Form &form);

} // namespace ui
