#include "browser/form/formlayout.h"

#include "browser/webpanel.h"
#include "platform/desktop.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/numbers.h"
#include "shell/globals.h"
#include "shell/settings.h"

namespace browser
{

namespace
{

int LastSafeTVWidth()
{
    const std::string text = shell::GetSetting(shell::kLastSafeConfiguration, "Initial TV Width",
                                               std::to_string(kDefaultTVWidth));
    const double width = runtime::LeadingNumber(text);
    return width >= 0 && width <= 1e6 ? runtime::RoundToInt32(width) : kDefaultTVWidth;
}

LayoutState StateOf(const MainForm &form)
{
    LayoutState s{PlacesOf(form, form.LV)};
    s.minimised = form.minimised;
    s.windowWidth = form.window.width;
    s.windowHeight = form.window.height;
    s.scaleWidth = form.scaleWidth;
    s.toolbarVisible = form.TB.Visible();
    s.toolbarHeight = form.TB.Height();
    s.addressVisible = form.TBAddress.Visible();
    s.statusBarHeight = form.SB.Height();
    if (form.calls.textWidth)
        s.aboutTextWidth = form.calls.textWidth(form.SB.Panel("About").text);
    s.addressTextLeft = form.WEPath.Left();
    s.webStyleOn = form.WebStyleOn;
    s.initialTVWidth = shell::TheGlobals().InitialTVWidth;
    s.address = form.TBAddress.Place();
    s.addressTextWidth = form.WEPath.Width();
    s.tree = form.TV.Place();
    s.separator = form.Separator.Place();
    s.playingWidth = form.SB.Panel("Playing").widthTwips;
    s.playingStatusWidth = form.SB.Panel("PlayingStatus").widthTwips;
    s.blankWidth = form.SB.Panel("Blank").widthTwips;
    s.aboutWidth = form.SB.Panel("About").widthTwips;
    return s;
}

void ApplyPanels(ui::StatusBar &bar, const LayoutState &s)
{
    bar.SetWidth("Playing", s.playingWidth);
    bar.SetWidth("About", s.aboutWidth);
    bar.SetWidth("PlayingStatus", s.playingStatusWidth);
    bar.SetWidth("Blank", s.blankWidth);
}

void Apply(MainForm &form, const LayoutState &s)
{
    shell::TheGlobals().InitialTVWidth = s.initialTVWidth;
    form.TBAddress.SetPlace(s.address);
    form.WEPath.SetWidth(s.addressTextWidth);
    ApplyPanels(form.SB, s);
    form.TV.SetPlace(s.tree);
    form.Separator.SetPlace(s.separator);
    SetPlaces(form, form.LV, s);
}

void SaveLayout(const MainForm &form)
{
    const int treeWidth = shell::TheGlobals().InitialTVWidth;
    shell::SaveNumberPreference("Initial TV Width", treeWidth);
    const auto save = [](std::string_view key, int twips) {
        shell::SaveSetting(shell::kLastSafeConfiguration, key, std::to_string(twips));
    };
    save("Width", form.window.width);
    save("Height", form.window.height);
    save("Top", form.window.top);
    save("Left", form.window.left);
    save("Initial TV Width", treeWidth);
}

} // namespace

void ReDrawForm(MainForm &form)
{
    LayoutState state = StateOf(form);
    const LayoutEnd end = PlanLayout(state, LastSafeTVWidth());
    if (end == LayoutEnd::Skipped)
        return;
    Apply(form, state);
    if (end == LayoutEnd::Failed)
        return;
    platform::TheMachine().desktop->DoEvents();
    SaveLayout(form);
}

void ResizeMainForm(MainForm &form)
{
    ReDrawForm(form);
    if (form.minimised)
        return;
    for (ui::Label *label :
         {&form.lblWebFolder, &form.WebItemName, &form.WebItemType, &form.lblInfo})
        label->FitHeight();
    AdjustPanelScroll(form.LV, form);
}

void Separator_MouseDown(MainForm &form)
{
    form.SeparatorDragging = true;
}

void Separator_MouseMove(MainForm &form, double mouseX)
{
    if (!form.SeparatorDragging)
        return;
    shell::TheGlobals().InitialTVWidth =
        TreeWidthOfDrag(form.Separator.Left(), mouseX, form.Separator.Width(), form.scaleWidth);
    // Moves that the layout itself causes must not count as a drag. A release of the mouse while it
    // yields ends the drag nevertheless.
    form.SeparatorDragging = false;
    form.separatorReleased = false;
    ReDrawForm(form);
    AdjustPanelScroll(form.LV, form);
    form.SeparatorDragging = !form.separatorReleased;
}

void Separator_MouseUp(MainForm &form)
{
    form.SeparatorDragging = false;
    form.separatorReleased = true;
}

void ShowProgressBar(MainForm &form, std::string_view panelKey, int margin)
{
    form.pbarArea.SetVisible(true);
    if (std::exchange(form.progressBarLaid, true))
        return;
    int left = 0;
    for (const ui::StatusPanel &panel : form.SB.Panels()) {
        if (panel.key == panelKey)
            break;
        left += panel.widthTwips;
    }
    const ui::Rect bar{0, 0, form.SB.Width(), form.SB.Height()};
    form.pbarArea.SetPlace(ProgressBarPlace(bar, left, form.SB.Panel(panelKey).widthTwips, margin));
    form.SB.SetAutoSize(panelKey, false);
}

} // namespace browser
