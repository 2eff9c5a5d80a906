#pragma once

#include "app/model/KeyValueStore.hpp"
#include "core/sampling/platform/macos/CFHandle.hpp"

namespace ostrivane {

/// The choices in the system's preferences, in one domain for every face of the program: the one of the process itself
/// would be another for the window than for the terminal. JSON is kept as data. The system holds the values, and shows
/// what another program set without being asked to look.
class MacKeyValueStore final : public KeyValueStore {
public:
    explicit MacKeyValueStore(std::string domain);

    std::optional<bool> boolean(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::int64_t> integer(std::string_view key) const override;
    std::optional<std::string> text(std::string_view key) const override;
    std::optional<std::string> json(std::string_view key) const override;

    void setBoolean(std::string_view key, bool value) override;
    void setNumber(std::string_view key, double value) override;
    void setInteger(std::string_view key, std::int64_t value) override;
    void setText(std::string_view key, std::string_view value) override;
    void setJSON(std::string_view key, std::string_view document) override;
    void remove(std::string_view key) override;
    void together(const std::function<void()>& changes) override;

    std::vector<std::string> keys() const override;
    void reload() override;
    std::function<bool()> watch() const override;
    std::optional<std::string> problem() const override { return unkept; }
    std::string place() const override;

private:
    using Values = std::shared_ptr<const CFHandle<CFDictionaryRef>>;

    static Values allIn(CFStringRef domain);
    CFHandle<CFPropertyListRef> value(std::string_view key) const;
    void put(std::string_view key, CFPropertyListRef value);
    void keepChanges();

    std::string name;
    CFHandle<CFStringRef> domain;
    Values seen; ///< what stood there when the values were last read
    std::optional<std::string> unkept;
    bool isGrouping = false; ///< within `together`
};

} // namespace ostrivane
