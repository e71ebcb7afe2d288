// A session manager for the tests, with one client; controlled by lines on standard input.
//
// Prints the address for SESSION_MANAGER first, then "client" when one has registered, "saved" when
// it has saved itself for the end of the session, "gone" when it has left. Reads lines: "logout"
// asks the client to save itself because the session ends, "cancel" says that it goes on, "end"
// that it ends. Source of the protocol: X Session Management Protocol 1.0, through libSM.
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace
{

SmsConn theClient = nullptr;
bool ending = false; // the client was asked to save itself for the session's end

void Tell(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

Status Registers(SmsConn client, SmPointer, char *previous)
{
    if (previous != nullptr) { // an earlier session's name, which this one does not know
        std::free(previous);
        return 0;
    }
    char *id = SmsGenerateClientID(client);
    const Status taken = SmsRegisterClientReply(client, id);
    std::free(id);
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    Tell("client");
    return taken;
}

void HasSaved(SmsConn client, SmPointer, Bool)
{
    if (ending)
        Tell("saved");
    else
        SmsSaveComplete(client);
}

void Leaves(SmsConn client, SmPointer, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    IceConn connection = SmsGetIceConnection(client);
    SmsCleanUp(client);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    theClient = nullptr;
    Tell("gone");
}

Status Meets(SmsConn client, SmPointer, unsigned long *mask, SmsCallbacks *calls, char **)
{
    theClient = client;
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    std::memset(calls, 0, sizeof *calls);
    calls->register_client.callback = Registers;
    calls->interact_request.callback = [](SmsConn c, SmPointer, int) { SmsInteract(c); };
    calls->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    calls->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    calls->save_yourself_phase2_request.callback = [](SmsConn c, SmPointer) {
        SmsSaveYourselfPhase2(c);
    };
    calls->save_yourself_done.callback = HasSaved;
    calls->close_connection.callback = Leaves;
    calls->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp **properties) {
        for (int i = 0; i < count; ++i)
            SmFreeProperty(properties[i]);
        std::free(properties);
    };
    calls->delete_properties.callback = [](SmsConn, SmPointer, int, char **) {};
    calls->get_properties.callback = [](SmsConn c, SmPointer) {
        SmsReturnProperties(c, 0, nullptr);
    };
    return 1;
}

Bool EveryHost(char *)
{
    return True;
}

void Obey(std::string_view command)
{
    if (theClient == nullptr)
        return;
    if (command == "logout") {
        ending = true;
        SmsSaveYourself(theClient, SmSaveBoth, True, SmInteractStyleAny, False);
    } else if (command == "cancel") {
        ending = false;
        SmsShutdownCancelled(theClient);
    } else if (command == "end") {
        SmsDie(theClient);
    }
}

IceConn Accept(IceListenObj listener)
{
    IceAcceptStatus status;
    IceConn connection = IceAcceptConnection(listener, &status);
    while (connection != nullptr && IceConnectionStatus(connection) == IceConnectPending)
        IceProcessMessages(connection, nullptr, nullptr);
    return connection;
}

int Serve(IceListenObj listener)
{
    IceConn connection = nullptr;
    std::array<pollfd, 3> inputs{{{STDIN_FILENO, POLLIN, 0},
                                  {IceGetListenConnectionNumber(listener), POLLIN, 0},
                                  {-1, POLLIN, 0}}};
    for (;;) {
        inputs[2].fd =
            theClient != nullptr || connection != nullptr ? IceConnectionNumber(connection) : -1;
        if (poll(inputs.data(), inputs.size(), -1) < 0)
            return 1;
        if (inputs[0].revents != 0) {
            std::array<char, 64> line{};
            if (std::fgets(line.data(), line.size(), stdin) == nullptr)
                return 0;
            Obey(std::string_view(line.data(), std::strcspn(line.data(), "\n")));
        }
        if (inputs[1].revents != 0)
            connection = Accept(listener);
        const bool had = theClient != nullptr;
        if (inputs[2].revents != 0 && connection != nullptr &&
            IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError)
            return 1;
        if (had && theClient == nullptr)
            connection = nullptr;
    }
}

} // namespace

int main()
{
    std::array<char, 256> error{};
    int count = 0;
    IceListenObj *listeners = nullptr;
    IceSetIOErrorHandler([](IceConn) {}); // without one, a client that was killed ends this
    char vendor[] = "tests", release[] = "1";
    if (SmsInitialize(vendor, release, Meets, nullptr, EveryHost, error.size(), error.data()) ==
            0 ||
        IceListenForConnections(&count, &listeners, error.size(), error.data()) == 0) {
        std::fprintf(stderr, "%s\n", error.data());
        return 1;
    }
    IceListenObj local = nullptr;
    for (int i = 0; i < count; ++i) {
        IceSetHostBasedAuthProc(listeners[i], EveryHost);
        char *address = IceGetListenConnectionString(listeners[i]);
        if (local == nullptr && std::string_view(address).starts_with("local/")) {
            local = listeners[i];
            Tell(address);
        }
        std::free(address);
    }
    return local == nullptr ? 1 : Serve(local);
}
