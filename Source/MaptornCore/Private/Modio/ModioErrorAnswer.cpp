#include "Modio/ModioErrorAnswer.h"

#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"

namespace Maptorn
{
namespace
{
// A field's error is a text, or a list of texts.
std::string FieldErrorText(const JsonFields::FJson& Value)
{
    if (Value.is_string())
    {
        return Value.get<std::string>();
    }
    std::string Text;
    if (Value.is_array())
    {
        for (const JsonFields::FJson& Item : Value)
        {
            if (Item.is_string())
            {
                Text += (Text.empty() ? "" : " ") + Item.get<std::string>();
            }
        }
    }
    return Text;
}
}

FModioErrorAnswer ReadErrorAnswer(int32 Status, const std::string& Body)
{
    FModioErrorAnswer Answer;
    Answer.Status = Status;
    const JsonFields::FJson Document = JsonFields::FJson::parse(Body, nullptr, false);
    const JsonFields::FJson* Error = JsonFields::TryGetObject(Document, "error");
    if (!Error)
    {
        return Answer;
    }
    Answer.ErrorRef = JsonFields::TruncateToInt32(JsonFields::GetNumber(*Error, "error_ref"));
    Answer.Message = JsonFields::GetString(*Error, "message");
    if (const JsonFields::FJson* Fields = JsonFields::TryGetObject(*Error, "errors"))
    {
        for (const auto& [Field, Value] : Fields->items())
        {
            Answer.FieldErrors.emplace_back(Field, FieldErrorText(Value));
        }
    }
    return Answer;
}

std::string DescribeErrorAnswer(const FModioErrorAnswer& Answer)
{
    std::string Text = Answer.Message.empty() ? std::string("mod.io refused the request") : Answer.Message;
    Text += Answer.ErrorRef != 0 ? Printf(" (HTTP %d, error_ref %d)", Answer.Status, Answer.ErrorRef) : Printf(" (HTTP %d)", Answer.Status);
    for (std::size_t Index = 0; Index < Answer.FieldErrors.size(); ++Index)
    {
        Text += (Index == 0 ? ": " : "; ") + Answer.FieldErrors[Index].first + ": " + Answer.FieldErrors[Index].second;
    }
    return Text;
}

std::string DescribeErrorAnswer(int32 Status, const std::string& Body)
{
    return DescribeErrorAnswer(ReadErrorAnswer(Status, Body));
}
}
