#include "Modio/ModioFormatChecks.h"

#include <gtest/gtest.h>

using namespace Maptorn;

TEST(ModioFormatChecks, EmailAddressesNeedANameADomainAndATopLevelPart)
{
    for (const char* Valid : {"modder@example.com", "first.last+tag@mail.example.co.uk", "o'brien@example.ie"})
    {
        EXPECT_TRUE(IsValidEmailAddressFormat(Valid)) << Valid;
    }
    for (const char* Invalid : {"", "modder", "modder@example", "@example.com", "mod der@example.com", "modder@@example.com"})
    {
        EXPECT_FALSE(IsValidEmailAddressFormat(Invalid)) << Invalid;
    }
}

TEST(ModioFormatChecks, SecurityCodesHaveFiveCharactersOnceTrimmed)
{
    EXPECT_TRUE(IsValidSecurityCodeFormat("P39TM"));
    EXPECT_TRUE(IsValidSecurityCodeFormat("  P39TM\n"));
    EXPECT_FALSE(IsValidSecurityCodeFormat("P39T"));
    EXPECT_FALSE(IsValidSecurityCodeFormat("P39TMX"));
}
