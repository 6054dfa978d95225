#pragma once

#include "Runtime/NSObject.h"

#include <string>

/// Why an operation failed, for people and for logs.
class NSError final : public NSObject {
    NS_CLASS(NSError, NSObject)
public:
    NSError() = default;
    NSError(std::string domain, long code, std::string localizedDescription);

    static constexpr const char* cocoaDomain = "NSCocoaErrorDomain";
    static constexpr const char* posixDomain = "NSPOSIXErrorDomain";

    const std::string& domain() const { return _domain; }
    long code() const { return _code; }
    const std::string& localizedDescription() const { return _localizedDescription; }

    std::string description() const override;

private:
    std::string _domain;
    long _code = 0;
    std::string _localizedDescription;
};
