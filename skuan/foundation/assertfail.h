// The one place where a broken expectation is reported. Nothing stops there: the code after every
// check goes on along a stated fallback, because a program that is on air must not be ended by us.
#pragma once

#include <skuan/export.h>

/// Reports that the condition with source text `text` did not hold; returns always. Any thread.
/// A debug build logs it under the Qt category `skuan.assert`; a release build does nothing.
SKUAN_EXPORT void assertfail(const char* file, unsigned line, const char* text);

/// The same, for a storage object that could not be allocated.
SKUAN_EXPORT void hardassertfail(const char* file, unsigned line, const char* text);

/// True when `condition` holds; otherwise reports it and gives false, so that the caller writes its
/// fallback as `if (!SKUAN_CHECK(len != 0)) return {};`.
#define SKUAN_CHECK(condition)                                                                               \
    (__builtin_expect(static_cast<bool>(condition), true) ||                                                 \
     (assertfail(__FILE__, __LINE__, #condition), false))
