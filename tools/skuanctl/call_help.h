// What people are told about commands: which there are, what one of them takes, what was meant.
#pragma once

#include <QString>

/// "there is no command 'x'", with what may have been meant.
QString no_such_command(const QString& name);
