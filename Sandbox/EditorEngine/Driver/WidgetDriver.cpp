#include "EditorEngine/Driver/WidgetDriver.h"

#include "EditorEngine/Slate/SurfaceNotifications.h"
#include "EditorEngine/SurfaceTestState.h"
#include "Platform/StringConversion.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SCheckBox.h"
#include "Widgets/Input/SComboBox.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Input/SHyperlink.h"
#include "Widgets/Input/SSegmentedControl.h"
#include "Widgets/Notifications/SProgressBar.h"
#include "Widgets/Text/STextBlock.h"

#include <sstream>

using MaptornString::ToStd;

namespace
{
std::string TypeOf(const SWidget& Widget)
{
	return ToStd(Widget.GetTypeAsString());
}

// The file an image brush draws, without its folder: what a reader recognises.
std::string ImageNameOf(const SImage& Image)
{
	const FSlateBrush* Brush = Image.GetImage();
	if (!Brush)
	{
		return std::string();
	}
	const std::string Name = ToStd(Brush->GetResourceName().ToString());
	const size_t Slash = Name.find_last_of('/');
	return Slash == std::string::npos ? Name : Name.substr(Slash + 1);
}

bool IsTextBox(const SWidget& Widget)
{
	return WidgetIsA(Widget, "SEditableTextBox") || WidgetIsA(Widget, "SSearchBox");
}

bool IsButton(const SWidget& Widget)
{
	return WidgetIsA(Widget, "SButton");
}
}

bool WidgetIsA(const SWidget& Widget, const char* TypeName)
{
	const std::string Type = TypeOf(Widget);
	const std::string Wanted(TypeName);
	// Templates are named with their arguments: SComboBox<...> is an SComboBox.
	return Type == Wanted || Type.rfind(Wanted + "<", 0) == 0;
}

std::string WidgetTextOf(const SWidget& Widget)
{
	if (WidgetIsA(Widget, "STextBlock"))
	{
		return ToStd(static_cast<const STextBlock&>(Widget).GetText().ToString());
	}
	if (WidgetIsA(Widget, "SHyperlink"))
	{
		return ToStd(static_cast<const SHyperlink&>(Widget).GetHyperlinkText().ToString());
	}
	if (IsButton(Widget))
	{
		return ToStd(static_cast<const SButton&>(Widget).GetButtonText().ToString());
	}
	if (IsTextBox(Widget))
	{
		return ToStd(static_cast<const SEditableTextBox&>(Widget).GetText().ToString());
	}
	if (WidgetIsA(Widget, "SImage"))
	{
		return ImageNameOf(static_cast<const SImage&>(Widget));
	}
	if (WidgetIsA(Widget, "SDockTab"))
	{
		return ToStd(static_cast<const SDockTab&>(Widget).GetTabLabel().ToString());
	}
	return std::string();
}

std::vector<FWidgetDriver::FNode> FWidgetDriver::Walk() const
{
	std::vector<FNode> Nodes;
	if (!Root.IsValid())
	{
		return Nodes;
	}
	std::function<void(const TSharedRef<SWidget>&, int32, int32, bool)> Visit =
		[&](const TSharedRef<SWidget>& Widget, int32 Parent, int32 Depth, bool bParentEnabled) {
			if (!Widget->GetVisibility().IsVisible())
			{
				return;
			}
			const int32 Index = static_cast<int32>(Nodes.size());
			Nodes.push_back(FNode{Widget, Parent, Depth, bParentEnabled && Widget->IsEnabled()});
			const bool bEnabled = Nodes.back().bEnabled;
			for (const TSharedRef<SWidget>& Child : Widget->GetVisibleChildWidgets())
			{
				Visit(Child, Index, Depth + 1, bEnabled);
			}
		};
	Visit(Root.ToSharedRef(), -1, 0, true);
	return Nodes;
}

bool FWidgetDriver::IsInside(const std::vector<FNode>& Nodes, int32 Index, int32 Ancestor) const
{
	for (int32 At = Index; At >= 0; At = Nodes[static_cast<size_t>(At)].Parent)
	{
		if (At == Ancestor)
		{
			return true;
		}
	}
	return false;
}

int32 FWidgetDriver::FindNear(const std::vector<FNode>& Nodes, int32 Anchor, const std::function<bool(const FNode&)>& Match) const
{
	for (int32 Group = Anchor; Group >= 0; Group = Nodes[static_cast<size_t>(Group)].Parent)
	{
		int32 First = -1;
		for (int32 Index = 0; Index < static_cast<int32>(Nodes.size()); ++Index)
		{
			if (Index == Anchor || !IsInside(Nodes, Index, Group) || !Match(Nodes[static_cast<size_t>(Index)]))
			{
				continue;
			}
			if (Index > Anchor)
			{
				return Index;
			}
			First = First < 0 ? Index : First;
		}
		if (First >= 0)
		{
			return First;
		}
	}
	return -1;
}

int32 FWidgetDriver::FindText(const std::vector<FNode>& Nodes, const std::string& Text) const
{
	for (int32 Index = 0; Index < static_cast<int32>(Nodes.size()); ++Index)
	{
		const SWidget& Widget = *Nodes[static_cast<size_t>(Index)].Widget;
		const bool bHint = IsTextBox(Widget) && ToStd(static_cast<const SEditableTextBox&>(Widget).GetHintText().ToString()) == Text;
		if (WidgetTextOf(Widget) == Text || bHint || ToStd(Widget.GetToolTipText().ToString()) == Text)
		{
			return Index;
		}
	}
	return -1;
}

// A button reads as its own text, else as the texts and icons inside it, else as its tool tip.
std::string FWidgetDriver::ButtonLabelOf(const std::vector<FNode>& Nodes, int32 Index) const
{
	const SWidget& Button = *Nodes[static_cast<size_t>(Index)].Widget;
	std::string Label = WidgetTextOf(Button);
	if (!Label.empty())
	{
		return Label;
	}
	for (int32 Inner = Index + 1; Inner < static_cast<int32>(Nodes.size()) && IsInside(Nodes, Inner, Index); ++Inner)
	{
		const SWidget& Widget = *Nodes[static_cast<size_t>(Inner)].Widget;
		if (WidgetIsA(Widget, "STextBlock"))
		{
			Label += (Label.empty() ? "" : " ") + WidgetTextOf(Widget);
		}
	}
	// A button with only an icon reads as its icon, as a person recognises it.
	for (int32 Inner = Index + 1; Label.empty() && Inner < static_cast<int32>(Nodes.size()) && IsInside(Nodes, Inner, Index); ++Inner)
	{
		if (WidgetIsA(*Nodes[static_cast<size_t>(Inner)].Widget, "SImage"))
		{
			Label = WidgetTextOf(*Nodes[static_cast<size_t>(Inner)].Widget);
		}
	}
	return Label;
}

std::vector<int32> FWidgetDriver::FindButtons(const std::vector<FNode>& Nodes, const std::string& Label) const
{
	std::vector<int32> Found;
	for (int32 Index = 0; Index < static_cast<int32>(Nodes.size()); ++Index)
	{
		const SWidget& Widget = *Nodes[static_cast<size_t>(Index)].Widget;
		if (!IsButton(Widget) || WidgetIsA(Widget, "SHyperlink"))
		{
			continue;
		}
		bool bIcon = false;
		for (int32 Inner = Index + 1; Inner < static_cast<int32>(Nodes.size()) && IsInside(Nodes, Inner, Index); ++Inner)
		{
			const SWidget& Part = *Nodes[static_cast<size_t>(Inner)].Widget;
			bIcon |= WidgetIsA(Part, "SImage") && WidgetTextOf(Part) == Label;
		}
		if (ButtonLabelOf(Nodes, Index) == Label || ToStd(Widget.GetToolTipText().ToString()) == Label || bIcon)
		{
			Found.push_back(Index);
		}
	}
	return Found;
}

bool FWidgetDriver::Fail(const std::string& Why)
{
	Failure = Why;
	return false;
}

bool FWidgetDriver::Press(const FNode& Button, const std::string& Label)
{
	if (!Button.bEnabled)
	{
		return Fail("\"" + Label + "\" is disabled");
	}
	static_cast<SButton&>(*Button.Widget).SimulateClick();
	return true;
}

std::vector<std::string> FWidgetDriver::VisibleTexts() const
{
	std::vector<std::string> Texts;
	for (const FNode& Node : Walk())
	{
		if (!WidgetIsA(*Node.Widget, "SImage"))
		{
			std::string Text = WidgetTextOf(*Node.Widget);
			if (!Text.empty())
			{
				Texts.push_back(std::move(Text));
			}
		}
	}
	return Texts;
}

bool FWidgetDriver::Shows(const std::string& Text) const
{
	for (const std::string& Shown : VisibleTexts())
	{
		if (Shown == Text)
		{
			return true;
		}
	}
	return false;
}

bool FWidgetDriver::ShowsContaining(const std::string& Part) const
{
	for (const std::string& Shown : VisibleTexts())
	{
		if (Shown.find(Part) != std::string::npos)
		{
			return true;
		}
	}
	return false;
}

std::string FWidgetDriver::TextStartingWith(const std::string& Prefix) const
{
	for (const std::string& Shown : VisibleTexts())
	{
		if (Shown.rfind(Prefix, 0) == 0)
		{
			return Shown;
		}
	}
	return std::string();
}

std::string FWidgetDriver::PrintTree() const
{
	std::ostringstream Out;
	const std::vector<FNode> Nodes = Walk();
	std::vector<int32> Level(Nodes.size(), 0);
	for (size_t Index = 0; Index < Nodes.size(); ++Index)
	{
		const FNode& Node = Nodes[Index];
		const SWidget& Widget = *Node.Widget;
		const int32 ParentLevel = Node.Parent >= 0 ? Level[static_cast<size_t>(Node.Parent)] : 0;
		std::string Line;
		if (IsButton(Widget) && !WidgetIsA(Widget, "SHyperlink"))
		{
			Line = "[" + ButtonLabelOf(Nodes, static_cast<int32>(Index)) + "]";
		}
		else if (WidgetIsA(Widget, "SHyperlink"))
		{
			Line = "<" + WidgetTextOf(Widget) + ">";
		}
		else if (IsTextBox(Widget))
		{
			const auto& Box = static_cast<const SEditableTextBox&>(Widget);
			Line = "|" + WidgetTextOf(Widget) + "|" + (Box.GetHintText().IsEmpty() ? "" : " (" + ToStd(Box.GetHintText().ToString()) + ")");
		}
		else if (WidgetIsA(Widget, "SCheckBox"))
		{
			Line = static_cast<const SCheckBox&>(Widget).GetCheckedState() == ECheckBoxState::Checked ? "[x]" : "[ ]";
		}
		else if (WidgetIsA(Widget, "SProgressBar"))
		{
			Line = "progress " + std::to_string(static_cast<int>(static_cast<const SProgressBar&>(Widget).GetPercent().Get(0.0f) * 100.0f)) + "%";
		}
		else if (WidgetIsA(Widget, "SThrobber"))
		{
			Line = "(working...)";
		}
		else if (WidgetIsA(Widget, "SComboBox"))
		{
			Line = "combo:";
		}
		else if (WidgetIsA(Widget, "SSegmentedControl"))
		{
			const auto& Segments = static_cast<const SSegmentedChoices&>(Widget);
			const TArray<FText> Texts = Segments.SimulateSegmentTexts();
			for (int32 Segment = 0; Segment < Texts.Num(); ++Segment)
			{
				const std::string Text = ToStd(Texts[Segment].ToString());
				Line += (Segment == Segments.SimulateCurrentSegment() ? "(*" + Text + ")" : "( " + Text + ")") + " ";
			}
		}
		else if (WidgetIsA(Widget, "SImage"))
		{
			Line = WidgetTextOf(Widget).empty() ? std::string() : "image " + WidgetTextOf(Widget);
		}
		else if (TypeOf(Widget).rfind("SKelvorWorkshop", 0) == 0 && TypeOf(Widget) != "SKelvorWorkshopWindow")
		{
			Line = "-- row --";
		}
		else
		{
			Line = WidgetTextOf(Widget);
		}
		// Buttons print their content in their label; layout widgets print nothing and add no level.
		const bool bInsideButton = Node.Parent >= 0 && [&] {
			for (int32 At = Node.Parent; At >= 0; At = Nodes[static_cast<size_t>(At)].Parent)
			{
				if (IsButton(*Nodes[static_cast<size_t>(At)].Widget) && !WidgetIsA(*Nodes[static_cast<size_t>(At)].Widget, "SHyperlink"))
				{
					return true;
				}
			}
			return false;
		}();
		if (Line.empty() || (bInsideButton && !WidgetIsA(Widget, "SCheckBox")))
		{
			Level[Index] = ParentLevel;
			continue;
		}
		Level[Index] = ParentLevel + 1;
		Out << std::string(static_cast<size_t>(ParentLevel) * 2, ' ') << Line << (Node.bEnabled ? "" : " (disabled)") << "\n";
	}
	return Out.str();
}

std::optional<bool> FWidgetDriver::IsButtonEnabled(const std::string& Label) const
{
	const std::vector<FNode> Nodes = Walk();
	const std::vector<int32> Buttons = FindButtons(Nodes, Label);
	return Buttons.empty() ? std::nullopt : std::optional<bool>(Nodes[static_cast<size_t>(Buttons.front())].bEnabled);
}

std::optional<ECheckBoxState> FWidgetDriver::CheckState(const std::string& Label) const
{
	const std::vector<FNode> Nodes = Walk();
	const int32 Anchor = FindText(Nodes, Label);
	const int32 Box = Anchor < 0 ? -1 : FindNear(Nodes, Anchor, [](const FNode& Node) { return WidgetIsA(*Node.Widget, "SCheckBox"); });
	return Box < 0 ? std::nullopt : std::optional<ECheckBoxState>(static_cast<const SCheckBox&>(*Nodes[static_cast<size_t>(Box)].Widget).GetCheckedState());
}

std::optional<std::string> FWidgetDriver::BoxText(const std::string& Label) const
{
	const std::vector<FNode> Nodes = Walk();
	const int32 Anchor = FindText(Nodes, Label);
	if (Anchor >= 0 && IsTextBox(*Nodes[static_cast<size_t>(Anchor)].Widget))
	{
		return WidgetTextOf(*Nodes[static_cast<size_t>(Anchor)].Widget);
	}
	const int32 Box = Anchor < 0 ? -1 : FindNear(Nodes, Anchor, [](const FNode& Node) { return IsTextBox(*Node.Widget); });
	return Box < 0 ? std::nullopt : std::optional<std::string>(WidgetTextOf(*Nodes[static_cast<size_t>(Box)].Widget));
}

std::optional<float> FWidgetDriver::Progress() const
{
	for (const FNode& Node : Walk())
	{
		if (WidgetIsA(*Node.Widget, "SProgressBar"))
		{
			return static_cast<const SProgressBar&>(*Node.Widget).GetPercent().Get(0.0f);
		}
	}
	return std::nullopt;
}

std::vector<FNotificationView> FWidgetDriver::Notifications() const
{
	std::vector<FNotificationView> Views;
	for (const TSharedRef<SStandInNotificationItem>& Item : SurfaceTestState::Get().Notifications)
	{
		Views.push_back(FNotificationView{Item->GetText(), Item->GetCompletionState(), Item->IsFading()});
	}
	return Views;
}

std::vector<std::vector<std::string>> FWidgetDriver::Rows(const std::string& RowType) const
{
	return RowsOf(RowType, [](const SWidget& Widget) { return WidgetIsA(Widget, "SImage") ? std::string() : WidgetTextOf(Widget); });
}

std::vector<std::vector<std::string>> FWidgetDriver::RowImages(const std::string& RowType) const
{
	return RowsOf(RowType, [](const SWidget& Widget) {
		const FSlateBrush* Brush = WidgetIsA(Widget, "SImage") ? static_cast<const SImage&>(Widget).GetImage() : nullptr;
		return Brush ? ToStd(Brush->GetResourceName().ToString()) : std::string();
	});
}

std::vector<std::vector<std::string>> FWidgetDriver::RowsOf(const std::string& RowType, const std::function<std::string(const SWidget&)>& Read) const
{
	std::vector<std::vector<std::string>> Rows;
	const std::vector<FNode> Nodes = Walk();
	for (int32 Index = 0; Index < static_cast<int32>(Nodes.size()); ++Index)
	{
		if (TypeOf(*Nodes[static_cast<size_t>(Index)].Widget) != RowType)
		{
			continue;
		}
		std::vector<std::string> Texts;
		for (int32 Inner = Index + 1; Inner < static_cast<int32>(Nodes.size()) && IsInside(Nodes, Inner, Index); ++Inner)
		{
			if (std::string Text = Read(*Nodes[static_cast<size_t>(Inner)].Widget); !Text.empty())
			{
				Texts.push_back(std::move(Text));
			}
		}
		Rows.push_back(std::move(Texts));
	}
	return Rows;
}

bool FWidgetDriver::Click(const std::string& Label)
{
	const std::vector<FNode> Nodes = Walk();
	const std::vector<int32> Buttons = FindButtons(Nodes, Label);
	if (Buttons.empty())
	{
		return Fail("no button \"" + Label + "\" is shown");
	}
	if (Buttons.size() > 1)
	{
		return Fail(std::to_string(Buttons.size()) + " buttons \"" + Label + "\" are shown");
	}
	return Press(Nodes[static_cast<size_t>(Buttons.front())], Label);
}

bool FWidgetDriver::ClickNear(const std::string& RowText, const std::string& Label)
{
	const std::vector<FNode> Nodes = Walk();
	const int32 Anchor = FindText(Nodes, RowText);
	if (Anchor < 0)
	{
		return Fail("\"" + RowText + "\" is not shown");
	}
	const std::vector<int32> Buttons = FindButtons(Nodes, Label);
	const int32 Button = FindNear(Nodes, Anchor, [&](const FNode& Node) {
		for (const int32 Candidate : Buttons)
		{
			if (Nodes[static_cast<size_t>(Candidate)].Widget == Node.Widget)
			{
				return true;
			}
		}
		return false;
	});
	if (Button < 0)
	{
		return Fail("no button \"" + Label + "\" near \"" + RowText + "\"");
	}
	return Press(Nodes[static_cast<size_t>(Button)], Label);
}

bool FWidgetDriver::ClickInside(const std::string& WidgetType, const std::string& Label)
{
	const std::vector<FNode> Nodes = Walk();
	for (const int32 Button : FindButtons(Nodes, Label))
	{
		for (int32 At = Button; At >= 0; At = Nodes[static_cast<size_t>(At)].Parent)
		{
			if (TypeOf(*Nodes[static_cast<size_t>(At)].Widget) == WidgetType)
			{
				return Press(Nodes[static_cast<size_t>(Button)], Label);
			}
		}
	}
	return Fail("no button \"" + Label + "\" inside a " + WidgetType);
}

bool FWidgetDriver::FollowLink(const std::string& Label)
{
	for (const FNode& Node : Walk())
	{
		if (WidgetIsA(*Node.Widget, "SHyperlink") && WidgetTextOf(*Node.Widget) == Label)
		{
			static_cast<const SHyperlink&>(*Node.Widget).SimulateNavigate();
			return true;
		}
	}
	return Fail("no link \"" + Label + "\" is shown");
}

bool FWidgetDriver::Type(const std::string& Label, const std::string& Text, bool bPressEnter)
{
	const std::vector<FNode> Nodes = Walk();
	const int32 Anchor = FindText(Nodes, Label);
	if (Anchor < 0)
	{
		return Fail("\"" + Label + "\" is not shown");
	}
	const int32 Box = IsTextBox(*Nodes[static_cast<size_t>(Anchor)].Widget)
		? Anchor
		: FindNear(Nodes, Anchor, [](const FNode& Node) { return IsTextBox(*Node.Widget); });
	if (Box < 0)
	{
		return Fail("no text box by \"" + Label + "\"");
	}
	if (!Nodes[static_cast<size_t>(Box)].bEnabled)
	{
		return Fail("the text box by \"" + Label + "\" is disabled");
	}
	static_cast<SEditableTextBox&>(*Nodes[static_cast<size_t>(Box)].Widget)
		.SimulateTyping(FText::FromString(MaptornString::ToFString(Text)), bPressEnter);
	return true;
}

bool FWidgetDriver::Toggle(const std::string& Label)
{
	const std::vector<FNode> Nodes = Walk();
	const int32 Anchor = FindText(Nodes, Label);
	const int32 Box = Anchor < 0 ? -1 : FindNear(Nodes, Anchor, [](const FNode& Node) { return WidgetIsA(*Node.Widget, "SCheckBox"); });
	if (Box < 0)
	{
		return Fail("no check box by \"" + Label + "\"");
	}
	if (!Nodes[static_cast<size_t>(Box)].bEnabled)
	{
		return Fail("the check box by \"" + Label + "\" is disabled");
	}
	static_cast<SCheckBox&>(*Nodes[static_cast<size_t>(Box)].Widget).ToggleCheckedState();
	return true;
}

bool FWidgetDriver::Choose(const std::string& Current, const std::string& Item)
{
	const std::vector<FNode> Nodes = Walk();
	for (int32 Index = 0; Index < static_cast<int32>(Nodes.size()); ++Index)
	{
		const FNode& Node = Nodes[static_cast<size_t>(Index)];
		if (!WidgetIsA(*Node.Widget, "SComboBox") || ButtonLabelOf(Nodes, Index) != Current)
		{
			continue;
		}
		if (!Node.bEnabled)
		{
			return Fail("the list showing \"" + Current + "\" is disabled");
		}
		auto& Combo = static_cast<SComboBoxChoices&>(*Node.Widget);
		const TArray<TSharedRef<SWidget>> Options = Combo.SimulateOpenList();
		for (int32 Option = 0; Option < Options.Num(); ++Option)
		{
			if (WidgetTextOf(*Options[Option]) == Item)
			{
				Combo.SimulateChooseOption(Option);
				return true;
			}
		}
		return Fail("the list showing \"" + Current + "\" has no \"" + Item + "\"");
	}
	return Fail("no list shows \"" + Current + "\"");
}

bool FWidgetDriver::ChooseSegment(const std::string& Item)
{
	for (const FNode& Node : Walk())
	{
		if (!WidgetIsA(*Node.Widget, "SSegmentedControl"))
		{
			continue;
		}
		const auto& Segments = static_cast<const SSegmentedChoices&>(*Node.Widget);
		const TArray<FText> Texts = Segments.SimulateSegmentTexts();
		for (int32 Segment = 0; Segment < Texts.Num(); ++Segment)
		{
			if (ToStd(Texts[Segment].ToString()) == Item)
			{
				if (!Node.bEnabled)
				{
					return Fail("\"" + Item + "\" is disabled");
				}
				Segments.SimulateChooseSegment(Segment);
				return true;
			}
		}
	}
	return Fail("no segment \"" + Item + "\" is shown");
}
