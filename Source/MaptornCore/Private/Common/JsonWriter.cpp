#include "Common/JsonWriter.h"

#include "Common/StringUtil.h"

namespace Maptorn::Json
{
namespace
{
std::string Quote(const std::string& Text)
{
    std::string Out = "\"";
    for (const char C : Text)
    {
        switch (C)
        {
        case '\\': Out += "\\\\"; break;
        case '\n': Out += "\\n"; break;
        case '\t': Out += "\\t"; break;
        case '\b': Out += "\\b"; break;
        case '\f': Out += "\\f"; break;
        case '\r': Out += "\\r"; break;
        case '"': Out += "\\\""; break;
        default:
            if (static_cast<unsigned char>(C) < 32)
            {
                Out += Printf("\\u%04x", static_cast<unsigned>(C));
            }
            else
            {
                Out += C;   // "/" and non-ASCII stay as they are
            }
        }
    }
    return Out + "\"";
}

std::string Scalar(const FJsonObject& Value)
{
    if (Value.is_string())
    {
        return Quote(Value.get<std::string>());
    }
    if (Value.is_boolean())
    {
        return Value.get<bool>() ? "true" : "false";
    }
    if (Value.is_number())
    {
        return Printf("%.17g", Value.get<double>());
    }
    return "null";
}

bool IsContainer(const FJsonObject& Value)
{
    return Value.is_object() || Value.is_array();
}

class FPrettyWriter
{
public:
    explicit FPrettyWriter(std::string_view InTerminator)
        : Terminator(InTerminator)
    {
    }

    void Write(const FJsonObject& Value, int Depth)
    {
        if (Value.is_object())
        {
            WriteObject(Value, Depth);
        }
        else if (Value.is_array())
        {
            WriteArray(Value, Depth);
        }
        else
        {
            Out += Scalar(Value);
        }
    }

    std::string Out;

private:
    void Indent(int Depth) { Out.append(static_cast<std::size_t>(Depth), '\t'); }

    void WriteObject(const FJsonObject& Value, int Depth)
    {
        Out += "{";
        bool bFirst = true;
        for (auto It = Value.begin(); It != Value.end(); ++It)
        {
            Out += bFirst ? "" : ",";
            bFirst = false;
            Out += Terminator;
            Indent(Depth + 1);
            Out += Quote(It.key()) + ":";
            if (It.value().is_object())
            {
                // A nested object opens on the line after its key.
                Out += Terminator;
                Indent(Depth + 1);
            }
            else
            {
                Out += " ";
            }
            Write(It.value(), Depth + 1);
        }
        if (!bFirst)
        {
            Out += Terminator;
            Indent(Depth);
        }
        Out += "}";
    }

    void WriteArray(const FJsonObject& Value, int Depth)
    {
        Out += "[";
        bool bFirst = true;
        for (const FJsonObject& Element : Value)
        {
            Out += bFirst ? "" : ",";
            bFirst = false;
            if (IsContainer(Element))
            {
                Out += Terminator;
                Indent(Depth + 1);
            }
            else
            {
                Out += " ";
            }
            Write(Element, Depth + 1);
        }
        if (!bFirst)
        {
            if (IsContainer(Value.back()))
            {
                Out += Terminator;
                Indent(Depth);
            }
            else
            {
                Out += " ";
            }
        }
        Out += "]";
    }

    std::string_view Terminator;
};

void WriteCondensedTo(const FJsonObject& Value, std::string& Out)
{
    if (Value.is_object())
    {
        Out += "{";
        bool bFirst = true;
        for (auto It = Value.begin(); It != Value.end(); ++It)
        {
            Out += bFirst ? "" : ",";
            bFirst = false;
            Out += Quote(It.key()) + ":";
            WriteCondensedTo(It.value(), Out);
        }
        Out += "}";
    }
    else if (Value.is_array())
    {
        Out += "[";
        bool bFirst = true;
        for (const FJsonObject& Element : Value)
        {
            Out += bFirst ? "" : ",";
            bFirst = false;
            WriteCondensedTo(Element, Out);
        }
        Out += "]";
    }
    else
    {
        Out += Scalar(Value);
    }
}
}

std::string WritePretty(const FJsonObject& Value, std::string_view LineTerminator)
{
    FPrettyWriter Writer(LineTerminator);
    Writer.Write(Value, 0);
    return Writer.Out;
}

std::string WriteCondensed(const FJsonObject& Value)
{
    std::string Out;
    WriteCondensedTo(Value, Out);
    return Out;
}
}

namespace Maptorn
{
std::optional<std::string> EngineVersionBeforeDash(const std::string& EngineVersion)
{
    const std::size_t Dash = EngineVersion.find('-');
    if (Dash == std::string::npos || Dash + 1 >= EngineVersion.size())
    {
        return std::nullopt;
    }
    return EngineVersion.substr(0, Dash);
}
}
