#include "core/attribution/BundleInfoCache.hpp"

#include "core/attribution/AppGrouper.hpp"
#include "core/attribution/PathText.hpp"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <memory>

namespace ostrivane {

namespace {

using icu::UnicodeString;

/// Characters as a reader counts them: a letter and its accents are one.
int characterCount(const UnicodeString& text) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
    if (U_FAILURE(error) || !breaks)
        return text.countChar32();
    breaks->setText(text);
    int count = 0;
    while (breaks->next() != icu::BreakIterator::DONE)
        ++count;
    return count;
}

bool containsIgnoringCase(UnicodeString text, UnicodeString part) {
    return text.foldCase().indexOf(part.foldCase()) >= 0 || part.isEmpty();
}

/// A bundle that calls itself by a short form ("VS") shows its file name ("VS Studio").
bool isAbbreviation(const UnicodeString& name, const UnicodeString& fileName) {
    constexpr int longest = 4;
    const int length = characterCount(name);
    return length <= longest && length < characterCount(fileName) && containsIgnoringCase(fileName, name);
}

/// Without format characters (marks of direction, which some names carry) and without white space at both ends.
std::string cleaned(const UnicodeString& name) {
    UnicodeString kept;
    for (int at = 0; at < name.length(); at = name.moveIndex32(at, 1))
        if (const UChar32 character = name.char32At(at); u_charType(character) != U_FORMAT_CHAR)
            kept.append(character);
    int start = 0, end = kept.length();
    while (start < end && u_isUWhiteSpace(kept[start]))
        ++start;
    while (end > start && u_isUWhiteSpace(kept[end - 1]))
        --end;
    std::string out;
    return kept.tempSubStringBetween(start, end).toUTF8String(out);
}

} // namespace

BundleInfoCache::BundleInfoCache(std::string_view nameOfSystem, BundleReader asked)
    : systemName(nameOfSystem), reader(std::move(asked)) {}

const BundleInfoCache::Info& BundleInfoCache::info(const std::string& key) {
    // Held over the slow first reading too: of two who ask for one bundle only one reads it.
    const std::lock_guard guard(cacheLock);
    const auto found = cache.find(key);
    return found != cache.end() ? found->second : cache.emplace(key, read(key)).first->second;
}

BundleInfoCache::Info BundleInfoCache::read(const std::string& key) const {
    if (key == AppGrouper::systemKey)
        return {systemName, std::nullopt};
    if (key.starts_with(AppGrouper::executablePrefix))
        return {key.substr(AppGrouper::executablePrefix.size()), std::nullopt};
    const BundleFacts facts = reader(key);
    const std::string stem(PathText::withoutExtension(PathText::lastComponent(key)));
    const auto fileName = UnicodeString::fromUTF8(facts.fileName.empty() ? stem : facts.fileName);
    const auto name =
        facts.names.empty() ? UnicodeString::fromUTF8(stem) : UnicodeString::fromUTF8(facts.names.front());
    const std::string shown = cleaned(isAbbreviation(name, fileName) ? fileName : name);
    return {shown.empty() ? stem : shown, facts.bundleID};
}

} // namespace ostrivane
