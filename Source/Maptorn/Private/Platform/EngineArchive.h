#pragma once

#include "CoreMinimal.h"
#include "Platform/ArchivePort.h"

// Stand-in until the editor carries a ZIP library: every extraction fails with a reason the
// workshop shows to the user, so a source-plug-in download ends cleanly instead of hanging.
class FEngineArchive final : public Maptorn::IMaptornArchive
{
public:
	bool ExtractAll(const std::string& /*ArchivePath*/, const std::string& /*DestinationDir*/, std::string& OutError) override
	{
		OutError = "ZIP extraction is not available in this build";
		return false;
	}
};
