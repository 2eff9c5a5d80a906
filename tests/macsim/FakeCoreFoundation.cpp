#include "tests/macsim/FakeParts.hpp"
#include "tests/macsim/FakeSystem.hpp"

#include <boost/json.hpp>

#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace {

struct Object;
using List = std::vector<const Object*>;
using Dictionary = std::map<std::string, const Object*>;

struct URL {
    std::string path;
};

/// Its dictionaries by the names that `macsim::bundles` gives them.
struct Bundle {
    Dictionary parts;
};

/// A container holds one reference to each of its members, so what was borrowed from it dies with it.
struct Object {
    std::variant<std::string, std::int64_t, double, bool, std::vector<UInt8>, List, Dictionary, URL, Bundle> value;
    mutable long references = 1;
};

enum TypeID : CFTypeID {
    stringType = 1,
    numberType,
    booleanType,
    dataType,
    arrayType,
    dictionaryType,
    urlType,
    bundleType
};

std::set<CFTypeRef> live;

/// The two booleans belong to the system: nobody counts references to them.
const Object yes{true}, no{false};

bool isImmortal(CFTypeRef reference) {
    return reference == &yes || reference == &no;
}

const Object* newObject(decltype(Object::value) value) {
    const auto* object = new Object{std::move(value)};
    live.insert(object);
    return object;
}

/// The object behind a reference; a dead one is a fault, and null.
const Object* alive(CFTypeRef reference, const char* call) {
    if (isImmortal(reference) || live.contains(reference))
        return static_cast<const Object*>(reference);
    macsim::fault(std::string(call) + (reference ? " of an object that is gone" : " of NULL"));
    return nullptr;
}

template <class Value>
const Value* valueOf(CFTypeRef reference, const char* call) {
    const Object* object = alive(reference, call);
    if (!object)
        return nullptr;
    const auto* value = std::get_if<Value>(&object->value);
    if (!value)
        macsim::fault(std::string(call) + " of an object of another type");
    return value;
}

CFTypeID typeOf(const Object& object) {
    return std::visit(
        []<class Value>(const Value&) -> CFTypeID {
            if constexpr (std::is_same_v<Value, std::string>)
                return stringType;
            else if constexpr (std::is_same_v<Value, bool>)
                return booleanType;
            else if constexpr (std::is_arithmetic_v<Value>)
                return numberType;
            else if constexpr (std::is_same_v<Value, List>)
                return arrayType;
            else if constexpr (std::is_same_v<Value, Dictionary>)
                return dictionaryType;
            else if constexpr (std::is_same_v<Value, URL>)
                return urlType;
            else if constexpr (std::is_same_v<Value, Bundle>)
                return bundleType;
            else
                return dataType;
        },
        object.value);
}

std::vector<UInt8> unsignedBytes(std::string_view hex) {
    std::vector<UInt8> bytes;
    for (const std::byte byte : macsim::bytesOfHex(hex))
        bytes.push_back(std::to_integer<UInt8>(byte));
    return bytes;
}

Dictionary newMembers(const boost::json::object& object);

const Object* newObjectOf(const boost::json::value& json) {
    if (const auto* text = json.if_string())
        return newObject(std::string(*text));
    if (const auto* flag = json.if_bool())
        return newObject(*flag);
    if (json.is_int64() || json.is_uint64()) // the registry's numbers are read signed
        return newObject(json.is_int64() ? json.get_int64() : static_cast<std::int64_t>(json.get_uint64()));
    if (const auto* fraction = json.if_double())
        return newObject(*fraction);
    if (const auto* array = json.if_array()) {
        List list;
        for (const auto& element : *array)
            list.push_back(newObjectOf(element));
        return newObject(std::move(list));
    }
    const auto& object = json.as_object();
    if (const auto* data = object.if_contains("$data"))
        return newObject(unsignedBytes(data->as_string()));
    return newObject(newMembers(object));
}

Dictionary newMembers(const boost::json::object& object) {
    Dictionary members;
    for (const auto& [key, member] : object)
        members.emplace(key, newObjectOf(member));
    return members;
}

/// Borrowed from the bundle, and gone with it; null when it has no such dictionary.
const Object* partOf(CFBundleRef reference, const char* part, const char* call) {
    const auto* bundle = valueOf<Bundle>(reference, call);
    const auto found = bundle ? bundle->parts.find(part) : Dictionary::const_iterator();
    return bundle && found != bundle->parts.end() ? found->second : nullptr;
}

boost::json::object bundlesByPath;

boost::json::value jsonOfObject(const Object& object);

boost::json::value jsonOfData(const std::vector<UInt8>& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    for (const UInt8 byte : bytes)
        hex += {digits[byte >> 4U], digits[byte & 15U]};
    return {{"$data", hex}};
}

boost::json::value jsonOfObject(const Object& object) {
    return std::visit(
        []<class Value>(const Value& value) -> boost::json::value {
            if constexpr (std::is_same_v<Value, std::string> || std::is_arithmetic_v<Value>) {
                return boost::json::value(value);
            } else if constexpr (std::is_same_v<Value, List>) {
                boost::json::array array;
                for (const Object* element : value)
                    array.push_back(jsonOfObject(*element));
                return array;
            } else if constexpr (std::is_same_v<Value, Dictionary>) {
                boost::json::object members;
                for (const auto& [key, member] : value)
                    members[key] = jsonOfObject(*member);
                return members;
            } else if constexpr (std::is_same_v<Value, std::vector<UInt8>>) {
                return jsonOfData(value);
            } else {
                macsim::fault("no property list");
                return nullptr;
            }
        },
        object.value);
}

} // namespace

const CFBooleanRef kCFBooleanTrue = reinterpret_cast<CFBooleanRef>(&yes);
const CFBooleanRef kCFBooleanFalse = reinterpret_cast<CFBooleanRef>(&no);

namespace macsim {

CFTypeRef newObject(const boost::json::value& value) {
    return newObjectOf(value);
}

std::string textOf(CFTypeRef object) {
    const auto* text = valueOf<std::string>(object, "reading the text");
    return text ? *text : std::string();
}

boost::json::value jsonOf(CFTypeRef object) {
    const Object* found = alive(object, "reading");
    return found ? jsonOfObject(*found) : boost::json::value();
}

void forgetObjects() {
    for (const CFTypeRef object : live)
        delete static_cast<const Object*>(object);
    live.clear();
}

std::size_t liveObjects() {
    return live.size();
}

boost::json::object& bundles() {
    return bundlesByPath;
}

void resetBundles() {
    bundlesByPath.clear();
}

} // namespace macsim

void CFRelease(CFTypeRef reference) {
    const Object* object = alive(reference, "CFRelease");
    if (!object || isImmortal(reference) || --object->references > 0)
        return;
    if (const auto* list = std::get_if<List>(&object->value))
        for (const Object* element : *list)
            CFRelease(element);
    const auto* bundle = std::get_if<Bundle>(&object->value);
    if (const auto* members = bundle ? &bundle->parts : std::get_if<Dictionary>(&object->value))
        for (const auto& [key, member] : *members)
            CFRelease(member);
    live.erase(object);
    delete object;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    const Object* object = alive(reference, "CFGetTypeID");
    return object ? typeOf(*object) : 0;
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    return macsim::jsonOf(one) == macsim::jsonOf(other);
}

CFTypeID CFBooleanGetTypeID() {
    return booleanType;
}
CFTypeID CFStringGetTypeID() {
    return stringType;
}
CFTypeID CFNumberGetTypeID() {
    return numberType;
}
CFTypeID CFDataGetTypeID() {
    return dataType;
}
CFTypeID CFArrayGetTypeID() {
    return arrayType;
}
CFTypeID CFDictionaryGetTypeID() {
    return dictionaryType;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex count, CFStringEncoding encoding,
                                    Boolean) {
    if (encoding != kCFStringEncodingUTF8 || macsim::refused("CFStringCreateWithBytes"))
        return nullptr;
    const auto* text = reinterpret_cast<const char*>(bytes);
    return reinterpret_cast<CFStringRef>(newObject(std::string(text, static_cast<std::size_t>(count))));
}

/// In UTF-16 units, as the system counts: one for each character, two for those of four bytes.
CFIndex CFStringGetLength(CFStringRef string) {
    const auto* text = valueOf<std::string>(string, "CFStringGetLength");
    CFIndex units = 0;
    for (const char letter : text ? *text : std::string()) {
        const auto byte = static_cast<unsigned char>(letter);
        units += (byte & 0xC0) == 0x80 ? 0 : byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) {
    return 3 * length;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding) {
    const auto* text = valueOf<std::string>(string, "CFStringGetCString");
    if (!text || static_cast<CFIndex>(text->size()) >= size)
        return 0;
    std::memcpy(buffer, text->c_str(), text->size() + 1);
    return 1;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    const auto* value = valueOf<bool>(boolean, "CFBooleanGetValue");
    return value && *value;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    if (macsim::refused("CFNumberCreate"))
        return nullptr;
    const Object* made = type == kCFNumberDoubleType ? newObject(*static_cast<const double*>(value))
                                                     : newObject(*static_cast<const std::int64_t*>(value));
    return reinterpret_cast<CFNumberRef>(made);
}

/// Stores a value also when it loses something by it.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const Object* object = alive(number, "CFNumberGetValue");
    if (!object)
        return 0;
    const auto* whole = std::get_if<std::int64_t>(&object->value);
    const auto* fraction = std::get_if<double>(&object->value);
    if (!whole && !fraction) {
        macsim::fault("CFNumberGetValue of an object of another type");
        return 0;
    }
    if (type == kCFNumberDoubleType) {
        *static_cast<double*>(value) = whole ? static_cast<double>(*whole) : *fraction;
        return 1;
    }
    *static_cast<std::int64_t*>(value) = whole ? *whole : static_cast<std::int64_t>(*fraction);
    return whole || std::trunc(*fraction) == *fraction;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex count) {
    return reinterpret_cast<CFDataRef>(newObject(std::vector<UInt8>(bytes, bytes + count)));
}

CFIndex CFDataGetLength(CFDataRef data) {
    const auto* bytes = valueOf<std::vector<UInt8>>(data, "CFDataGetLength");
    return bytes ? static_cast<CFIndex>(bytes->size()) : 0;
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    const auto* bytes = valueOf<std::vector<UInt8>>(data, "CFDataGetBytePtr");
    return bytes ? bytes->data() : nullptr;
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    const auto* elements = valueOf<List>(array, "CFArrayGetCount");
    return elements ? static_cast<CFIndex>(elements->size()) : 0;
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const auto* elements = valueOf<List>(array, "CFArrayGetValueAtIndex");
    if (!elements)
        return nullptr;
    if (index < 0 || static_cast<std::size_t>(index) >= elements->size()) {
        macsim::fault("CFArrayGetValueAtIndex beyond the end");
        return nullptr;
    }
    return (*elements)[static_cast<std::size_t>(index)];
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto* members = valueOf<Dictionary>(dictionary, "CFDictionaryGetValue");
    const auto* name = valueOf<std::string>(key, "CFDictionaryGetValue");
    if (!members || !name)
        return nullptr;
    const auto found = members->find(*name);
    return found == members->end() ? nullptr : found->second;
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex size, Boolean) {
    if (size <= 0 || macsim::refused("CFURLCreateFromFileSystemRepresentation"))
        return nullptr;
    const auto* text = reinterpret_cast<const char*>(path);
    return reinterpret_cast<CFURLRef>(newObject(URL{std::string(text, static_cast<std::size_t>(size))}));
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url) {
    const auto* place = valueOf<URL>(url, "CFBundleCreate");
    const auto* bundle = place ? bundlesByPath.if_contains(place->path) : nullptr;
    if (!bundle)
        return nullptr;
    const Object* made = newObject(Bundle{newMembers(bundle->as_object())});
    return reinterpret_cast<CFBundleRef>(const_cast<Object*>(made));
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) {
    return reinterpret_cast<CFDictionaryRef>(partOf(bundle, "plain", "CFBundleGetInfoDictionary"));
}

CFDictionaryRef CFBundleGetLocalInfoDictionary(CFBundleRef bundle) {
    return reinterpret_cast<CFDictionaryRef>(partOf(bundle, "localized", "CFBundleGetLocalInfoDictionary"));
}

/// No other type than a text is taken for one.
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
    const Object* info = partOf(bundle, "plain", "CFBundleGetIdentifier");
    const auto* members = info ? std::get_if<Dictionary>(&info->value) : nullptr;
    const auto found = members ? members->find("CFBundleIdentifier") : Dictionary::const_iterator();
    const bool isText = members && found != members->end() && typeOf(*found->second) == stringType;
    return isText ? reinterpret_cast<CFStringRef>(found->second) : nullptr;
}
