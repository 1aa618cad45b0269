// The control language over a local socket: the running program's side, and that of `--tell`.
#pragma once

#include <QLocalServer>

namespace simulator {

class Server;

// Takes lines in UTF-8 and answers each with any number of lines that begin with a blank, and one that is
// "ok" or begins with "error ". Any number of clients, of this user only. One thread, the server's.
class ControlSocket : public QObject
{
    Q_OBJECT
public:
    explicit ControlSocket(Server& server);

    // A name that a program which is gone has left behind is taken over. False: error_text() says why not.
    bool listen(const QString& name);
    QString error_text() const { return error_; }

private:
    void accept();
    void read(QLocalSocket* client);

    Server& server_;
    QString error_;
    int clients_ = 0;
    QLocalServer listener_; // its sockets tell of their end, when it goes, too
};

struct Told
{
    QByteArray answer; // without the blanks
    QString error;     // not empty: it was not done
};

// Has the program that listens under that name carry out a line, and waits until it has.
Told tell(const QString& name, const QString& line);

} // namespace simulator
