#include "browser/form/formpopup.h"

#include "browser/itemkinds.h"
#include "shell/language.h"

namespace browser
{

namespace
{

// Updates the states of the popup's entries.
void UpdatePopup(MainForm &form)
{
    for (std::size_t i = 0; i < form.cp.size(); ++i)
        form.cp[i].enabled = PopupLines()[i].IsTitle() || CanRun(PopupLines()[i].command);
}

// While one exists, commands use the list on which the popup was opened.
class PopupClick
{
public:
    explicit PopupClick(MainForm &form) : m_form(form) { m_form.inPopupClick = true; }
    ~PopupClick() { m_form.inPopupClick = false; }
    PopupClick(const PopupClick &) = delete;
    PopupClick &operator=(const PopupClick &) = delete;

private:
    MainForm &m_form;
};

} // namespace

void BuildPopup(MainForm &form)
{
    form.cp.clear();
    for (const PopupLine &line : PopupLines()) {
        const std::string caption =
            shell::GetLanguageText(line.caption, line.languageKey, "PopUpMenu");
        form.cp.push_back({line.IsTitle() ? "-" + caption : caption, std::string(line.key),
                           std::string(line.image)});
    }
    UpdatePopup(form);
}

void OpenPopup(MainForm &form, const ui::KeyedList &list)
{
    const ui::RowId selected = list.SelectedItem();
    if (selected == ui::kNoRow || !list.Key(selected).starts_with(kFileMarker))
        return;
    form.PopupFromSearch = &list != &form.LV;
    ShowPop(form);
}

void ClickPopup(MainForm &form, std::string_view key)
{
    if (form.exporting)
        return;
    for (const PopupLine &line : PopupLines())
        if (line.key == key && !line.IsTitle() && CanRun(line.command)) {
            const PopupClick click(form);
            RunHandler(line.command);
            return;
        }
}

void LV_MouseDown(MainForm &form, int button, ui::RowId hit)
{
    constexpr int kRightButton = 2;
    if (button != kRightButton)
        return;
    if (hit != ui::kNoRow) {
        form.LV.SelectOnly(hit);
        if (form.LV.onItemClick)
            form.LV.onItemClick();
    }
    OpenPopup(form, form.LV);
}

void ShowPop(MainForm &form)
{
    const ui::Rect cursor = form.calls.cursor();
    UpdatePopup(form);
    LogoDraw(form, form.calls.popupHeights());
    form.calls.showPopup(cursor.left - form.window.left - 200, cursor.top - form.window.top - 800);
}

void LogoDraw(MainForm &form, const std::vector<int> &entryHeights)
{
    int heightPx = 0;
    for (const int height : entryHeights)
        heightPx += height;
    form.picSideBar.SetHeight(ui::TwipsOfPixels(heightPx));
    if (form.logo == nullptr)
        return;
    form.logo->heightTwips = form.picSideBar.Height();
    form.logo->Draw();
}

} // namespace browser
