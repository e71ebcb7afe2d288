// app/singleinstance.h - makes sure that the program runs only once for each user and catalogue; a
// second start calls the first.
#pragma once

#include <QObject>
#include <functional>
#include <string>

class QLocalServer;

namespace app
{

class SingleInstance : public QObject
{
public:
    // `programFolder`: the folder of the catalogue. Errors: none; when the socket cannot be made,
    // each start counts as the first.
    explicit SingleInstance(const std::string &programFolder);
    ~SingleInstance() override;

    // True when this start is the first. It then listens, and `onCalled` runs for each later start.
    bool IsFirst() const { return m_first; }

    // Asks the first one to come to the front, and passes it the desktop's permission to do so.
    void CallFirst() const;

    std::function<void()> onCalled;

private:
    void Listen();
    void Answer();

    std::string m_path; // of the socket; its lock file has ".lock" after it
    int m_lock = -1;    // negative: it cannot be created
    bool m_first = true;
    QLocalServer *m_server = nullptr; // owned by this object; null when this start is not the first
};

} // namespace app
