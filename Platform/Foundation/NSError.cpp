#include "Foundation/NSError.h"

#include "Foundation/NSString.h"

NS_IMPLEMENTATION(NSError)

NSError::NSError(std::string domain, long code, std::string localizedDescription)
    : _domain(std::move(domain))
    , _code(code)
    , _localizedDescription(std::move(localizedDescription))
{
}

std::string NSError::description() const
{
    return stringWithFormat("Error Domain=%@ Code=%ld \"%@\"", { _domain, _code, _localizedDescription });
}
