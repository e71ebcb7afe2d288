// runtime/error.h - the one exception type that procedures throw: a number and a description.
#pragma once

#include <stdexcept>
#include <string>

namespace runtime
{

// The error numbers that the program throws or tests for, the same since its first version: message
// boxes show them, so do not renumber. DescribeError has their texts.
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

// The English description of `number`; "Application-defined or object-defined error" for an unknown
// one.
std::string DescribeError(int number);

// One operation failed. `what()` and `description` are plain UTF-8.
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

    const int number;              // one of ErrorNumber, or a number of the operating system
    const std::string description; // what a message box shows
};

// The error for a failed file operation. `errnoValue` (an errno of POSIX) becomes the ErrorNumber
// of the same meaning; the description is that of the operating system. Memory that is used up has
// the same number and words wherever that happens.
RuntimeError FileError(int errnoValue);

// The same, with `path` (as ShownText of runtime/utf8.h writes it) and ": " before the description.
RuntimeError FileError(int errnoValue, const std::string &path);

} // namespace runtime
