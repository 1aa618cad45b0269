// The byte-stream front of the protocol, for transports without a parser thread of their own.
#pragma once

#include <skuan/export.h>
#include <skuan/markup/xml_parse.h>
#include <skuan/protocol/kvrp3_api_parser.h>

namespace KVRP3 {

/// Cuts the bytes of a connection into messages and parses them. A stream that is no XML stays broken
/// until it is reset; a message that is good XML but not understood does not break it.
///
/// The two operations belong to the one thread that reads the connection; a callback on that thread may
/// reset the stream from within.
class SKUAN_EXPORT APIParser2 : public APIParser
{
public:
    APIParser2();
    ~APIParser2() override;

protected:
    /// Parses as many messages as are complete with these bytes, and keeps the rest for the next call.
    /// A broken stream takes nothing. When a callback resets the stream, the bytes behind its message
    /// still go into the clean parser, and wait there for the next call.
    void input_stream(const void* data, unsigned count);
    /// Forgets all bytes, and makes a broken stream good again: a new connection begins.
    void reset_stream();
    /// Whether the bytes were no XML, or a message did not fit into 32768 bytes: the connection is to go.
    bool stream_broken() const { return stream_broken_; }

private:
    void parse_complete_messages();

    XMLParseEngine engine_;
    bool parser_was_reset_ = true;
    bool stream_broken_ = false;
};

} // namespace KVRP3
