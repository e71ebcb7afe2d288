#include "runtime/error.h"

#include "runtime/utf8.h"

#include <cerrno>
#include <system_error>

namespace runtime
{

std::string DescribeError(int number)
{
    switch (number) {
    case kInvalidCall:
        return "Invalid procedure call or argument";
    case kOverflow:
        return "Overflow";
    case kOutOfMemory:
        return "Out of memory";
    case kSubscriptOutOfRange:
        return "Subscript out of range";
    case kDivisionByZero:
        return "Division by zero";
    case kTypeMismatch:
        return "Type mismatch";
    case kBadFileNumber:
        return "Bad file name or number";
    case kFileNotFound:
        return "File not found";
    case kDeviceIoError:
        return "Device I/O error";
    case kFileExists:
        return "File already exists";
    case kDiskFull:
        return "Disk full";
    case kPermissionDenied:
        return "Permission denied";
    case kPathFileAccess:
        return "Path/File access error";
    case kPathNotFound:
        return "Path not found";
    case kObjectNotSet:
        return "Object variable or With block variable not set";
    case kNonModalOverModal:
        return "Can't show non-modal form when modal form is displayed";
    case kMemberNotFound:
        return "Object doesn't support this property or method";
    case kDuplicateKey:
        return "This key is already associated with an element of this collection";
    default:
        return "Application-defined or object-defined error";
    }
}

namespace
{

int NumberOfErrno(int errnoValue)
{
    switch (errnoValue) {
    case ENOENT:
        return kFileNotFound;
    case ENOTDIR:
        return kPathNotFound;
    case EACCES:
    case EPERM:
    case EISDIR:
    case EROFS:
        return kPathFileAccess;
    case EEXIST:
        return kFileExists;
    case ENOSPC:
    case EDQUOT:
        return kDiskFull;
    case ENOMEM:
        return kOutOfMemory;
    case EBADF:
    case EINVAL:
    case ENAMETOOLONG:
        return kBadFileNumber;
    default:
        return kDeviceIoError;
    }
}

} // namespace

RuntimeError FileError(int errnoValue)
{
    const int number = NumberOfErrno(errnoValue);
    return {number, number == kOutOfMemory ? DescribeError(number)
                                           : std::generic_category().message(errnoValue)};
}

RuntimeError FileError(int errnoValue, const std::string &path)
{
    const RuntimeError error = FileError(errnoValue);
    return {error.number, ShownText(path) + ": " + error.description};
}

} // namespace runtime
