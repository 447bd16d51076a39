#pragma once

#include "Common/CoreTypes.h"

#include "Modio/SourceModInfo.h"
#include "Workshop/WorkshopTypes.h"

#include <functional>
#include <memory>
#include <string>

namespace Maptorn
{
// What both kinds of row draw for a mod besides its texts.
namespace WorkshopRowArt
{
// The record's thumbnail (the cached logo, or the plug-in's default) while that file exists; empty
// otherwise, and the row shows its placeholder instead of a brush that would load nothing.
MAPTORNCORE_API std::string LogoPath(const FSourceModInfo& Mod);
// "PC Compatible" for a mod built for Windows, "Android Compatible" for one built for the headset;
// a badge that does not apply gives up its space.
MAPTORNCORE_API EVisibility PCBadgeVisibility(const FSourceModInfo& Mod);
MAPTORNCORE_API EVisibility AndroidBadgeVisibility(const FSourceModInfo& Mod);
}

// One row of the upload page's list: one of the user's own mods. Its button hands the mod id back
// to the window that built it, and only while that window lives.
class MAPTORNCORE_API FWorkshopUploadEntry
{
public:
    using FOnSelect = std::function<void(const std::string& ModId)>;

    FWorkshopUploadEntry(FSourceModInfo InMod, std::weak_ptr<void> InOwner, FOnSelect InOnSelect);

    const FSourceModInfo& GetModInfo() const { return Mod; }

    // Green when this row's plug-in is "UGC" + the chosen mod id (ignoring case), else "151515FF".
    FWorkshopColor GetSelectColor() const;
    // "Select Mod" is usable while a client exists and no mod.io work runs.
    bool IsButtonEnabled() const;
    // The logo file and platform badges the row draws; see WorkshopRowArt.
    std::string GetLogoPath() const;
    EVisibility GetPCBadgeVisibility() const;
    EVisibility GetAndroidBadgeVisibility() const;

    // Both answer handled.
    bool OnModButtonClicked() const;
    bool OnOpenModPageClicked() const;

private:
    FSourceModInfo Mod;
    std::weak_ptr<void> Owner;
    FOnSelect OnSelect;
};

// One row of the source-plug-in browser: a shared plug-in on mod.io with its local state.
class MAPTORNCORE_API FWorkshopSourcePluginEntry
{
public:
    using FOnAdd = std::function<void(const FSourceModInfo& Mod)>;

    FWorkshopSourcePluginEntry(FSourceModInfo InMod, std::weak_ptr<void> InOwner, FOnAdd InOnAdd);

    // A fresh record (with its install state) replaces the row's.
    void UpdateModInfo(const FSourceModInfo& InMod);
    const FSourceModInfo& GetModInfo() const { return Mod; }
    uint8 GetStatus() const { return Status; }

    // "Status: " and the word of the install state ("Not Installed", …).
    std::string GetStatusText() const;
    // "Add to Project" only offers what is not in the project or is out of date.
    bool IsButtonEnabled() const;
    // The logo file and platform badges the row draws; see WorkshopRowArt.
    std::string GetLogoPath() const;
    EVisibility GetPCBadgeVisibility() const;
    EVisibility GetAndroidBadgeVisibility() const;

    // Both answer handled.
    bool OnModButtonClicked() const;
    bool OnOpenModPageClicked() const;

private:
    FSourceModInfo Mod;
    uint8 Status = 0;
    std::weak_ptr<void> Owner;
    FOnAdd OnAdd;
};
}
