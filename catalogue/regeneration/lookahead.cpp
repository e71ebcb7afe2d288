#include "catalogue/regeneration/lookahead.h"

#include "metadata/mp3info.h"
#include "runtime/error.h"
#include "runtime/paths.h"

namespace catalogue
{

namespace
{

constexpr std::size_t kFewestAhead = 96; // more than the files port has open at a time

// Announces files in their order; known ones in another way than the others.
class Announcement
{
public:
    explicit Announcement(const KnownSongs &known) : m_known(known) {}

    void Add(std::string path)
    {
        if (auto song = m_known.Find(path)) {
            AnnounceUnknown();
            m_states.push_back(std::move(song->file));
        } else {
            AnnounceKnown();
            m_paths.push_back(std::move(path));
        }
    }

    void AnnounceUnknown() { metadata::ExpectPasses(std::exchange(m_paths, {})); }

    void AnnounceKnown() { metadata::ExpectPassesUnlessInState(std::exchange(m_states, {})); }

private:
    const KnownSongs &m_known;
    std::vector<std::string> m_paths;             // of one of the two
    std::vector<platform::FileIdentity> m_states; // the other is empty
};

} // namespace

LookAhead::~LookAhead()
{
    metadata::ExpectNoPasses();
}

void LookAhead::Advance()
{
    ++m_passed;
    if (!metadata::PaysToExpectPasses() || (!m_hasStarted && !Start()))
        return;
    while (m_announced < m_passed + kFewestAhead && (ExpectFiles() || EnterNextFolder()))
        continue;
}

// Returns: false when the root cannot be read; the walk reports the error.
bool LookAhead::Start()
{
    m_hasStarted = true;
    try {
        m_box.SetRoot(m_root);
    } catch (const runtime::RuntimeError &) {
        return false;
    }
    m_levels.push_back({m_box.Path(), 0});
    return true;
}

// Announces the next files of the folder in the box, without those that the walk has reached
// already. Returns: false when there is no further file.
bool LookAhead::ExpectFiles()
{
    const std::vector<std::string> &files = m_box.Listing().files;
    if (m_levels.empty() || m_nextFile >= files.size())
        return false;
    Announcement announcement(m_known);
    std::size_t count = 0;
    for (; m_nextFile < files.size() && count < kFewestAhead; ++m_nextFile, ++m_announced)
        if (m_announced >= m_passed) {
            announcement.Add(runtime::JoinPath(m_box.Path(), files[m_nextFile]));
            ++count;
        }
    announcement.AnnounceUnknown();
    announcement.AnnounceKnown();
    return true;
}

// Moves to the next folder; one that cannot be read is skipped. Returns: false when there is none.
bool LookAhead::EnterNextFolder()
{
    while (!m_levels.empty()) {
        m_box.SetPath(m_levels.back().path); // its listing is kept
        const std::string entry = m_box.List(m_levels.back().nextFolder++);
        if (entry.empty()) {
            m_levels.pop_back();
            continue;
        }
        try {
            m_box.SetPath(entry);
        } catch (const runtime::RuntimeError &) {
            continue;
        }
        m_levels.push_back({entry, 0});
        m_nextFile = 0;
        return true;
    }
    return false;
}

} // namespace catalogue
