#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace ostrivane {

/// The user's time zone, for the life of the object.
class TimeZone {
public:
    explicit TimeZone(const char* name) {
        if (const char* was = std::getenv("TZ"))
            before = was;
        set(name);
    }
    ~TimeZone() { before.empty() ? reset() : set(before.c_str()); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void set(const char* name) {
        ::setenv("TZ", name, 1);
        ::tzset();
    }
    static void reset() {
        ::unsetenv("TZ");
        ::tzset();
    }
    std::string before;
};

} // namespace ostrivane
