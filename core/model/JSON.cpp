#include "core/model/JSON.hpp"

#include "core/model/Text.hpp"

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value_stack.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace ostrivane::JSON {

namespace {

namespace json = boost::json;

/// Builds a value from the parser's events. It stands in for the library's own builder because that one takes numbers
/// with a fraction from the parser's quick conversion, which is not always the nearest double.
struct ExactBuilder {
    static constexpr std::size_t max_array_size = json::array::max_size();
    static constexpr std::size_t max_object_size = json::object::max_size();
    static constexpr std::size_t max_string_size = json::string::max_size();
    static constexpr std::size_t max_key_size = json::string::max_size();

    bool on_document_begin(json::error_code&) { return true; }
    bool on_document_end(json::error_code&) { return true; }
    bool on_array_begin(json::error_code&) { return true; }
    bool on_object_begin(json::error_code&) { return true; }
    bool on_array_end(std::size_t size, json::error_code&) {
        values.push_array(size);
        return true;
    }
    bool on_object_end(std::size_t size, json::error_code&) {
        values.push_object(size);
        return true;
    }
    bool on_key_part(json::string_view part, std::size_t, json::error_code&) {
        values.push_chars(part);
        return true;
    }
    bool on_key(json::string_view part, std::size_t, json::error_code&) {
        values.push_key(part);
        return true;
    }
    bool on_string_part(json::string_view part, std::size_t, json::error_code&) {
        values.push_chars(part);
        return true;
    }
    bool on_string(json::string_view part, std::size_t, json::error_code&) {
        values.push_string(part);
        return true;
    }
    bool on_number_part(json::string_view, json::error_code&) { return true; }
    bool on_int64(std::int64_t number, json::string_view, json::error_code&) {
        values.push_int64(number);
        return true;
    }
    bool on_uint64(std::uint64_t number, json::string_view, json::error_code&) {
        values.push_uint64(number);
        return true;
    }
    bool on_double(double quick, json::string_view digits, json::error_code&) {
        values.push_double(Text::number<double>(std::string_view(digits.data(), digits.size())).value_or(quick));
        return true;
    }
    bool on_bool(bool value, json::error_code&) {
        values.push_bool(value);
        return true;
    }
    bool on_null(json::error_code&) {
        values.push_null();
        return true;
    }
    bool on_comment_part(json::string_view, json::error_code&) { return true; }
    bool on_comment(json::string_view, json::error_code&) { return true; }

    json::value_stack values;
};

} // namespace

std::optional<json::value> parse(std::string_view text) {
    json::basic_parser<ExactBuilder> parser{json::parse_options()};
    parser.handler().values.reset();
    json::error_code error;
    std::size_t used = parser.write_some(false, text.data(), text.size(), error);
    if (error || !parser.done())
        return std::nullopt;
    if (text.find_first_not_of(" \t\r\n", used) != std::string_view::npos)
        return std::nullopt;
    return parser.handler().values.release();
}

void writeText(std::string& out, std::string_view text) {
    const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
    if (std::ranges::all_of(text, isPlain)) { // nearly every text, and the serializer's set-up costs more than that
        out += '"';
        out += text;
        out += '"';
        return;
    }
    const std::string valid = Text::repaired(text); // one stray byte would make the whole document unreadable
    out += json::serialize(json::string_view(valid.data(), valid.size()));
}

void writeNumber(std::string& out, double number) {
    if (!std::isfinite(number))
        out += "null";
    else if (number == 0 && std::signbit(number))
        out += "-0.0"; // "-0" would be read as an integer, which has no sign at zero
    else
        fmt::format_to(std::back_inserter(out), "{}", number);
}

} // namespace ostrivane::JSON
