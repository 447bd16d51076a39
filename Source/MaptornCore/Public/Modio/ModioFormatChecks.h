#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// The mod.io plug-in's format checks, used to enable the account page's buttons.
// An e-mail is valid when non-empty and shaped like name@domain.tld.
MAPTORNCORE_API bool IsValidEmailAddressFormat(const std::string& EmailAddress);
// A security code is valid when, trimmed, it has exactly 5 characters.
MAPTORNCORE_API bool IsValidSecurityCodeFormat(const std::string& SecurityCode);
}
