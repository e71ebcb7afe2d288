#include "ui/controls/form.h"

#include "runtime/error.h"

#include <cassert>
#include <cstdlib>
#include <utility>

namespace ui
{

namespace
{

Layout Arrangement(Layout::Kind kind, std::initializer_list<Layout> parts, int columns = 1)
{
    Layout layout;
    layout.kind = kind;
    layout.parts = parts;
    layout.columns = columns;
    return layout;
}

FormHost &Host()
{
    if (TheFormHost() == nullptr)
        throw runtime::RuntimeError(runtime::kObjectNotSet);
    return *TheFormHost();
}

bool MayClose(const Form &form)
{
    return !form.mayClose || form.mayClose();
}

// Sets the text that a row of the table is for.
void SetText(Form &form, const Caption &row, const std::string &text)
{
    if (row.control.empty()) {
        form.SetTitle(text);
        return;
    }
    const Member *member = FindMember(form, row.control);
    assert(member != nullptr && "a caption for a control that the form does not have");
    if (member == nullptr)
        return;
    std::visit(
        [&](auto *control) {
            using Control = std::remove_pointer_t<decltype(control)>;
            if constexpr (std::is_base_of_v<Area, Control>) {
                if (row.of == Caption::Of::ToolTip)
                    control->SetToolTip(text);
                if (row.of == Caption::Of::SpokenName)
                    control->SetSpokenName(text);
            }
            if constexpr (std::is_base_of_v<Label, Control>) {
                if (row.of == Caption::Of::Caption)
                    control->SetCaption(text);
            }
        },
        member->control);
}

} // namespace

Layout Row(std::initializer_list<Layout> parts)
{
    return Arrangement(Layout::Kind::Row, parts);
}

Layout Column(std::initializer_list<Layout> parts)
{
    return Arrangement(Layout::Kind::Column, parts);
}

Layout Grid(int columns, std::initializer_list<Layout> parts)
{
    return Arrangement(Layout::Kind::Grid, parts, columns);
}

Layout Inside(Frame &frame, Layout inner, int margin)
{
    Layout layout(frame);
    layout.parts.push_back(std::move(inner));
    layout.margin = margin;
    return layout;
}

Layout Room()
{
    return Arrangement(Layout::Kind::Room, {});
}

Layout Gap()
{
    return Arrangement(Layout::Kind::Gap, {});
}

Layout Gap(Area &beside)
{
    Layout layout = Gap();
    layout.control = &beside;
    return layout;
}

Layout Filled(Layout layout)
{
    layout.filled = true;
    return layout;
}

Layout Tight(Layout layout)
{
    layout.tight = true;
    return layout;
}

Form::Form(std::string_view formName, std::span<const Caption> texts)
    : name(formName), captions(texts)
{
}

Form::~Form()
{
    // The window would use controls that do not exist any more: this programming error must not go
    // on.
    if (m_hosted)
        std::abort();
    if (TheFormHost() != nullptr)
        TheFormHost()->Forget(*this);
}

FormHost *&TheFormHost()
{
    static FormHost *host = nullptr;
    return host;
}

void Show(Form &form)
{
    Host().Show(form);
}

void ShowModal(Form &form)
{
    Host().ShowModal(form);
}

void Close(Form &form)
{
    if (form.Loaded())
        Host().Close(form);
}

void Hide(Form &form)
{
    if (form.Loaded())
        Host().Hide(form);
}

void Retire(std::unique_ptr<Form> form)
{
    Host().Retire(std::move(form));
}

bool AskToClose(Form &form)
{
    if (!form.Loaded() || !MayClose(form))
        return false;
    if (form.hidesOnClose)
        Hide(form);
    else
        Close(form);
    return true;
}

bool AskToCloseAll()
{
    if (TheFormHost() == nullptr)
        return true;
    for (const Form *form : Host().Forms())
        if (!MayClose(*form))
            return false;
    CloseAll();
    return true;
}

void CloseAll()
{
    if (TheFormHost() == nullptr)
        return;
    for (std::vector<Form *> forms = Host().Forms(); !forms.empty(); forms = Host().Forms())
        Close(*forms.back());
}

const Member *FindMember(const Form &form, std::string_view controlName)
{
    for (const Member &member : form.members)
        if (member.name == controlName)
            return &member;
    return nullptr;
}

void LoadForm(Form &form, const std::function<std::string(const Caption &)> &textOf)
{
    for (const Caption &row : form.captions)
        SetText(form, row, textOf(row));
    form.SetLoaded(true);
    try {
        if (form.onLoad)
            form.onLoad();
    } catch (...) {
        form.SetLoaded(false);
        throw;
    }
}

void UnloadForm(Form &form)
{
    form.SetVisible(false);
    form.SetLoaded(false);
    if (form.onUnload)
        form.onUnload();
}

} // namespace ui
