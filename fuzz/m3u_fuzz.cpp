// Any bytes as a playlist: what is prepared has a head and closed lines, preparing it again changes
// nothing, and each line of a parsed list gives one entry, whose path is a piece of the list.
#include "fuzz/expect.h"
#include "playlists/m3u.h"
#include "runtime/error.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace
{

using fuzz::Expect;

void CheckEntries(const std::string &text, const std::string &result)
{
    const auto entries = playlists::EntriesOfM3U(result);
    const auto lines = static_cast<std::size_t>(std::count(result.begin(), result.end(), '\n'));
    Expect(entries.size() <= lines);
    std::string clean(text);
    std::erase(clean, '\0');
    for (const playlists::M3UEntry &entry : entries) {
        // "%" at the end of a name counts as a part of the separator, and the path then begins with
        // as many "%".
        const std::size_t begin = std::min(entry.path.find_first_not_of('%'), entry.path.size());
        Expect(clean.find(entry.path.substr(begin)) != std::string::npos);
        Expect(playlists::EntryPath(entry.path, "/lists/", "C:").ends_with(entry.path));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char *>(data), size);
    const std::string prepared = playlists::PrepareM3UText(bytes);
    Expect(prepared.empty() || (prepared.starts_with("#EXTM3U\r\n") && prepared.ends_with("\r\n")));
    Expect(playlists::PrepareM3UText(prepared) == prepared);
    for (const std::string &whole : {prepared, std::string(bytes)}) {
        std::string text = whole, result = "before";
        try {
            playlists::ParseM3UText(text, result);
            CheckEntries(text, result);
        } catch (const runtime::RuntimeError &error) {
            Expect(error.number == runtime::kInvalidCall && result == "before");
        }
    }
    return 0;
}
