// What a hostile server may send to an APIQt: the same messages come out as from the parser alone, and the
// connection ends exactly where that gives up. Each '@' with a letter from 'A' on stands for the xid of a
// command that waits.
#include <changed_tree.h>

#include <skuan/protocol/kvrp3_api_qt.h>
#include <skuan/protocol/kvrp3_callback_groups.h>

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>
#include <vector>

namespace {

int argc = 1;
char name[] = "api_qt_fuzz";
char* argv[] = {name, nullptr};

/// A connection of an APIQt to a server that does what is wanted.
class Stage
{
public:
    Stage()
    {
        // An address of its own, as several may run at a time.
        const auto process = static_cast<quint32>(QCoreApplication::applicationPid());
        const QHostAddress address(0x7fc00000u + process % 0x3ffffeu + 1);
        fuzz::require(server_.listen(address, 8913));
        client_.set_receive_debug_hook(AFunction1<const XMLTree&>::member<&Stage::received>(this));
        client_.set_send_debug_hook(AFunction1<const XMLTree&>::member<&Stage::sent>(this));
        client_.connect_to_server(address);
    }

    std::vector<std::string> messages; ///< that have come

    /// Connected anew, with commands that wait for an answer.
    void begin()
    {
        client_.reconnect();
        wait_until([this] { return server_.hasPendingConnections() && client_.is_connected(); });
        while (server_.hasPendingConnections())
            far_.reset(server_.nextPendingConnection());
        messages.clear();
        xids_.clear();
        client_.cmd_sync(ok_);
        client_.cmd_download_clipids(clips_);
        client_.cmd_download_melts(melts_);
        client_.cmd_get_computer_name(computer_);
    }
    void send(const QByteArray& bytes) { far_->write(bytes); }
    bool is_connected() const { return client_.is_connected(); }
    const QByteArray& xid(unsigned which) const { return xids_[which % xids_.size()]; }

    template <typename Condition>
    static void wait_until(Condition condition)
    {
        while (!condition())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    void received(const XMLTree& message)
    {
        messages.push_back(message.flatten(XMLTree::flatten_compact).to_string());
    }
    void sent(const XMLTree& message)
    {
        xids_.push_back(
            QByteArray::fromStdString(message.get_subnode(AString::l1("xid")).get_content().to_string()));
    }

    QCoreApplication application_{argc, argv};
    QTcpServer server_;
    std::unique_ptr<QTcpSocket> far_;
    std::vector<QByteArray> xids_;
    KVRP3::CallbackGroup_set1 ok_;
    KVRP3::CallbackGroup_set2 clips_;
    KVRP3::CallbackGroup_set15 melts_;
    KVRP3::CallbackGroup_set6 computer_;
    KVRP3::APIQt client_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Stage& stage = *new Stage; // not to be destroyed behind the application
    stage.begin();
    QByteArray bytes;
    for (std::size_t i = 0; i != size; ++i) {
        if (data[i] == '@' && i + 1 != size)
            bytes += stage.xid(data[++i] - 'A');
        else
            bytes += static_cast<char>(data[i]);
    }

    XMLParseEngine engine(65536);
    engine.config_tag("reply");
    engine.config_tag("report");
    std::vector<std::string> expected;
    const auto count = static_cast<unsigned>(bytes.size());
    bool failed = engine.input_bytes(count, bytes.constData()) != count;
    for (XMLTree tree = engine.get_xml(); !tree.is_null(); tree = engine.get_xml())
        expected.push_back(tree.flatten(XMLTree::flatten_compact).to_string());
    failed = failed || engine.parse_error();

    stage.send(bytes);
    Stage::wait_until(
        [&] { return stage.messages.size() >= expected.size() && stage.is_connected() != failed; });
    fuzz::require(stage.messages == expected);
    return 0;
}
