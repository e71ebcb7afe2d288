// The files port that the program works with.
#include "platform/disk/files.h"
#include "platform/posix/disk/readahead.h"

namespace platform
{

Files &SystemFiles()
{
    static posix::ReadAheadFiles files;
    return files;
}

} // namespace platform
