#include "Journey/EditorJourneyFixture.h"

#include <curl/curl.h>

#include <fstream>

FEditorJourney::FEditorJourney()
	: Sandbox(Maptorn::Sandbox::FSandboxOptions{0, "", 1, ApiKey, true, true})
{
	bSandboxStarted = Sandbox.Start(StartError);
}

void FEditorJourney::SetUp()
{
	ASSERT_TRUE(bSandboxStarted) << StartError;
	FStandInEditorOptions Options;
	Options.Root = Temp.Dir() + "Modder";
	Options.StandinBinary = MAPTORN_STANDIN_PATH;
	// As a modder may type it: the trailing slash must not double in any path.
	Options.ModioBaseUrl = Sandbox.GetBaseUrl() + "/";
	Options.ModioGameId = 1;
	Options.ModioApiKey = ApiKey;
	std::string Error;
	ASSERT_TRUE(Editor.Prepare(Options, Error)) << Error;
}

void FEditorJourney::StartEditor()
{
	std::string Error;
	ASSERT_TRUE(Editor.Launch(Error)) << Error;
}

void FEditorJourney::LogIn(const std::string& Email)
{
	ASSERT_TRUE(Steps.LogIn(Email, [this](const std::string& Address) { return Sandbox.LastCodeFor(Address); }))
		<< Steps.LastFailure() << "\n" << Window().PrintTree();
}

void FEditorJourney::CreateMod(const std::string& Name, const std::string& Summary)
{
	ASSERT_TRUE(Steps.CreateMod(Name, Summary, "Mod", std::string(MAPTORN_RESOURCES_DIR) + "KelvorThumbnail.jpg"))
		<< Steps.LastFailure() << "\n" << Window().PrintTree();
}

void FEditorJourney::LeavePluginInProject(int64 Id)
{
	const std::string Name = "UGC" + std::to_string(Id);
	const std::filesystem::path Folder = std::filesystem::path(ProjectDir()) / "Plugins" / Name;
	std::filesystem::create_directories(Folder / "Content");
	std::ofstream(Folder / (Name + ".uplugin")) << R"({"FileVersion": 3, "VersionName": "1.0", "FriendlyName": ")" << Name
												<< R"(", "CanContainContent": true})";
}

nlohmann::json FEditorJourney::ServiceGet(const std::string& Path) const
{
	std::string Body;
	CURL* Curl = curl_easy_init();
	const std::string Url = Sandbox.GetBaseUrl() + Path + (Path.find('?') == std::string::npos ? "?" : "&") + "api_key=" + ApiKey;
	curl_easy_setopt(Curl, CURLOPT_URL, Url.c_str());
	curl_easy_setopt(Curl, CURLOPT_WRITEFUNCTION, +[](char* Data, size_t Size, size_t Count, void* Out) {
		static_cast<std::string*>(Out)->append(Data, Size * Count);
		return Size * Count;
	});
	curl_easy_setopt(Curl, CURLOPT_WRITEDATA, &Body);
	long Status = 0;
	const bool bSent = curl_easy_perform(Curl) == CURLE_OK;
	curl_easy_getinfo(Curl, CURLINFO_RESPONSE_CODE, &Status);
	curl_easy_cleanup(Curl);
	return bSent && Status == 200 ? nlohmann::json::parse(Body, nullptr, false) : nlohmann::json();
}
