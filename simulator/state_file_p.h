// The server's state as XML, from a user's hand or from an earlier run.
#pragma once

#include <QByteArray>
#include <QString>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace simulator {

struct ServerState;

// Puts what the file says in the place of what a fresh state has. Gives an empty text, or the line and what
// is wrong there: then the state is to be thrown away.
QString read_state(QIODevice& file, ServerState& state);

// Read errors are those of reading the file, too.
QString load_state(const QString& path, ServerState& state);

QByteArray state_text(const ServerState& state);

// Empty, or why it could not be saved. Whenever the process or the machine stops, the file there is whole:
// the one before or the new one.
QString save_state(const QString& path, const ServerState& state);

} // namespace simulator
