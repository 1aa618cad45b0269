// A conversation captured and played again, from either side, has to be the same to the last byte.
#include <support/program.h>
#include <support/station.h>

#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using support::Ran;
using support::Station;
using testing::HasSubstr;

namespace {

const QString program = QStringLiteral(SKUANCTL);
const QByteArray head = "{\"format\":\"skuan-conversation\",\"version\":1}\n";

QString own_address()
{
    return QString::fromStdString(support::own_loopback_address());
}

class Capture : public support::CoreApplication
{
protected:
    QString file(const char* name) const { return folder_.filePath(name); }

    QString write(const char* name, const QByteArray& bytes) const
    {
        QFile file(folder_.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        return file.fileName();
    }

private:
    const QTemporaryDir folder_;
};

QByteArray read(const QString& name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// The lines without what is never the same: the times.
QByteArray timeless(const QByteArray& file)
{
    QByteArray lines;
    for (const QByteArray& line : file.split('\n'))
        lines += line.mid(line.startsWith("{\"at_us\":") ? line.indexOf(',') : 0) + '\n';
    return lines;
}

/// The file with the first `word` behind `where` gone wrong in one bit.
QByteArray flipped(QByteArray file, const char* where, const char* word)
{
    char& byte = file.data()[file.indexOf(word, file.indexOf(where)) + 3];
    byte = static_cast<char>(byte ^ 1);
    return file;
}

/// A run that listens at an address of its own.
class Listening
{
public:
    explicit Listening(const QStringList& words)
    {
        process_.start(program, words + QStringList{"--bind", address});
        EXPECT_TRUE(process_.waitForReadyRead()) << process_.readAllStandardError().constData();
        process_.readLine();
    }

    Ran end()
    {
        EXPECT_TRUE(process_.waitForFinished());
        return {process_.exitCode(), process_.readAllStandardOutput(), process_.readAllStandardError()};
    }

    const QString address = own_address();

private:
    QProcess process_;
};

QByteArray command(int number)
{
    const QByteArray id = "studio/clip é " + QByteArray::number(number / 4);
    const QByteArray bodies[] = {"<create_clip><ClipID>" + id +
                                     "</ClipID><TrackSet></TrackSet></create_clip>",
                                 "<get_clip_info><ClipID>" + id + "</ClipID></get_clip_info>",
                                 "<download_clipids><DirectoryName>studio</DirectoryName></download_clipids>",
                                 "<delete_clip><ClipID>no\n such</ClipID></delete_clip>"};
    const QByteArray body = number > 0 ? bodies[number % 4]
                                       : "<reports_register><ReportSet><ReportType>clip_change</ReportType>"
                                         "</ReportSet></reports_register>";
    return "<cmd><xid>" + QByteArray::number(number) + "</xid>" + body + "</cmd>";
}

/// Says a hundred commands, each once the one before is answered; gives all that was heard.
QByteArray converse(const QString& address)
{
    QTcpSocket socket;
    QByteArray heard;
    socket.connectToHost(address, 8913);
    for (int number = 0; number <= 100; ++number) {
        socket.write(command(number));
        const QByteArray answer = "<xid>" + QByteArray::number(number) + "</xid>";
        while (!heard.contains(answer) || !heard.endsWith("</reply>\r\n")) {
            if (!socket.waitForReadyRead())
                return heard + "and then " + socket.errorString().toUtf8();
            heard += socket.readAll();
        }
    }
    return heard;
}

TEST_F(Capture, OfAHundredCommandsPlaysAgainFromEitherSide)
{
    const QString name = file("conversation");
    QByteArray heard;
    {
        const Station station;
        Listening capture({"--host", station.address().toString(), "capture", name, "--count", "1"});
        heard = converse(capture.address);
        EXPECT_EQ(capture.end().code, 0);
    }
    EXPECT_EQ(heard.count("<clip_created>"), 25);
    const auto play = [](const QString& file) {
        const Station fresh;
        return support::run(program, {"--host", fresh.address().toString(), "--json", "replay", file});
    };
    Ran ran = play(name);
    EXPECT_EQ(ran.code, 0) << ran.out.constData();
    EXPECT_EQ(ran.out, "{\"bytes\":" + QByteArray::number(heard.size()) + ",\"connections\":1}\n");
    Listening server({"replay", name});
    EXPECT_TRUE(converse(server.address) == heard);
    EXPECT_EQ(server.end().code, 0);

    ran = play(write("other answer", flipped(read(name), "<reply>\\r\\n<xid>98<", "studio/clip")));
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("\"error\":\"differs\""));
    EXPECT_THAT(ran.out.toStdString(), HasSubstr("<ClipID>stueio/clip é"));
    EXPECT_THAT(ran.out.toStdString(), HasSubstr("<ClipID>studio/clip é"));
    Listening other({"replay", write("other command", flipped(read(name), "<xid>99</xid>", "no\\n such"))});
    EXPECT_FALSE(converse(other.address) == heard);
    ran = other.end();
    EXPECT_EQ(ran.code, 7);
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("the client differs from line"));
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("message 100, byte"));
    EXPECT_THAT(ran.out.toStdString(),
                HasSubstr("got:      <cmd><xid>99</xid><delete_clip><ClipID>no␊ such<"));
}

// One plays the server, one the client, and the capture between them has to be what they play.
TEST_F(Capture, PassesOnWhateverComes)
{
    const QByteArray script = head + R"({"at_us":0,"connection":1,"event":"opened","from":"client"}
{"at_us":9,"connection":1,"from":"client","text":"\u0000 \"\\ \n é 🐟 ￿"}
{"at_us":9,"connection":1,"from":"server","raw_base64":"77u/"}
{"at_us":9,"connection":2,"event":"opened","from":"client"}
{"at_us":9,"connection":2,"from":"server","text":"second"}
{"at_us":9,"connection":1,"from":"client","raw_base64":"/+LC"}
{"at_us":9,"connection":1,"from":"server","text":"<a>"}
{"at_us":9,"connection":1,"event":"ended","from":"client"}
{"at_us":9,"connection":2,"event":"ended","from":"server"}
{"at_us":9,"connection":2,"from":"client","text":"still heard"}
{"at_us":9,"connection":1,"from":"server","text":"still said"}
{"at_us":9,"connection":1,"event":"ended","from":"server"}
{"at_us":9,"connection":2,"event":"ended","from":"client"}
)";
    const QString played = write("played", script);
    Listening server({"replay", played});
    Listening capture({"--host", server.address, "capture", file("captured"), "--count", "2"});
    const Ran ran = support::run(program, {"--host", capture.address, "replay", played});
    EXPECT_EQ(ran.out, "the same: 22 bytes, 2 connections\n") << ran.err.constData();
    EXPECT_EQ(server.end().code, 0);
    EXPECT_EQ(capture.end().code, 0);
    EXPECT_EQ(timeless(read(file("captured"))).toStdString(), timeless(script).toStdString());
}

TEST_F(Capture, TellsWhyItCannot)
{
    const QString nobody = own_address();
    Listening unheard({"--host", nobody, "capture", file("refused"), "--count", "1"});
    QTcpSocket client;
    client.connectToHost(unheard.address, 8913);
    EXPECT_TRUE(client.waitForDisconnected() || client.state() == QAbstractSocket::UnconnectedState);
    EXPECT_EQ(unheard.end().code, 0);
    EXPECT_THAT(read(file("refused")).toStdString(),
                HasSubstr("\"connection\":1,\"event\":\"refused\",\"from\":\"server\"}"));
    EXPECT_THAT(support::run(program, {"capture", file("refused"), "--bind", nobody}).err.toStdString(),
                HasSubstr("there is a file"));

    const QString here = own_address();
    QProcess circle;
    circle.start(program, {"capture", file("circle"), "--bind", here, "--host", here});
    ASSERT_TRUE(circle.waitForReadyRead());
    client.connectToHost(here, 8913);
    ASSERT_TRUE(circle.waitForFinished());
    EXPECT_EQ(circle.exitCode(), 2);
}

TEST_F(Capture, ReadsNoFileThatIsNone)
{
    const QByteArray opened = R"({"at_us":0,"connection":1,"event":"opened","from":"client"})"
                              "\n";
    const QByteArray said = R"({"at_us":1,"connection":1,"from":"server","text":"x"})"
                            "\n";
    const struct
    {
        QByteArray bytes;
        const char* complaint;
    } rows[] = {
        {"", "is no conversation"},
        {head.left(20), "is no conversation"},
        {QByteArray("\x7f"
                    "ELF\0\0\n\xff",
                    8),
         "is no conversation"},
        {"{\"format\":\"skuan-conversation\",\"version\":2}\n", "of version 2; this program knows version 1"},
        {head, "there is nothing in"},
        {head + opened + "\n", "line 3: it is no JSON object"},
        {head + opened + "[1]\n" + said, "line 3: it is no JSON object"},
        {head + said, "line 2: connection 1 is not open"},
        {head + opened + opened, "line 3: connection 1 is open already"},
        {head + opened +
             R"({"at_us":1,"connection":1,"event":"ended","from":"server"})"
             "\n" +
             said,
         "line 4: the server has ended connection 1 already"},
        {head + R"({"at_us":-1,"connection":1,"event":"opened","from":"client"})",
         "line 2: at_us is no whole"},
        {head + R"({"at_us":0,"connection":0.5,"event":"opened","from":"client"})",
         "connection is no number"},
        {head + R"({"at_us":0,"connection":1,"event":"opened","from":"me"})", "neither client nor server"},
        {head + R"({"at_us":0,"connection":1,"event":"born","from":"client"})", "has not one of text"},
        {head + opened + R"({"at_us":1,"connection":1,"from":"client","raw_base64":"a?"})",
         "has not one of text"},
        {head + opened + R"({"at_us":1,"connection":1,"from":"client","raw_base64":"","text":""})",
         "has not one"},
        {head + opened + QByteArray(2 << 20, ' '), "line 3: it is longer than 1048576 bytes"},
        {head + opened + QByteArray(100'000, '['), nullptr},
        {head + opened + said.left(30), nullptr}, // as a crash leaves it
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes.left(200).constData());
        const Station station;
        const Ran ran = support::run(
            program, {"--host", station.address().toString(), "replay", write("conversation", row.bytes)});
        EXPECT_EQ(ran.code, row.complaint ? 2 : 0);
        EXPECT_THAT(ran.err.toStdString(), HasSubstr(row.complaint ? row.complaint : ""));
        EXPECT_TRUE(!row.complaint || station->counters().accepted == 0);
    }
}

TEST_F(Capture, WaitsNoLongerThanItWas)
{
    const QString name =
        write("conversation", head + R"({"at_us":0,"connection":7,"event":"opened","from":"client"}
{"at_us":0,"connection":7,"from":"client","text":"<cmd><xid>1</xid><get_computer_name/></cmd>"}
{"at_us":100000,"connection":7,"from":"server","text":"<reply>\r\n<xid>1</xid>\r\n<computername>"}
)");
    const Station mute(simulator::Faults{.mute = true}), cut(simulator::Faults{.close_after_bytes = 20});
    const auto play = [&](const Station& station, const char* limit, const char* connection) {
        return support::run(program, {"--host", station.address().toString(), "--timeout", limit, "replay",
                                      "--paced", name, "--connection", connection});
    };
    EXPECT_THAT(play(mute, "0.2", "7").err.toStdString(),
                HasSubstr("within 0.2 s of the recorded time, in message 1"));
    EXPECT_THAT(play(cut, "20", "7").out.toStdString(),
                HasSubstr("got:      <reply>␍␊<xid>1</xid(the end of"));
    EXPECT_THAT(play(cut, "20", "1").err.toStdString(), HasSubstr("has no connection 1"));
}

} // namespace
