// What clients have the server log goes to a logging category, silent by default; nothing is kept.
#include <simulator/call_p.h>

#include <QLoggingCategory>

namespace simulator {

namespace {

Q_LOGGING_CATEGORY(log_category, "simulator.log", QtInfoMsg)

Refusal log(Call& call)
{
    qCDebug(log_category).noquote() << call.text("LogClient") << call.text("LogFilename")
                                    << call.text("LogLine") << (call.has("LogError") ? "error:" : "")
                                    << call.text("LogText");
    return {};
}

Refusal debug_label(Call& call)
{
    qCDebug(log_category).noquote() << call.text("DebugString");
    return {};
}

} // namespace

CommandRows logging_commands()
{
    return {
        {"log", log},
        {"debug_label", debug_label},
    };
}

} // namespace simulator
