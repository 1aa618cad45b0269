// A client whose wire is memory: commands come out as text, and what the server would say is put in.
#pragma once

#include <skuan/markup/xml_parse.h>
#include <skuan/protocol/kvrp3_api.h>

#include <QByteArray>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace support {

using OnError = AFunction2<AString, KVRP3::ErrorCode>;

/// A wire text as the protocol has it, from one written with plain line ends.
inline std::string crlf(const std::string& text)
{
    return QByteArray::fromStdString(text).replace("\n", "\r\n").toStdString();
}

inline XMLTree tree(const std::string& xml)
{
    bool error = false;
    const XMLTree result = XMLParse(AString::from_string(xml), &error);
    EXPECT_FALSE(error) << xml;
    return result;
}

class MemoryClient : public KVRP3::API
{
public:
    using API::input_stream;
    using API::reset_stream;
    using API::send;
    using API::stream_broken;

    /// Puts in one message.
    void inject(const std::string& xml) { parse(tree(xml)); }
    /// Puts in a reply: `body` is the element beside the xid.
    void reply(const AString& xid, const std::string& body)
    {
        inject("<reply><xid>" + xid.to_string() + "</xid>" + body + "</reply>");
    }

    /// What was written since the last look, and only that, is this command.
    void expect(const AString& xid, const std::string& command)
    {
        EXPECT_EQ(take(), crlf("<cmd>\n<xid>" + xid.to_string() + "</xid>\n" + command + "\n</cmd>"));
    }

    std::string take()
    {
        std::string all;
        for (const std::string& chunk : chunks)
            all += chunk;
        chunks.clear();
        return all;
    }

    std::vector<std::string> chunks; ///< as they came to the sink
    bool dead = false;               ///< the connection is lost: whoever writes finds out

    void send(const void* data, unsigned length) override
    {
        if (dead)
            fail_all_pending_commands();
        else
            chunks.emplace_back(static_cast<const char*>(data), length);
    }
};

/// Callbacks that write down their calls, one text each.
class Recorder
{
public:
    std::vector<std::string> calls;

    AFunction ok() { return AFunction::member<&Recorder::on_ok>(this); }
    AFunction1<AString> text() { return AFunction1<AString>::member<&Recorder::on_text>(this); }
    OnError error() { return OnError::member<&Recorder::on_error>(this); }

private:
    void on_ok() { calls.push_back("ok"); }
    void on_text(AString text) { calls.push_back(text.to_string()); }
    void on_error(AString message, KVRP3::ErrorCode code)
    {
        calls.push_back(ErrorCode_to_string(code).to_string() + ": " + message.to_string());
    }
};

} // namespace support
