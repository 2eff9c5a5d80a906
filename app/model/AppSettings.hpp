#pragma once

#include "app/model/KeyValueStore.hpp"
#include "app/model/Preferences.hpp"
#include "app/model/Subscription.hpp"
#include "core/sampling/SamplingSettings.hpp"

#include <functional>
#include <memory>
#include <type_traits>

namespace ostrivane {

/// The user's lasting choices: read once, held in memory, written through one by one. What a stored value cannot tell
/// stands at its default. Belongs to the main thread.
class AppSettings {
public:
    explicit AppSettings(std::unique_ptr<KeyValueStore> store);
    ~AppSettings();
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    const Preferences& operator*() const { return chosen; }
    const Preferences* operator->() const { return &chosen; }

    /// Assigns one choice and writes it, also when it is what stood there: `settings.set(&Preferences::appearance,
    /// AppearanceMode::dark)`. For a member of any type that `Preferences` has.
    template <class Value>
    void set(Value Preferences::*member, std::type_identity_t<Value> value);

    /// What the engine needs to know of them.
    SamplingSettings sampling() const;

    /// Back to the defaults, but for what the user has seen of the welcome.
    void resetAll();

    /// Takes over what another program changed in the store.
    void reload();

    /// Called after each change, on the main thread.
    Subscription observe(std::function<void()> observer);

    KeyValueStore& defaults() { return *store; }
    const KeyValueStore& defaults() const { return *store; }

private:
    struct Signal;

    Preferences load() const;
    void publish();

    std::unique_ptr<KeyValueStore> store;
    Preferences stored; ///< as the store had them last, own writes included
    Preferences chosen;
    std::unique_ptr<Signal> changed;
};

} // namespace ostrivane
