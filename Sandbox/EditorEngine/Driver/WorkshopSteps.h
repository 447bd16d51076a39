#pragma once

// The modder's steps through the workshop's tab, each done as a person does it: waiting until the
// button they need is shown and enabled, then clicking. Shared by the editor tests and the editor demo.

#include "EditorEngine/Driver/StandInEditor.h"

#include <functional>
#include <string>

class FWorkshopSteps
{
public:
	explicit FWorkshopSteps(FStandInEditor& InEditor) : Editor(InEditor) {}

	FWidgetDriver& Window() { return Editor.Window(); }
	// Why the last step failed: the driver's reason or what never showed.
	const std::string& LastFailure() const { return Failure; }

	bool WaitForText(const std::string& Text, double Seconds = 20.0);
	// Waits until the button is shown and enabled, then clicks it.
	bool Press(const std::string& Label, double Seconds = 20.0);
	// The same for the button in the group that shows Anchor (a page's button sharing a tab's label, a row's button).
	bool PressNear(const std::string& Anchor, const std::string& Label, double Seconds = 20.0);
	bool OpenPage(const std::string& Label);

	// Terms, e-mail, the code the modder finds in their mailbox (CodeFor), login.
	bool LogIn(const std::string& Email, const std::function<std::string(const std::string&)>& CodeFor);
	// The create page's fields, its logo picked in the file dialog, its type, "Create Mod".
	bool CreateMod(const std::string& Name, const std::string& Summary, const std::string& Type, const std::string& LogoFile);

private:
	bool Fail(const std::string& Why);

	FStandInEditor& Editor;
	std::string Failure;
};
