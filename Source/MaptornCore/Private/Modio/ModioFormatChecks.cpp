#include "Modio/ModioFormatChecks.h"

#include "Common/StringUtil.h"
#include "Content/SVRInterface.h"

#include <regex>

namespace Maptorn
{
bool IsValidEmailAddressFormat(const std::string& EmailAddress)
{
    static const std::regex Pattern(R"(^\w+([-+.']\w+)*@\w+([-.]\w+)*\.\w+([-.]\w+)*$)");
    return !EmailAddress.empty() && std::regex_match(EmailAddress, Pattern);
}

bool IsValidSecurityCodeFormat(const std::string& SecurityCode)
{
    return CountCharacters(TrimWhitespace(SecurityCode)) == 5;
}
}
