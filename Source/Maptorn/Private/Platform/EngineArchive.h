#pragma once

#include "CoreMinimal.h"
#include "Platform/ArchivePort.h"

// Extracts downloaded shared source plug-ins with the editor's own streaming ZIP reader over the
// engine's zlib (Platform/Zip*.h), writing through the engine's file manager. Every entry passes
// the guards the standalone host also uses (Transfer/ArchiveEntryGuard.h) before the first byte
// is written; a failure part-way removes every file and folder the extraction created.
class FEngineArchive final : public Maptorn::IMaptornArchive
{
public:
	bool ExtractAll(const std::string& ArchivePath, const std::string& DestinationDir, std::string& OutError) override;
};
