#include "catalogue/addfile.h"

#include "catalogue/adoclass.h"
#include "catalogue/comparedrows.h"
#include "catalogue/disklabel.h"
#include "catalogue/edittags.h"
#include "catalogue/regeneration/knownsongs.h"
#include "catalogue/rowgroups.h"
#include "catalogue/sql/statementparams.h"
#include "metadata/mp3info.h"
#include "metadata/tagtext.h"
#include "platform/disk/files.h"
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

// The marker in the statement with the tags' texts: not "?", which a tag often contains. When a
// value itself contains this character, the later values replace it in that value.
constexpr std::string_view kTagMarker = "¹";

// The columns of a row that come from the tag, in this order: Title, Artist, ..., Lyrics.
constexpr std::size_t kTagColumns = kComparedColumns;
constexpr std::size_t kArtistColumn = kArtistOfCompared;
constexpr std::size_t kGenreColumn = 5;

// The statement with the path as part of its text: for values that contain the marker.
std::string InsertStatement(const std::string &path)
{
    return "INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, '" + runtime::Replace(path, "'", "''") +
           "', ¹, 0)";
}

// The same statement with all values bound to their places. It is made for each song, so that its
// memory is used again; valid until the next call.
const Statement &BoundInsert(const std::string &path, std::vector<Value> values, std::string label)
{
    constexpr std::string_view kWords = "INSERT INTO MP3s\rVALUES (¹, ¹, ¹, ¹, ¹, ¹, ¹, ¹, ¹, 0)";
    static Statement statement =
        SubstituteParams(kWords, std::vector<Value>(kTagColumns + 2), kTagMarker);
    for (std::size_t i = 0; i < values.size(); ++i)
        statement.values[i].value = std::move(values[i]);
    statement.values[kTagColumns].value = path;
    statement.values[kTagColumns + 1].value = std::move(label);
    return statement;
}

// The state of one call of AddOrUpdateMP3.
struct Addition {
    const std::string &path;
    std::string &reason;
    std::int16_t result = kFailed;
    metadata::ID3v2Tag tag;
    bool wantsKnown = false;
    std::optional<KnownSong> known{}; // no value: it cannot be known
    bool isRead = false;
};

// Runs `step`. A RuntimeError sets the result to kFailed and is caught, and the next step follows.
// So a call in which a step failed can still return kAdded or kUpdated.
template <class Step>
void Guarded(Addition &addition, const Step &step)
{
    try {
        step();
    } catch (const runtime::RuntimeError &) {
        addition.result = kFailed;
    }
}

std::string UntaggedReason(const std::string &path)
{
    return "No ID3's tags were found on '" + runtime::ShownText(path) + "'\r";
}

// Sets empty values for the row, which is written nevertheless; the lyrics are the only text that
// is kept.
void BlankTag(Addition &addition)
{
    addition.result = kUntagged;
    addition.reason = UntaggedReason(addition.path);
    metadata::ID3v2Tag &tag = addition.tag;
    for (std::string *text :
         {&tag.Title, &tag.Artist, &tag.Album, &tag.Year, &tag.Comment, &tag.Genre, &tag.Header})
        text->clear();
    tag.Track = 0;
}

// Reads the tags of the file. Returns: false when the file cannot be read; the reason then has the
// operating system's words.
bool ReadTags(Addition &addition)
{
    metadata::SongInfo song = metadata::ReadSongTags(addition.path);
    PutTagsTogether(song);
    addition.tag = std::move(song.id3v2);
    if (const int failure = metadata::LastReadFailure(); failure != 0) {
        addition.result = kFailed;
        addition.reason = runtime::FileError(failure).description + "\r";
        return false;
    }
    if (!song.hasID3v1 && !song.hasID3v2)
        BlankTag(addition);
    if (addition.wantsKnown && CanBeKnown(metadata::RawTagsFile(), metadata::RawTagsOpenedAtNs()))
        addition.known = {metadata::RawTagsFile(),
                          {song.hasID3v1, song.hasID3v2, metadata::HasTextsForFrames()},
                          addition.tag.kind == metadata::TextKind::Utf8,
                          {}};
    return true;
}

// The reason for a file whose row was written and then lost, with the words of the failure.
std::string LostRowReason(const std::string &lost)
{
    return "Error: " + lost + "\r";
}

// Runs the statement of a step. Returns: whether it succeeded. When an event handler has ended the
// program while the step waited for another process, nothing is written any more.
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

// Inserts the row of `path`. When a value contains the marker, the later values replace it there;
// the row is then updated with the right values before any other process can read it.
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

// Adds a row with the values of an update, but with the name of the genre: where that is another
// text, the next pass has to update the row.
void AddRow(ADOclass &access, Addition &addition, std::uint64_t groupNo, std::vector<Value> values)
{
    if (addition.result != kUntagged)
        addition.result = kAdded;
    std::string label;
    Guarded(addition, [&] { label = DiskLabel(addition.path, groupNo); });
    Guarded(addition, [&] {
        std::string genre = TagValue(metadata::GenreField(addition.tag), addition.tag.kind);
        if (genre != std::get<std::string>(values[kGenreColumn]))
            addition.known.reset();
        values[kGenreColumn] = std::move(genre);
        InsertRow(access, addition.path, std::move(values), std::move(label));
    });
}

// Whether the engine has compared the rows with the values of the file.
bool IsCompared(const Recordset &rows)
{
    return rows.FieldCount() == kIsSameField + 1;
}

// Whether each row of the file has the values that an update would write.
bool IsUpToDate(Recordset &rows)
{
    if (!IsCompared(rows))
        return false;
    for (rows.MoveFirst(); !rows.AtEnd(); rows.MoveNext())
        if (rows.Text(kIsSameField) != "1")
            return false;
    return true;
}

// Whether one of the rows is marked as a duplicate, or may be.
bool HasDuplicates(Recordset &rows)
{
    if (!IsCompared(rows))
        return true;
    for (rows.MoveFirst(); !rows.AtEnd(); rows.MoveNext())
        if (rows.Text(kIsDuplicateField) != "0")
            return true;
    return false;
}

// Writes the values to the rows. Rows marked as duplicates keep their artist. The result of `Edit1`
// does not change the result of the call. Rows that have the values already are not written:
// without a duplicate, a successful `Edit1` leaves nothing for `Edit2`.
void UpdateRows(ADOclass &access, Addition &addition, Recordset &rows, std::vector<Value> values)
{
    addition.result = kUpdated;
    bool isUpToDate = false;
    Guarded(addition, [&] { isUpToDate = IsUpToDate(rows); });
    if (isUpToDate)
        return;
    values.emplace_back(addition.path);
    bool isWritten = false;
    Guarded(addition, [&] {
        isWritten =
            RunStatement(access, "Edit1", kStoredUpdate, values, "?") && !HasDuplicates(rows);
    });
    if (isWritten)
        return;
    values.erase(values.begin() + kArtistColumn);
    Guarded(addition, [&] { RunStatement(access, "Edit2", kStoredUpdate, values, "?"); });
}

// The values of an update. The genre is as it is in the tag: the number of an ID3v1 tag stays a
// number, unless the texts of the record are UTF-8, where the genre is in words.
std::vector<Value> UpdateValues(const metadata::ID3v2Tag &tag)
{
    const bool inWords = tag.kind == metadata::TextKind::Utf8;
    return TagValues(tag, inWords ? metadata::GenreField(tag) : tag.Genre);
}

// The rows with exactly this path, compared with the values of an update or with their fingerprint;
// null when the look-up failed. The values are the same afterwards.
RecordsetPtr RowsOf(ADOclass &access, const std::string &path, std::vector<Value> &values)
{
    static const std::string name = "SEL_ByPath";
    static const Value noExclusion = std::string(kNoExclusion);
    values.insert(values.begin(), 2, Value());
    values[0] = path;
    values[1] = noExclusion;
    Params lent(std::move(values));
    const Outcome outcome = access.ExecuteSQL(name, kStoredSelect, lent, "?");
    values = std::move(std::get<std::vector<Value>>(lent));
    values.erase(values.begin(), values.begin() + 2);
    return DataAccess != nullptr && access.Succeeded ? Records(outcome) : nullptr;
}

// The result of the look-up. Outdated: the file has changed since it was read, and nothing was
// written.
enum class LookUp { Failed, Unknown, Known, Outdated };

// How often a file that keeps changing is read again.
constexpr int kMostReads = 5;

// Whether the file has changed since its tags were read.
bool HasChanged(const std::string &path)
{
    platform::FileIdentity now;
    const auto seen = metadata::LastSeen(path);
    return seen && platform::TheMachine().files->Identify(path, now) == 0 && now != *seen;
}

// What is known of a song that has been read: the values of an update are its texts. Rows that are
// marked as duplicates have to be looked at each time.
void TakeTexts(Addition &addition, const std::vector<Value> &values, Recordset &rows)
{
    if (addition.known)
        addition.known->texts = FingerprintOf(values);
    Guarded(addition, [&] {
        if (!rows.AtEnd() && HasDuplicates(rows))
            addition.known.reset();
    });
}

// Whether the rows of a file that was not read are those that reading it would leave; then the
// result is set.
//
// Nothing is written here, so there is no row of another program that could be overwritten with an
// older one. A program that edits a song writes first its file and then its row. When its row has
// been written already, it has other texts than those that are known, or the new tags have the same
// texts; when it has not, it will be written after this step. An edit of the file alone, by a
// program without a catalogue, is found by the next run; but not while this process waited for the
// lock, which may take long.
bool IsLeftAsItIs(Addition &addition, Recordset &rows, bool hasWaited)
{
    bool isSame = false;
    Guarded(addition, [&] { isSame = !rows.AtEnd() && IsUpToDate(rows) && !HasDuplicates(rows); });
    if (!isSame || (hasWaited && !platform::TheFiles().IsInState(addition.known->file)))
        return false;
    addition.result = kUpdated;
    if (const SongTags &tags = addition.known->tags; !tags.hasID3v1 && !tags.hasID3v2)
        addition.reason = UntaggedReason(addition.path);
    return true;
}

// Looks up the path and writes its row, as one step for other processes. Returns: the failure that
// undid the step, or an empty text. `isLast`: write the row even when the file has changed
// meanwhile.
std::string WriteInStep(Addition &addition, LookUp &found, bool isLast)
{
    if (DataAccess == nullptr)
        return {};
    RowStep step(*DataAccess);
    ADOclass &access = step.Access();
    RecordsetPtr rows; // none when the look-up fails
    std::vector<Value> values =
        addition.isRead ? UpdateValues(addition.tag) : ValuesOf(addition.known->texts);
    Guarded(addition, [&] {
        rows = RowsOf(access, addition.path, values);
        if (rows != nullptr)
            found = rows->AtEnd() ? LookUp::Unknown : LookUp::Known;
    });
    // Another program that edits the song updates its row when it gets the lock of the catalogue.
    // If this process has had the lock since before it read the song, that update comes after this
    // step. Otherwise it may have come before, and the tags that were read may be the old ones.
    const bool isOutdated = [&] {
        if (found == LookUp::Failed)
            return false;
        if (!addition.isRead)
            return !IsLeftAsItIs(addition, *rows, step.HasBegun());
        return !isLast && step.HasBegun() && HasChanged(addition.path);
    }();
    if (isOutdated)
        found = LookUp::Outdated;
    // After a failed look-up no row is added: the file may have one already.
    if (addition.isRead && found == LookUp::Known) {
        TakeTexts(addition, values, *rows);
        UpdateRows(access, addition, *rows, std::move(values));
    } else if (addition.isRead && found == LookUp::Unknown) {
        TakeTexts(addition, values, *rows);
        AddRow(access, addition, step.GroupNo(), std::move(values));
    }
    if (DataAccess != nullptr) {
        DataAccess->Succeeded = access.Succeeded;
        DataAccess->ErrorMessage = access.ErrorMessage;
    }
    return step.Finish();
}

// To be called after the step, because it yields. A failure here is ignored: the row is written
// already.
void ShowWhatWasDone(LookUp found)
{
    try {
        if (found == LookUp::Known)
            shell::ShowProgressText("Updating data...", "UpdatingData");
        else if (found == LookUp::Unknown)
            shell::ShowProgressText("Adding new MP3...", "AddingNewMP3");
    } catch (const runtime::RuntimeError &) {
        return; // the row was not changed
    }
}

using Done = std::function<void(AddOutcome)>;

// What is known of the file (AddInGroup), and whether it was read.
struct Knowledge {
    std::optional<KnownSong> &known;
    bool isRead = false;
};

// Calls `done` before any event runs. `knowledge`: null when nothing is known, nor wanted.
std::int16_t AddOrUpdate(const std::string &path, std::string &reason, const Done &done,
                         Knowledge *knowledge)
{
    Addition addition{path, reason, kFailed, {}, knowledge != nullptr};
    if (knowledge != nullptr)
        addition.known.swap(knowledge->known);
    LookUp found = LookUp::Outdated;
    std::string undone;
    const std::string before = reason;
    for (int reads = addition.known ? 0 : 1; found == LookUp::Outdated; ++reads) {
        addition.result = kFailed;
        addition.tag = {};
        reason = before;
        bool readable = true;
        addition.isRead = reads > 0;
        if (addition.isRead) {
            addition.known.reset();
            Guarded(addition, [&] { readable = ReadTags(addition); });
        }
        if (knowledge != nullptr)
            knowledge->isRead = addition.isRead;
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
    if (knowledge != nullptr && addition.result != kFailed)
        knowledge->known = std::move(addition.known);
    done({addition.result, reason, addition.result == kFailed});
    ShowWhatWasDone(found);
    return addition.result;
}

std::int16_t AddWithinMemory(const std::string &path, std::string &reason, const Done &done,
                             Knowledge *knowledge = nullptr)
{
    try {
        return AddOrUpdate(path, reason, done, knowledge);
    } catch (
        const std::bad_alloc &) { // a tag of hundreds of megabytes; the next file may be smaller
        reason = runtime::DescribeError(runtime::kOutOfMemory) + "\r";
        done({kFailed, reason, false});
        return kFailed;
    }
}

void AddSettled(const std::string &path, RowGroups &groups, std::function<void(AddOutcome)> settled,
                Knowledge *knowledge)
{
    std::string reason;
    bool isReported = false;
    const auto done = [&](AddOutcome outcome) {
        if (std::exchange(isReported, true))
            return;
        groups.WhenSettled(
            [settled = std::move(settled), outcome = std::move(outcome)](const std::string &lost) {
                const bool isLost = outcome.result != kFailed && !lost.empty();
                settled(isLost ? AddOutcome{kFailed, LostRowReason(lost), true} : outcome);
            });
    };
    AddWithinMemory(path, reason, std::ref(done), knowledge);
}

} // namespace

std::int16_t AddOrUpdateMP3(const std::string &path, std::string &reason)
{
    return AddWithinMemory(path, reason, [](const AddOutcome &) {});
}

void AddInGroup(const std::string &path, RowGroups &groups, std::function<void(AddOutcome)> settled)
{
    AddSettled(path, groups, std::move(settled), nullptr);
}

bool AddInGroup(const std::string &path, RowGroups &groups, std::function<void(AddOutcome)> settled,
                std::optional<KnownSong> &known)
{
    Knowledge knowledge{known};
    AddSettled(path, groups, std::move(settled), &knowledge);
    return knowledge.isRead;
}

} // namespace catalogue
