// Gives a configuration item another value, as a settings page does: it edits a mirror of the server's
// configuration, and never waits. Start it before the server, or end the server meanwhile: it goes on.
//
// usage: 06_configuration [SERVER'S ADDRESS [ITEM VALUE]]
#include <skuan/config/cf_model.h>
#include <skuan/session/spark.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const QString name = words.value(2, "StationName"), value = words.value(3, "Harbour");

    Spark session(false);
    CFModel* const model = session.cf_model();
    CFItemModel* const item = model->get_item(name); // from now on it is kept up to date

    const auto end_when_done = [&] {
        if (!item->commit_done())
            return;
        std::printf("the server has %s\n", qPrintable(item->get()));
        QCoreApplication::exit(0);
    };
    const auto edit = [&] {
        if (!item->have_cf()) {
            std::fprintf(stderr, "there is no %s\n", qPrintable(name));
            return QCoreApplication::exit(1);
        }
        std::printf("%s is %s\n", qPrintable(name), qPrintable(item->get()));
        item->set(value); // lies on top of what the server has until the server says the same
        QObject::connect(item, qOverload<QString>(&CFItemModel::changed), &session, end_when_done);
        model->commit_changes();
        end_when_done(); // it may have been that already
    };
    QObject::connect(model, &CFModel::fully_scanned, &session, edit);

    session.set_server(QHostAddress(words.value(1, "127.0.0.1")));
    return QCoreApplication::exec();
}
