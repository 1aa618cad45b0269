// The flood's report.
#include <simulator/faults.h>

namespace simulator {

QByteArray default_flood_report()
{
    return QByteArrayLiteral("<report>\r\n"
                             "<channel_timecode>\r\n"
                             "<Channel>A</Channel>\r\n"
                             "<ClipPosition>123456</ClipPosition>\r\n"
                             "<DisplayTimecode>\r\n"
                             "<Valid>true</Valid>\r\n"
                             "<VideoStandard>1080_50i</VideoStandard>\r\n"
                             "<FieldNumber>1803456</FieldNumber>\r\n"
                             "<DropFrameFlag>ndf</DropFrameFlag>\r\n"
                             "</DisplayTimecode>\r\n"
                             "<InputTimecode>\r\n"
                             "<Valid>true</Valid>\r\n"
                             "<VideoStandard>1080_50i</VideoStandard>\r\n"
                             "<FieldNumber>1803456</FieldNumber>\r\n"
                             "<DropFrameFlag>ndf</DropFrameFlag>\r\n"
                             "</InputTimecode>\r\n"
                             "</channel_timecode>\r\n"
                             "</report>\r\n");
}

} // namespace simulator
