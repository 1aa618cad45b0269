#include <skuan/foundation/assertfail.h>

#ifndef NDEBUG
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(logAssert, "skuan.assert", QtWarningMsg)

void assertfail(const char* file, unsigned line, const char* text)
{
    qCWarning(logAssert, "%s:%u: expected %s", file, line, text);
}

void hardassertfail(const char* file, unsigned line, const char* text)
{
    qCCritical(logAssert, "%s:%u: out of memory: %s", file, line, text);
}
#else
void assertfail(const char*, unsigned, const char*) {}
void hardassertfail(const char*, unsigned, const char*) {}
#endif
