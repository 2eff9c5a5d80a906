#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <boost/json.hpp>

#include <string>

namespace {

boost::json::object domains;

/// Stand for places, and are never looked into.
const int anyHost = 0, currentUser = 0;

/// The values of a domain; null when there are none.
boost::json::object* domainOf(CFStringRef application, CFStringRef user, CFStringRef host) {
    if (user != kCFPreferencesCurrentUser || host != kCFPreferencesAnyHost)
        macsim::fault("preferences of another user or host");
    auto* domain = domains.if_contains(macsim::textOf(application));
    return domain ? &domain->as_object() : nullptr;
}

} // namespace

const CFStringRef kCFPreferencesAnyHost = reinterpret_cast<CFStringRef>(&anyHost);
const CFStringRef kCFPreferencesCurrentUser = reinterpret_cast<CFStringRef>(&currentUser);

namespace macsim {

boost::json::object& preferences() {
    return domains;
}

void resetPreferences() {
    domains.clear();
}

} // namespace macsim

CFPropertyListRef CFPreferencesCopyValue(CFStringRef key, CFStringRef application, CFStringRef user, CFStringRef host) {
    const auto* domain = domainOf(application, user, host);
    const auto* value = domain ? domain->if_contains(macsim::textOf(key)) : nullptr;
    return value ? macsim::newObject(*value) : nullptr;
}

CFDictionaryRef CFPreferencesCopyMultiple(CFArrayRef keys, CFStringRef application, CFStringRef user,
                                          CFStringRef host) {
    if (keys)
        macsim::fault("only all values can be had");
    const auto* domain = domainOf(application, user, host);
    return static_cast<CFDictionaryRef>(macsim::newObject(domain ? *domain : boost::json::object()));
}

CFArrayRef CFPreferencesCopyKeyList(CFStringRef application, CFStringRef user, CFStringRef host) {
    const auto* domain = domainOf(application, user, host);
    if (!domain || domain->empty())
        return nullptr;
    boost::json::array keys;
    for (const auto& [key, value] : *domain)
        keys.emplace_back(key);
    return static_cast<CFArrayRef>(macsim::newObject(keys));
}

void CFPreferencesSetValue(CFStringRef key, CFPropertyListRef value, CFStringRef application, CFStringRef user,
                           CFStringRef host) {
    auto* domain = domainOf(application, user, host);
    if (!domain)
        domain = &(domains[macsim::textOf(application)] = boost::json::object()).as_object();
    if (value)
        (*domain)[macsim::textOf(key)] = macsim::jsonOf(value);
    else
        domain->erase(macsim::textOf(key));
}

Boolean CFPreferencesAppSynchronize(CFStringRef application) {
    macsim::textOf(application); // must be one
    return !macsim::refused("CFPreferencesAppSynchronize");
}
