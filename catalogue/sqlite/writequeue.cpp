#include "catalogue/sqlite/writequeue.h"

#include <utility>

namespace catalogue
{

WriteQueue::WriteQueue(std::string path) : m_place(std::move(path)) {}

bool WriteQueue::IsAnotherWaiting()
{
    return m_place.Open() && m_place.IsLockedByAnother();
}

bool WriteQueue::TryEnter()
{
    return !m_place.Open() || m_place.TryLock();
}

void WriteQueue::Leave()
{
    m_place.Unlock();
}

} // namespace catalogue
