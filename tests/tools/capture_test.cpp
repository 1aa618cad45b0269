// A conversation captured and played again, from either side, has to be the same to the last byte.
#include "skuanctl.h"

#include <simulator/plain_client.h>

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using support::Ran;
using support::Station;
using testing::HasSubstr;

namespace {

const QByteArray head = "{\"format\":\"skuan-conversation\",\"version\":1}\n";

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

/// Says a hundred commands, each once the one before is done; gives all that was heard.
QByteArray converse(const QString& address)
{
    const char* const commands[] = {
        "create_clip ClipID='studio/clip é %1' TrackSet", "get_clip_info ClipID='studio/clip é %1'",
        "download_clipids DirectoryName=studio", "delete_clip ClipID='no\n such'"};
    PlainClient client(address);
    QByteArray heard = client.hear(cmd("0", compact::to_command("report_register ReportType=clip_change")));
    for (int number = 0; number < 100; ++number) {
        const QString command = QString(commands[number % 4]).replace("%1", QString::number(number / 4));
        heard += client.hear(cmd(QByteArray::number(number), compact::to_command(command)));
    }
    return heard;
}

TEST_F(Capture, OfAHundredCommandsPlaysAgainFromEitherSide)
{
    const QString name = file("conversation");
    QByteArray heard;
    {
        const Station station;
        Listening capture(to(station, {"capture", name, "--count", "1"}));
        heard = converse(capture.address);
        capture.expect_success();
    }
    EXPECT_EQ(heard.count("<clip_created>"), 25);
    const auto play = [](const QString& file) {
        const Station fresh;
        return ask(fresh, {"--json", "replay", file});
    };
    Ran ran = play(name);
    EXPECT_EQ(ran.code, 0) << ran.out.constData();
    EXPECT_THAT(ran.out.toStdString(), HasSubstr("\"connections\":1}\n"));
    Listening server({"replay", name});
    EXPECT_TRUE(converse(server.address) == heard);
    server.expect_success();

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
    EXPECT_THAT(ran.err.toStdString(), HasSubstr("message 201, byte"));
    EXPECT_THAT(ran.out.toStdString(),
                HasSubstr("got:      <cmd>␍␊<xid>99</xid>␍␊<delete_clip><ClipID>no␊ such<"));
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
    Listening capture(to(server.address, {"capture", file("captured"), "--count", "2"}));
    const Ran ran = ask(capture.address, {"replay", played});
    EXPECT_EQ(ran.out, "the same: 22 bytes, 2 connections\n") << ran.err.constData();
    server.expect_success();
    capture.expect_success();
    EXPECT_EQ(timeless(read(file("captured"))).toStdString(), timeless(script).toStdString());
}

TEST_F(Capture, TellsWhyItCannot)
{
    const QString nobody = own_address();
    Listening unheard(to(nobody, {"capture", file("refused"), "--count", "1"}));
    QTcpSocket client;
    client.connectToHost(unheard.address, 8913);
    EXPECT_TRUE(client.waitForDisconnected() || client.state() == QAbstractSocket::UnconnectedState);
    unheard.expect_success();
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
    const auto line = [](const char* fields) { return QByteArray("{") + fields + "}\n"; };
    const QByteArray opened = line(R"("at_us":0,"connection":1,"event":"opened","from":"client")");
    const QByteArray ended = line(R"("at_us":1,"connection":1,"event":"ended","from":"server")");
    const QByteArray said = line(R"("at_us":1,"connection":1,"from":"server","text":"x")");
    const struct
    {
        QByteArray bytes;
        const char* complaint;
    } rows[] = {
        {"", "is no conversation"},
        {head.left(20), "is no conversation"},
        {QByteArray("\x7f\0\n\xff", 4), "is no conversation"},
        {QByteArray(head).replace("1}", "2}"), "of version 2; this program knows version 1"},
        {head, "there is nothing in"},
        {head + opened + "\n", "line 3: it is no JSON object"},
        {head + opened + "[1]\n" + said, "line 3: it is no JSON object"},
        {head + said, "line 2: connection 1 is not open"},
        {head + opened + opened, "line 3: connection 1 is open already"},
        {head + opened + ended + said, "line 4: the server has ended connection 1 already"},
        {head + line(R"("at_us":-1,"connection":1,"event":"opened","from":"client")"), "at_us is no whole"},
        {head + line(R"("at_us":0,"connection":0.5,"event":"opened","from":"client")"),
         "connection is no number"},
        {head + line(R"("at_us":0,"connection":1,"event":"opened","from":"me")"),
         "neither client nor server"},
        {head + line(R"("at_us":0,"connection":1,"event":"born","from":"client")"), "has not one of text"},
        {head + opened + QByteArray(said).replace(R"("text":"x")", R"("raw_base64":"a?")"),
         "has not one of text"},
        {head + opened + QByteArray(said).replace("}", R"(,"raw_base64":""})"), "has not one of text"},
        {head + opened + QByteArray(2 << 20, ' '), "line 3: it is longer than 1048576 bytes"},
        {head + opened + QByteArray(100'000, '['), nullptr},
        {head + opened + said.left(30), nullptr}, // as a crash leaves it
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes.left(200).constData());
        const Station station;
        const Ran ran = ask(station, {"replay", write("conversation", row.bytes)});
        EXPECT_EQ(ran.code, row.complaint ? 2 : 0);
        EXPECT_THAT(ran.err.toStdString(), HasSubstr(row.complaint ? row.complaint : ""));
        EXPECT_TRUE(!row.complaint || station->counters().accepted == 0);
    }
}

TEST_F(Capture, WaitsNoLongerThanItWas)
{
    const QByteArray asked = head + R"({"at_us":0,"connection":7,"event":"opened","from":"client"}
{"at_us":0,"connection":7,"from":"client","text":"<cmd><xid>1</xid><get_computer_name/></cmd>"}
)";
    const QString name = write("conversation", asked + R"({"at_us":100000,"connection":7,"from":"server",)" +
                                                   R"("text":"<reply>\r\n<xid>1</xid>\r\n<computername>"})");
    const QString unanswered =
        write("unanswered", asked + R"({"at_us":0,"connection":7,"event":"ended","from":"server"})");
    EXPECT_EQ(ask(Station(), {"replay", unanswered}).code, 7); // more came
    const Station mute(simulator::Faults{.mute = true}), cut(simulator::Faults{.close_after_bytes = 20});
    const auto play = [&](const Station& station, const char* limit, const char* connection) {
        return ask(station, {"--timeout", limit, "replay", "--paced", name, "--connection", connection});
    };
    EXPECT_THAT(play(mute, "0.2", "7").err.toStdString(),
                HasSubstr("within 0.2 s of the recorded time, in message 1"));
    EXPECT_THAT(play(cut, "20", "7").out.toStdString(),
                HasSubstr("got:      <reply>␍␊<xid>1</xid(the end of"));
    EXPECT_THAT(play(cut, "20", "1").err.toStdString(), HasSubstr("has no connection 1"));
}

} // namespace
