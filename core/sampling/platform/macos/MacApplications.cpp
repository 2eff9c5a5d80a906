#include "core/sampling/platform/macos/MacApplications.hpp"

#include "core/sampling/platform/macos/CFValue.hpp"

namespace ostrivane {

namespace {

CFHandle<CFBundleRef> bundleAt(const std::string& path) {
    const CFHandle<CFURLRef> url(
        CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()),
                                                static_cast<CFIndex>(path.size()), /* is a folder */ 1));
    return url ? CFHandle<CFBundleRef>(CFBundleCreate(kCFAllocatorDefault, url.get())) : CFHandle<CFBundleRef>();
}

} // namespace

/// Any folder opens as a bundle: one that is none has no dictionaries, or empty ones, and so says nothing.
BundleFacts MacApplications::bundleFacts(const std::string& path) {
    BundleFacts facts;
    const auto bundle = bundleAt(path);
    if (!bundle)
        return facts;
    const CFTypeRef localized = CFBundleGetLocalInfoDictionary(bundle.get());
    const CFTypeRef plain = CFBundleGetInfoDictionary(bundle.get());
    for (const char* key : {"CFBundleDisplayName", "CFBundleName"})
        for (const CFTypeRef dictionary : {localized, plain})
            if (auto name = CFValue::string(CFValue::member(dictionary, key)))
                facts.names.push_back(*std::move(name));
    facts.bundleID = CFValue::string(CFBundleGetIdentifier(bundle.get()));
    return facts;
}

} // namespace ostrivane
