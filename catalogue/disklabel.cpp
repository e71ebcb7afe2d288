#include "catalogue/disklabel.h"

#include "metadata/mp3info.h"
#include "platform/disk/drives.h"
#include "platform/machine.h"

namespace catalogue
{

namespace
{

// The last answer of the drives port. While a group of rows is open, for about 40 ms, all files of
// a device get the same label.
struct State {
    std::uint64_t groupNo = 0;
    std::uint64_t device = 0;
    std::string label;
};

State &TheState()
{
    static State state;
    return state;
}

std::string AskForLabel(const std::string &path)
{
    platform::Drives &drives = *platform::TheMachine().drives;
    const std::string drive = drives.DriveOf(path);
    if (drives.TypeOf(drive) == platform::DriveType::Fixed)
        return {};
    return drives.LabelOf(drive);
}

} // namespace

std::string DiskLabel(const std::string &path, std::uint64_t groupNo)
{
    State &last = TheState();
    const std::uint64_t device = metadata::RawTagsFile().device;
    if (last.groupNo == groupNo && last.device == device && groupNo != 0 && device != 0)
        return last.label;
    last.groupNo = 0; // so that after an error of the port no label is kept
    last.label = AskForLabel(path);
    last.device = device;
    last.groupNo = groupNo;
    return last.label;
}

} // namespace catalogue
