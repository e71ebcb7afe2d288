#include "browser/layout.h"

#include "runtime/error.h"
#include "runtime/numbers.h"

#include <algorithm>
#include <cstdlib>

namespace browser
{

namespace
{

// Returns `size`. Errors: kInvalidCall when it is negative, which no control can have.
int Size(int size)
{
    if (size < 0)
        throw runtime::RuntimeError(runtime::kInvalidCall);
    return size;
}

ui::Rect Move(int left, int top, int width, int height)
{
    return {left, top, Size(width), Size(height)};
}

// The steps from the sixth on; when one fails, the tree's width is set back.
class Steps
{
public:
    Steps(LayoutState &state, int lastSafeTVWidth) : m_state(state), m_safe(lastSafeTVWidth) {}

    // Returns: false when `statement` fails with the last safe width too.
    template <class Statement>
    bool Run(const Statement &statement)
    {
        try {
            statement();
            return true;
        } catch (const runtime::RuntimeError &error) {
            if (error.number != runtime::kInvalidCall)
                return false;
        }
        // The rule is to run the statement again with the safe width. If it always fails, that
        // would never end; so the second failure ends the layout.
        m_state.initialTVWidth = m_safe;
        try {
            statement();
            return true;
        } catch (const runtime::RuntimeError &) {
            return false;
        }
    }

private:
    LayoutState &m_state;
    int m_safe;
};

void SizePanels(LayoutState &s)
{
    s.playingWidth = kPlayingPanelWidth;
    s.aboutWidth = s.aboutTextWidth + 300;
    s.playingStatusWidth = kPlayingStatusPanelWidth;
    const int blank = s.scaleWidth - s.playingWidth - s.aboutWidth - s.playingStatusWidth - 200;
    if (blank >= 0) // a failure here is ignored: the panel keeps its width
        s.blankWidth = blank;
}

bool MoveTreeAndBorders(LayoutState &s, Steps &steps, int topPos, int h)
{
    const int w3 = ui::TwipsOfPixels(kSeparatorPixels);
    const auto borders = [&](int top) {
        s.borders =
            Move(s.initialTVWidth + s.separator.width, top, s.scaleWidth - s.list.left, h + 30);
    };
    return steps.Run([&] { s.tree = Move(0, topPos + 100, s.initialTVWidth, h); }) &&
           steps.Run([&] { s.separator = Move(s.initialTVWidth, topPos + 100, w3, h); }) &&
           steps.Run([&] { borders(topPos - 10); }) && steps.Run([&] { borders(topPos + 90); }) &&
           steps.Run([&] {
               s.address = Move(30, s.address.top, s.scaleWidth - 150, s.address.height);
           }) &&
           steps.Run(
               [&] { s.addressTextWidth = Size(s.address.width - s.addressTextLeft - 60); }) &&
           steps.Run([&] { s.separator = Move(s.initialTVWidth, topPos, w3, h); }) &&
           steps.Run([&] {
               const int left = s.initialTVWidth + s.separator.width;
               s.borders = Move(left, topPos + 100, s.windowWidth - left - 150, h);
           });
}

bool MovePanelAndList(LayoutState &s, Steps &steps, int h)
{
    if (s.webStyleOn && !steps.Run([&] { s.panel = Move(0, 0, s.panel.width, h + 120); }))
        return false;
    s.list.left = s.webStyleOn ? s.panel.width - 40 : -45;
    s.list.top = -45;
    const int right = s.webStyleOn ? 30 : 0;
    return steps.Run([&] { s.list.width = Size(s.borders.width - s.list.left - right); }) &&
           steps.Run([&] { s.list.height = Size(s.borders.height); }) && steps.Run([&] {
               s.panelVisible = s.webStyleOn;
               s.scrollHeight = Size(s.list.height - 75);
           });
}

} // namespace

LayoutEnd PlanLayout(LayoutState &s, int lastSafeTVWidth)
{
    if (s.minimised)
        return LayoutEnd::Skipped;
    const int toolbar = s.toolbarVisible ? s.toolbarHeight : 0;
    const int topPos = (s.addressVisible ? s.address.height - 60 : 0) + toolbar;
    s.address.top = topPos - s.address.height;
    // The former top of the tree is used, and the height of the toolbar is added.
    const int h = s.windowHeight - topPos - s.tree.top - s.statusBarHeight - 240 + toolbar;
    SizePanels(s);
    Steps steps(s, lastSafeTVWidth);
    if (!MoveTreeAndBorders(s, steps, topPos, h) || !MovePanelAndList(s, steps, h))
        return LayoutEnd::Failed;
    SizeScrollBar(s);
    return LayoutEnd::Complete;
}

int TreeWidthOfDrag(int separatorLeft, double mouseX, int separatorWidth, int scaleWidth)
{
    const int width = std::max(0, runtime::RoundToInt32(separatorLeft + mouseX));
    return width > scaleWidth ? scaleWidth - separatorWidth : width;
}

int ScrollMax(int panelHeight, int listHeight)
{
    return std::min(std::abs(panelHeight - listHeight), 32767);
}

void SizeScrollBar(PanelPlaces &places)
{
    places.scrollMax = ScrollMax(places.panel.height, places.list.height);
    if (places.scrollMax <= 0)
        return;
    places.scrollLargeChange = runtime::RoundToInt16(places.scrollMax / 10.0);
    places.scrollSmallChange = runtime::RoundToInt16(places.scrollMax / 100.0);
}

ui::Rect ProgressBarPlace(ui::Rect statusBar, int panelLeft, int panelWidth, int margin)
{
    return {statusBar.left + panelLeft + margin, statusBar.top + margin, panelWidth - 2 * margin,
            statusBar.height - margin};
}

} // namespace browser
