#include "core/sampling/platform/MachineName.hpp"

#include "core/model/Text.hpp"

#include <algorithm>
#include <array>

namespace ostrivane {

namespace {

constexpr std::array<std::string_view, 10> placeholders{"to be filled by o.e.m.",
                                                        "system product name",
                                                        "system manufacturer",
                                                        "default string",
                                                        "not specified",
                                                        "not applicable",
                                                        "none",
                                                        "invalid",
                                                        "unknown",
                                                        "0123456789"};

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool startsWithCaseless(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), text.begin(), [](char a, char b) { return lower(a) == lower(b); });
}

bool isPlaceholder(std::string_view text) {
    return std::any_of(placeholders.begin(), placeholders.end(), [&](std::string_view placeholder) {
        return text.size() == placeholder.size() && startsWithCaseless(text, placeholder);
    });
}

/// A field of the firmware's as a name: up to its NUL; empty for a placeholder.
std::string name(std::string_view field) {
    const std::string_view text = Text::trimmed(field.substr(0, field.find('\0')));
    return isPlaceholder(text) ? std::string() : Text::repaired(text);
}

/// Empty without a product; the vendor only where the product does not begin with it.
std::string withVendor(const std::string& vendor, const std::string& product) {
    if (vendor.empty() || product.empty() || startsWithCaseless(product, vendor))
        return product;
    return vendor + " " + product;
}

} // namespace

std::string MachineName::modelIdentifier() const {
    for (const std::string& field : {name(productName), name(compatible)})
        if (!field.empty())
            return field;
    return "PC";
}

std::string MachineName::marketingName() const {
    const std::string vendor = name(sysVendor);
    // This maker puts an order number into the name and the name into the version.
    const std::string version = vendor == "LENOVO" ? name(productVersion) : std::string();
    for (const std::string& field :
         {version, withVendor(vendor, name(productName)), withVendor(name(boardVendor), name(boardName)), name(model)})
        if (!field.empty())
            return field;
    return modelIdentifier();
}

} // namespace ostrivane
