#pragma once

#include <string>

namespace Maptorn
{
// The mod.io plug-in's format checks, used to enable the account page's buttons.
// An e-mail is valid when non-empty and shaped like name@domain.tld.
bool IsValidEmailAddressFormat(const std::string& EmailAddress);
// A security code is valid when, trimmed, it has exactly 5 characters.
bool IsValidSecurityCodeFormat(const std::string& SecurityCode);
}
