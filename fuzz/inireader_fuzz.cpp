// Any bytes as a language file: a value is a part of the text after its key, and a key that is
// added before everything else is the one that is found.
#include "fuzz/expect.h"
#include "platform/inireader.h"

#include <string>
#include <string_view>

using fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    if (const auto value = platform::FindIniValue(platform::ParseIni(text), "Menus", "File")) {
        const char *const begin = value->data();
        Expect(begin >= text.data() && begin + value->size() <= text.data() + text.size());
        Expect(value->find_first_of("\r\n") == std::string_view::npos);
    }
    std::string before = "[Menus]\nFile=First\n";
    before.append(text);
    Expect(platform::FindIniValue(platform::ParseIni(before), "menus", "FILE") == "First");
    return 0;
}
