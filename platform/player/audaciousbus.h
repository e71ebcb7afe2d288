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

// A player that did not answer in time is silent: it is asked nothing more but one question without
// a limit, and the answer to that ends the silence.
class AudaciousBus
{
public:
    // `answerMs`: the longest wait of a call.
    explicit AudaciousBus(std::int64_t answerMs);
    ~AudaciousBus();
    AudaciousBus(const AudaciousBus &) = delete;
    AudaciousBus &operator=(const AudaciousBus &) = delete;

    // Takes in what has come; connects where there is no connection. A player that was not known
    // yet gets one call's time for its first answer. One that is starting is not asked anything: it
    // would end at a question that comes too early.
    void Look();

    bool IsOwned() const { return !m_owner.empty(); } // its name is on the bus
    // A player that ends gives up its name first, and writes its list then.
    bool IsEnding() const { return m_owner.empty() && !m_remoteOwner.empty(); }
    bool IsAnswering() const { return IsOwned() && !m_silent; }

    // The number of the player's run, as often as one was found; 0 while none is there.
    std::uint32_t Run() const { return IsOwned() ? m_run : 0; }

    // Questions: nothing when the player is silent or refuses. `argument` goes where the method
    // takes a number.
    std::optional<std::string> AskText(const char *method,
                                       std::optional<std::uint32_t> argument = {});
    std::optional<std::uint32_t> AskUnsigned(const char *method);
    std::optional<std::int32_t> AskInt(const char *method,
                                       std::optional<std::uint32_t> argument = {});

    // Sends these questions at once, behind an order to select the list that plays. Until the next
    // order, ForgetAnswers, or for the time of one call, the calls above take their answers from
    // them. Nothing when the player is silent.
    struct Question {
        const char *method;
        std::optional<std::uint32_t> argument;
    };
    void AskAhead(std::initializer_list<Question> questions);
    bool HasAskedAhead() const;
    void ForgetAnswers();

    // Orders are sent and not waited for: the player does them in their order, before it answers
    // the next question. One that fell silent a moment ago still gets them.
    void Order(const char *method);
    void Order(const char *method, std::uint32_t argument);
    void Order(const char *method, const std::string &argument);

    // Has the player's methods mean the list that it plays from; the one that it shows when it is
    // stopped. An order as well, but left out where AskAhead has sent it already.
    void SelectPlayingList();

    // A question whose answer comes with a later Look; `taken` gets nothing when there is none. All
    // that are under way are dropped when the player goes.
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
    static int RemoteTold(sd_bus_message *message, void *self, sd_bus_error *);
    static int OwnerChanged(sd_bus_message *message, void *self, sd_bus_error *);
    static int OwnerTold(sd_bus_message *message, void *self, sd_bus_error *);
    static int ProbeAnswered(sd_bus_message *message, void *self, sd_bus_error *);
    static int LaterAnswered(sd_bus_message *message, void *later, sd_bus_error *);
    static int AheadAnswered(sd_bus_message *message, void *ahead, sd_bus_error *);

    const std::int64_t m_answerMs;
    sd_bus *m_bus = nullptr;
    sd_bus_slot *m_probe = nullptr; // the question without a limit
    bool m_ownerKnown = false;      // the bus has told who has the name
    std::string m_owner;            // unique name; empty without a player
    // Who has the name of the remote control, which comes last. For a while that is the player
    // that ends, when the next one is there already.
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
