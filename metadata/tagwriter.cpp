#include "metadata/tagwriter.h"

#include "metadata/filepass.h"
#include "metadata/frameedit.h"
#include "metadata/id3v1.h"
#include "metadata/mp3info.h"
#include "metadata/songcopy.h"
#include "metadata/tagframes.h"
#include "metadata/tagtext.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/endrequest.h"
#include "platform/machine.h"
#include "runtime/error.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "shell/apppath.h"
#include "shell/globals.h"
#include "shell/progress.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <new>
#include <optional>

namespace metadata
{

namespace
{

constexpr std::int64_t kTagHeaderBytes = 10;
constexpr std::int64_t kPollMs = 10;
constexpr std::int64_t kLongestWaitMs = 3000; // a wait for the next second takes at most 2000
constexpr std::string_view kBackupFolder = "Backup";
constexpr std::string_view kCopyEnding = ".bck";
constexpr std::string_view kChanged =
    " was changed by another program after its tags were read. It is left as it is now; read its "
    "tags again and repeat the change.";
constexpr std::string_view kClaimsTooMuch =
    " has a tag that says that it is longer than the file. Where its sound begins is not known; it "
    "is left as it is.";
constexpr std::string_view kEditedTwice =
    " is being edited by another program at the same time. This change was not written; read its "
    "tags again and repeat the change.";

// The result of the last call.
SaveResult &TheResult()
{
    static SaveResult result = SaveResult::Unchanged;
    return result;
}

// One call of SaveTag.
struct Edit {
    ID3v1Tag &id3v1;
    ID3v2Tag &id3v2;
    const ID3v2Tag &oldID3v2;
    const std::string &fileName;
    bool writeID3v1;
    bool writeID3v2;
    ui::Label *label;
    RawTags raw;                       // the tags before the edit: copied before events can run
    std::string realPath;              // the file that the links lead to
    std::string image;                 // the new ID3v1 tag, empty without
    std::string tag;                   // the new ID3v2 tag, empty without
    std::string copyPath;              // of the ".bck" file
    std::optional<SongCopy> copy = {}; // the file at copyPath, which no other edit can replace
    // An edit by frames: the new ID3v2 tag, and the values for the rows.
    std::optional<unicode::TagPlan> plan = {};
    ID3v2Tag fields = {};
};

void Check(int reason)
{
    if (reason != 0)
        throw runtime::FileError(reason);
}

void ShowBox(std::string_view words)
{
    platform::TheDesktop().MessageBox(words);
}

bool MakeBackupFolder()
{
    const int reason = platform::TheFiles().MakeFolder(shell::AppFile(kBackupFolder));
    const std::string folder = shell::AppFile(kBackupFolder);
    const int flushed = reason == 0 ? platform::TheFiles().FlushFolderOf(folder) : 0;
    const bool there = flushed == 0 && (reason == 0 || reason == EEXIST);
    if (!there)
        ShowBox(runtime::FileError(reason != 0 ? reason : flushed, folder).description);
    return there;
}

// Runs one step. After kPathNotFound the folder of backups is created and the step runs again,
// once. kFileNotFound is ignored. Any other failure is reported in a box, with `what` and ": "
// before it if that is not empty.
// Returns: whether the step succeeded.
template <class Statement>
bool Run(const Statement &statement, const std::string &what = {})
{
    const auto report = [&what](const std::string &words) {
        ShowBox(what.empty() ? words : runtime::ShownText(what) + ": " + words);
    };
    for (bool again = false;; again = true) {
        try {
            statement();
            return true;
        } catch (const runtime::RuntimeError &error) {
            if (error.number == runtime::kFileNotFound)
                return false;
            if (error.number != runtime::kPathNotFound || again) {
                report(error.description);
                return false;
            }
            if (!MakeBackupFolder())
                return false;
        } catch (const std::bad_alloc &) {
            report(runtime::DescribeError(runtime::kOutOfMemory));
            return false;
        }
    }
}

// --- the old tags ----------------------------------------------------------------------------

bool SameTexts(const ID3v2Tag &first, const ID3v2Tag &second)
{
    return first.Title == second.Title && first.Artist == second.Artist &&
           first.Album == second.Album && first.Year == second.Year &&
           first.Comment == second.Comment && first.Genre == second.Genre &&
           first.Track == second.Track && first.Lyrics == second.Lyrics &&
           first.kind == second.kind;
}

// The metadata module has the tags of another file: reads this file again. It must not have changed
// since it was last read. When too many other files were read in between to know that, its tags
// must be equal to those that the caller has read.
bool ReadAgain(Edit &edit)
{
    const auto seen = LastSeen(edit.fileName);
    const SongInfo info = ReadSongInfo(edit.fileName);
    edit.raw = CopyRawTags();
    return seen ? *seen == edit.raw.file : SameTexts(info.id3v2, edit.oldID3v2);
}

void ReportChanged(const Edit &edit)
{
    ShowBox("\"" + runtime::ShownText(edit.fileName) + "\"" + std::string(kChanged));
}

// Returns: whether the file is still the one of the raw tags. Otherwise a box has reported it.
bool StillFits(const Edit &edit)
{
    platform::FileIdentity now;
    if (const int reason = platform::TheFiles().Identify(edit.fileName, now); reason != 0)
        ShowBox(runtime::FileError(reason, edit.fileName).description);
    else if (now == edit.raw.file)
        return true;
    else
        ReportChanged(edit);
    return false;
}

// Makes sure that the raw tags are those that the file has now. Otherwise a box reports the reason.
bool PrepareRawTags(Edit &edit)
{
    const bool own = edit.raw.file.path == edit.fileName &&
                     edit.raw.bytes->readsUnicode == shell::TheGlobals().UnicodeTags;
    const bool asRead = own || ReadAgain(edit);
    if (edit.raw.failure != 0) {
        ShowBox(runtime::FileError(edit.raw.failure, edit.fileName).description);
        return false;
    }
    if (asRead)
        return StillFits(edit) &&
               Run([&] { Check(platform::TheFiles().RealPath(edit.fileName, edit.realPath)); },
                   edit.fileName);
    ReportChanged(edit);
    return false;
}

// --- the new tags ----------------------------------------------------------------------------

// BuildTags for an edit by frames.
std::optional<bool> BuildByFrames(Edit &edit)
{
    if (edit.writeID3v1) {
        shell::ShowProgress("Creating the ID3v1 Tag", edit.label);
        edit.image = PlanImage(edit.raw, edit.id3v1);
    }
    shell::ShowProgress("Creating the ID3v2 Tag", edit.label);
    const auto plan = [&] { edit.plan = PlanFrames(edit.raw, edit.id3v2, edit.writeID3v2); };
    if (!Run(plan, edit.fileName))
        return std::nullopt;
    edit.fields = FieldsForRows(edit.writeID3v1 ? &edit.id3v1 : nullptr,
                                edit.writeID3v2 ? &edit.id3v2 : nullptr, *edit.plan);
    if (edit.plan->isChanged && edit.plan->claimsTooMuch) {
        ShowBox("\"" + runtime::ShownText(edit.fileName) + "\"" + std::string(kClaimsTooMuch));
        return std::nullopt;
    }
    return false;
}

// Fills `image` and `tag`. Returns: whether a field was emptied; nullopt when that failed.
std::optional<bool> BuildTags(Edit &edit)
{
    if (shell::TheGlobals().UnicodeTags)
        return BuildByFrames(edit);
    if (edit.writeID3v1) {
        shell::ShowProgress("Creating the ID3v1 Tag", edit.label);
        edit.image = BuildID3v1Tag(edit.id3v1);
    }
    bool removed = false;
    if (!edit.writeID3v2)
        return removed;
    shell::ShowProgress("Creating the ID3v2 Tag", edit.label);
    const bool built = Run(
        [&] {
            std::string body(edit.raw.body);
            removed = RemoveEmptied(body, edit.oldID3v2, edit.id3v2, edit.raw.majorVersion);
            edit.tag = BuildID3v2Tag(std::move(body), edit.id3v2, edit.raw.majorVersion);
        },
        edit.fileName);
    return built ? std::optional(removed) : std::nullopt;
}

bool IsID3v2Unchanged(const Edit &edit)
{
    if (edit.plan)
        return !edit.plan->isChanged;
    const std::string_view tag = edit.tag;
    return tag.substr(std::min<std::size_t>(tag.size(), kTagHeaderBytes)) == edit.raw.body;
}

// When the file has no ID3v1 tag, the raw tags contain that of an earlier file.
bool IsImageUnchanged(const Edit &edit)
{
    if (edit.plan && !edit.raw.fileHasID3v1)
        return edit.image.empty();
    return edit.image == edit.raw.id3v1Image;
}

// When only the ID3v1 tag changes: the whole song with another image at its end. When the song has
// no ID3v1 tag (the raw image is then that of an earlier file), the new one follows its last byte.
NewSong WithOtherImage(const Edit &edit)
{
    const auto oldImage = edit.raw.fileHasID3v1 ? static_cast<std::int64_t>(kID3v1Bytes) : 0;
    return {{}, 0, edit.raw.file.sizeBytes - oldImage, edit.image};
}

// In all other cases: the new tags and the audio between them. The 10 bytes of the old tag's header
// are subtracted also when there was no tag: the known loss that the header describes.
NewSong WithOtherTags(const Edit &edit)
{
    if (const auto &plan = edit.plan) // the plan has exact positions
        return {plan->tag, plan->audioOffset, plan->audioEnd - plan->audioOffset, edit.image};
    const auto oldImage = edit.raw.fileHasID3v1 ? static_cast<std::int64_t>(kID3v1Bytes) : 0;
    const auto oldBody = static_cast<std::int64_t>(edit.raw.body.size());
    const std::int64_t audioBytes = edit.raw.file.sizeBytes - oldImage - oldBody - kTagHeaderBytes;
    return {edit.tag, oldBody > 0 ? oldBody + kTagHeaderBytes : 0, audioBytes, edit.image};
}

// --- the steps -------------------------------------------------------------------------------

// Whether the same call may succeed later by itself.
bool IsTransient(int reason)
{
    return reason == EBUSY || reason == ETXTBSY || reason == EAGAIN || reason == EMFILE ||
           reason == ENFILE;
}

// Waits until the file can be opened, can never be opened, or the program is to end.
void WaitUntilReadable(const std::string &path)
{
    for (;;) {
        platform::FileIdentity identity;
        const int handle = platform::TheFiles().OpenToRead(path, identity);
        if (handle >= 0)
            platform::TheFiles().Close(handle);
        platform::TheDesktop().DoEvents();
        if (!IsTransient(-handle) || platform::IsEndRequested())
            return;
        platform::TheMachine().clock->Sleep(kPollMs);
    }
}

void BackUp(const Edit &edit)
{
    shell::ShowProgress("Backing-Up the MP3", edit.label);
    const std::string backup =
        runtime::JoinPath(shell::AppFile(kBackupFolder), runtime::GetFileName(edit.fileName));
    if (Run([&] { CopySong(edit.realPath, backup); }, "Backup of " + edit.fileName))
        WaitUntilReadable(backup);
}

// Waits until the next whole second is over. The wait also ends at midnight, when the clock is set
// back, and when the clock stops.
void WaitForNextSecond()
{
    platform::Clock &clock = *platform::TheMachine().clock;
    const double start = clock.SecondsOfDay();
    const double end = std::floor(start) + 1;
    const std::int64_t startMs = clock.SteadyMs();
    for (double now = start; now >= start && now <= end; now = clock.SecondsOfDay()) {
        platform::TheDesktop().DoEvents();
        clock.Sleep(kPollMs);
        if (clock.SteadyMs() - startMs > kLongestWaitMs)
            return;
    }
}

void ReportEditedTwice(const Edit &edit)
{
    ShowBox("\"" + runtime::ShownText(edit.fileName) + "\"" + std::string(kEditedTwice));
}

// Writes the new version into the ".bck" file. Returns: whether it was written; nullopt when the
// song has changed since it was read or another edit of it is running: a box has reported it.
std::optional<bool> WriteCopy(Edit &edit)
{
    shell::ShowProgress("Processing the MP3", edit.label);
    CloseAllFiles();
    const bool shortWay = IsID3v2Unchanged(edit) && (edit.plan || !edit.image.empty());
    if (!shortWay) {
        shell::ShowProgress("Reading the whole MP3 file", edit.label);
        shell::ShowProgress("Writing the new MP3 file", edit.label);
    }
    if (!StillFits(edit))
        return std::nullopt;
    const NewSong content = shortWay ? WithOtherImage(edit) : WithOtherTags(edit);
    const bool done = Run([&] { edit.copy = WriteNewSong(edit.realPath, content, edit.copyPath); },
                          edit.fileName);
    if (done && !edit.copy) {
        ReportEditedTwice(edit);
        return std::nullopt;
    }
    return done;
}

const ID3v2Tag &FieldsOf(const Edit &edit)
{
    return edit.plan ? edit.fields : edit.id3v2;
}

// Returns: false when that failed.
bool UpdateCatalogue(const Edit &edit)
{
    shell::ShowProgress("Updating the Database information", edit.label);
    const auto &update = TheTagWriterHooks().updateCatalogue;
    return !update || Run([&] { update(FieldsOf(edit), edit.fileName); });
}

// Updates the rows a second time, because the song has its new tags only now.
void SettleCatalogue(const Edit &edit)
{
    if (const auto &settle = TheTagWriterHooks().settleCatalogue)
        Run([&] { settle(FieldsOf(edit), edit.fileName); });
}

// Whether the ".bck" file is the one of this edit. Another program that ignores our lock may have
// put its own there.
bool IsOwnCopy(const Edit &edit)
{
    platform::FileIdentity now;
    return platform::TheFiles().Identify(edit.copyPath, now) == 0 &&
           now.device == edit.copy->Identity().device && now.inode == edit.copy->Identity().inode;
}

// Gives the copy the song's name, which replaces the song in one step: there is no moment without a
// song. While another program uses the song in a way that prevents this, it is tried again, until
// the program is to end.
bool PutInPlace(const Edit &edit)
{
    for (;;) {
        if (!StillFits(edit))
            return false;
        if (!IsOwnCopy(edit)) {
            ReportEditedTwice(edit);
            return false;
        }
        const int reason = platform::TheFiles().Rename(edit.copyPath, edit.realPath);
        if (!IsTransient(reason) || platform::IsEndRequested()) {
            TheResult() = reason == 0 ? SaveResult::Written : SaveResult::Failed;
            Run(
                [&] {
                    Check(reason);
                    Check(platform::TheFiles().FlushFolderOf(edit.realPath));
                },
                edit.fileName);
            platform::TheDesktop().DoEvents();
            return true;
        }
        platform::TheDesktop().DoEvents();
        platform::TheMachine().clock->Sleep(kPollMs);
    }
}

// Makes the player release the song, and replaces the song by the copy.
bool ReplaceSong(const Edit &edit, bool isCatalogued)
{
    const TagWriterHooks &hooks = TheTagWriterHooks();
    std::string current;
    std::int32_t state = 0;
    std::int32_t position = 0;
    if (hooks.releasePlayingFile)
        Run([&] { current = hooks.releasePlayingFile(edit.fileName, state, position); });
    WaitForNextSecond();
    const bool replaced = PutInPlace(edit);
    if (isCatalogued && TheResult() == SaveResult::Written)
        SettleCatalogue(edit);
    if (hooks.restorePlayingFile)
        Run([&] { hooks.restorePlayingFile(current, edit.fileName, state, position); });
    platform::FileIdentity song;
    if (IsOwnCopy(edit) && platform::TheFiles().Identify(edit.realPath, song) == 0)
        Run([&] { Check(platform::TheFiles().Delete(edit.copyPath)); }, edit.copyPath);
    return replaced;
}

// Returns: whether the song was to be rewritten.
bool Rewrite(Edit &edit)
{
    TheResult() = SaveResult::Refused;
    if (!PrepareRawTags(edit))
        return false;
    TheResult() = SaveResult::Failed;
    const auto removed = BuildTags(edit);
    if (!removed)
        return false;
    TheResult() = SaveResult::Unchanged;
    if (!*removed && IsImageUnchanged(edit) && IsID3v2Unchanged(edit))
        return false;
    TheResult() = SaveResult::Declined;
    if (edit.plan && !MayLoseFrames(*edit.plan))
        return false;
    TheResult() = SaveResult::Refused;
    if (shell::TheGlobals().BackUpFiles)
        BackUp(edit);
    edit.copyPath = edit.realPath + std::string(kCopyEnding);
    const std::optional<bool> written = WriteCopy(edit);
    if (!written)
        return false;
    const bool isCatalogued = shell::TheGlobals().UpdateDBAfterEditing && UpdateCatalogue(edit);
    if (*written)
        return ReplaceSong(edit, isCatalogued);
    TheResult() = SaveResult::Failed;
    return true;
}

} // namespace

bool SaveTag(ID3v1Tag &ID3v1, ID3v2Tag &ID3v2, const ID3v1Tag & /*not used*/,
             const ID3v2Tag &OldID3v2, const std::string &FileName, bool WriteID3v1,
             bool WriteID3v2, ui::Label *ProgressLabel)
{
    // The setting may have been changed since the record was made.
    ChangeKind(ID3v2, KindInUse());
    Edit edit{ID3v1,         ID3v2,         OldID3v2, FileName, WriteID3v1, WriteID3v2,
              ProgressLabel, CopyRawTags(), {},       {},       {},         {}};
    platform::TheDesktop().SetPointer(platform::Pointer::Hourglass);
    platform::TheDesktop().DoEvents();
    const bool result = Rewrite(edit);
    platform::TheDesktop().SetPointer(platform::Pointer::Normal);
    platform::TheDesktop().DoEvents();
    return result;
}

SaveResult LastSaveResult()
{
    return TheResult();
}

TagWriterHooks &TheTagWriterHooks()
{
    static TagWriterHooks hooks;
    return hooks;
}

} // namespace metadata
