// Asks a server for its name, without an event loop: the client connects and reads on a thread of its
// own, and this thread waits for the answer.
//
// usage: 01_ask_name [SERVER'S IPv4 ADDRESS]
#include <skuan/foundation/semaphore.h>
#include <skuan/protocol/kvrp3_client.h>

#include <QHostAddress>

#include <cstdio>

class NameClient : public KVRP3::Client
{
public:
    using Client::Client;
    ~NameClient() override { stop(); } // before this class's part of the object goes

    BinarySemaphore answered{false};

private:
    // These run on the client's thread. After a lost connection it connects, and so asks, again.
    void connected() override
    {
        cmd_get_computer_name(AFunction1<AString>::member<&NameClient::show>(this),
                              AFunction2<AString, KVRP3::ErrorCode>::member<&NameClient::complain>(this));
    }

    void show(AString name)
    {
        std::printf("%s\n", name.to_string().c_str());
        answered.semGive();
    }

    void complain(AString message, KVRP3::ErrorCode)
    {
        std::fprintf(stderr, "no name: %s\n", message.to_string().c_str());
    }
};

int main(int argc, char** argv)
{
    const QHostAddress host(argc > 1 ? argv[1] : "127.0.0.1");
    NameClient client(host.toIPv4Address());
    client.run_forever_in_own_thread(0);
    if (client.answered.semTake(10'000))
        return 0;
    std::fprintf(stderr, "no answer within 10 s\n");
    return 1;
}
