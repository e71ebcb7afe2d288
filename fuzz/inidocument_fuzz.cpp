// Any bytes as a settings file: its lines survive, and a value of any bytes that is set in it is
// read back, from it and from the text that it writes.
#include "fuzz/expect.h"
#include "platform/inidocument.h"

#include <string>
#include <string_view>

using fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    const std::string_view section = input.substr(0, size / 8);
    const std::string_view key = input.substr(size / 8, size / 8);
    const std::string_view value = input.substr(size / 4, size / 4);
    platform::IniDocument document(input.substr(size / 2));
    document.Set(section, key, value);
    const std::string text = document.Text();
    platform::IniDocument again(text);
    Expect(document.Find(section, key) == value && again.Find(section, key) == value);
    Expect(again.Text() == text);
    again.Remove(section, key);
    Expect(!again.Find(section, key));
    return 0;
}
