// GLib is not built for the thread sanitizer, which knows none of its locks: what it calls (`free`, `close`, ...) says
// nothing about races. What our code does is looked at wherever it is called from.
extern "C" const char* __tsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier): the sanitizer's name

extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libglib-2.0.so\n"
           "called_from_lib:libgobject-2.0.so\n"
           "called_from_lib:libgio-2.0.so\n";
}
