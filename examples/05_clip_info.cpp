// Asks what the server knows of a clip, for a panel that may be closed before the answer comes: the answer
// is a signal of a callback group which the panel owns, and once that is gone it goes nowhere.
//
// usage: 05_clip_info [SERVER'S ADDRESS [CLIP]]
#include <skuan/protocol/kvrp3_api_qt.h>
#include <skuan/protocol/kvrp3_callback_groups.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QTimer>

#include <cstdio>

class ClipPanel : public QObject
{
public:
    ClipPanel()
    {
        connect(&answer_, &KVRP3::CallbackGroup_set4::sig_clipinfo, this, &ClipPanel::show);
        connect(&answer_, &KVRP3::CallbackGroup_set4::sig_error, this, &ClipPanel::complain);
    }

    void ask(KVRP3::APIQt& server, const AString& clip) { server.cmd_get_clip_info(clip, answer_); }

    void complain(AString message)
    {
        std::fprintf(stderr, "no clip: %s\n", message.to_string().c_str());
        QCoreApplication::exit(1);
    }

private:
    void show(KVRP3::ClipInfo clip)
    {
        std::printf("%s: %u fields, %s, %u tracks\n", clip.clip_id.to_string().c_str(), clip.clip_length,
                    KVRP3::VideoStandard_to_string(clip.video_standard).to_string().c_str(),
                    clip.track_info_vector.count);
        QCoreApplication::exit(0);
    }

    KVRP3::CallbackGroup_set4 answer_;
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    KVRP3::APIQt server(nullptr);
    ClipPanel panel;

    QObject::connect(&server, &KVRP3::APIQt::connected,
                     [&] { panel.ask(server, words.value(2, "bars_and_tone")); });
    QObject::connect(&server, &KVRP3::APIQt::stateChanged, [&](QAbstractSocket::SocketState state) {
        if (state == QAbstractSocket::UnconnectedState)
            panel.complain(AString::l1("no connection"));
    });
    // Within the event loop: an attempt may fail at once, and a loop that does not run cannot be ended.
    QTimer::singleShot(0, &server,
                       [&] { server.connect_to_server(QHostAddress(words.value(1, "127.0.0.1"))); });
    return QCoreApplication::exec();
}
