// Linked into every program of the sanitizer build. A request for more
// memory than there is returns null, as the plain allocator does, so that
// the engine takes its own path for a hash table that doesn't fit (it keeps
// the table it has and says so) instead of the sanitizer's abort.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" const char* __ubsan_default_options() { return "print_stacktrace=1"; }
