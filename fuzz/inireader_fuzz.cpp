// Any bytes as a language file: a value is a part of the text after its key, and a key that is
// added before everything else is the one that is found.
#include "platform/inireader.h"
#include "runtime/text.h"

#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    if (const auto value = platform::FindIniValue(text, "Menus", "File")) {
        const char *const begin = value->data();
        if (begin < text.data() || begin + value->size() > text.data() + text.size())
            std::abort();
        if (value->find_first_of("\r\n") != std::string_view::npos)
            std::abort();
    }
    std::string before = "[Menus]\nFile=First\n";
    if (platform::FindIniValue(before.append(text), "menus", "FILE") != "First")
        std::abort();
    return 0;
}
