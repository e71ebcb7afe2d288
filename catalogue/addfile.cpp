#include "catalogue/addfile.h"

#include "catalogue/adoclass.h"
#include "catalogue/edittags.h"
#include "catalogue/rowgroups.h"
#include "catalogue/sql/statementparams.h"
#include "metadata/genres.h"
#include "metadata/mp3info.h"
#include "platform/drives.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/text.h"
#include "shell/progress.h"

#include <algorithm>
#include <functional>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

namespace catalogue
{

namespace
{

// The marker of the statement that carries tag texts, so that a "?" in a tag goes in unharmed. A
// value that holds this character takes the later ones into itself.
constexpr std::string_view kTagMarker = "¹";

// The columns of a row that the tag gives, in their order: Title, Artist, ..., Lyrics.
constexpr std::size_t kTagColumns = 7;
constexpr std::size_t kArtistColumn = 1;
constexpr int kDuplicatedColumn = 9;

// The statement with the path in its text, for values that hold the marker.
std::string InsertStatement(const std::string &path)
{
    return "INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, '" + runtime::Replace(path, "'", "''") +
           "', ¹, 0)";
}

// The same statement with each value in its place.
Statement BoundInsert(const std::string &path, std::vector<Value> values, std::string label)
{
    constexpr std::string_view kWords = "INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, ¹, ¹, 0)";
    static const Statement places =
        SubstituteParams(kWords, std::vector<Value>(kTagColumns + 2), kTagMarker);
    values.emplace_back(path);
    values.emplace_back(std::move(label));
    Statement statement = places;
    for (std::size_t i = 0; i < values.size(); ++i)
        statement.values[i].value = std::move(values[i]);
    return statement;
}

// One call of AddOrUpdateMP3.
struct Addition {
    const std::string &path;
    std::string &reason;
    std::int16_t result = kFailed;
    metadata::ID3v2Tag tag;
};

// The trap: a run-time failure in `step` makes the result kFailed, and the next step goes on. So a
// failure ahead of the steps that set the result can still end in kAdded or kUpdated.
template <class Step>
void Guarded(Addition &addition, const Step &step)
{
    try {
        step();
    } catch (const runtime::RuntimeError &) {
        addition.result = kFailed;
    }
}

// The row is written all the same, with empty values; the lyrics are the only text left alone.
void BlankTag(Addition &addition)
{
    addition.result = kUntagged;
    addition.reason = "No ID3's tags were found on '" + runtime::ShownText(addition.path) + "'\r";
    metadata::ID3v2Tag &tag = addition.tag;
    for (std::string *text :
         {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &tag.Genre, &tag.Header})
        text->clear();
    tag.Track = 0;
}

// Reads the file's tags into the common form. False when it is no readable file: the reason then
// has the system's words.
bool ReadTags(Addition &addition)
{
    metadata::ID3v1Tag oldTag;
    metadata::MPEGHeader header;
    bool hasID3v1 = false;
    bool hasID3v2 = false;
    metadata::GetMP3Info(addition.path, oldTag, addition.tag, header, hasID3v1, hasID3v2, false);
    if (const int failure = metadata::LastReadFailure(); failure != 0) {
        addition.result = kFailed;
        addition.reason = runtime::FileError(failure).description + "\r";
        return false;
    }
    if (hasID3v1 && !hasID3v2)
        CopyTag(oldTag, addition.tag);
    else if (!hasID3v1 && !hasID3v2)
        BlankTag(addition);
    return true;
}

// The last label that was asked for. Within a group of rows, which is some 100 ms, the files of a
// device all have the same one.
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

// The label of the disk that holds the file, so that the user can be asked for it later; empty on a
// fixed disk.
std::string AskForLabel(const std::string &path)
{
    platform::Drives &drives = *platform::TheMachine().drives;
    const std::string drive = drives.DriveOf(path);
    if (drives.TypeOf(drive) == platform::DriveType::Fixed)
        return {};
    return drives.LabelOf(drive);
}

std::string DiskLabel(const std::string &path, std::uint64_t groupNo)
{
    State &last = TheState();
    const std::uint64_t device = metadata::RawTagsFile().device;
    if (last.groupNo == groupNo && last.device == device && groupNo != 0 && device != 0)
        return last.label;
    last.groupNo = 0; // no label is kept of a question that fails
    last.label = AskForLabel(path);
    last.device = device;
    last.groupNo = groupNo;
    return last.label;
}

// The reason of a file whose row was written and then lost, with the words of the failure.
std::string LostRowReason(const std::string &lost)
{
    return "Error: " + lost + "\r";
}

// Runs the statement of a step; true when it succeeded. Nothing is written any more when the
// program was ended in an event handler while the step waited for another process.
bool RunStatement(ADOclass &access, const std::string &statement, StatementKind kind,
                  std::vector<Value> values, const Marker &marker)
{
    if (DataAccess == nullptr)
        return false;
    access.ExecuteSQL(statement, kind, Params(std::move(values)), marker);
    return access.Succeeded;
}

bool HoldsMarker(const std::vector<Value> &values)
{
    return std::any_of(values.begin(), values.end(), [](const Value &value) {
        return std::get<std::string>(value).find(kTagMarker) != std::string::npos;
    });
}

// Inserts the row of `path`. Where a value holds the marker, the later ones land in the wrong
// places; the row is then brought to its true values before anyone can see it.
void InsertRow(ADOclass &access, const std::string &path, std::vector<Value> values,
               std::string label)
{
    if (!HoldsMarker(values)) {
        if (DataAccess != nullptr)
            access.ExecuteSQL(BoundInsert(path, std::move(values), std::move(label)), kInsert);
        return;
    }
    std::vector<Value> inserted = values;
    inserted.emplace_back(std::move(label));
    JointWrites writes;
    if (!RunStatement(access, InsertStatement(path), kDetect, std::move(inserted),
                      {kTagMarker, LeftOver::IsEmpty}))
        return;
    values.emplace_back(path);
    if (RunStatement(access, "Edit1", kStoredUpdate, std::move(values), "?"))
        writes.Keep();
}

// The genre goes in by its name.
void AddRow(ADOclass &access, Addition &addition, std::uint64_t groupNo)
{
    if (addition.result != kUntagged)
        addition.result = kAdded;
    std::string label;
    Guarded(addition, [&] { label = DiskLabel(addition.path, groupNo); });
    Guarded(addition, [&] {
        InsertRow(access, addition.path,
                  TagValues(addition.tag, metadata::GenreName(addition.tag.Genre)),
                  std::move(label));
    });
}

// Whether each row of the file holds what an update would give it. The artist of a duplicate is the
// user's, a null is no empty text.
bool IsUpToDate(Recordset &rows, const std::vector<Value> &values)
{
    if (rows.FieldCount() <= kDuplicatedColumn)
        return false;
    for (; !rows.AtEnd(); rows.MoveNext()) {
        const bool isDuplicate = rows.Text(kDuplicatedColumn) != "0";
        for (std::size_t i = 0; i < kTagColumns; ++i) {
            const int column = static_cast<int>(i);
            if (isDuplicate && i == kArtistColumn)
                continue;
            if (rows.IsNull(column) || rows.Text(column) != std::get<std::string>(values[i]))
                return false;
        }
    }
    return true;
}

// The genre goes in as it stands in the tag: a number from an ID3v1 tag stays a number. The file's
// duplicates keep their artist. How `Edit1` went has no influence on the result. Rows that would
// not change are left alone.
void UpdateRows(ADOclass &access, Addition &addition, Recordset &rows)
{
    addition.result = kUpdated;
    std::vector<Value> values = TagValues(addition.tag, addition.tag.Genre);
    bool isUpToDate = false;
    Guarded(addition, [&] { isUpToDate = IsUpToDate(rows, values); });
    if (isUpToDate)
        return;
    values.emplace_back(addition.path);
    Guarded(addition, [&] { RunStatement(access, "Edit1", kStoredUpdate, values, "?"); });
    values.erase(values.begin() + kArtistColumn);
    Guarded(addition, [&] { RunStatement(access, "Edit2", kStoredUpdate, values, "?"); });
}

// The rows of exactly this path; null where the look-up failed.
RecordsetPtr RowsOf(ADOclass &access, const std::string &path)
{
    std::vector<Value> values;
    values.reserve(2);
    values.emplace_back(path);
    values.emplace_back(std::string(kNoExclusion));
    const Outcome outcome =
        access.ExecuteSQL("SEL_ByPath", kStoredSelect, Params(std::move(values)), "?");
    return DataAccess != nullptr && access.Succeeded ? Records(outcome) : nullptr;
}

// What became of the look-up. Outdated: the file is no longer what was read, and nothing was
// written.
enum class LookUp { Failed, Unknown, Known, Outdated };

// As often as a file that changes all the time is read again.
constexpr int kMostReads = 5;

// Whether the file has changed since its tags were read.
bool HasChanged(const std::string &path)
{
    platform::FileIdentity now;
    const auto seen = metadata::LastSeen(path);
    return seen && platform::TheMachine().files->Identify(path, now) == 0 && now != *seen;
}

// The look-up of the path and its row, in one step for other processes. What undid it, if anything.
// `isLast`: the row is written also where the file has changed meanwhile.
std::string WriteInStep(Addition &addition, LookUp &found, bool isLast)
{
    if (DataAccess == nullptr)
        return {};
    RowStep step(*DataAccess);
    ADOclass &access = step.Access();
    RecordsetPtr rows;
    Guarded(addition, [&] {
        rows = RowsOf(access, addition.path);
        if (rows != nullptr)
            found = rows->AtEnd() ? LookUp::Unknown : LookUp::Known;
    });
    // A program that edits the song brings its row to the new tags when it gets the catalogue.
    // Where this program has had the catalogue since before it read the song, that comes behind
    // this step. Otherwise it may have come before, and the tags that were read may be the old
    // ones.
    if (found != LookUp::Failed && !isLast && step.HasBegun() && HasChanged(addition.path))
        found = LookUp::Outdated;
    // A look-up that failed says nothing: adding a row would make a second one of a known file.
    if (found == LookUp::Known)
        UpdateRows(access, addition, *rows);
    else if (found == LookUp::Unknown)
        AddRow(access, addition, step.GroupNo());
    if (DataAccess != nullptr) {
        DataAccess->Succeeded = access.Succeeded;
        DataAccess->ErrorMessage = access.ErrorMessage;
    }
    return step.Finish();
}

// To be called after the step, as it yields. A failure here changes nothing.
void ShowWhatWasDone(LookUp found)
{
    try {
        if (found == LookUp::Known)
            shell::ShowProgressText("Updating data...", "UpdatingData");
        else if (found == LookUp::Unknown)
            shell::ShowProgressText("Adding new MP3...", "AddingNewMP3");
    } catch (const runtime::RuntimeError &) {
        return; // the row is as it is
    }
}

using Done = std::function<void(AddOutcome)>;

// Calls `done` before any event can run.
std::int16_t AddOrUpdate(const std::string &path, std::string &reason, const Done &done)
{
    Addition addition{path, reason, kFailed, {}};
    LookUp found = LookUp::Outdated;
    std::string undone;
    const std::string before = reason;
    for (int reads = 1; found == LookUp::Outdated; ++reads) {
        addition.result = kFailed;
        addition.tag = {};
        reason = before;
        bool readable = true;
        Guarded(addition, [&] { readable = ReadTags(addition); });
        if (!readable) {
            done({kFailed, reason, false});
            return kFailed;
        }
        found = LookUp::Failed;
        undone = WriteInStep(addition, found, reads == kMostReads);
    }
    if (DataAccess == nullptr) { // the user has ended the program meanwhile
        addition.result = kFailed;
    } else if (!DataAccess->Succeeded) {
        addition.result = kFailed;
        reason = DataAccess->ErrorMessage;
    } else if (!undone.empty()) {
        addition.result = kFailed;
        reason = LostRowReason(undone);
    }
    done({addition.result, reason, addition.result == kFailed});
    ShowWhatWasDone(found);
    return addition.result;
}

std::int16_t AddWithinMemory(const std::string &path, std::string &reason, const Done &done)
{
    try {
        return AddOrUpdate(path, reason, done);
    } catch (const std::bad_alloc &) { // of a tag of hundreds of megabytes; the next file may fit
        reason = runtime::DescribeError(runtime::kOutOfMemory) + "\r";
        done({kFailed, reason, false});
        return kFailed;
    }
}

} // namespace

std::int16_t AddOrUpdateMP3(const std::string &path, std::string &reason)
{
    return AddWithinMemory(path, reason, [](const AddOutcome &) {});
}

void AddInGroup(const std::string &path, RowGroups &groups, std::function<void(AddOutcome)> settled)
{
    std::string reason;
    bool isTold = false;
    AddWithinMemory(path, reason, [&](AddOutcome outcome) {
        if (std::exchange(isTold, true))
            return;
        groups.WhenSettled(
            [settled = std::move(settled), outcome = std::move(outcome)](const std::string &lost) {
                const bool isLost = outcome.result != kFailed && !lost.empty();
                settled(isLost ? AddOutcome{kFailed, LostRowReason(lost), true} : outcome);
            });
    });
}

} // namespace catalogue
