// The sample data: a modder with a map, a mod, a game mode and a hidden draft; a second user
// with a catalogue to filter, sort and page (28 mods tagged "Mod"); three shared source
// plug-ins whose files are real archives, one depending on another.

#include "ModioService/SandboxSeed.h"

#include "Common/JsonWriter.h"
#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Common/Md5.h"
#include "ModioService/SandboxState.h"
#include "ModioService/SandboxZip.h"

namespace Maptorn::Sandbox
{
namespace
{
constexpr int64 SeedEpoch = 1700000000; // 14 November 2023
constexpr int64 Day = 24 * 60 * 60;

struct FSeedUser
{
    int64 Id;
    const char* Email;
    const char* Username;
};
const FSeedUser Modder{ 1, "modder@example.com", "Modder" };
const FSeedUser Cartographer{ 2, "cartographer@example.com", "Cartographer" };

struct FSeedEntry
{
    const char* Name;
    std::vector<std::string> Tags;
    int64 Owner;
    bool bVisible = true;
    bool bSourcePlugin = false;
};

const std::vector<FSeedEntry>& SeedEntries()
{
    static const std::vector<FSeedEntry> Entries = []
    {
        std::vector<FSeedEntry> List = { { "Harbour Run", { "Map" }, Modder.Id },
                                         { "Neon Props", { "Mod" }, Modder.Id },
                                         { "King of the Hill", { "GameMode" }, Modder.Id },
                                         { "Quarry Draft", { "Map" }, Modder.Id, false },
                                         { "Lamp Kit", { "Mod", "Props" }, Cartographer.Id, true, true },
                                         { "Crate Kit", { "Mod", "Props" }, Cartographer.Id, true, true },
                                         { "Sign Kit", { "Mod", "Decals" }, Cartographer.Id, true, true } };
        const char* const ModNames[] = { "Alpine Cabins",   "Brass Fixtures", "Cargo Containers", "Desert Rocks",
                                         "Ember Torches",   "Fog Machines",   "Glass Panels",     "Hedge Mazes",
                                         "Iron Fences",     "Jungle Vines",   "Kiosk Stands",     "Lantern Strings",
                                         "Market Stalls",   "Night Sky",      "Oil Drums",        "Pine Forest",
                                         "Quartz Crystals", "Rope Bridges",   "Steel Girders",    "Tiki Huts",
                                         "Urban Graffiti",  "Vintage Cars",   "Wooden Crates",    "Zen Gardens" };
        const char* const SecondTags[] = { "Props", "Vehicles", "Weapons", "Decals", "Audio" };
        int Index = 0;
        for (const char* Name : ModNames)
        {
            // Shared as source plug-ins too, so the browser's catalogue has pages to turn.
            List.push_back({ Name, { "Mod", SecondTags[Index++ % 5] }, Cartographer.Id, true, true });
        }
        for (const char* Name : { "Frostbite Pass", "Sunken Docks", "Canyon Loop", "Old Mill" })
        {
            List.push_back({ Name, { "Map" }, Cartographer.Id });
        }
        for (const char* Name : { "Capture the Relic", "Last Stand" })
        {
            List.push_back({ Name, { "GameMode" }, Cartographer.Id });
        }
        return List;
    }();
    return Entries;
}

// The plug-in a source mod carries: UGC<id>/UGC<id>.uplugin and its content definition.
std::vector<FZipEntry> SourcePluginEntries(int64 ModId)
{
    const std::string Plugin = "UGC" + std::to_string(ModId);
    Json::FJsonObject Descriptor;
    Descriptor["FileVersion"] = 3;
    Descriptor["Version"] = 1;
    Descriptor["VersionName"] = "1.0";
    Descriptor["FriendlyName"] = Plugin;
    Descriptor["Description"] = "A shared source plug-in from the mod.io sandbox.";
    Descriptor["Category"] = "Mods";
    Descriptor["CanContainContent"] = true;
    Json::FJsonObject Definition;
    Definition["Class"] = "Kelvor_Mod";
    Definition["Label"] = Plugin;
    Definition["Version"] = 1;
    return { { Plugin + "/", "" },
             { Plugin + "/" + Plugin + ".uplugin", Json::WritePretty(Descriptor, "\r\n") },
             { Plugin + "/Content/", "" },
             { Plugin + "/Content/definition.json", Json::WritePretty(Definition, "\r\n") },
             { Plugin + "/Content/ReadMe.txt", Plugin + " is sample content served by the mod.io sandbox.\r\n" },
             { Plugin + "/Resources/Icon128.png", TinyPng() } };
}

std::vector<FZipEntry> PlainModEntries(const FStoredMod& Mod)
{
    return { { Mod.NameId + "/ReadMe.txt", Mod.Name + ": sample content served by the mod.io sandbox.\r\n" } };
}

void AddSeedModfile(FSandboxState& State, FStoredMod& Mod, bool bSourcePlugin)
{
    FStoredModfile Modfile;
    Modfile.Id = Mod.Id + SeededModfileIdOffset;
    Modfile.ModId = Mod.Id;
    Modfile.DateAdded = Mod.DateLive;
    Modfile.Filename = Mod.NameId + ".zip";
    Modfile.Version = "1.0";
    Modfile.Changelog = "First release.";
    Modfile.Platforms = bSourcePlugin ? std::vector<std::string>{ "source", "windows" } : std::vector<std::string>{ "windows" };
    Modfile.Blob = "seed-modfile-" + std::to_string(Modfile.Id) + ".zip";
    const std::string Path = State.Blobs.PathOf(Modfile.Blob);
    WriteZip(Path, bSourcePlugin ? SourcePluginEntries(Mod.Id) : PlainModEntries(Mod));
    Modfile.Filesize = FileSystem::FileSize(Path);
    Modfile.Md5 = FMd5::OfFile(Path);
    for (const std::string& Platform : Modfile.Platforms)
    {
        Mod.LiveModfiles[Platform] = Modfile.Id;
    }
    State.Store.Modfiles[Modfile.Id] = Modfile;
}

// Dates and stats spread so that every sort column orders the mods differently.
FStoredMod MakeSeedMod(FSandboxState& State, const FSeedEntry& Entry, int64 Index)
{
    FStoredMod Mod;
    Mod.Id = FirstSeededModId + Index;
    Mod.GameId = State.Options.GameId;
    Mod.bVisible = Entry.bVisible;
    Mod.SubmittedBy = Entry.Owner;
    Mod.DateAdded = SeedEpoch + ((Index * 7) % 37) * Day + Index * 60;
    Mod.DateUpdated = Mod.DateAdded + ((Index * 13) % 5) * 3600;
    Mod.DateLive = Mod.DateAdded + 600;
    Mod.Name = Entry.Name;
    Mod.NameId = State.Store.UniqueNameId(Mod.GameId, Mod.Name, Mod.Id);
    Mod.Summary = std::string(Entry.Name) + " for the sandbox's sample catalogue.";
    Mod.Description = "<p>" + Mod.Summary + "</p>";
    for (const std::string& Tag : Entry.Tags)
    {
        Mod.Tags.push_back({ Tag, Mod.DateAdded });
    }
    Mod.LogoFilename = "logo.png";
    Mod.LogoBlob = State.Blobs.Write("logo", TinyPng());
    Mod.Stats = { (Index * 31) % 97, (Index * 7919) % 10007, (Index * 389) % 1009, (Index * 17) % 50 + 1, (Index * 5) % 10 };
    return Mod;
}
}

std::vector<FSeededMod> SeededModList()
{
    std::vector<FSeededMod> List;
    int64 Index = 0;
    for (const FSeedEntry& Entry : SeedEntries())
    {
        List.push_back({ FirstSeededModId + Index++, Entry.Name, Entry.Tags, Entry.bSourcePlugin });
    }
    return List;
}

void SeedStore(FSandboxState& State)
{
    if (State.Store.Mods.count(FirstSeededModId) > 0)
    {
        return;
    }
    for (const FSeedUser& Seed : { Modder, Cartographer })
    {
        FSandboxUser User{ Seed.Id, Seed.Email, Seed.Username, ToLower(Seed.Username), SeedEpoch - 30 * Day, SeedEpoch };
        State.Store.Users[User.Id] = User;
    }
    int64 Index = 0;
    for (const FSeedEntry& Entry : SeedEntries())
    {
        FStoredMod Mod = MakeSeedMod(State, Entry, Index++);
        AddSeedModfile(State, Mod, Entry.bSourcePlugin);
        State.Store.Mods[Mod.Id] = Mod;
    }
    // Crate Kit needs Lamp Kit.
    State.Store.Mods[FirstSeededModId + 5].Dependencies = { FirstSeededModId + 4 };
    State.SaveLocked();
}
}
