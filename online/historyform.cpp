#include "online/historyform.h"

#include "platform/desktop.h"
#include "platform/machine.h"

#include <algorithm>

namespace online
{

namespace
{

constexpr std::string_view kSection = "History";
constexpr std::array<std::string_view, 4> kKinds = {"BugFix", "New", "Changed", "Removed"};

constexpr ui::Caption kCaptions[] = {
    {"", kSection, "History", "History"},
    {"lblReference(0)", kSection, "BugFix", "BugFix"},
    {"lblReference(1)", kSection, "New", "New"},
    {"lblReference(2)", kSection, "Changed", "Changed"},
    {"lblReference(3)", kSection, "Removed", "Removed"},
    {"cmdClose", "Splash", "OkButton", "&Ok"},
};

constexpr int kPictureSize = 240;            // twips
constexpr int kWidth = 9000, kHeight = 7500; // twips, the least size

void ShowPointer(platform::Pointer pointer)
{
    platform::Desktop &desktop = *platform::TheMachine().desktop;
    desktop.SetPointer(pointer);
    desktop.DoEvents();
}

} // namespace

HistoryForm::HistoryForm() : Form("frmHistory", kCaptions)
{
    ui::Layout legend = ui::Row({});
    for (std::size_t i = 0; i < kKinds.size(); ++i) {
        const std::string index = "(" + std::to_string(i) + ")";
        imgReference[i].SetPlace({0, 0, kPictureSize, kPictureSize});
        imgReference[i].SetImage(kKinds[i]);
        Add("lblReference" + index, lblReference[i]);
        Add("imgReference" + index, imgReference[i], {.label = &lblReference[i]});
        legend.parts.emplace_back(imgReference[i]);
        legend.parts.emplace_back(lblReference[i]);
    }
    legend.parts.push_back(ui::Room());
    Add("History", History);
    Add("cmdClose", cmdClose);
    acceptButton = cancelButton = &cmdClose;
    size = {0, 0, kWidth, kHeight};
    resizable = true;
    layout = ui::Column({legend, ui::Filled(History), ui::Row({ui::Room(), cmdClose})});

    onLoad = [this] {
        ShowPointer(platform::Pointer::Hourglass);
        ShowPointer(platform::Pointer::Normal);
        box = ReadRTF(HistoryMarkupToRTF(PlainToRTF(HistoryText())));
        ReplaceHistoryMarkers(
            box, [](const std::string &key) { return std::ranges::count(kKinds, key) > 0; });
    };
    cmdClose.onClick = [this] { ui::Close(*this); };
}

} // namespace online
