#include "ui/qt/widgetmakers.h"

#include <map>
#include <string>
#include <utility>

namespace ui::qt
{

namespace
{

std::map<std::pair<std::string, std::string>, WidgetMaker, std::less<>> &Makers()
{
    static std::map<std::pair<std::string, std::string>, WidgetMaker, std::less<>> makers;
    return makers;
}

} // namespace

void RegisterWidget(std::string_view formName, std::string_view controlName, WidgetMaker make)
{
    Makers()[{std::string(formName), std::string(controlName)}] = std::move(make);
}

const WidgetMaker *FindWidgetMaker(std::string_view formName, std::string_view controlName)
{
    const auto found = Makers().find(std::pair(std::string(formName), std::string(controlName)));
    return found == Makers().end() ? nullptr : &found->second;
}

} // namespace ui::qt
