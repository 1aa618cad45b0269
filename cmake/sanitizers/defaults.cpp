// What the sanitizers look at, built into every program of a sanitizer preset, so that a test run by
// hand or in a debugger is judged like one that ctest runs. ASAN_OPTIONS and the like still override.
#define SANITIZER_HOOK extern "C" __attribute__((used, visibility("default"))) const char*

SANITIZER_HOOK __asan_default_options()
{
    return "detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1";
}

SANITIZER_HOOK __ubsan_default_options() { return "print_stacktrace=1"; }
