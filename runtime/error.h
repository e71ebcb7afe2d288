// runtime/error.h - the one exception type that procedures throw, with the runtime's numbers.
#pragma once

#include <stdexcept>
#include <string>

namespace runtime
{

// The error numbers that the program raises or tests for. The words are those of DescribeError.
enum ErrorNumber : int {
    kInvalidCall = 5,
    kOverflow = 6,
    kOutOfMemory = 7,
    kSubscriptOutOfRange = 9,
    kDivisionByZero = 11,
    kTypeMismatch = 13,
    kBadFileNumber = 52,
    kFileNotFound = 53,
    kDeviceIoError = 57,
    kFileExists = 58,
    kDiskFull = 61,
    kPermissionDenied = 70,
    kPathFileAccess = 75,
    kPathNotFound = 76,
    kObjectNotSet = 91,
    kNonModalOverModal = 401,
    kMemberNotFound = 438,
    kDuplicateKey = 457,
};

// The runtime's English words for `number`; "Application-defined or object-defined error" for a
// number that it does not know.
std::string DescribeError(int number);

// The failure of one operation. `what()` and `description` are UTF-8 and plain.
class RuntimeError : public std::runtime_error
{
public:
    explicit RuntimeError(int errorNumber) : RuntimeError(errorNumber, DescribeError(errorNumber))
    {
    }
    RuntimeError(int errorNumber, const std::string &words)
        : std::runtime_error(words), number(errorNumber), description(words)
    {
    }

    const int number;              // one of ErrorNumber, or a number of the platform
    const std::string description; // what a message box shows
};

// The error for a failed file operation: `errnoValue` (an errno of POSIX) becomes the runtime's
// number that means the same, with the operating system's own words as the description.
RuntimeError FileError(int errnoValue);

// The same with `path` (as ShownText, runtime/utf8.h, gives it) and ": " in front of the words.
RuntimeError FileError(int errnoValue, const std::string &path);

} // namespace runtime
