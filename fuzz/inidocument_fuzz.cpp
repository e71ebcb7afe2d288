// Any bytes as a settings file: its lines survive, and a value of any bytes that is set in it is
// read back, from it and from the text that it writes.
#include "platform/posix/inidocument.h"

#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    const std::string_view section = input.substr(0, size / 8);
    const std::string_view key = input.substr(size / 8, size / 8);
    const std::string_view value = input.substr(size / 4, size / 4);
    platform::posix::IniDocument document(input.substr(size / 2));
    document.Set(section, key, value);
    const std::string text = document.Text();
    platform::posix::IniDocument again(text);
    if (document.Find(section, key) != value || again.Find(section, key) != value)
        std::abort();
    if (again.Text() != text)
        std::abort();
    again.Remove(section, key);
    if (again.Find(section, key))
        std::abort();
    return 0;
}
