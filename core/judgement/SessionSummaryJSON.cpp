#include "core/judgement/SessionSummaryJSON.hpp"

#include "core/judgement/SessionSummary.hpp"
#include "core/model/DateText.hpp"
#include "core/model/JSON.hpp"

#include <utility>

namespace ostrivane {

namespace {

using Members = JSON::MembersOf<SessionSummary>;

template <class T>
constexpr bool isDate = std::is_same_v<std::remove_cvref_t<T>, Date>;

template <class T>
std::optional<T> readField(const boost::json::value* field) {
    if constexpr (JSON::IsOptional<T>::value) {
        if (!field)
            return T(std::nullopt);
    }
    if (!field)
        return std::nullopt;
    if constexpr (isDate<T>) {
        const auto text = JSON::read<std::string>(*field);
        return text ? DateText::fromISO8601(*text) : std::nullopt;
    } else {
        return JSON::read<T>(*field);
    }
}

} // namespace

std::string sessionSummaryJSON(const SessionSummary& summary) {
    std::string out = "{";
    bool isTellable = true;
    boost::mp11::mp_for_each<Members>([&](auto member) {
        const auto& value = summary.*member.pointer;
        if constexpr (JSON::IsOptional<std::remove_cvref_t<decltype(value)>>::value) {
            if (!value)
                return;
        }
        JSON::writeText(out += out.size() == 1 ? "" : ",", member.name);
        out += ':';
        if constexpr (isDate<decltype(value)>) {
            const auto text = DateText::iso8601(value);
            isTellable = isTellable && text;
            JSON::writeText(out, text.value_or(""));
        } else {
            JSON::write(out, value);
        }
    });
    return isTellable ? out + '}' : "{}";
}

std::optional<SessionSummary> readSessionSummary(std::string_view json) {
    const auto document = JSON::parse(json);
    if (!document || !document->is_object())
        return std::nullopt;
    SessionSummary summary;
    bool isWhole = true;
    boost::mp11::mp_for_each<Members>([&](auto member) {
        auto& value = summary.*member.pointer;
        auto read = readField<std::remove_cvref_t<decltype(value)>>(document->get_object().if_contains(member.name));
        if (read)
            value = *std::move(read);
        else
            isWhole = false;
    });
    return isWhole ? std::optional(std::move(summary)) : std::nullopt;
}

} // namespace ostrivane
