// ui/controls/picture.h - a picture from an image list.
#pragma once

#include "ui/controls/area.h"

#include <string>
#include <string_view>

namespace ui
{

class Picture : public Area
{
public:
    using Area::Area;

    // The key of the image; empty for no picture.
    const std::string &Image() const { return m_image; }
    bool HasPicture() const { return !m_image.empty(); }
    void SetImage(std::string_view key) { Assign(m_image, std::string(key)); }

private:
    std::string m_image;
};

} // namespace ui
