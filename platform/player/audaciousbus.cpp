#include "platform/player/audaciousbus.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace platform::player
{

namespace
{

constexpr const char *kName = "org.atheme.audacious";
constexpr const char *kRemoteName = "org.mpris.MediaPlayer2.audacious";
constexpr const char *kPath = "/org/atheme/audacious";
constexpr const char *kInterface = "org.atheme.audacious";
constexpr std::int64_t kOrdersMs = 2000; // how long orders are still sent to a silent player
// After this time a player without remote control has started too. On a busy machine a start took 4
// s.
constexpr std::int64_t kStartMs = 6000;

std::int64_t NowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// Watches the owner of a name on the bus: `changed` is called at every change, `answered` with the
// present owner.
void WatchName(sd_bus *bus, const char *name, sd_bus_message_handler_t changed,
               sd_bus_message_handler_t answered, void *self)
{
    const std::string match = std::string("type='signal',sender='org.freedesktop.DBus',"
                                          "member='NameOwnerChanged',arg0='") +
                              name + "'";
    sd_bus_add_match_async(bus, nullptr, match.c_str(), changed, nullptr, self);
    sd_bus_call_method_async(bus, nullptr, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus", "GetNameOwner", answered, self, "s", name);
}

// A message to the player, to be given to sd_bus_message_unref; null when it cannot be made.
sd_bus_message *NewCall(sd_bus *bus, const std::string &owner, const char *method)
{
    sd_bus_message *message = nullptr;
    if (sd_bus_message_new_method_call(bus, &message, owner.c_str(), kPath, kInterface, method) < 0)
        return nullptr;
    sd_bus_message_set_auto_start(message, 0);
    return message;
}

} // namespace

struct AudaciousBus::Later {
    AudaciousBus *bus = nullptr;
    std::function<void(std::optional<std::string>)> taken;
    sd_bus_slot *slot = nullptr;

    ~Later() { sd_bus_slot_unref(slot); }
};

struct AudaciousBus::Ahead {
    Question question{};
    sd_bus_slot *slot = nullptr;
    sd_bus_message *answer = nullptr; // null until it arrives

    ~Ahead()
    {
        sd_bus_slot_unref(slot);
        sd_bus_message_unref(answer);
    }
};

AudaciousBus::AudaciousBus(std::int64_t answerMs) : m_answerMs(answerMs) {}

AudaciousBus::~AudaciousBus()
{
    m_later.clear(); // the object that asked may have been destroyed already
    Close();
}

void AudaciousBus::Close()
{
    SetOwner({});
    m_remoteOwner.clear();
    m_ownerKnown = false;
    m_bus = sd_bus_close_unref(m_bus);
}

bool AudaciousBus::Connect()
{
    if (m_bus != nullptr && sd_bus_is_open(m_bus) > 0)
        return true;
    Close();
    if (sd_bus_open_user(&m_bus) < 0) {
        m_bus = nullptr;
        return false;
    }
    WatchName(m_bus, kRemoteName, RemoteChanged, RemoteAnswered, this);
    WatchName(m_bus, kName, OwnerChanged, OwnerAnswered, this);
    Process(m_answerMs, [this] { return m_ownerKnown; });
    return m_bus != nullptr;
}

// Handles the messages that have arrived, and waits for more until `done` returns true or `limitMs`
// has passed.
void AudaciousBus::Process(std::int64_t limitMs, const std::function<bool()> &done)
{
    const std::int64_t end = NowMs() + limitMs;
    while (m_bus != nullptr) {
        const int processed = sd_bus_process(m_bus, nullptr);
        if (processed < 0) {
            Close();
            return;
        }
        if (processed > 0)
            continue;
        const std::int64_t left = end - NowMs();
        if (done() || left <= 0)
            return;
        sd_bus_wait(m_bus, static_cast<std::uint64_t>(left) * 1000);
    }
}

void AudaciousBus::Update()
{
    const std::uint32_t before = m_run;
    if (!Connect())
        return;
    Process(0, [] { return true; });
    if (IsOwned() && m_silent && MayBeAsked())
        Probe();
    if (m_run != before && m_probe != nullptr)
        Process(m_answerMs, [this] { return !m_silent; });
}

bool AudaciousBus::MayBeAsked() const
{
    return m_remoteOwner == m_owner || NowMs() - m_ownedSinceMs >= kStartMs;
}

void AudaciousBus::SetOwner(const std::string &owner)
{
    if (owner == m_owner)
        return;
    m_owner = owner;
    m_probe = sd_bus_slot_unref(m_probe);
    m_ahead.clear();
    for (const auto &[later, holder] : std::exchange(m_later, {}))
        later->taken(std::nullopt);
    if (owner.empty())
        return;
    ++m_run;
    m_silent = true;
    m_ownedSinceMs = NowMs();
    m_silentSinceMs = m_ownedSinceMs - kOrdersMs; // it has not answered yet
}

void AudaciousBus::Probe()
{
    if (m_probe != nullptr || m_bus == nullptr)
        return;
    if (sd_bus_message *message = NewCall(m_bus, m_owner, "Status"); message != nullptr) {
        sd_bus_call_async(m_bus, &m_probe, message, ProbeAnswered, this, UINT64_MAX);
        sd_bus_message_unref(message);
    }
}

int AudaciousBus::RemoteChanged(sd_bus_message *message, void *self, sd_bus_error *)
{
    const char *name = nullptr, *before = nullptr, *now = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &now) >= 0)
        static_cast<AudaciousBus *>(self)->m_remoteOwner = now;
    return 0;
}

int AudaciousBus::RemoteAnswered(sd_bus_message *message, void *self, sd_bus_error *)
{
    const char *owner = nullptr;
    if (sd_bus_message_is_method_error(message, nullptr) == 0 &&
        sd_bus_message_read(message, "s", &owner) >= 0)
        static_cast<AudaciousBus *>(self)->m_remoteOwner = owner;
    return 0;
}

int AudaciousBus::OwnerChanged(sd_bus_message *message, void *self, sd_bus_error *)
{
    const char *name = nullptr, *before = nullptr, *now = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &now) >= 0)
        static_cast<AudaciousBus *>(self)->SetOwner(now);
    return 0;
}

int AudaciousBus::OwnerAnswered(sd_bus_message *message, void *self, sd_bus_error *)
{
    const char *owner = nullptr;
    auto &bus = *static_cast<AudaciousBus *>(self);
    bus.m_ownerKnown = true;
    if (sd_bus_message_is_method_error(message, nullptr) == 0 &&
        sd_bus_message_read(message, "s", &owner) >= 0)
        bus.SetOwner(owner);
    return 0;
}

int AudaciousBus::ProbeAnswered(sd_bus_message *, void *self, sd_bus_error *)
{
    auto &bus = *static_cast<AudaciousBus *>(self);
    bus.m_probe = sd_bus_slot_unref(bus.m_probe);
    bus.m_silent = false;
    return 0;
}

// The player's answer, to be given to sd_bus_message_unref; null without one.
sd_bus_message *AudaciousBus::Call(const char *method, std::optional<std::uint32_t> argument)
{
    if (!IsAnswering() || m_bus == nullptr)
        return nullptr;
    if (HasAskedAhead() && FindAhead(method, argument) != nullptr)
        return AnswerAhead(method, argument);
    sd_bus_message *message = NewCall(m_bus, m_owner, method), *answer = nullptr;
    if (message == nullptr)
        return nullptr;
    if (argument)
        sd_bus_message_append(message, "u", *argument);
    const int result = sd_bus_call(m_bus, message, static_cast<std::uint64_t>(m_answerMs) * 1000,
                                   nullptr, &answer);
    sd_bus_message_unref(message);
    if (result == -ETIMEDOUT)
        FallSilent();
    return result < 0 ? nullptr : answer;
}

void AudaciousBus::FallSilent()
{
    m_silent = true;
    m_silentSinceMs = NowMs();
    m_ahead.clear();
    Probe();
}

void AudaciousBus::AskAhead(std::initializer_list<Question> questions)
{
    m_ahead.clear();
    if (!IsAnswering() || m_bus == nullptr)
        return;
    SelectPlayingList();
    m_aheadSinceMs = NowMs();
    for (const Question &question : questions) {
        sd_bus_message *message = NewCall(m_bus, m_owner, question.method);
        if (message == nullptr)
            continue;
        if (question.argument)
            sd_bus_message_append(message, "u", *question.argument);
        auto ahead = std::make_unique<Ahead>();
        ahead->question = question;
        if (sd_bus_call_async(m_bus, &ahead->slot, message, AheadAnswered, ahead.get(),
                              UINT64_MAX) >= 0)
            m_ahead.push_back(std::move(ahead));
        sd_bus_message_unref(message);
    }
}

void AudaciousBus::ForgetAnswers()
{
    m_ahead.clear();
}

bool AudaciousBus::HasAskedAhead() const
{
    return !m_ahead.empty() && NowMs() - m_aheadSinceMs <= m_answerMs;
}

AudaciousBus::Ahead *AudaciousBus::FindAhead(const char *method,
                                             std::optional<std::uint32_t> argument)
{
    const auto found = std::find_if(m_ahead.begin(), m_ahead.end(), [&](const auto &ahead) {
        return std::strcmp(ahead->question.method, method) == 0 &&
               ahead->question.argument == argument;
    });
    return found != m_ahead.end() ? found->get() : nullptr;
}

// The answer to a question that was sent by AskAhead; waits for it if it has not arrived.
// Otherwise like Call.
sd_bus_message *AudaciousBus::AnswerAhead(const char *method, std::optional<std::uint32_t> argument)
{
    // The player may end meanwhile, and with it the questions that were sent.
    Process(m_answerMs, [&] {
        const Ahead *ahead = FindAhead(method, argument);
        return ahead == nullptr || ahead->answer != nullptr;
    });
    const Ahead *ahead = FindAhead(method, argument);
    if (ahead == nullptr)
        return nullptr;
    if (ahead->answer == nullptr) {
        FallSilent();
        return nullptr;
    }
    if (sd_bus_message_is_method_error(ahead->answer, nullptr) != 0)
        return nullptr;
    sd_bus_message_rewind(ahead->answer, 1);
    return sd_bus_message_ref(ahead->answer);
}

int AudaciousBus::AheadAnswered(sd_bus_message *message, void *ahead, sd_bus_error *)
{
    static_cast<Ahead *>(ahead)->answer = sd_bus_message_ref(message);
    return 0;
}

std::optional<std::string> AudaciousBus::AskText(const char *method,
                                                 std::optional<std::uint32_t> argument)
{
    sd_bus_message *answer = Call(method, argument);
    const char *text = nullptr;
    std::optional<std::string> result;
    if (answer != nullptr && sd_bus_message_read(answer, "s", &text) >= 0)
        result = text;
    sd_bus_message_unref(answer);
    return result;
}

std::optional<std::uint32_t> AudaciousBus::AskUnsigned(const char *method)
{
    sd_bus_message *answer = Call(method, {});
    std::uint32_t number = 0;
    const bool answered = answer != nullptr && sd_bus_message_read(answer, "u", &number) >= 0;
    sd_bus_message_unref(answer);
    return answered ? std::optional(number) : std::nullopt;
}

std::optional<std::int32_t> AudaciousBus::AskInt(const char *method,
                                                 std::optional<std::uint32_t> argument)
{
    sd_bus_message *answer = Call(method, argument);
    std::int32_t number = 0;
    const bool answered = answer != nullptr && sd_bus_message_read(answer, "i", &number) >= 0;
    sd_bus_message_unref(answer);
    return answered ? std::optional(number) : std::nullopt;
}

// Whether an order is to be sent. Answers to earlier questions are not used any more.
bool AudaciousBus::BeginOrder()
{
    m_ahead.clear();
    return m_bus != nullptr && IsOwned() && (!m_silent || NowMs() - m_silentSinceMs < kOrdersMs);
}

void AudaciousBus::Order(const char *method)
{
    if (BeginOrder())
        sd_bus_call_method_async(m_bus, nullptr, m_owner.c_str(), kPath, kInterface, method,
                                 nullptr, nullptr, nullptr);
}

void AudaciousBus::Order(const char *method, std::uint32_t argument)
{
    if (BeginOrder())
        sd_bus_call_method_async(m_bus, nullptr, m_owner.c_str(), kPath, kInterface, method,
                                 nullptr, nullptr, "u", argument);
}

void AudaciousBus::Order(const char *method, const std::string &argument)
{
    if (BeginOrder())
        sd_bus_call_method_async(m_bus, nullptr, m_owner.c_str(), kPath, kInterface, method,
                                 nullptr, nullptr, "s", argument.c_str());
}

void AudaciousBus::SelectPlayingList()
{
    if (!HasAskedAhead())
        Order("SelectPlayingPlaylist");
}

void AudaciousBus::AskTextLater(const char *method, std::uint32_t argument,
                                std::function<void(std::optional<std::string>)> taken)
{
    auto later = std::make_unique<Later>();
    later->bus = this;
    later->taken = std::move(taken);
    sd_bus_message *message = IsAnswering() ? NewCall(m_bus, m_owner, method) : nullptr;
    if (message == nullptr) {
        later->taken(std::nullopt);
        return;
    }
    sd_bus_message_append(message, "u", argument);
    Later *raw = later.get();
    m_later.emplace(raw, std::move(later));
    if (sd_bus_call_async(m_bus, &raw->slot, message, LaterAnswered, raw, UINT64_MAX) < 0) {
        const auto holder = m_later.extract(raw);
        raw->taken(std::nullopt);
    }
    sd_bus_message_unref(message);
}

int AudaciousBus::LaterAnswered(sd_bus_message *message, void *later, sd_bus_error *)
{
    auto *raw = static_cast<Later *>(later);
    const auto holder = raw->bus->m_later.extract(raw);
    const char *text = nullptr;
    const bool answered = sd_bus_message_is_method_error(message, nullptr) == 0 &&
                          sd_bus_message_read(message, "s", &text) >= 0;
    raw->taken(answered ? std::optional<std::string>(text) : std::nullopt);
    return 0;
}

} // namespace platform::player
