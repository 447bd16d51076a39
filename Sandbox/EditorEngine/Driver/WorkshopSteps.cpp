#include "EditorEngine/Driver/WorkshopSteps.h"

#include "EditorEngine/SurfaceTestState.h"

bool FWorkshopSteps::Fail(const std::string& Why)
{
	Failure = Why;
	return false;
}

bool FWorkshopSteps::WaitForText(const std::string& Text, double Seconds)
{
	return Editor.RunUntil([&] { return Window().Shows(Text); }, Seconds) || Fail("\"" + Text + "\" never showed");
}

bool FWorkshopSteps::Press(const std::string& Label, double Seconds)
{
	Editor.RunUntil([&] { return Window().IsButtonEnabled(Label).value_or(false); }, Seconds);
	const bool bClicked = Window().Click(Label);
	Editor.Frame();
	return bClicked || Fail(Window().LastFailure());
}

bool FWorkshopSteps::PressNear(const std::string& Anchor, const std::string& Label, double Seconds)
{
	Editor.RunUntil([&] { return Window().IsButtonEnabled(Label).value_or(false); }, Seconds);
	const bool bClicked = Window().ClickNear(Anchor, Label);
	Editor.Frame();
	return bClicked || Fail(Window().LastFailure());
}

bool FWorkshopSteps::OpenPage(const std::string& Label)
{
	const bool bClicked = Window().ClickInside("SWorkshopTab", Label);
	Editor.Frame();
	return bClicked || Fail(Window().LastFailure());
}

bool FWorkshopSteps::LogIn(const std::string& Email, const std::function<std::string(const std::string&)>& CodeFor)
{
	if (!Press("I Agree") || !(Window().Type("Email Address", Email) || Fail(Window().LastFailure())) || !Press("Send")
		|| !WaitForText("Check your email for the mod.io auth code"))
	{
		return false;
	}
	if (!(Window().Type("Auth Code", CodeFor(Email)) || Fail(Window().LastFailure())) || !Press("Login"))
	{
		return false;
	}
	// The account page then shows "Logged In", or gives way to the page chosen before.
	return Editor.RunUntil([this] { return !Window().Shows("Auth Code"); }, 20.0) || Fail("the login never completed");
}

bool FWorkshopSteps::CreateMod(const std::string& Name, const std::string& Summary, const std::string& Type, const std::string& LogoFile)
{
	if (!OpenPage("Create Mod"))
	{
		return false;
	}
	if (!Window().Type("Mod Name (Required)", Name) || !Window().Type("Max length 250 characters", Summary) || !Window().ChooseSegment(Type))
	{
		return Fail(Window().LastFailure());
	}
	SurfaceTestState::Get().FileAnswers.push_back(LogoFile);
	return Press("Select Logo Image") && PressNear("Mod Name (Required)", "Create Mod");
}
