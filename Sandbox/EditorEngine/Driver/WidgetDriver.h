#pragma once

// A person at the stand-in editor: reads what the open tab shows and acts on it only as a person
// could, by the texts, tool tips and icons on screen. Hidden and collapsed widgets are not there; a
// disabled button cannot be clicked. Every action says why when it cannot be done.

#include "CoreMinimal.h"
#include "Styling/SlateTypes.h"
#include "Widgets/Notifications/SNotificationList.h"
#include "Widgets/SWidget.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

// One toast in the corner of the editor, as it shows now.
struct FNotificationView
{
	std::string Text;
	SNotificationItem::ECompletionState State = SNotificationItem::CS_None;
	bool bFading = false;
};

class FWidgetDriver
{
public:
	explicit FWidgetDriver(TSharedPtr<SWidget> InRoot = nullptr) : Root(InRoot) {}
	void SetRoot(TSharedPtr<SWidget> InRoot) { Root = InRoot; }

	// Every text on screen, in reading order (text blocks, button and link texts, typed text).
	std::vector<std::string> VisibleTexts() const;
	bool Shows(const std::string& Text) const;
	bool ShowsContaining(const std::string& Part) const;
	// The first text on screen that starts with Prefix; empty when none does.
	std::string TextStartingWith(const std::string& Prefix) const;
	// The screen as indented lines: what each widget shows, "(disabled)" where it is.
	std::string PrintTree() const;

	// A button's state by its label (text, tool tip or icon file name): nothing when none is shown.
	std::optional<bool> IsButtonEnabled(const std::string& Label) const;
	// The check box beside Label.
	std::optional<ECheckBoxState> CheckState(const std::string& Label) const;
	// What the text box under or beside Label holds.
	std::optional<std::string> BoxText(const std::string& Label) const;
	// The fill of the first progress bar on screen, 0..1.
	std::optional<float> Progress() const;
	// The rows of a list, each as the texts it shows: the widgets whose type is RowType.
	std::vector<std::vector<std::string>> Rows(const std::string& RowType) const;
	// The image files each row shows, as their full paths.
	std::vector<std::vector<std::string>> RowImages(const std::string& RowType) const;
	// Every toast the editor raised since it started, oldest first, faded ones included.
	std::vector<FNotificationView> Notifications() const;

	// Presses the shown, enabled button labelled Label; there must be exactly one.
	bool Click(const std::string& Label);
	// Presses the button labelled Label in the row (or group) that shows RowText.
	bool ClickNear(const std::string& RowText, const std::string& Label);
	// Presses the button labelled Label inside a widget of type WidgetType (a tab of a tab strip, say).
	bool ClickInside(const std::string& WidgetType, const std::string& Label);
	// Follows the link labelled Label.
	bool FollowLink(const std::string& Label);
	// Types Text into the box under or beside Label (or whose hint is Label), optionally pressing Enter.
	bool Type(const std::string& Label, const std::string& Text, bool bPressEnter = false);
	// Clicks the check box beside Label.
	bool Toggle(const std::string& Label);
	// Opens the combo box that shows Current and picks Item; or clicks the segment labelled Item.
	bool Choose(const std::string& Current, const std::string& Item);
	bool ChooseSegment(const std::string& Item);

	const std::string& LastFailure() const { return Failure; }

private:
	struct FNode
	{
		TSharedPtr<SWidget> Widget;
		int32 Parent = -1;
		int32 Depth = 0;
		bool bEnabled = true;
	};
	std::vector<FNode> Walk() const;
	bool IsInside(const std::vector<FNode>& Nodes, int32 Index, int32 Ancestor) const;
	// What Read finds in each widget of each row of type RowType, the empty answers left out.
	std::vector<std::vector<std::string>> RowsOf(const std::string& RowType, const std::function<std::string(const SWidget&)>& Read) const;
	// From Anchor's node up, the nearest group that holds a node matching Match: the first such after
	// the anchor in reading order, or else the first in the group.
	int32 FindNear(const std::vector<FNode>& Nodes, int32 Anchor, const std::function<bool(const FNode&)>& Match) const;
	int32 FindText(const std::vector<FNode>& Nodes, const std::string& Text) const;
	std::vector<int32> FindButtons(const std::vector<FNode>& Nodes, const std::string& Label) const;
	std::string ButtonLabelOf(const std::vector<FNode>& Nodes, int32 Index) const;
	bool Fail(const std::string& Why);
	bool Press(const FNode& Button, const std::string& Label);

	TSharedPtr<SWidget> Root;
	std::string Failure;
};

// What one widget shows a person: its text, or for images the file, for boxes the text in them.
std::string WidgetTextOf(const SWidget& Widget);
bool WidgetIsA(const SWidget& Widget, const char* TypeName);
