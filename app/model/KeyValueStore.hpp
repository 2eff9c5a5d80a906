#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrivane {

/// The user's lasting choices, by key: the platform's store of preferences, in whatever form that has. A value of
/// another kind than is asked for counts as absent, but a whole number is a number, and a number without a fraction is
/// a whole one. Belongs to one thread.
class KeyValueStore {
public:
    virtual ~KeyValueStore() = default;

    virtual std::optional<bool> boolean(std::string_view key) const = 0;
    virtual std::optional<double> number(std::string_view key) const = 0; ///< finite
    virtual std::optional<std::int64_t> integer(std::string_view key) const = 0;
    virtual std::optional<std::string> text(std::string_view key) const = 0;
    virtual std::optional<std::string> json(std::string_view key) const = 0; ///< a JSON document

    /// Each is lasting when the call returns, unless `problem` says otherwise. What a program set stands for it either
    /// way.
    virtual void setBoolean(std::string_view key, bool value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setInteger(std::string_view key, std::int64_t value) = 0;
    virtual void setText(std::string_view key, std::string_view value) = 0;
    virtual void setJSON(std::string_view key, std::string_view document) = 0;
    virtual void remove(std::string_view key) = 0;

    /// Makes several changes as one: they are lasting together when this returns, and not before.
    virtual void together(const std::function<void()>& changes) { changes(); }

    /// Of this program's own domain.
    virtual std::vector<std::string> keys() const = 0;

    /// Reads what other programs changed meanwhile.
    virtual void reload() = 0;

    /// Tells whether another program may have changed the store since it was last asked. May be asked on any one
    /// thread, and outlive the store; costs a few microseconds.
    virtual std::function<bool()> watch() const = 0;

    /// Why the choices cannot be read or kept, in the user's words; absent when all is well.
    virtual std::optional<std::string> problem() const = 0;

    /// Where the choices lie, for people.
    virtual std::string place() const = 0;
};

/// The one of the user who runs this process.
std::unique_ptr<KeyValueStore> nativeKeyValueStore();

} // namespace ostrivane
