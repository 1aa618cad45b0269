// Tells how long a piece is that an operator names by its timecodes, at the rate that the server is set to.
//
// usage: 10_timecode [SERVER'S ADDRESS [IN OUT]]
#include <skuan/config/cf_model.h>
#include <skuan/config/video_standard_model.h>
#include <skuan/session/spark.h>
#include <skuan/time/atimecode_range.h>

#include <QCoreApplication>

#include <cstdio>

using namespace Vantor;

static void show(const char* what, const AString& value)
{
    std::printf("%-9s %s\n", what, value.to_string().c_str());
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const AString in(argc > 3 ? argv[2] : "09.59.59.20"), out(argc > 3 ? argv[3] : "10.00.01.00");

    Spark session(false);
    CFModel* const configuration = session.cf_model();
    const VideoStandardModel standard(configuration); // asks for the one item, and follows it

    const auto answer = [&] {
        const VideoFrequency rate = standard.get_frequency();
        if (!isValid(rate)) {
            std::fprintf(stderr, "the server has no standard that is known here\n");
            return QCoreApplication::exit(1);
        }
        const auto piece = ATimecodeRange::in_out(ATimecode(rate, in), ATimecode(rate, out));
        show("standard", toString(standard.get()));
        show("from", piece.get_start().toString(4));
        show("to", piece.get_last().toString(4)); // the last field within
        show("fields", AString::from_unsigned(piece.get_duration()));
        QCoreApplication::exit(0);
    };
    QObject::connect(configuration, &CFModel::fully_scanned, &session, answer);

    session.set_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1"));
    return QCoreApplication::exec();
}
