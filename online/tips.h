// online/tips.h - the tips of the day: one a line of a text file in the program's folder.
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
    std::size_t current = 0;        // 0 = none picked yet

    std::minstd_rand random; // seeded by SeedTips
};

// Reads the file (a path, byte for byte), each line a tip, and picks one. A file that is valid
// UTF-8 is that, else the code page; CR LF and LF both end a line, and a last line end begins no
// further one. At most 1 MiB is read.
// Returns: false when `file` is empty, missing or cannot be read; `tips` is then as it was.
bool LoadTips(Tips &tips, const std::string &file);

// Picks a tip: the integer part of a random value in [0, 1) times the count, plus 1. The same one
// may come twice in a row.
void PickTip(Tips &tips);

// The current tip; empty without tips.
std::string_view CurrentTip(const Tips &tips);

// Seeds the generator from the clock port.
void SeedTips(Tips &tips);

} // namespace online
