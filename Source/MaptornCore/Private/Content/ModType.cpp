#include "Content/ModType.h"

#include "Common/StringUtil.h"
#include "Content/KelvorDefinition.h"

namespace Maptorn
{
const char* ModTypeWord(EModType Type)
{
    switch (Type)
    {
    case EModType::Map:
        return "Map";
    case EModType::Mod:
        return "Mod";
    case EModType::GameMode:
        return "GameMode";
    }
    return "";
}

std::optional<EModType> ParseModType(const std::string& Text)
{
    for (EModType Type : {EModType::Map, EModType::Mod, EModType::GameMode})
    {
        if (EqualsIgnoreCase(Text, ModTypeWord(Type)))
        {
            return Type;
        }
    }
    return std::nullopt;
}

const char* DefinitionClassName(EModType Class)
{
    switch (Class)
    {
    case EModType::Map:
        return "Kelvor_Map";
    case EModType::Mod:
        return "Kelvor_Mod";
    case EModType::GameMode:
        return "Kelvor_GameMode";
    }
    return "";
}

std::optional<EModType> ParseDefinitionClassName(const std::string& Name)
{
    for (EModType Class : {EModType::Map, EModType::Mod, EModType::GameMode})
    {
        if (Name == DefinitionClassName(Class))
        {
            return Class;
        }
    }
    return std::nullopt;
}

std::string GetLongPackageName(const std::string& SoftObjectPath)
{
    const std::size_t Dot = SoftObjectPath.find('.');
    return Dot == std::string::npos ? SoftObjectPath : SoftObjectPath.substr(0, Dot);
}
}
