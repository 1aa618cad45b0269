// Lists the hardware control panels that a server is configured for, with their keyboards and channels.
//
// usage: 09_control_panels [SERVER'S ADDRESS]
#include <skuan/config/cf_control_panel.h>
#include <skuan/config/cf_model.h>
#include <skuan/session/spark.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    Spark session(false);
    const CFControlPanel panels(session.cf_model());

    const auto show = [&] {
        for (unsigned panel = 0; panel < panels.size(); ++panel) {
            if (!panels.exists(panel))
                continue;
            std::printf("panel %u, keyboard %s, channels ", panel, qPrintable(panels.get_kbd_id(panel)));
            const QSet<unsigned> allowed = panels.get_channels(panel);
            for (unsigned channel = 0; channel < 26; ++channel)
                if (allowed.contains(channel))
                    std::printf("%c", static_cast<char>('A' + channel));
            std::printf("\n");
        }
        QCoreApplication::exit(0);
    };
    QObject::connect(session.cf_model(), &CFModel::fully_scanned, &session, show);

    session.set_server(QHostAddress(argc > 1 ? argv[1] : "127.0.0.1"));
    return QCoreApplication::exec();
}
