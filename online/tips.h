// online/tips.h - the tips of the day: a text file in the program's folder with one tip in each
// line.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace online
{

inline constexpr std::string_view kTipsFile = "TIPOFDAY.TXT";

// The tips in the file's order, and the number of the current one, counted from 1.
struct Tips {
    std::vector<std::string> lines; // UTF-8
    std::size_t current = 0;        // one-based number of the current tip; 0 = none picked yet

    std::minstd_rand random; // seeded by SeedTips
};

// Reads the file (a path, byte for byte), one tip from each line, and picks one. The file is UTF-8
// when it is valid as such, else in the code page. CR LF and LF end a line; after the last line end
// there is no further tip. At most 1 MiB is read.
// Returns: false when `file` is empty, missing or cannot be read; `tips` is unchanged then.
bool LoadTips(Tips &tips, const std::string &file);

// Picks a tip at random: the integer part of a value in [0, 1) times the number of tips, plus 1. It
// may be the same tip again.
void PickTip(Tips &tips);

// The current tip; empty when there is none.
std::string_view CurrentTip(const Tips &tips);

// Seeds the generator from the clock port.
void SeedTips(Tips &tips);

} // namespace online
