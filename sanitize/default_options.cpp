// Linked into every program of the sanitizer builds. A request for more
// memory than there is returns null, as the plain allocator does, so that
// the engine takes its own path for a hash table that doesn't fit (it keeps
// the table it has and says so) instead of the sanitizer's abort.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" const char* __ubsan_default_options() { return "print_stacktrace=1"; }
// ThreadSanitizer: the first data race ends the program with an error, so
// that a test driving it sees the failure and not only a report.
extern "C" const char* __tsan_default_options() { return "halt_on_error=1 allocator_may_return_null=1"; }
