#include "Common/JsonWriter.h"

#include <gtest/gtest.h>

using namespace Maptorn;

TEST(JsonWriter, PrettyFormUsesTabsOneSpaceAfterColonsAndNoTrailingTerminator)
{
    Json::FJsonObject Object = Json::FJsonObject::object();
    Object["EngineVersion"] = "5.1.1";
    Object["ModType"] = 0;
    EXPECT_EQ(Json::WritePretty(Object, "\r\n"), "{\r\n\t\"EngineVersion\": \"5.1.1\",\r\n\t\"ModType\": 0\r\n}");
    EXPECT_EQ(Json::WritePretty(Object, "\n"), "{\n\t\"EngineVersion\": \"5.1.1\",\n\t\"ModType\": 0\n}");
}

TEST(JsonWriter, MembersKeepTheirOrderAndNestedObjectsOpenOnTheNextLine)
{
    Json::FJsonObject Object = Json::FJsonObject::object();
    Object["Z"] = true;
    Object["A"]["Inner"] = 1.5;
    Object["M"] = Json::FJsonObject::array({"a", "b"});
    EXPECT_EQ(Json::WritePretty(Object, "\n"),
        "{\n\t\"Z\": true,\n\t\"A\":\n\t{\n\t\t\"Inner\": 1.5\n\t},\n\t\"M\": [ \"a\", \"b\" ]\n}");
}

TEST(JsonWriter, NumbersArePrintedAsDoublesWithSeventeenDigits)
{
    Json::FJsonObject Object = Json::FJsonObject::object();
    Object["Zero"] = 0;
    Object["Big"] = 1234567890123;
    Object["Third"] = 1.0 / 3.0;
    EXPECT_EQ(Json::WriteCondensed(Object), "{\"Zero\":0,\"Big\":1234567890123,\"Third\":0.33333333333333331}");
}

TEST(JsonWriter, StringsEscapeControlCharactersButNotSlashesOrNonAscii)
{
    Json::FJsonObject Object = Json::FJsonObject::object();
    Object["Text"] = "a\"b\\c/d\te\n\x01\xC3\xA9";
    EXPECT_EQ(Json::WriteCondensed(Object), "{\"Text\":\"a\\\"b\\\\c/d\\te\\n\\u0001\xC3\xA9\"}");
}

TEST(JsonWriter, EngineVersionIsCutBeforeTheFirstDashOnlyWhenSomethingFollowsIt)
{
    EXPECT_EQ(EngineVersionBeforeDash("5.1.1-23901901+++UE5+Release-5.1"), "5.1.1");
    EXPECT_EQ(EngineVersionBeforeDash("5.1.1"), std::nullopt);
    EXPECT_EQ(EngineVersionBeforeDash("5.1.1-"), std::nullopt);
}
