#include "runtime/hash.h"

#define XXH_INLINE_ALL // no library to load at the start of the program
#include <xxhash.h>

namespace runtime
{

Hash128 Hash128Of(std::string_view bytes)
{
    const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
    return {hash.low64, hash.high64};
}

Hash128 Hash128Of(std::initializer_list<std::string_view> pieces)
{
    XXH3_state_t state;
    XXH3_128bits_reset(&state);
    for (const std::string_view piece : pieces)
        XXH3_128bits_update(&state, piece.data(), piece.size());
    const XXH128_hash_t hash = XXH3_128bits_digest(&state);
    return {hash.low64, hash.high64};
}

} // namespace runtime
