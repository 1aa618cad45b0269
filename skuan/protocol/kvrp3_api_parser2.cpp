// Feeds the stream parser piece by piece and empties it after each, so that its buffer bounds one
// message and not one read.
#include <skuan/protocol/kvrp3_api_parser2.h>

#include <skuan/foundation/assertfail.h>

namespace KVRP3 {

APIParser2::APIParser2() : engine_(32768)
{
    engine_.config_tag("reply");
    engine_.config_tag("report");
}

APIParser2::~APIParser2() = default;

void APIParser2::reset_stream()
{
    parser_was_reset_ = true;
    stream_broken_ = false;
    engine_.reset();
}

void APIParser2::input_stream(const void* data, unsigned count)
{
    if (stream_broken_)
        return;
    parser_was_reset_ = false;
    const char* bytes = static_cast<const char*>(data);
    while (count != 0) {
        const unsigned taken = engine_.input_bytes(count, bytes);
        if (taken == 0 || !SKUAN_CHECK(taken <= count)) {
            stream_broken_ = true;
            return;
        }
        bytes += taken;
        count -= taken;
        // After a reset from a callback, the rest waits for the next call.
        if (!parser_was_reset_)
            parse_complete_messages();
        if (stream_broken_)
            return;
    }
}

void APIParser2::parse_complete_messages()
{
    while (!parser_was_reset_) {
        const XMLTree message = engine_.get_xml();
        if (message.is_null()) {
            stream_broken_ = engine_.parse_error();
            return;
        }
        parse(message);
    }
}

} // namespace KVRP3
