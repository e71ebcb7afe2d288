// online/history.h - the text of the version history and its mark-up. A line that begins with "[t]"
// is a title and becomes "[b]" title "[/b]"; an entry gets a marker "<(" word ")>" at its start,
// which the window replaces by the picture of that name. Texts are UTF-8, lines end in CR. No
// state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace online
{

// The kinds of entry; AddHistoryLine is called with these numbers.
enum HistoryKind : std::int32_t {
    kHistoryTitle = 0,
    kHistoryBugFix = 1,
    kHistoryNew = 2,
    kHistoryChanged = 4,
    kHistoryRemoved = 8,
};

// Adds one line to `text`. A title: a CR first when the text is not empty, which makes a blank
// line, then the line from its fourth character on as a title, and a CR. Any other line: the marker
// of its kind (none for an unknown number), the line, a CR.
void AddHistoryLine(std::string &text, std::string_view line, std::int32_t kind);

// The first marker in `text`: the zero-based positions of its "<(" and of its ")>", and the word
// between them, which is empty when there is no marker.
struct HistoryMarker {
    std::size_t start = 0;
    std::size_t end = 0;
    std::string word;
};
HistoryMarker FindHistoryMarker(std::string_view text);

// The contents of a rich text box: its plain text, which parts are bold, and the pictures. A
// picture is one character of the text, U+FFFC (OBJECT REPLACEMENT CHARACTER).
struct RichText {
    struct Bold {
        std::size_t begin = 0, end = 0; // byte offsets into `text`
        bool operator==(const Bold &) const = default;
    };
    struct Picture {
        std::size_t at = 0; // byte offset of the picture's character
        std::string key;    // "BugFix", "New", "Changed", "Removed"
        bool operator==(const Picture &) const = default;
    };
    std::string text; // lines end in CR
    std::vector<Bold> bold;
    std::vector<Picture> pictures;
};

// A plain text as a rich text file (RTF 1.5): "\", "{" and "}" escaped, CR as "\par", characters
// beyond ASCII as "\uN?". ReadRTF is the reverse: it returns the plain text and its bold parts;
// other control words are ignored, and the text ends where the file is damaged.
std::string PlainToRTF(std::string_view plain);
RichText ReadRTF(std::string_view rtf);

// The RTF of a box with each "[/b]" replaced by the end of bold, then each "[b]" by its beginning.
std::string HistoryMarkupToRTF(std::string_view rtf);

// Replaces the markers by their pictures, one kind after the other. `hasPicture` returns whether
// there is a picture of that name.
// Errors: kSubscriptOutOfRange for a marker without a picture; those before it have been replaced.
void ReplaceHistoryMarkers(RichText &box,
                           const std::function<bool(const std::string &)> &hasPicture);

// The whole history: 29 titles and 87 entries, one call of AddHistoryLine for each.
std::string HistoryText();

} // namespace online
