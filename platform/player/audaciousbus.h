// platform/player/audaciousbus.h - the connection to the player Audacious on the session's D-Bus:
// one connection, no second thread, and a limit to the wait of each call.
#pragma once

#include <systemd/sd-bus.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform::player
{

// A player that did not answer in time is "silent": it gets only one more question, without a
// limit, and is no longer silent when it answers that.
class AudaciousBus
{
public:
    // `answerMs`: the longest wait of a call.
    explicit AudaciousBus(std::int64_t answerMs);
    ~AudaciousBus();
    AudaciousBus(const AudaciousBus &) = delete;
    AudaciousBus &operator=(const AudaciousBus &) = delete;

    // Handles the messages that have arrived; connects when there is no connection. A player that
    // has just been found gets the time of one call for its first answer. A player that is starting
    // is not asked anything: a question that arrives too early would make it end.
    void Update();

    bool IsOwned() const { return !m_owner.empty(); } // a player has its name on the bus
    // A player that ends releases its name first and writes its list after that.
    bool IsEnding() const { return m_owner.empty() && !m_remoteOwner.empty(); }
    bool IsAnswering() const { return IsOwned() && !m_silent; }

    // A number that is different for each run of the player; 0 when there is none.
    std::uint32_t Run() const { return IsOwned() ? m_run : 0; }

    // Questions. Returns: nullopt when the player is silent or refuses. `argument` is passed to
    // methods that take a number.
    std::optional<std::string> AskText(const char *method,
                                       std::optional<std::uint32_t> argument = {});
    std::optional<std::uint32_t> AskUnsigned(const char *method);
    std::optional<std::int32_t> AskInt(const char *method,
                                       std::optional<std::uint32_t> argument = {});

    // Sends these questions at once, after an order to select the list that plays. The calls above
    // use their answers until the next order, until ForgetAnswers, or for the time of one call.
    // Does nothing when the player is silent.
    struct Question {
        const char *method;
        std::optional<std::uint32_t> argument;
    };
    void AskAhead(std::initializer_list<Question> questions);
    bool HasAskedAhead() const;
    void ForgetAnswers();

    // Orders are sent without waiting: the player carries them out in order, before it answers the
    // next question. They are still sent to a player that became silent a moment ago.
    void Order(const char *method);
    void Order(const char *method, std::uint32_t argument);
    void Order(const char *method, const std::string &argument);

    // Makes the player's methods refer to the list that it plays from, or to the list that it shows
    // when it is stopped. This is an order too; it is not sent when AskAhead has sent it already.
    void SelectPlayingList();

    // A question whose answer arrives with a later Update; `taken` is called with nullopt when
    // there is none. All open questions are dropped when the player ends.
    void AskTextLater(const char *method, std::uint32_t argument,
                      std::function<void(std::optional<std::string>)> taken);
    std::size_t Pending() const { return m_later.size(); }

private:
    struct Later; // a question of AskTextLater
    struct Ahead; // a question of AskAhead

    bool Connect();
    void Close();
    void Process(std::int64_t limitMs, const std::function<bool()> &done);
    void Probe();
    void SetOwner(const std::string &owner);
    bool MayBeAsked() const;
    sd_bus_message *Call(const char *method, std::optional<std::uint32_t> argument);
    Ahead *FindAhead(const char *method, std::optional<std::uint32_t> argument);
    sd_bus_message *AnswerAhead(const char *method, std::optional<std::uint32_t> argument);
    void FallSilent();
    bool BeginOrder();
    static int RemoteChanged(sd_bus_message *message, void *self, sd_bus_error *);
    static int RemoteAnswered(sd_bus_message *message, void *self, sd_bus_error *);
    static int OwnerChanged(sd_bus_message *message, void *self, sd_bus_error *);
    static int OwnerAnswered(sd_bus_message *message, void *self, sd_bus_error *);
    static int ProbeAnswered(sd_bus_message *message, void *self, sd_bus_error *);
    static int LaterAnswered(sd_bus_message *message, void *later, sd_bus_error *);
    static int AheadAnswered(sd_bus_message *message, void *ahead, sd_bus_error *);

    const std::int64_t m_answerMs;
    sd_bus *m_bus = nullptr;
    sd_bus_slot *m_probe = nullptr; // the question without a limit
    bool m_ownerKnown = false;      // the bus has reported the owner of the name
    std::string m_owner;            // unique name; empty without a player
    // The owner of the name of the remote control, which a player takes last. While one player ends
    // and the next one has started, that is the old one for a while.
    std::string m_remoteOwner;
    std::int64_t m_ownedSinceMs = 0;
    std::uint32_t m_run = 0;
    bool m_silent = false;
    std::int64_t m_silentSinceMs = 0;
    std::map<Later *, std::unique_ptr<Later>> m_later;
    std::vector<std::unique_ptr<Ahead>> m_ahead;
    std::int64_t m_aheadSinceMs = 0;
};

} // namespace platform::player
