#include "ModioService/SandboxStore.h"

#include "Common/StringUtil.h"

#include <algorithm>
#include <cctype>

namespace Maptorn::Sandbox
{
FSandboxUser* FSandboxStore::FindUserByEmail(const std::string& Email)
{
    for (auto& [Id, User] : Users)
    {
        if (EqualsIgnoreCase(User.Email, Email))
        {
            return &User;
        }
    }
    return nullptr;
}

const FSandboxUser* FSandboxStore::FindUser(int64 Id) const
{
    const auto Found = Users.find(Id);
    return Found == Users.end() ? nullptr : &Found->second;
}

FSandboxUser& FSandboxStore::FindOrAddUser(const std::string& Email, int64 Now)
{
    if (FSandboxUser* Existing = FindUserByEmail(Email))
    {
        return *Existing;
    }
    FSandboxUser User;
    User.Id = NextUserId++;
    User.Email = ToLower(Email);
    User.Username = Email.substr(0, Email.find('@'));
    User.NameId = UniqueNameId(0, User.Username, 0) + "-" + std::to_string(User.Id);
    User.DateJoined = Now;
    User.DateOnline = Now;
    return Users[User.Id] = User;
}

FStoredMod* FSandboxStore::FindMod(int64 Id)
{
    const auto Found = Mods.find(Id);
    return Found == Mods.end() ? nullptr : &Found->second;
}

const FStoredModfile* FSandboxStore::FindModfile(int64 Id) const
{
    const auto Found = Modfiles.find(Id);
    return Found == Modfiles.end() ? nullptr : &Found->second;
}

bool FSandboxStore::IsNameIdTaken(int64 GameId, const std::string& NameId, int64 ExceptModId) const
{
    for (const auto& [Id, Mod] : Mods)
    {
        if (Id != ExceptModId && Mod.GameId == GameId && EqualsIgnoreCase(Mod.NameId, NameId))
        {
            return true;
        }
    }
    return false;
}

std::string FSandboxStore::UniqueNameId(int64 GameId, const std::string& Name, int64 ExceptModId) const
{
    std::string Base;
    for (const char Character : Name)
    {
        if (std::isalnum(static_cast<unsigned char>(Character)))
        {
            Base += static_cast<char>(std::tolower(static_cast<unsigned char>(Character)));
        }
        else if (!Base.empty() && Base.back() != '-')
        {
            Base += '-';
        }
    }
    while (!Base.empty() && Base.back() == '-')
    {
        Base.pop_back();
    }
    if (Base.empty())
    {
        Base = "mod";
    }
    std::string Candidate = Base;
    for (int Suffix = 2; IsNameIdTaken(GameId, Candidate, ExceptModId); ++Suffix)
    {
        Candidate = Base + "-" + std::to_string(Suffix);
    }
    return Candidate;
}

const FStoredModfile* FSandboxStore::ModfileFor(const FStoredMod& Mod, const std::string& Platform, bool bPlatformAsked) const
{
    const auto Live = Mod.LiveModfiles.find(Platform);
    if (Live != Mod.LiveModfiles.end())
    {
        return FindModfile(Live->second);
    }
    if (bPlatformAsked)
    {
        return nullptr;
    }
    int64 Newest = 0;
    for (const auto& [LivePlatform, ModfileId] : Mod.LiveModfiles)
    {
        Newest = std::max(Newest, ModfileId);
    }
    return Newest == 0 ? nullptr : FindModfile(Newest);
}
}
