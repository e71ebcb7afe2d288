// Real fetches from a real server on loopback, hostile answers among them.
#include "platform/web/curlweb.h"
#include "tests/support/testfolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace
{

using platform::web::CurlWeb;
using Answer = std::optional<std::string>;

constexpr std::string_view kBody = "1.6.6:2004\r\nQuenlin 1.7.0\r\n";

// The server, for all tests of this program; it ends when its standard input closes.
class Server
{
public:
    Server()
    {
        int in[2], out[2];
        EXPECT_EQ(pipe(in), 0);
        EXPECT_EQ(pipe(out), 0);
        m_process = fork();
        if (m_process == 0) {
            dup2(in[0], STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            for (const int end : {in[0], in[1], out[0], out[1]})
                close(end);
            execlp("python3", "python3", "-B", QUENLIN_WEB_SERVER, m_folder.Path().c_str(),
                   nullptr);
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        m_input = in[1];
        std::FILE *answer = fdopen(out[0], "r");
        EXPECT_EQ(std::fscanf(answer, "%d %d", &m_port, &m_tlsPort), 2)
            << "the server did not start";
        std::fclose(answer);
    }
    ~Server()
    {
        close(m_input);
        waitpid(m_process, nullptr, 0);
    }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    std::string Address(const std::string &name) const
    {
        return "http://127.0.0.1:" + std::to_string(m_port) + "/" + name;
    }
    std::string TlsAddress(const std::string &name) const
    {
        return "https://127.0.0.1:" + std::to_string(m_tlsPort) + "/" + name;
    }
    std::string Certificate() const { return m_folder / "certificate.pem"; }
    std::string Requests() const { return tests::ReadFile(m_folder / "requests"); }

private:
    tests::TestFolder m_folder;
    pid_t m_process = -1;
    int m_input = -1, m_port = 0, m_tlsPort = 0;
};

Server &TheServer()
{
    static Server server;
    return server;
}

// Runs the fetches until all of them have ended.
void RunAll(CurlWeb &web)
{
    while (web.poll.Enabled()) {
        web.poll.Fire();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

// The result of one download; fails the test unless there was exactly one.
Answer Get(const std::string &address, const std::string &certificates = {})
{
    CurlWeb web("Quenlin/1.6.9");
    web.trustedCertificates = certificates;
    int answers = 0;
    Answer answer;
    const auto fetch = web.Fetch(address, [&](const Answer &bytes) {
        ++answers;
        answer = bytes;
    });
    EXPECT_EQ(answers, 0); // never inside Fetch
    RunAll(web);
    EXPECT_EQ(answers, 1) << address;
    return answer;
}

TEST(CurlWeb, GetsAFile)
{
    EXPECT_EQ(Get(TheServer().Address("file")), kBody);
    EXPECT_EQ(Get(TheServer().Address("nothing")), "");
    EXPECT_EQ(Get(TheServer().TlsAddress("file"), TheServer().Certificate()), kBody);
}

TEST(CurlWeb, SendsNothingOfTheUser)
{
    Get(TheServer().Address("file"));
    const std::string all = TheServer().Requests();
    const std::string last = all.substr(all.rfind("/file\n"));
    EXPECT_NE(last.find("User-Agent: Quenlin/1.6.9\n"), std::string::npos) << last;
    for (const char *header : {"Cookie", "Referer", "Authorization", "From"})
        EXPECT_EQ(last.find(header), std::string::npos) << last;
}

TEST(CurlWeb, AnswersThatAreNone)
{
    const Server &server = TheServer();
    for (const char *name :
         {"missing", "partial", "large", "endless", "headers", "short", "nonsense", "cut"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Get(server.Address(name)), std::nullopt);
    }
    EXPECT_EQ(Get(server.Address("limit")).value_or("").size(), platform::kWebMaxBytes);
    EXPECT_EQ(Get(server.Address("binary")).value_or("").size(), 256u); // any bytes
    EXPECT_EQ(Get("http://127.0.0.1:1/file"), std::nullopt);            // nobody listens
    EXPECT_EQ(Get(server.TlsAddress("file")), std::nullopt);            // not trusted
    EXPECT_EQ(Get("file:///etc/hostname"), std::nullopt);
    EXPECT_EQ(Get("ftp://127.0.0.1/file"), std::nullopt);
    EXPECT_EQ(Get(""), std::nullopt);
    EXPECT_EQ(Get("no address"), std::nullopt);
}

TEST(CurlWeb, Redirects)
{
    const Server &server = TheServer();
    const std::string trusted = server.Certificate();
    const struct {
        const char *name;
        std::string address;
        bool arrives;
    } cases[] = {
        {"one", server.Address("hop0"), true},
        {"three", server.Address("hop2"), true},
        {"four", server.Address("hop3"), false},
        {"a circle", server.Address("loop"), false},
        {"http to https", server.Address("tohttps"), true},
        {"https to http", server.TlsAddress("tohttp"), false},
        {"to a file", server.Address("tofile"), false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Get(c.address, trusted).value_or("nothing"), c.arrives ? kBody : "nothing");
    }
}

TEST(CurlWeb, AFetchThatIsDroppedDoesNotAnswer)
{
    CurlWeb web("Quenlin/1.6.9");
    int answers = 0;
    std::unique_ptr<platform::WebFetch> second;
    const auto first = web.Fetch(TheServer().Address("file"), [&](const Answer &) {
        ++answers;
        second.reset(); // also one that has ended in the same turn
    });
    second = web.Fetch(TheServer().Address("silent"), [&](const Answer &) { ++answers; });
    RunAll(web);
    EXPECT_EQ(answers, 1);
}

TEST(CurlWeb, TwoAtOnceAndOneFromAnAnswer)
{
    CurlWeb web("Quenlin/1.6.9");
    std::vector<std::string> answers;
    std::unique_ptr<platform::WebFetch> next;
    const auto keep = [&](const Answer &bytes) { answers.push_back(bytes.value_or("nothing")); };
    const auto one = web.Fetch(TheServer().Address("file"), [&](const Answer &bytes) {
        keep(bytes);
        next = web.Fetch(TheServer().Address("binary"), keep);
    });
    const auto other = web.Fetch(TheServer().Address("missing"), keep);
    RunAll(web);
    EXPECT_EQ(answers.size(), 3u);
}

TEST(CurlWeb, OutlivedByAFetch)
{
    std::unique_ptr<platform::WebFetch> fetch;
    {
        CurlWeb web("Quenlin/1.6.9");
        fetch = web.Fetch(TheServer().Address("silent"), [](const Answer &) { FAIL(); });
        web.Poll();
    }
    fetch.reset();
}

} // namespace
