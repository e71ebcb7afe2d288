// Any bytes as lyrics: parsing in one pass gives the same result as the rules applied to one mark
// after the other.
#include "fuzz/expect.h"
#include "lyrics/timedlyrics.h"
#include "tests/lyrics/plainparse.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    fuzz::Expect(tests::ParsedBy(tests::ParseMarks, text) ==
                 tests::ParsedBy(tests::PlainParse, text));
    return 0;
}
