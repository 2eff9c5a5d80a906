#pragma once

#include "app/model/KeyValueStore.hpp"

#include <map>
#include <optional>
#include <string>

namespace ostrivane {

/// The choices in a text file, "settings.ini", that a person can read and change: one line a key, with a JSON value; a
/// word without quotes is a text. Several programs may use one file: each writes its own changes into what is there. A
/// file that cannot be read is never written over.
class FileKeyValueStore final : public KeyValueStore {
public:
    /// @param folder  a full path, of a folder that need not be there; absent when there is none to use
    explicit FileKeyValueStore(const std::optional<std::string>& folder);

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
    std::optional<std::string> problem() const override { return unwritten ? unwritten : unread; }
    std::string place() const override { return path; }

private:
    /// What tells one state of the file from another without reading it; the same for every state without a file.
    struct Stamp {
        std::uint64_t device = 0, inode = 0, size = 0;
        std::int64_t modifiedSec = 0, modifiedNanos = 0, changedSec = 0, changedNanos = 0;

        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    struct Content;
    using Change = std::optional<std::string>; ///< what stands behind the key; absent: nothing any more

    template <class Status>
    static Stamp stampOf(const Status& status);
    static Content read(const std::string& path);

    template <class Value>
    std::optional<Value> as(std::string_view key) const;
    const std::string* written(std::string_view key) const;
    void change(std::string_view key, Change value);
    void keepChanges();
    std::optional<std::string> writeChanges() const;

    std::string folder; ///< empty when there is none
    std::string path;
    std::map<std::string, std::string, std::less<>> values; ///< as they are written: what was read, and own changes
    std::map<std::string, Change, std::less<>> unkept;      ///< own changes that are not in the file
    Stamp seen;                                             ///< of the file that was read
    std::optional<std::string> unread, unwritten;           ///< why
    bool isGrouping = false;                                ///< within `together`
};

} // namespace ostrivane
