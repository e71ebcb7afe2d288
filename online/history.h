// online/history.h - the version history's text and its mark-up. A title line begins with "[t]" and
// becomes "[b]" title "[/b]"; an entry gets a marker "<(" word ")>" in front, which the window
// turns into the picture of that name. Texts are UTF-8, lines end in CR. No state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace online
{

// The kinds of entry. The numbers belong to the calls that write the history.
enum HistoryKind : std::int32_t {
    kHistoryTitle = 0,
    kHistoryBugFix = 1,
    kHistoryNew = 2,
    kHistoryChanged = 4,
    kHistoryRemoved = 8,
};

// Adds one line to `text`. A title: a CR first when the text is not empty, which leaves a blank
// line, then the line from its fourth character on as a title, and a CR. Any other line: the marker
// of the kind (none for an unknown number), the line, a CR.
void AddHistoryLine(std::string &text, std::string_view line, std::int32_t kind);

// The first marker in `text`: the zero-based places of its "<(" and of its ")>", and what lies
// between. The word is empty when there is none.
struct HistoryMarker {
    std::size_t start = 0;
    std::size_t end = 0;
    std::string word;
};
HistoryMarker FindHistoryMarker(std::string_view text);

// What a rich text box holds: its plain text, the stretches in bold, and the pictures. A picture is
// one character of the text, U+FFFC (OBJECT REPLACEMENT CHARACTER).
struct RichText {
    struct Bold {
        std::size_t begin = 0, end = 0; // byte offsets into `text`
        bool operator==(const Bold &) const = default;
    };
    struct Picture {
        std::size_t at = 0; // byte offset of its character
        std::string key;    // "BugFix", "New", "Changed", "Removed"
        bool operator==(const Picture &) const = default;
    };
    std::string text; // lines end in CR
    std::vector<Bold> bold;
    std::vector<Picture> pictures;
};

// A plain text as a rich text file (RTF 1.5): "\", "{" and "}" escaped, CR as "\par", characters
// beyond ASCII as "\uN?". Back: the plain text and what is bold in it; other control words are
// passed over, and what is damaged ends the text.
std::string PlainToRTF(std::string_view plain);
RichText ReadRTF(std::string_view rtf);

// The rich text of a box with all "[/b]" turned into the end of bold, then all "[b]" into its
// begin.
std::string HistoryMarkupToRTF(std::string_view rtf);

// Puts the pictures in the place of their markers, kind by kind as they are found.
// `hasPicture`: whether there is a picture of that name.
// Errors: kSubscriptOutOfRange for a marker without a picture; those before it are replaced.
void ReplaceHistoryMarkers(RichText &box,
                           const std::function<bool(const std::string &)> &hasPicture);

// The history as written: 29 titles and 87 entries, one AddHistoryLine each.
std::string HistoryText();

} // namespace online
