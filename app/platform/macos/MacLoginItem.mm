#include "app/window/LoginItem.hpp"

#import <ServiceManagement/ServiceManagement.h>

namespace ostrivane {

namespace {

class MacLoginItem final : public LoginItem {
public:
    State state() const override {
        switch (SMAppService.mainAppService.status) {
        case SMAppServiceStatusEnabled:
            return State::on;
        case SMAppServiceStatusRequiresApproval:
            return State::needsApproval;
        case SMAppServiceStatusNotRegistered:
            return State::off;
        case SMAppServiceStatusNotFound:
            return State::off;
        }
        return State::unknown;
    }

    std::optional<std::string> set(bool enabled) override {
        NSError* error = nil;
        SMAppService* const service = SMAppService.mainAppService;
        if (enabled ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error])
            return std::nullopt;
        const char* words = error.localizedDescription.UTF8String;
        return std::string(words ? words : "The system does not say why.");
    }
};

} // namespace

std::unique_ptr<LoginItem> nativeLoginItem() {
    return std::make_unique<MacLoginItem>();
}

} // namespace ostrivane
