// Two programs in one meet in the server's user dictionary: the studio writes a text under a key, and the
// gallery, which watches the key, sees it. The server may come later than both.
//
// usage: 07_dictionary [SERVER'S ADDRESS [KEY TEXT]]
#include <skuan/config/us_item_model.h>
#include <skuan/config/us_model.h>
#include <skuan/session/spark.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const QHostAddress server(words.value(1, "127.0.0.1"));
    const QString key = words.value(2, "studio.2.state"), text = words.value(3, "rehearsal");

    Spark gallery(false);
    const auto show = [&](const QString& seen) {
        std::printf("%s is %s\n", qPrintable(key), qPrintable(seen));
        if (seen == text) // and not what was there before
            QCoreApplication::exit(0);
    };
    QObject::connect(gallery.us_model()->get_item(key), &USItemModel::changed, &gallery, show);

    // Written on this connection, and again on every later one: what a server forgets comes back.
    Spark studio(false);
    studio.us_model()->get_item(key)->set(text);

    gallery.set_server(server);
    studio.set_server(server);
    return QCoreApplication::exec();
}
